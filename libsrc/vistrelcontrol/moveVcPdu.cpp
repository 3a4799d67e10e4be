#include "moveVcPdu.h"

#include <cstdio>

#include "dtOutput.h"
#include "vcPduPatterns.h"

namespace {
constexpr size_t kTurnOffset = 156;
constexpr size_t kMoveOffset = 157;
constexpr size_t kResetOffset = 158;
constexpr size_t kPositionOffset = 160;
constexpr size_t kOrientationOffset = 184;

const char* directionName(int direction) {
  static const char* const names[] = {"LEFT", "RIGHT", "UP", "DOWN", "FORWARDS", "BACKWARDS"};
  return direction >= 0 && direction <= 5 ? names[direction] : nullptr;
}

// A direction outside the table prints no line at all.
void dumpDirection(const char* label, int direction) {
  if (const char* name = directionName(direction)) DtDumpOut("%s%s\n", label, name);
}
}  // namespace

DtMoveVCPdu::DtMoveVCPdu(DtBufferPlaceHolder* holder) {
  vcpdu::build(*this, kLength, DtVcMove, holder);
}

DtMoveVCPdu::DtMoveVCPdu(const DtNetViewControlPdu* bytes, DtBufferPlaceHolder* holder,
                         DtPduFactory* factory) {
  vcpdu::wrap(*this, bytes, holder, factory);
}

DtMoveVCPdu::~DtMoveVCPdu() = default;

DtMoveVCPdu::Direction DtMoveVCPdu::turn() const {
  return static_cast<Direction>(readU8(kTurnOffset));
}

void DtMoveVCPdu::setTurn(Direction direction) {
  writeU8(kTurnOffset, static_cast<unsigned int>(direction) & 0xFFu);
}

DtMoveVCPdu::Direction DtMoveVCPdu::move() const {
  return static_cast<Direction>(readU8(kMoveOffset));
}

void DtMoveVCPdu::setMove(Direction direction) {
  writeU8(kMoveOffset, static_cast<unsigned int>(direction) & 0xFFu);
}

const DtVector64& DtMoveVCPdu::position() const {
  return position_ = readVector64(kPositionOffset);
}

void DtMoveVCPdu::setPosition(const DtVector64& position) {
  writeVector64(kPositionOffset, position);
}

const DtTaitBryan& DtMoveVCPdu::orientation() const {
  DtVector64 angles = readVector64(kOrientationOffset);
  return orientation_ = DtTaitBryan(angles[0], angles[1], angles[2]);
}

void DtMoveVCPdu::setOrientation(const DtTaitBryan& orientation) {
  writeVector64(kOrientationOffset,
                DtVector64(orientation.psi(), orientation.theta(), orientation.phi()));
}

bool DtMoveVCPdu::reset() const {
  return readU8(kResetOffset) != 0;
}

void DtMoveVCPdu::setReset(bool reset) {
  writeU8(kResetOffset, reset ? 1u : 0u);
}

void DtMoveVCPdu::printData() const {
  DtVistrelControlPdu::printData();
  dumpDirection("Turn Direction: ", turn());
  dumpDirection("Move Direction: ", move());
  DtDumpString("Position:", position().string().c_str());
}

const char* DtMoveVCPdu::string() const {
  const DtVector64& p = position();
  return formatText("%d %d %f %f %f", static_cast<int>(turn()), static_cast<int>(move()), p[0],
                    p[1], p[2]);
}

void DtMoveVCPdu::setFromString(const char* text) {
  int turnTo = 0, moveTo = 0;
  float x = 0.0f, y = 0.0f, z = 0.0f;
  std::sscanf(text ? text : "", "%d %d %f %f %f", &turnTo, &moveTo, &x, &y, &z);
  setTurn(static_cast<Direction>(turnTo));
  setMove(static_cast<Direction>(moveTo));
  setPosition(DtVector64(x, y, z));
}
