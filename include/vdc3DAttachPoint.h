#pragma once
#include "dtExport.h"
#include "dtString.h"
#include "dtVector.h"

/// DtVdc3DAttachPoint says where a scene drawing, or one end of it, is anchored: at a
/// fixed position (type 1), on a simulation entity (type 2, by its id in the toolkit's
/// text form) or on another drawing object (type 3, at a percentage along it). Type 0
/// is no anchor at all and is drawn at the origin. Choosing one kind clears the other
/// two, so an attach point never carries stale anchors.
class DT_EXPORT DtVdc3DAttachPoint {
 public:
  enum AttachmentType : unsigned int {
    DtVdcAttachNone = 0,
    DtVdcAttachLocation = 1,
    DtVdcAttachEntity = 2,
    DtVdcAttachDrawObject = 3
  };

  DtVdc3DAttachPoint();
  DtVdc3DAttachPoint(const DtVector64& location);  // NOLINT: an anchor is a position
  DtVdc3DAttachPoint(const DtString& entityId);    // NOLINT: or an entity
  DtVdc3DAttachPoint(unsigned int drawObjectId, double relativePosition);
  DtVdc3DAttachPoint(const DtVdc3DAttachPoint& other) = default;
  DtVdc3DAttachPoint& operator=(const DtVdc3DAttachPoint& other) = default;
  virtual ~DtVdc3DAttachPoint();

  virtual unsigned int attachmentType() const;
  virtual DtVector64 location() const;
  virtual DtVector64& location();
  virtual void setLocation(DtVector64 location);
  virtual unsigned int drawObjectId() const;
  virtual void setDrawObjectId(unsigned int id);
  /// Percentage along the other drawing object, 0..100.
  virtual double relativePosition() const;
  /// Changes the percentage only, not the kind of anchor.
  virtual void setRelativePosition(double percent);
  virtual DtString entityId() const;
  virtual void setEntityId(const DtString& id);

 private:
  void anchorOnly(unsigned int type);

  DtVector64 location_;
  DtString entityId_;
  unsigned int drawObjectId_ = 0;
  double relativePosition_ = 0.0;
  unsigned int attachmentType_ = DtVdcAttachNone;
};
