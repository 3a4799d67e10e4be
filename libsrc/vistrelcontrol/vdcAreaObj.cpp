#include "vdcAreaObj.h"

#include "vdcObjectPdu.h"

DtVdcArea3DObject::DtVdcArea3DObject(unsigned int id, std::vector<DtVector64> points,
                                     DtVdcColor color, const DtString& textureDirectory,
                                     const DtString& textureFilename, int numTextureTiles,
                                     bool flashing)
    : DtVdcObject(id),
      color_(color),
      flashing_(flashing),
      points_(std::move(points)),
      textureFilename_(textureFilename),
      textureDirectory_(textureDirectory),
      numTextureTiles_(numTextureTiles) {
  vdcobj::identify(pdu_, id, DtVdc3DArea);
  updatePdu();
}

DtVdcArea3DObject::~DtVdcArea3DObject() = default;

DtVdcAreaPdu& DtVdcArea3DObject::pdu() {
  return pdu_;
}
VDC_COLOR_FLASHING(DtVdcArea3DObject)
VDC_VALUE(DtVdcArea3DObject, int, numTextureTiles, setNumTextureTiles, numTextureTiles_)

DtString DtVdcArea3DObject::textureDirectory() const {
  return textureDirectory_;
}
void DtVdcArea3DObject::setTextureDirectory(const DtString& directory) {
  textureDirectory_ = directory;
}
DtString DtVdcArea3DObject::textureFilename() const {
  return textureFilename_;
}
void DtVdcArea3DObject::setTextureFilename(const DtString& filename) {
  textureFilename_ = filename;
}

DtVector64 DtVdcArea3DObject::vertex(int i) const {
  return i >= 0 && static_cast<size_t>(i) < points_.size() ? points_[i] : DtVector64();
}

void DtVdcArea3DObject::setVertex(int i, const DtVector64& point) {
  if (i >= 0 && static_cast<size_t>(i) < points_.size()) points_[i] = point;
}

void DtVdcArea3DObject::updatePdu() {
  setPduPoints();
  setPduColor();
  setPduFlashing();
  setPduTexture();
}

// The PDU holds 16 points; it drops any beyond, while the count keeps its low byte.
void DtVdcArea3DObject::setPduPoints() {
  const int count = static_cast<int>(points_.size());
  pdu_.setNumPoints(count);
  for (int i = 0; i < count; ++i) pdu_.setPoint(i, points_[i]);
}

void DtVdcArea3DObject::setPduTexture() {
  pdu_.setTextureDirectory(textureDirectory_);
  pdu_.setTextureFilename(textureFilename_);
  pdu_.setNumTextureTiles(numTextureTiles_);
}
