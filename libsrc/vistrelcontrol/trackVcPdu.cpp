#include "trackVcPdu.h"

#include "vcPduPatterns.h"

namespace {
using vcpdu::Kind;
// Four bytes of padding after the ignore flags align the doubles.
constexpr vcpdu::Field kWorldLocation{Kind::Vector64, 160, "WorldLocation:"};
constexpr vcpdu::Field kTrackId{Kind::Designator, 184, "TrackId:"};
constexpr vcpdu::Field kMarking{Kind::Marking, 248, "TrackId (MarkingText):"};
constexpr vcpdu::Field kFields[] = {kWorldLocation, kTrackId, kMarking};
constexpr vcpdu::Body kBody = vcpdu::body(DtTrackVCPdu::kLength, kFields);
}  // namespace

DtTrackVCPdu::DtTrackVCPdu(DtBufferPlaceHolder* holder) {
  vcpdu::build(*this, kLength, DtVcTrack, holder);
}

DtTrackVCPdu::DtTrackVCPdu(const DtNetViewControlPdu* bytes, DtBufferPlaceHolder* holder,
                           DtPduFactory* factory) {
  vcpdu::wrap(*this, bytes, holder, factory);
}

DtTrackVCPdu::~DtTrackVCPdu() = default;

const DtVector64& DtTrackVCPdu::worldLocation() const {
  return worldLocation_ = readVector64(kWorldLocation.offset);
}

void DtTrackVCPdu::setWorldLocation(const DtVector64& location) {
  writeVector64(kWorldLocation.offset, location);
}

const DtString& DtTrackVCPdu::trackId() const {
  return trackId_ = readDesignator(kTrackId.offset);
}

void DtTrackVCPdu::setTrackId(const DtString& id) {
  writeDesignator(kTrackId.offset, id);
}

const DtString& DtTrackVCPdu::markingText() const {
  return markingText_ = vcpdu::readMarking(*this, kMarking.offset, kLength);
}

void DtTrackVCPdu::setMarkingText(const DtString& text) {
  vcpdu::writeMarking(*this, kMarking.offset, text);
}

void DtTrackVCPdu::printData() const {
  DtVistrelControlPdu::printData();
  vcpdu::dump(*this, kBody);
}

const char* DtTrackVCPdu::string() const {
  return formatText("%s", vcpdu::text(*this, kBody).c_str());
}

void DtTrackVCPdu::setFromString(const char* text) {
  vcpdu::setFromText(*this, kBody, text);
}
