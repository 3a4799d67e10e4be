#include "pivotVcPdu.h"

#include <cstdio>

#include "vcPduPatterns.h"
#include "vcSharedBodies.h"

namespace {
using namespace vcbody::sphere;
// No padding: the doubles start at 180, off their natural alignment.
constexpr vcpdu::Field kPivotPoint{vcpdu::Kind::Vector64, 180, "Pivot point:"};
// In dump order: the point first, then the sphere.
constexpr vcpdu::Field kDumpFields[] = {kPivotPoint,    kRadius,      kBodyHeading, kPitch,
                                        kHeadingOffset, kPitchOffset, kRoll};
constexpr vcpdu::Body kDumpBody = vcpdu::body(DtPivotVCPdu::kLength, kDumpFields);
}  // namespace

DtPivotVCPdu::DtPivotVCPdu(DtBufferPlaceHolder* holder) {
  vcpdu::build(*this, kLength, DtVcPivot, holder);
}

DtPivotVCPdu::DtPivotVCPdu(const DtNetViewControlPdu* bytes, DtBufferPlaceHolder* holder,
                           DtPduFactory* factory) {
  vcpdu::wrap(*this, bytes, holder, factory);
}

DtPivotVCPdu::~DtPivotVCPdu() = default;

float DtPivotVCPdu::radius() const {
  return readFloat32(kRadius.offset);
}
void DtPivotVCPdu::setRadius(float radius) {
  writeFloat32(kRadius.offset, radius);
}
float DtPivotVCPdu::bodyHeading() const {
  return readFloat32(kBodyHeading.offset);
}
void DtPivotVCPdu::setBodyHeading(float heading) {
  writeFloat32(kBodyHeading.offset, heading);
}
float DtPivotVCPdu::pitch() const {
  return readFloat32(kPitch.offset);
}
void DtPivotVCPdu::setPitch(float pitch) {
  writeFloat32(kPitch.offset, pitch);
}
float DtPivotVCPdu::headingOffset() const {
  return readFloat32(kHeadingOffset.offset);
}
void DtPivotVCPdu::setHeadingOffset(float offset) {
  writeFloat32(kHeadingOffset.offset, offset);
}
float DtPivotVCPdu::pitchOffset() const {
  return readFloat32(kPitchOffset.offset);
}
void DtPivotVCPdu::setPitchOffset(float offset) {
  writeFloat32(kPitchOffset.offset, offset);
}
float DtPivotVCPdu::roll() const {
  return readFloat32(kRoll.offset);
}
void DtPivotVCPdu::setRoll(float roll) {
  writeFloat32(kRoll.offset, roll);
}

const DtVector64& DtPivotVCPdu::pivotPoint() const {
  return pivotPoint_ = readVector64(kPivotPoint.offset);
}

void DtPivotVCPdu::setPivotPoint(const DtVector64& point) {
  writeVector64(kPivotPoint.offset, point);
}

void DtPivotVCPdu::printData() const {
  DtVistrelControlPdu::printData();
  vcpdu::dump(*this, kDumpBody);
}

const char* DtPivotVCPdu::string() const {
  const DtVector64& p = pivotPoint();
  return formatText("%f %f %f %f %f %f %f %f %f", radius(), bodyHeading(), pitch(), headingOffset(),
                    pitchOffset(), roll(), p[0], p[1], p[2]);
}

void DtPivotVCPdu::setFromString(const char* text) {
  float n[9] = {0, 0, 0, 0, 0, 0, 0, 0, 0};
  std::sscanf(text ? text : "", "%f %f %f %f %f %f %f %f %f", &n[0], &n[1], &n[2], &n[3], &n[4],
              &n[5], &n[6], &n[7], &n[8]);
  setRadius(n[0]);
  setBodyHeading(n[1]);
  setPitch(n[2]);
  setHeadingOffset(n[3]);
  setPitchOffset(n[4]);
  setRoll(n[5]);
  setPivotPoint(DtVector64(n[6], n[7], n[8]));
}
