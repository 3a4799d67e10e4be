#include "tetherTrackVcPdu.h"

#include "vcPduPatterns.h"
#include "vcSharedBodies.h"

using namespace vcbody::twoEntity;

static_assert(DtTetherTrackVCPdu::kLength == vcbody::twoEntity::kLength,
              "tether-track has the two-entity body");

DtTetherTrackVCPdu::DtTetherTrackVCPdu(DtBufferPlaceHolder* holder) {
  vcpdu::build(*this, kLength, DtVcTetherTrack, holder);
}

DtTetherTrackVCPdu::DtTetherTrackVCPdu(const DtNetViewControlPdu* bytes,
                                       DtBufferPlaceHolder* holder, DtPduFactory* factory) {
  vcpdu::wrap(*this, bytes, holder, factory);
}

DtTetherTrackVCPdu::~DtTetherTrackVCPdu() = default;

const DtVector64& DtTetherTrackVCPdu::offset() const {
  return offset_ = readVector32(kOffset.offset);
}

void DtTetherTrackVCPdu::setOffset(const DtVector64& offset) {
  writeVector32(kOffset.offset, offset);
}

const DtString& DtTetherTrackVCPdu::attachId() const {
  return attachId_ = readDesignator(kAttachId.offset);
}

void DtTetherTrackVCPdu::setAttachId(const DtString& id) {
  writeDesignator(kAttachId.offset, id);
}

const DtString& DtTetherTrackVCPdu::trackId() const {
  return trackId_ = readDesignator(kTrackId.offset);
}

void DtTetherTrackVCPdu::setTrackId(const DtString& id) {
  writeDesignator(kTrackId.offset, id);
}

const DtString& DtTetherTrackVCPdu::attachMarkingText() const {
  return attachMarkingText_ = vcpdu::readMarking(*this, kAttachMarking.offset, kLength);
}

void DtTetherTrackVCPdu::setAttachMarkingText(const DtString& text) {
  vcpdu::writeMarking(*this, kAttachMarking.offset, text);
}

const DtString& DtTetherTrackVCPdu::trackMarkingText() const {
  return trackMarkingText_ = vcpdu::readMarking(*this, kTrackMarking.offset, kLength);
}

void DtTetherTrackVCPdu::setTrackMarkingText(const DtString& text) {
  vcpdu::writeMarking(*this, kTrackMarking.offset, text);
}

void DtTetherTrackVCPdu::printData() const {
  DtVistrelControlPdu::printData();
  vcpdu::dump(*this, kBody);
}

const char* DtTetherTrackVCPdu::string() const {
  return formatText("%s", vcpdu::text(*this, kBody).c_str());
}

void DtTetherTrackVCPdu::setFromString(const char* text) {
  vcpdu::setFromText(*this, kBody, text);
}
