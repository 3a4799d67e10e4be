#include "mimicVcPdu.h"

#include "vcPduPatterns.h"
#include "vcSharedBodies.h"

namespace {
using namespace vcbody::pose;
constexpr vcpdu::Field kMimicOffset{vcpdu::Kind::Vector32, kOffset, "Offset:"};
constexpr vcpdu::Field kFields[] = {kMimicOffset, kOrientation, kAttachId, kMarking};
constexpr vcpdu::Body kBody = vcpdu::body(kLength, kFields);
}  // namespace

static_assert(DtMimicVCPdu::kLength == vcbody::pose::kLength, "mimic has the pose body");

DtMimicVCPdu::DtMimicVCPdu(DtBufferPlaceHolder* holder) {
  vcpdu::build(*this, kLength, DtVcMimic, holder);
}

DtMimicVCPdu::DtMimicVCPdu(const DtNetViewControlPdu* bytes, DtBufferPlaceHolder* holder,
                           DtPduFactory* factory) {
  vcpdu::wrap(*this, bytes, holder, factory);
}

DtMimicVCPdu::~DtMimicVCPdu() = default;

const DtVector64& DtMimicVCPdu::offset() const {
  return offset_ = readVector32(kMimicOffset.offset);
}

void DtMimicVCPdu::setOffset(const DtVector64& offset) {
  writeVector32(kMimicOffset.offset, offset);
}

const DtTaitBryan& DtMimicVCPdu::bodyOrientation() const {
  return bodyOrientation_ = readEulerAngles(kOrientation.offset);
}

void DtMimicVCPdu::setBodyOrientation(const DtTaitBryan& orientation) {
  writeEulerAngles(kOrientation.offset, orientation);
}

const DtString& DtMimicVCPdu::attachId() const {
  return attachId_ = readDesignator(kAttachId.offset);
}

void DtMimicVCPdu::setAttachId(const DtString& id) {
  writeDesignator(kAttachId.offset, id);
}

const DtString& DtMimicVCPdu::markingText() const {
  return markingText_ = vcpdu::readMarking(*this, kMarking.offset, kLength);
}

void DtMimicVCPdu::setMarkingText(const DtString& text) {
  vcpdu::writeMarking(*this, kMarking.offset, text);
}

void DtMimicVCPdu::printData() const {
  DtVistrelControlPdu::printData();
  vcpdu::dump(*this, kBody);
}

const char* DtMimicVCPdu::string() const {
  return formatText("%s", vcpdu::text(*this, kBody).c_str());
}

void DtMimicVCPdu::setFromString(const char* text) {
  vcpdu::setFromText(*this, kBody, text);
}

// ------------------------------------------------------------------ offset mimic

DtOffsetMimicVCPdu::DtOffsetMimicVCPdu(DtBufferPlaceHolder* holder) : DtMimicVCPdu(holder) {
  setViewerCommand(DtVcOffsetMimic);
}

DtOffsetMimicVCPdu::DtOffsetMimicVCPdu(const DtNetViewControlPdu* bytes,
                                       DtBufferPlaceHolder* holder, DtPduFactory* factory)
    : DtMimicVCPdu(bytes, holder, factory) {
  // Only the command tells an offset mimic from a mimic, so bytes wrapped as one say so;
  // a viewer's status report stays a status report.
  bool status = statusCommand();
  setViewerCommand(DtVcOffsetMimic);
  setStatusCommand(status);
}

DtOffsetMimicVCPdu::~DtOffsetMimicVCPdu() = default;
