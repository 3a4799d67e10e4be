#pragma once
#include <vector>

#include "dtString.h"
#include "dtVector.h"
#include "vdcAreaPdu.h"
#include "vdcColor.h"
#include "vdcObject.h"

/// DtVdcArea3DObject draws a polygon in the scene (type 2555) through up to 16 world
/// positions, with an image laid on it and repeated `numTextureTiles` times. The number
/// of corners is fixed when the area is made.
class DT_EXPORT DtVdcArea3DObject : public DtVdcObject {
 public:
  DtVdcArea3DObject(unsigned int id, std::vector<DtVector64> points, DtVdcColor color,
                    const DtString& textureDirectory, const DtString& textureFilename,
                    int numTextureTiles, bool flashing);
  ~DtVdcArea3DObject() override;

  DtVdcAreaPdu& pdu() override;
  /// Points, colour, flashing, texture.
  void updatePdu() override;

  DT_VDC_COLOR_ACCESSORS
  DT_VDC_FLASHING_ACCESSORS
  virtual DtString textureDirectory() const;
  virtual void setTextureDirectory(const DtString& directory);
  virtual DtString textureFilename() const;
  virtual void setTextureFilename(const DtString& filename);
  virtual int numTextureTiles() const;
  virtual void setNumTextureTiles(int tiles);
  /// Corner `i`, or the zero vector when there is no such corner.
  virtual DtVector64 vertex(int i) const;
  /// Replaces an existing corner; any other index changes nothing.
  virtual void setVertex(int i, const DtVector64& point);

  virtual void setPduPoints();
  virtual void setPduFlashing();
  virtual void setPduColor();
  virtual void setPduTexture();

 private:
  DtVdcColor color_;
  bool flashing_;
  std::vector<DtVector64> points_;
  DtString textureFilename_;
  DtString textureDirectory_;
  int numTextureTiles_;
  DtVdcAreaPdu pdu_;
};
