#include "vdcTrianglePdu.h"

#include <cstdio>
#include <string>

#include "dtOutput.h"
#include "vdcLayout.h"
#include "vdcTextForm.h"

namespace {
struct TriangleLayout {
  size_t corners;
};
constexpr vdclayout::Versions<TriangleLayout> kTriangle = {{416}, {404}};

const TriangleLayout& layout(const DtVdcTrianglePduBase& pdu) {
  return vdclayout::of(kTriangle, pdu);
}

// 18 blanks of the attachable text, the one before the poly-object fields and the 7
// between them, then the one before the corners.
constexpr int kBlanksBeforeCorners = 27;
}  // namespace

DtVdcTrianglePduBase::DtVdcTrianglePduBase() = default;
DtVdcTrianglePduBase::~DtVdcTrianglePduBase() = default;

void DtVdcTrianglePduBase::setPoint(int i, const DtVector64& point) {
  writePoint(layout(*this).corners, kCorners, i, point);
}

DtVector64 DtVdcTrianglePduBase::point(int i) const {
  return readPoint(layout(*this).corners, kCorners, i);
}

void DtVdcTrianglePduBase::printData() const {
  DtVdcPolyObjectPduBase::printData();
  for (int i = 0; i < kCorners; ++i) {
    DtDumpInteger("Point:", i + 1);
    DtDumpString("location:", point(i).string());
  }
}

const char* DtVdcTrianglePduBase::string() const {
  std::string base = DtVdcPolyObjectPduBase::string();
  DtVector64 a = point(0), b = point(1), c = point(2);
  return formatText("%s %f %f %f %f %f %f %f %f %f", base.c_str(), a.x(), a.y(), a.z(), b.x(),
                    b.y(), b.z(), c.x(), c.y(), c.z());
}

void DtVdcTrianglePduBase::setFromString(const char* text) {
  const char* line = text ? text : "";
  DtVdcPolyObjectPduBase::setFromString(line);
  float v[9] = {0, 0, 0, 0, 0, 0, 0, 0, 0};
  std::sscanf(vdctext::afterBlanks(line, kBlanksBeforeCorners), "%f %f %f %f %f %f %f %f %f", &v[0],
              &v[1], &v[2], &v[3], &v[4], &v[5], &v[6], &v[7], &v[8]);
  for (int i = 0; i < kCorners; ++i) setPoint(i, DtVector64(v[3 * i], v[3 * i + 1], v[3 * i + 2]));
}

DtVdcTrianglePdu::DtVdcTrianglePdu(DtBufferPlaceHolder* holder) {
  if (initFresh(kLength, holder, DtVdcTriangle, 1)) setRelativeLocations(50);
}

DtVdcTrianglePdu::DtVdcTrianglePdu(const DtNetViewControlPdu* bytes, DtBufferPlaceHolder* holder,
                                   DtPduFactory* factory) {
  initReceived(bytes, holder, factory, DtVdcTriangle);
}

DtVdcTrianglePdu::~DtVdcTrianglePdu() = default;

DtVdcTrianglePduV0::DtVdcTrianglePduV0(DtBufferPlaceHolder* holder) {
  if (initFresh(kLength, holder, DtVdcTriangle, 0)) setRelativeLocations(50);
}

DtVdcTrianglePduV0::DtVdcTrianglePduV0(const DtNetViewControlPdu* bytes,
                                       DtBufferPlaceHolder* holder, DtPduFactory* factory) {
  initReceived(bytes, holder, factory, DtVdcTriangle);
}

DtVdcTrianglePduV0::~DtVdcTrianglePduV0() = default;
