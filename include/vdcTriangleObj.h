#pragma once
#include "dtVector.h"
#include "vdcColor.h"
#include "vdcObject.h"
#include "vdcTrianglePdu.h"
#include "vdcVector2D.h"

/// DtVdcTriangle2DObject draws a triangle on the screen (type 2551): three corners
/// relative to an origin (the offset, a screen fraction 0..1), scaled and rotated
/// (radians) about it, filled or outlined with a stipple pattern. The corners reach the
/// viewer doubled and the rotation in degrees, as the viewer reads them.
class DT_EXPORT DtVdcTriangle2DObject : public DtVdcObject {
 public:
  DtVdcTriangle2DObject(unsigned int id, const DtVdcVector2D& vertex1, const DtVdcVector2D& vertex2,
                        const DtVdcVector2D& vertex3, const DtVdcVector2D& offset,
                        const DtVdcVector2D& scale, double rotation, DtVdcColor color, bool fill,
                        unsigned int pattern, bool flashing);
  ~DtVdcTriangle2DObject() override;

  DtVdcTrianglePdu& pdu() override;
  /// Attach, vertices, scale, colour, flashing, pattern, rotation, fill.
  void updatePdu() override;

  DT_VDC_FIELD_ACCESSORS(DtVdcVector2D, vertex1, setVertex1)
  DT_VDC_FIELD_ACCESSORS(DtVdcVector2D, vertex2, setVertex2)
  DT_VDC_FIELD_ACCESSORS(DtVdcVector2D, vertex3, setVertex3)
  DT_VDC_FIELD_ACCESSORS(DtVdcVector2D, offset, setOffset)
  DT_VDC_FIELD_ACCESSORS(DtVdcVector2D, scale, setScale)
  DT_VDC_2D_STYLE_ACCESSORS

  virtual void setPduAttach();
  virtual void setPduVertices();
  virtual void setPduScale();
  virtual void setPduColor();
  virtual void setPduFlashing();
  virtual void setPduFill();
  virtual void setPduRotation();
  virtual void setPduPattern();

 private:
  DtVdcVector2D vertex1_;
  DtVdcVector2D vertex2_;
  DtVdcVector2D vertex3_;
  DtVdcVector2D offset_;
  DtVdcVector2D scale_;
  DtVdcColor color_;
  unsigned int pattern_;
  bool fill_;
  double rotation_;
  bool flashing_;
  DtVdcTrianglePdu pdu_;
};

/// DtVdcTriangle3DObject draws a triangle in the scene (type 2552) between three world
/// positions.
class DT_EXPORT DtVdcTriangle3DObject : public DtVdcObject {
 public:
  DtVdcTriangle3DObject(unsigned int id, const DtVector64& vertex1, const DtVector64& vertex2,
                        const DtVector64& vertex3, DtVdcColor color, bool flashing);
  ~DtVdcTriangle3DObject() override;

  DtVdcTrianglePdu& pdu() override;
  /// Points, colour, flashing.
  void updatePdu() override;

  DT_VDC_FIELD_ACCESSORS(DtVector64, vertex1, setVertex1)
  DT_VDC_FIELD_ACCESSORS(DtVector64, vertex2, setVertex2)
  DT_VDC_FIELD_ACCESSORS(DtVector64, vertex3, setVertex3)
  DT_VDC_FLASHING_ACCESSORS
  DT_VDC_COLOR_ACCESSORS

  virtual void setPduPoints();
  virtual void setPduFlashing();
  virtual void setPduColor();

 private:
  DtVector64 vertex1_;
  DtVector64 vertex2_;
  DtVector64 vertex3_;
  DtVdcColor color_;
  bool flashing_;
  DtVdcTrianglePdu pdu_;
};
