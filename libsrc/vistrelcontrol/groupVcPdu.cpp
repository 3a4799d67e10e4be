#include "groupVcPdu.h"

#include <cstdio>
#include <string>
#include <vector>

#include "dtOutput.h"
#include "vcPduPatterns.h"

namespace {
using vcpdu::Kind;
constexpr vcpdu::Field kRadialOffset{Kind::Float, 156, "RadOffset"};
constexpr vcpdu::Field kHeading{Kind::Float, 160, "Heading:"};
constexpr vcpdu::Field kPitch{Kind::Float, 164, "Pitch:"};
constexpr vcpdu::Field kHeadingOffset{Kind::Float, 168, "HeadingOff:"};
constexpr vcpdu::Field kPitchOffset{Kind::Float, 172, "PitchOff:"};
constexpr vcpdu::Field kFields[] = {kRadialOffset, kHeading, kPitch, kHeadingOffset, kPitchOffset};
constexpr vcpdu::Body kBody = vcpdu::body(DtGroupVCPdu::kLength, kFields);
constexpr size_t kGroupCmdOffset = 176;
constexpr vcpdu::EntityLists kLists{DtGroupVCPdu::kLength, 180, 184};

// Splits like strtok: runs of the delimiter separate tokens, and no token is empty.
std::vector<std::string> tokens(const std::string& text, char delimiter) {
  std::vector<std::string> out;
  std::string current;
  for (char c : text) {
    if (c != delimiter) {
      current += c;
    } else if (!current.empty()) {
      out.push_back(current);
      current.clear();
    }
  }
  if (!current.empty()) out.push_back(current);
  return out;
}
}  // namespace

DtGroupVCPdu::DtGroupVCPdu(DtBufferPlaceHolder* holder) {
  vcpdu::build(*this, kLength, DtVcGroup, holder);
}

DtGroupVCPdu::DtGroupVCPdu(const DtNetViewControlPdu* bytes, DtBufferPlaceHolder* holder,
                           DtPduFactory* factory) {
  vcpdu::wrap(*this, bytes, holder, factory);
}

DtGroupVCPdu::~DtGroupVCPdu() = default;

float DtGroupVCPdu::radialOffset() const {
  return readFloat32(kRadialOffset.offset);
}
void DtGroupVCPdu::setRadialOffset(float offset) {
  writeFloat32(kRadialOffset.offset, offset);
}
float DtGroupVCPdu::heading() const {
  return readFloat32(kHeading.offset);
}
void DtGroupVCPdu::setHeading(float heading) {
  writeFloat32(kHeading.offset, heading);
}
float DtGroupVCPdu::pitch() const {
  return readFloat32(kPitch.offset);
}
void DtGroupVCPdu::setPitch(float pitch) {
  writeFloat32(kPitch.offset, pitch);
}
float DtGroupVCPdu::headingOffset() const {
  return readFloat32(kHeadingOffset.offset);
}
void DtGroupVCPdu::setHeadingOffset(float offset) {
  writeFloat32(kHeadingOffset.offset, offset);
}
float DtGroupVCPdu::pitchOffset() const {
  return readFloat32(kPitchOffset.offset);
}
void DtGroupVCPdu::setPitchOffset(float offset) {
  writeFloat32(kPitchOffset.offset, offset);
}
unsigned int DtGroupVCPdu::groupCmd() const {
  return readU32(kGroupCmdOffset);
}
void DtGroupVCPdu::setGroupCmd(int command) {
  writeU32(kGroupCmdOffset, static_cast<unsigned int>(command));
}

int DtGroupVCPdu::numEntitiesToRemove() const {
  return kLists.removeCount(*this);
}
void DtGroupVCPdu::setNumEntitiesToRemove(int count) {
  kLists.setRemoveCount(*this, count);
}
int DtGroupVCPdu::numEntitiesToAdd() const {
  return kLists.addCount(*this);
}
void DtGroupVCPdu::setNumEntitiesToAdd(int count) {
  kLists.setAddCount(*this, count);
}

const DtString& DtGroupVCPdu::entityToRemove(int index) const {
  return entity_ = kLists.toRemove(*this, index);
}

void DtGroupVCPdu::setEntityToRemove(int index, const DtString& id) {
  kLists.setToRemove(*this, index, id);
}

const DtString& DtGroupVCPdu::entityToAdd(int index) const {
  return entity_ = kLists.toAdd(*this, index);
}

void DtGroupVCPdu::setEntityToAdd(int index, const DtString& id) {
  kLists.setToAdd(*this, index, id);
}

void DtGroupVCPdu::printData() const {
  DtVistrelControlPdu::printData();
  vcpdu::dump(*this, kBody);
  unsigned int command = groupCmd();
  DtDumpEnum("GroupCmd:", command == 0 ? "Group" : "WideGroup", static_cast<long>(command));
  kLists.dump(*this);
}

const char* DtGroupVCPdu::string() const {
  char numbers[kTextSize];
  std::snprintf(numbers, sizeof numbers, "%d %d %d %f %f %f %f %f ", static_cast<int>(groupCmd()),
                numEntitiesToRemove(), numEntitiesToAdd(), radialOffset(), heading(), pitch(),
                headingOffset(), pitchOffset());
  std::vector<std::string> ids;
  bool blankInside = false;
  // Only what fits the text area is worth reading, however many entries the counts claim.
  for (int i = 0, n = kLists.removePresent(*this); i < n && ids.size() < kTextSize; ++i)
    ids.push_back(kLists.toRemove(*this, i).stdString());
  for (int i = 0, n = kLists.addPresent(*this); i < n && ids.size() < kTextSize; ++i)
    ids.push_back(kLists.toAdd(*this, i).stdString());
  for (const std::string& id : ids) blankInside = blankInside || id.find(' ') != std::string::npos;
  // Commas let names with blanks through; the reader splits at commas when it sees one.
  const char separator = blankInside ? ',' : ' ';
  std::string out = numbers;
  for (const std::string& id : ids) {
    if (out.size() >= kTextSize) break;
    out += separator;
    out += id;
  }
  return formatText("%s", out.c_str());
}

void DtGroupVCPdu::setFromString(const char* text) {
  const char* t = text ? text : "";
  int command = 0, toRemove = 0, toAdd = 0, used = -1;
  float n[5] = {0, 0, 0, 0, 0};
  std::sscanf(t, "%d %d %d %f %f %f %f %f %n", &command, &toRemove, &toAdd, &n[0], &n[1], &n[2],
              &n[3], &n[4], &used);
  // The group command stays as it is: a text only edits the group.
  setRadialOffset(n[0]);
  setHeading(n[1]);
  setPitch(n[2]);
  setHeadingOffset(n[3]);
  setPitchOffset(n[4]);
  setNumEntitiesToRemove(toRemove);
  setNumEntitiesToAdd(toAdd);
  if (used < 0) return;

  const std::string rest = t + used;
  const char delimiter = rest.find(',') != std::string::npos ? ',' : ' ';
  const std::vector<std::string> names = tokens(rest, delimiter);
  size_t next = 0;
  for (int i = 0; i < toRemove && next < names.size(); ++i) setEntityToRemove(i, names[next++]);
  for (int i = 0; i < toAdd && next < names.size(); ++i) setEntityToAdd(i, names[next++]);
}
