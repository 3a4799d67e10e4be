#include "mimicTrackVcPdu.h"

#include "vcPduPatterns.h"
#include "vcSharedBodies.h"

using namespace vcbody::twoEntity;

static_assert(DtMimicTrackVCPdu::kLength == vcbody::twoEntity::kLength,
              "mimic-track has the two-entity body");

DtMimicTrackVCPdu::DtMimicTrackVCPdu(DtBufferPlaceHolder* holder) {
  vcpdu::build(*this, kLength, DtVcMimicTrack, holder);
}

DtMimicTrackVCPdu::DtMimicTrackVCPdu(const DtNetViewControlPdu* bytes, DtBufferPlaceHolder* holder,
                                     DtPduFactory* factory) {
  vcpdu::wrap(*this, bytes, holder, factory);
}

DtMimicTrackVCPdu::~DtMimicTrackVCPdu() = default;

const DtVector64& DtMimicTrackVCPdu::offset() const {
  return offset_ = readVector32(kOffset.offset);
}

void DtMimicTrackVCPdu::setOffset(const DtVector64& offset) {
  writeVector32(kOffset.offset, offset);
}

const DtString& DtMimicTrackVCPdu::attachId() const {
  return attachId_ = readDesignator(kAttachId.offset);
}

void DtMimicTrackVCPdu::setAttachId(const DtString& id) {
  writeDesignator(kAttachId.offset, id);
}

const DtString& DtMimicTrackVCPdu::trackId() const {
  return trackId_ = readDesignator(kTrackId.offset);
}

void DtMimicTrackVCPdu::setTrackId(const DtString& id) {
  writeDesignator(kTrackId.offset, id);
}

const DtString& DtMimicTrackVCPdu::attachMarkingText() const {
  return attachMarkingText_ = vcpdu::readMarking(*this, kAttachMarking.offset, kLength);
}

void DtMimicTrackVCPdu::setAttachMarkingText(const DtString& text) {
  vcpdu::writeMarking(*this, kAttachMarking.offset, text);
}

const DtString& DtMimicTrackVCPdu::trackMarkingText() const {
  return trackMarkingText_ = vcpdu::readMarking(*this, kTrackMarking.offset, kLength);
}

void DtMimicTrackVCPdu::setTrackMarkingText(const DtString& text) {
  vcpdu::writeMarking(*this, kTrackMarking.offset, text);
}

void DtMimicTrackVCPdu::printData() const {
  DtVistrelControlPdu::printData();
  vcpdu::dump(*this, kBody);
}

const char* DtMimicTrackVCPdu::string() const {
  return formatText("%s", vcpdu::text(*this, kBody).c_str());
}

void DtMimicTrackVCPdu::setFromString(const char* text) {
  vcpdu::setFromText(*this, kBody, text);
}
