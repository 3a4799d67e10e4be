#include "modelessVcPdu.h"

#include "vcPduPatterns.h"

namespace {
using vcpdu::Kind;
constexpr vcpdu::Field kPrimary{Kind::Designator, 156, "Primary:"};
constexpr vcpdu::Field kSecondary{Kind::Designator, 220, "Secondary:"};
constexpr vcpdu::Field kFields[] = {kPrimary, kSecondary};
constexpr vcpdu::Body kBody = vcpdu::body(DtModelessVCPdu::kLength, kFields);
constexpr vcpdu::EntityLists kLists{DtModelessVCPdu::kLength, 284, 288};
}  // namespace

DtModelessVCPdu::DtModelessVCPdu(DtBufferPlaceHolder* holder) {
  vcpdu::build(*this, kLength, DtVcModeless, holder);
}

DtModelessVCPdu::DtModelessVCPdu(const DtNetViewControlPdu* bytes, DtBufferPlaceHolder* holder,
                                 DtPduFactory* factory) {
  vcpdu::wrap(*this, bytes, holder, factory);
}

DtModelessVCPdu::~DtModelessVCPdu() = default;

const DtString& DtModelessVCPdu::primary() const {
  return entity_ = readDesignator(kPrimary.offset);
}
void DtModelessVCPdu::setPrimary(const DtString& id) {
  writeDesignator(kPrimary.offset, id);
}
const DtString& DtModelessVCPdu::secondary() const {
  return entity_ = readDesignator(kSecondary.offset);
}
void DtModelessVCPdu::setSecondary(const DtString& id) {
  writeDesignator(kSecondary.offset, id);
}

int DtModelessVCPdu::numEntitiesToRemove() const {
  return kLists.removeCount(*this);
}
void DtModelessVCPdu::setNumEntitiesToRemove(int count) {
  kLists.setRemoveCount(*this, count);
}
int DtModelessVCPdu::numEntitiesToAdd() const {
  return kLists.addCount(*this);
}
void DtModelessVCPdu::setNumEntitiesToAdd(int count) {
  kLists.setAddCount(*this, count);
}

const DtString& DtModelessVCPdu::entityToRemove(int index) const {
  return entity_ = kLists.toRemove(*this, index);
}

void DtModelessVCPdu::setEntityToRemove(int index, const DtString& id) {
  kLists.setToRemove(*this, index, id);
}

const DtString& DtModelessVCPdu::entityToAdd(int index) const {
  return entity_ = kLists.toAdd(*this, index);
}

void DtModelessVCPdu::setEntityToAdd(int index, const DtString& id) {
  kLists.setToAdd(*this, index, id);
}

void DtModelessVCPdu::printData() const {
  DtVistrelControlPdu::printData();
  vcpdu::dump(*this, kBody);
  kLists.dump(*this);
}
