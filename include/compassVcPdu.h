#pragma once
#include "vistrelControlPdu.h"

/// DtCompassVCPdu (command 2, 308 bytes) puts the eyepoint on a sphere around an entity:
/// radius, body heading, pitch, heading offset, pitch offset and roll (singles from byte
/// 156, passed to the viewer unchanged), the entity's identifier (byte 180) and its
/// 64-byte marking text (byte 244).
class DT_EXPORT DtCompassVCPdu : public DtVistrelControlPdu {
 public:
  static constexpr int kLength = 308;

  explicit DtCompassVCPdu(DtBufferPlaceHolder* holder = nullptr);
  DtCompassVCPdu(const DtNetViewControlPdu* bytes, DtBufferPlaceHolder* holder,
                 DtPduFactory* factory);
  ~DtCompassVCPdu() override;

  float radius() const;
  void setRadius(float radius);
  float bodyHeading() const;
  void setBodyHeading(float heading);
  float pitch() const;
  void setPitch(float pitch);
  float headingOffset() const;
  void setHeadingOffset(float offset);
  float pitchOffset() const;
  void setPitchOffset(float offset);
  float roll() const;
  void setRoll(float roll);
  const DtString& attachId() const;
  void setAttachId(const DtString& id);
  /// Empty unless the PDU has its full length, as senders may leave the marking off.
  const DtString& markingText() const;
  /// Keeps at most 64 bytes, without a terminator when the text fills them.
  void setMarkingText(const DtString& text);

  void printData() const override;
  void setFromString(const char* text) override;
  const char* string() const override;

 private:
  mutable DtString attachId_;
  mutable DtString markingText_;
};
