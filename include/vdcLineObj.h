#pragma once
#include <vector>

#include "dtVector.h"
#include "vdc3DAttachPoint.h"
#include "vdcColor.h"
#include "vdcLinePdu.h"
#include "vdcLineSegment.h"
#include "vdcObject.h"
#include "vdcVector2D.h"

// Both lines are divided into segments, each with its own look and share of the line;
// both declare the same segment accessors (see vdcLineSegment.h).

/// DtVdcLine2DObject draws a line on the screen (type 2521) between two positions given
/// as fractions 0..1 of the screen.
class DT_EXPORT DtVdcLine2DObject : public DtVdcObject {
 public:
  /// Every segment starts with the same look and an equal share of the line.
  DtVdcLine2DObject(unsigned int id, const DtVdcVector2D& start, const DtVdcVector2D& end,
                    int numSegments, DtVdcColor color, DtVdcSegmentStyle style,
                    DtVdcSegmentArrowStyle arrowStyle, unsigned int thickness, unsigned int pattern,
                    bool flashing);
  ~DtVdcLine2DObject() override;

  DtVdcLinePdu& pdu() override;
  void updatePdu() override;

  DT_VDC_FIELD_ACCESSORS(DtVdcVector2D, startPosition, setStartPosition)
  DT_VDC_FIELD_ACCESSORS(DtVdcVector2D, endPosition, setEndPosition)
  DT_VDC_SEGMENT_ACCESSORS
  DT_VDC_FLASHING_ACCESSORS

  /// Both ends as screen percentages, truncate(200 c - 100).
  virtual void setPduAttach();
  virtual void setPduFlashing();
  virtual void setPduNumSegments();
  DT_VDC_SEGMENT_PDU_OPERATIONS

 private:
  DtVdcVector2D startPosition_;
  DtVdcVector2D endPosition_;
  bool flashing_;
  std::vector<DtVdcLineSegment> segments_;
  DtVdcLinePdu pdu_;
};

/// DtVdcLine3DObject draws a line in the scene (type 2522) between two attach points:
/// positions, entities or other drawing objects.
class DT_EXPORT DtVdcLine3DObject : public DtVdcObject {
 public:
  DtVdcLine3DObject(unsigned int id, const DtVdc3DAttachPoint& start, const DtVdc3DAttachPoint& end,
                    int numSegments, const DtVector64& enuOffset, DtVdcColor color,
                    DtVdcSegmentStyle style, DtVdcSegmentArrowStyle arrowStyle,
                    unsigned int thickness, unsigned int pattern, bool flashing, bool checkLos,
                    bool projected);
  ~DtVdcLine3DObject() override;

  DtVdcLinePdu& pdu() override;
  void updatePdu() override;

  DT_VDC_FIELD_ACCESSORS(DtVdc3DAttachPoint, startAttachment, setStartAttachment)
  DT_VDC_FIELD_ACCESSORS(DtVdc3DAttachPoint, endAttachment, setEndAttachment)
  /// East-north-up offset of the whole line.
  DT_VDC_FIELD_ACCESSORS(DtVector64, enuOffset, setEnuOffset)
  DT_VDC_SEGMENT_ACCESSORS
  DT_VDC_FLASHING_ACCESSORS
  /// The viewer hides the line when the ends cannot see each other.
  virtual bool checkLos() const;
  virtual void setCheckLos(bool check);
  virtual bool projected() const;
  virtual void setProjected(bool projected);

  virtual void setPduAttach();
  virtual void setPduOffset();
  virtual void setPduFlashing();
  virtual void setPduCheckLos();
  virtual void setPduProjected();
  virtual void setPduNumSegments();
  DT_VDC_SEGMENT_PDU_OPERATIONS

 private:
  DtVdc3DAttachPoint startAttachment_;
  DtVdc3DAttachPoint endAttachment_;
  DtVector64 enuOffset_;
  bool flashing_;
  bool checkLos_;
  bool projected_;
  std::vector<DtVdcLineSegment> segments_;
  DtVdcLinePdu pdu_;
};
