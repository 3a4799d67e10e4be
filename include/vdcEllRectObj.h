#pragma once
#include "vdcColor.h"
#include "vdcObject.h"
#include "vdcPolyObjectPdu.h"
#include "vdcVector2D.h"

/// DtVdcEllRectBase holds what the screen shapes share: a centre (screen fraction
/// 0..1), a size in screen fractions, a rotation in radians, colour, fill and stipple
/// pattern. The viewer builds the outline from the kind (the draw type that the derived
/// class sets) and reads the size doubled and the rotation in degrees.
class DT_EXPORT DtVdcEllRectBase : public DtVdcObject {
 public:
  DtVdcEllRectBase(unsigned int id, const DtVdcVector2D& position, const DtVdcVector2D& size,
                   double rotation, DtVdcColor color, bool fill, unsigned int pattern,
                   bool flashing);
  ~DtVdcEllRectBase() override;

  DtVdcPolyObjectPdu& pdu() override;
  /// Attach, scale, colour, flashing, pattern, rotation, fill.
  void updatePdu() override;

  DT_VDC_FIELD_ACCESSORS(DtVdcVector2D, position, setPosition)
  DT_VDC_FIELD_ACCESSORS(DtVdcVector2D, size, setSize)
  DT_VDC_2D_STYLE_ACCESSORS

  virtual void setPduAttach();
  virtual void setPduScale();
  virtual void setPduColor();
  virtual void setPduFlashing();
  virtual void setPduFill();
  virtual void setPduRotation();
  virtual void setPduPattern();

 private:
  DtVdcVector2D position_;
  DtVdcVector2D size_;
  DtVdcColor color_;
  unsigned int pattern_;
  bool fill_;
  double rotation_;
  bool flashing_;
  DtVdcPolyObjectPdu pdu_;
};

/// DtVdcEllipseObject: an ellipse on the screen (type 2541), `size` its two diameters.
class DT_EXPORT DtVdcEllipseObject : public DtVdcEllRectBase {
 public:
  DtVdcEllipseObject(unsigned int id, const DtVdcVector2D& position, const DtVdcVector2D& size,
                     double rotation, DtVdcColor color, bool fill, unsigned int pattern,
                     bool flashing);
  ~DtVdcEllipseObject() override;
};

/// DtVdcRectangleObject: a rectangle on the screen (type 2543), `size` its two sides.
class DT_EXPORT DtVdcRectangleObject : public DtVdcEllRectBase {
 public:
  DtVdcRectangleObject(unsigned int id, const DtVdcVector2D& position, const DtVdcVector2D& size,
                       double rotation, DtVdcColor color, bool fill, unsigned int pattern,
                       bool flashing);
  ~DtVdcRectangleObject() override;
};
