#include "orbitVcPdu.h"

#include "vcPduPatterns.h"

namespace {
using vcpdu::Kind;
constexpr vcpdu::Field kRadius{Kind::Float, 156, "Radius:"};
constexpr vcpdu::Field kAzimuthRate{Kind::Float, 160, "AzimuthRate:"};
constexpr vcpdu::Field kHeading{Kind::Float, 164, "Heading:"};
constexpr vcpdu::Field kPitch{Kind::Float, 168, "Pitch:"};
constexpr vcpdu::Field kHeadingOffset{Kind::Float, 172, "HeadingOff:"};
constexpr vcpdu::Field kPitchOffset{Kind::Float, 176, "PitchOff:"};
constexpr vcpdu::Field kRoll{Kind::Float, 180, "Roll:"};
constexpr vcpdu::Field kAttachId{Kind::Designator, 184, "AttachTo:"};
constexpr vcpdu::Field kMarking{Kind::Marking, 248, "AttachTo (MarkingText):"};
constexpr vcpdu::Field kFields[] = {kRadius,      kAzimuthRate, kHeading,  kPitch,  kHeadingOffset,
                                    kPitchOffset, kRoll,        kAttachId, kMarking};
constexpr vcpdu::Body kBody = vcpdu::body(DtOrbitVCPdu::kLength, kFields);
}  // namespace

DtOrbitVCPdu::DtOrbitVCPdu(DtBufferPlaceHolder* holder) {
  vcpdu::build(*this, kLength, DtVcOrbit, holder);
}

DtOrbitVCPdu::DtOrbitVCPdu(const DtNetViewControlPdu* bytes, DtBufferPlaceHolder* holder,
                           DtPduFactory* factory) {
  vcpdu::wrap(*this, bytes, holder, factory);
}

DtOrbitVCPdu::~DtOrbitVCPdu() = default;

float DtOrbitVCPdu::radius() const {
  return readFloat32(kRadius.offset);
}
void DtOrbitVCPdu::setRadius(float radius) {
  writeFloat32(kRadius.offset, radius);
}
float DtOrbitVCPdu::azimuthRate() const {
  return readFloat32(kAzimuthRate.offset);
}
void DtOrbitVCPdu::setAzimuthRate(float rate) {
  writeFloat32(kAzimuthRate.offset, rate);
}
float DtOrbitVCPdu::heading() const {
  return readFloat32(kHeading.offset);
}
void DtOrbitVCPdu::setHeading(float heading) {
  writeFloat32(kHeading.offset, heading);
}
float DtOrbitVCPdu::pitch() const {
  return readFloat32(kPitch.offset);
}
void DtOrbitVCPdu::setPitch(float pitch) {
  writeFloat32(kPitch.offset, pitch);
}
float DtOrbitVCPdu::headingOffset() const {
  return readFloat32(kHeadingOffset.offset);
}
void DtOrbitVCPdu::setHeadingOffset(float offset) {
  writeFloat32(kHeadingOffset.offset, offset);
}
float DtOrbitVCPdu::pitchOffset() const {
  return readFloat32(kPitchOffset.offset);
}
void DtOrbitVCPdu::setPitchOffset(float offset) {
  writeFloat32(kPitchOffset.offset, offset);
}
float DtOrbitVCPdu::roll() const {
  return readFloat32(kRoll.offset);
}
void DtOrbitVCPdu::setRoll(float roll) {
  writeFloat32(kRoll.offset, roll);
}

const DtString& DtOrbitVCPdu::attachId() const {
  return attachId_ = readDesignator(kAttachId.offset);
}

void DtOrbitVCPdu::setAttachId(const DtString& id) {
  writeDesignator(kAttachId.offset, id);
}

const DtString& DtOrbitVCPdu::markingText() const {
  return markingText_ = vcpdu::readMarking(*this, kMarking.offset, kLength);
}

void DtOrbitVCPdu::setMarkingText(const DtString& text) {
  vcpdu::writeMarking(*this, kMarking.offset, text);
}

void DtOrbitVCPdu::printData() const {
  DtVistrelControlPdu::printData();
  vcpdu::dump(*this, kBody);
}

const char* DtOrbitVCPdu::string() const {
  return formatText("%s", vcpdu::text(*this, kBody).c_str());
}

void DtOrbitVCPdu::setFromString(const char* text) {
  vcpdu::setFromText(*this, kBody, text);
}
