#include "vdcPolyObjectPdu.h"

#include <cstdio>
#include <string>

#include "dtOutput.h"
#include "vdcLayout.h"
#include "vdcTextForm.h"

namespace {
constexpr unsigned int kFillBit = 0x40;

struct PolyLayout {
  size_t pattern;
  size_t scale;
  size_t rotation;
};
constexpr vdclayout::Versions<PolyLayout> kPoly = {{384, 388, 400}, {376, 380, 392}};

const PolyLayout& layout(const DtVdcPolyObjectPduBase& pdu) {
  return vdclayout::of(kPoly, pdu);
}

// The viewers' reader skips 20 blanks although the attachable text has 18 and the fill
// follows it; it is kept so that both ends read the same numbers.
constexpr int kBlanksBeforeFields = 20;
}  // namespace

DtVdcPolyObjectPduBase::DtVdcPolyObjectPduBase() = default;
DtVdcPolyObjectPduBase::~DtVdcPolyObjectPduBase() = default;

void DtVdcPolyObjectPduBase::setFill(bool fill) const {
  const_cast<DtVdcPolyObjectPduBase*>(this)->setFlagBits(kFillBit, fill);
}

bool DtVdcPolyObjectPduBase::fill() const {
  return (readU8(flagByteOffset()) & kFillBit) != 0;
}

void DtVdcPolyObjectPduBase::setPattern(DtNetU32 pattern) {
  writeU32(layout(*this).pattern, pattern);
}

DtNetU32 DtVdcPolyObjectPduBase::pattern() const {
  return readU32(layout(*this).pattern);
}

void DtVdcPolyObjectPduBase::setScale(const DtVector64& scale) {
  writeVector32(layout(*this).scale, scale);
}

DtVector64 DtVdcPolyObjectPduBase::scale() const {
  return readVector32(layout(*this).scale);
}

void DtVdcPolyObjectPduBase::setRotation(const DtTaitBryan& rotation) {
  writeEulerAngles(layout(*this).rotation, rotation);
}

DtTaitBryan DtVdcPolyObjectPduBase::rotation() const {
  return readEulerAngles(layout(*this).rotation);
}

void DtVdcPolyObjectPduBase::writePoint(size_t first, int count, int i, const DtVector64& point) {
  if (i >= 0 && i < count) writeVector64(first + 24 * static_cast<size_t>(i), point);
}

DtVector64 DtVdcPolyObjectPduBase::readPoint(size_t first, int count, int i) const {
  return i >= 0 && i < count ? readVector64(first + 24 * static_cast<size_t>(i)) : DtVector64();
}

void DtVdcPolyObjectPduBase::printData() const {
  DtVdcAttachablePdu::printData();
  DtDumpHexWord("Fill", fill());
  DtDumpHexWord("Pattern", pattern());
  DtDumpString("Scale", scale().string());
  DtDumpString("Rotation", rotation().string());
}

const char* DtVdcPolyObjectPduBase::string() const {
  std::string base = DtVdcAttachablePdu::string();
  DtVector64 s = scale();
  DtTaitBryan r = rotation();
  return formatText("%s %u %u %f %f %f %f %f %f", base.c_str(), fill() ? 1u : 0u,
                    static_cast<unsigned int>(pattern()), s.x(), s.y(), s.z(), r.psi(), r.theta(),
                    r.phi());
}

void DtVdcPolyObjectPduBase::setFromString(const char* text) {
  const char* line = text ? text : "";
  DtVdcAttachablePdu::setFromString(line);
  unsigned int fillValue = 0, patternValue = 0;
  float v[6] = {0, 0, 0, 0, 0, 0};
  std::sscanf(vdctext::afterBlanks(line, kBlanksBeforeFields), "%u %u %f %f %f %f %f %f",
              &fillValue, &patternValue, &v[0], &v[1], &v[2], &v[3], &v[4], &v[5]);
  setFill(fillValue != 0);
  setPattern(patternValue);
  setScale(DtVector64(v[0], v[1], v[2]));
  setRotation(DtTaitBryan(v[3], v[4], v[5]));
}

DtVdcPolyObjectPdu::DtVdcPolyObjectPdu(DtBufferPlaceHolder* holder) {
  if (initFresh(kLength, holder, DtVdcPolyObject, 1)) {
    // Shapes sit at the far end of their anchors, unlike every other drawing.
    setRelativeLocations(100);
    setPattern(0x00FFFFFFu);
  }
}

DtVdcPolyObjectPdu::DtVdcPolyObjectPdu(const DtNetViewControlPdu* bytes,
                                       DtBufferPlaceHolder* holder, DtPduFactory* factory) {
  initReceived(bytes, holder, factory, DtVdcPolyObject);
}

DtVdcPolyObjectPdu::~DtVdcPolyObjectPdu() = default;

DtVdcPolyObjectPduV0::DtVdcPolyObjectPduV0(DtBufferPlaceHolder* holder) {
  if (initFresh(kLength, holder, DtVdcPolyObject, 0)) setRelativeLocations(50);
}

DtVdcPolyObjectPduV0::DtVdcPolyObjectPduV0(const DtNetViewControlPdu* bytes,
                                           DtBufferPlaceHolder* holder, DtPduFactory* factory) {
  initReceived(bytes, holder, factory, DtVdcPolyObject);
}

DtVdcPolyObjectPduV0::~DtVdcPolyObjectPduV0() = default;
