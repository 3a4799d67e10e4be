#pragma once
#include "dtVector.h"
#include "vistrelControlPdu.h"

/// DtTrackVCPdu (command 6, 312 bytes) keeps the eyepoint at a fixed world location
/// (three doubles at byte 160) while it looks at an entity, named by its identifier
/// (byte 184) and its 64-byte marking text (byte 248).
class DT_EXPORT DtTrackVCPdu : public DtVistrelControlPdu {
 public:
  static constexpr int kLength = 312;

  explicit DtTrackVCPdu(DtBufferPlaceHolder* holder = nullptr);
  DtTrackVCPdu(const DtNetViewControlPdu* bytes, DtBufferPlaceHolder* holder,
               DtPduFactory* factory);
  ~DtTrackVCPdu() override;

  const DtVector64& worldLocation() const;
  void setWorldLocation(const DtVector64& location);
  const DtString& trackId() const;
  void setTrackId(const DtString& id);
  /// Empty unless the PDU has its full length, as senders may leave the marking off.
  const DtString& markingText() const;
  /// Keeps at most 64 bytes, without a terminator when the text fills them.
  void setMarkingText(const DtString& text);

  void printData() const override;
  void setFromString(const char* text) override;
  const char* string() const override;

 private:
  mutable DtVector64 worldLocation_;
  mutable DtString trackId_;
  mutable DtString markingText_;
};
