#include "compassVcPdu.h"

#include "vcPduPatterns.h"
#include "vcSharedBodies.h"

namespace {
using namespace vcbody::sphere;
constexpr vcpdu::Field kAttachId{vcpdu::Kind::Designator, 180, "AttachTo:"};
constexpr vcpdu::Field kMarking{vcpdu::Kind::Marking, 244, "AttachTo (MarkingText):"};
constexpr vcpdu::Field kFields[] = {kRadius,      kBodyHeading, kPitch,    kHeadingOffset,
                                    kPitchOffset, kRoll,        kAttachId, kMarking};
constexpr vcpdu::Body kBody = vcpdu::body(DtCompassVCPdu::kLength, kFields);
}  // namespace

DtCompassVCPdu::DtCompassVCPdu(DtBufferPlaceHolder* holder) {
  vcpdu::build(*this, kLength, DtVcCompass, holder);
}

DtCompassVCPdu::DtCompassVCPdu(const DtNetViewControlPdu* bytes, DtBufferPlaceHolder* holder,
                               DtPduFactory* factory) {
  vcpdu::wrap(*this, bytes, holder, factory);
}

DtCompassVCPdu::~DtCompassVCPdu() = default;

float DtCompassVCPdu::radius() const {
  return readFloat32(kRadius.offset);
}
void DtCompassVCPdu::setRadius(float radius) {
  writeFloat32(kRadius.offset, radius);
}
float DtCompassVCPdu::bodyHeading() const {
  return readFloat32(kBodyHeading.offset);
}
void DtCompassVCPdu::setBodyHeading(float heading) {
  writeFloat32(kBodyHeading.offset, heading);
}
float DtCompassVCPdu::pitch() const {
  return readFloat32(kPitch.offset);
}
void DtCompassVCPdu::setPitch(float pitch) {
  writeFloat32(kPitch.offset, pitch);
}
float DtCompassVCPdu::headingOffset() const {
  return readFloat32(kHeadingOffset.offset);
}
void DtCompassVCPdu::setHeadingOffset(float offset) {
  writeFloat32(kHeadingOffset.offset, offset);
}
float DtCompassVCPdu::pitchOffset() const {
  return readFloat32(kPitchOffset.offset);
}
void DtCompassVCPdu::setPitchOffset(float offset) {
  writeFloat32(kPitchOffset.offset, offset);
}
float DtCompassVCPdu::roll() const {
  return readFloat32(kRoll.offset);
}
void DtCompassVCPdu::setRoll(float roll) {
  writeFloat32(kRoll.offset, roll);
}

const DtString& DtCompassVCPdu::attachId() const {
  return attachId_ = readDesignator(kAttachId.offset);
}

void DtCompassVCPdu::setAttachId(const DtString& id) {
  writeDesignator(kAttachId.offset, id);
}

const DtString& DtCompassVCPdu::markingText() const {
  return markingText_ = vcpdu::readMarking(*this, kMarking.offset, kLength);
}

void DtCompassVCPdu::setMarkingText(const DtString& text) {
  vcpdu::writeMarking(*this, kMarking.offset, text);
}

void DtCompassVCPdu::printData() const {
  DtVistrelControlPdu::printData();
  vcpdu::dump(*this, kBody);
}

const char* DtCompassVCPdu::string() const {
  return formatText("%s", vcpdu::text(*this, kBody).c_str());
}

void DtCompassVCPdu::setFromString(const char* text) {
  vcpdu::setFromText(*this, kBody, text);
}
