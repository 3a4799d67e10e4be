#include "tetherVcPdu.h"

#include "vcPduPatterns.h"
#include "vcSharedBodies.h"

namespace {
using namespace vcbody::pose;
constexpr vcpdu::Field kTopoUpOffset{vcpdu::Kind::Vector32, kOffset, "TopoUpOffset:"};
constexpr vcpdu::Field kFields[] = {kTopoUpOffset, kOrientation, kAttachId, kMarking};
constexpr vcpdu::Body kBody = vcpdu::body(kLength, kFields);
}  // namespace

static_assert(DtTetherVCPdu::kLength == vcbody::pose::kLength, "tether has the pose body");

DtTetherVCPdu::DtTetherVCPdu(DtBufferPlaceHolder* holder) {
  vcpdu::build(*this, kLength, DtVcTether, holder);
}

DtTetherVCPdu::DtTetherVCPdu(const DtNetViewControlPdu* bytes, DtBufferPlaceHolder* holder,
                             DtPduFactory* factory) {
  vcpdu::wrap(*this, bytes, holder, factory);
}

DtTetherVCPdu::~DtTetherVCPdu() = default;

const DtVector64& DtTetherVCPdu::topoUpOffset() const {
  return topoUpOffset_ = readVector32(kTopoUpOffset.offset);
}

void DtTetherVCPdu::setTopoUpOffset(const DtVector64& offset) {
  writeVector32(kTopoUpOffset.offset, offset);
}

const DtTaitBryan& DtTetherVCPdu::orientation() const {
  return orientation_ = readEulerAngles(kOrientation.offset);
}

void DtTetherVCPdu::setOrientation(const DtTaitBryan& orientation) {
  writeEulerAngles(kOrientation.offset, orientation);
}

const DtString& DtTetherVCPdu::attachId() const {
  return attachId_ = readDesignator(kAttachId.offset);
}

void DtTetherVCPdu::setAttachId(const DtString& id) {
  writeDesignator(kAttachId.offset, id);
}

const DtString& DtTetherVCPdu::markingText() const {
  return markingText_ = vcpdu::readMarking(*this, kMarking.offset, kLength);
}

void DtTetherVCPdu::setMarkingText(const DtString& text) {
  vcpdu::writeMarking(*this, kMarking.offset, text);
}

void DtTetherVCPdu::printData() const {
  DtVistrelControlPdu::printData();
  vcpdu::dump(*this, kBody);
}

const char* DtTetherVCPdu::string() const {
  return formatText("%s", vcpdu::text(*this, kBody).c_str());
}

void DtTetherVCPdu::setFromString(const char* text) {
  vcpdu::setFromText(*this, kBody, text);
}
