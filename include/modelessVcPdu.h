#pragma once
#include "vistrelControlPdu.h"

/// DtModelessVCPdu (command 10) names a primary and a secondary entity (identifiers at
/// bytes 156 and 220) and edits the viewer's group without changing its view mode. Like
/// the group PDU it ends in the counts of entities to remove and to add (signed, bytes
/// 284 and 288) and their 64-byte identifiers, so it is 292 + 64 x (to remove + to add)
/// bytes long. It has no text form: string() is empty and setFromString() ignores its
/// text.
class DT_EXPORT DtModelessVCPdu : public DtVistrelControlPdu {
 public:
  /// Length of the fixed part, the whole length of a new PDU.
  static constexpr int kLength = 292;

  explicit DtModelessVCPdu(DtBufferPlaceHolder* holder = nullptr);
  DtModelessVCPdu(const DtNetViewControlPdu* bytes, DtBufferPlaceHolder* holder,
                  DtPduFactory* factory);
  ~DtModelessVCPdu() override;

  const DtString& primary() const;
  void setPrimary(const DtString& id);
  const DtString& secondary() const;
  void setSecondary(const DtString& id);

  int numEntitiesToRemove() const;
  /// As for the group PDU: set this first; new slots go in front of the old entries, and
  /// -1 (replace the whole group) is stored as it is and counts as no entries.
  void setNumEntitiesToRemove(int count);
  int numEntitiesToAdd() const;
  void setNumEntitiesToAdd(int count);
  /// Both getters share one cache with primary() and secondary(): each call overwrites
  /// the text the previous returned. Outside the lists the getters return the empty text
  /// and the setters do nothing.
  const DtString& entityToRemove(int index) const;
  void setEntityToRemove(int index, const DtString& id);
  const DtString& entityToAdd(int index) const;
  void setEntityToAdd(int index, const DtString& id);

  void printData() const override;

 private:
  mutable DtString entity_;
};
