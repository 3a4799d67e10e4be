#pragma once
#include "vistrelControlPdu.h"

/// DtGroupVCPdu (command 9) points the eyepoint at a group of entities and edits the
/// group. The fixed part (188 bytes) holds radial offset, heading, pitch, heading offset
/// and pitch offset (singles from byte 156), the group command (byte 176) and the counts
/// of entities to remove and to add (signed, bytes 180 and 184); the 64-byte identifiers
/// of the entities to remove and then of those to add follow it, so the PDU is
/// 188 + 64 x (to remove + to add) bytes long. A remove count of -1 asks the viewer to
/// replace the whole group and holds no entries.
class DT_EXPORT DtGroupVCPdu : public DtVistrelControlPdu {
 public:
  /// Values of the group command; the viewer takes any non-zero value as a wide group.
  enum GroupCommand : int { GROUP = 0, WIDE_GROUP = 1 };

  /// Length of the fixed part, the whole length of a new PDU.
  static constexpr int kLength = 188;

  explicit DtGroupVCPdu(DtBufferPlaceHolder* holder = nullptr);
  DtGroupVCPdu(const DtNetViewControlPdu* bytes, DtBufferPlaceHolder* holder,
               DtPduFactory* factory);
  ~DtGroupVCPdu() override;

  float radialOffset() const;
  void setRadialOffset(float offset);
  float heading() const;
  void setHeading(float heading);
  float pitch() const;
  void setPitch(float pitch);
  float headingOffset() const;
  void setHeadingOffset(float offset);
  float pitchOffset() const;
  void setPitchOffset(float offset);
  unsigned int groupCmd() const;
  void setGroupCmd(int command);

  int numEntitiesToRemove() const;
  /// Set this before writing entities to add: growing the remove list adds its new slots
  /// in front of the old entries and moves the add entries back, shrinking it drops its
  /// last entries. -1 is stored as it is and counts as no entries.
  void setNumEntitiesToRemove(int count);
  int numEntitiesToAdd() const;
  /// Grows or cuts the add list at its end.
  void setNumEntitiesToAdd(int count);
  /// Both getters share one cache: each call overwrites the text the previous returned.
  /// Outside the list they return the empty text, and the setters do nothing.
  const DtString& entityToRemove(int index) const;
  void setEntityToRemove(int index, const DtString& id);
  const DtString& entityToAdd(int index) const;
  void setEntityToAdd(int index, const DtString& id);

  void printData() const override;
  /// Reads the counts and the numbers, then the entities; the group command in the text
  /// is read but never applied.
  void setFromString(const char* text) override;
  const char* string() const override;

 private:
  mutable DtString entity_;
};
