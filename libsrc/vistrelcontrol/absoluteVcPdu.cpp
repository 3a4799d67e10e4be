#include "absoluteVcPdu.h"

#include <cstdio>

#include "dtOutput.h"

namespace {
constexpr size_t kLocationOffset = 160;
constexpr size_t kOrientationOffset = 184;
}  // namespace

DtAbsoluteVCPdu::DtAbsoluteVCPdu(DtBufferPlaceHolder* holder) {
  initPdu(kLength, holder);
  setViewerCommand(DtVcAbsolute);
}

DtAbsoluteVCPdu::DtAbsoluteVCPdu(const DtNetViewControlPdu* bytes, DtBufferPlaceHolder* holder,
                                 DtPduFactory* factory) {
  initPdu(bytes, holder, factory);
}

DtAbsoluteVCPdu::~DtAbsoluteVCPdu() = default;

const DtVector64& DtAbsoluteVCPdu::worldLocation() const {
  location_ = readVector64(kLocationOffset);
  return location_;
}

void DtAbsoluteVCPdu::setWorldLocation(const DtVector64& location) {
  writeVector64(kLocationOffset, location);
}

const DtTaitBryan& DtAbsoluteVCPdu::orientation() const {
  orientation_ = readEulerAngles(kOrientationOffset);
  return orientation_;
}

void DtAbsoluteVCPdu::setOrientation(const DtTaitBryan& orientation) {
  writeEulerAngles(kOrientationOffset, orientation);
}

void DtAbsoluteVCPdu::printData() const {
  DtVistrelControlPdu::printData();
  DtDumpString("Location:", worldLocation().string());
  DtDumpString("Orientation:", this->orientation().string());
}

const char* DtAbsoluteVCPdu::string() const {
  const DtVector64& l = worldLocation();
  const DtTaitBryan& o = orientation();
  return formatText("%lf %lf %lf %f %f %f", l[0], l[1], l[2], o.psi(), o.theta(), o.phi());
}

void DtAbsoluteVCPdu::setFromString(const char* text) {
  DtVector64 location;
  float heading = 0.0f, pitch = 0.0f, roll = 0.0f;
  // A short text leaves what it does not name at these starting values.
  std::sscanf(text ? text : "", "%lf %lf %lf %f %f %f", &location[0], &location[1], &location[2],
              &heading, &pitch, &roll);
  setWorldLocation(location);
  setOrientation(DtTaitBryan(heading, pitch, roll));
}
