#pragma once
#include "dtVector.h"
#include "vistrelControlPdu.h"

/// DtMimicTrackVCPdu (command 8, 424 bytes) puts the eyepoint on one entity, moving with
/// it at an offset (three singles at byte 156), while it looks at another. Both are named
/// by identifier (attach id at byte 168, track id at 232) and by 64-byte marking texts
/// (296 and 360).
class DT_EXPORT DtMimicTrackVCPdu : public DtVistrelControlPdu {
 public:
  static constexpr int kLength = 424;

  explicit DtMimicTrackVCPdu(DtBufferPlaceHolder* holder = nullptr);
  DtMimicTrackVCPdu(const DtNetViewControlPdu* bytes, DtBufferPlaceHolder* holder,
                    DtPduFactory* factory);
  ~DtMimicTrackVCPdu() override;

  /// Single precision on the wire: the setter narrows, the getter widens.
  const DtVector64& offset() const;
  void setOffset(const DtVector64& offset);
  const DtString& attachId() const;
  void setAttachId(const DtString& id);
  const DtString& trackId() const;
  void setTrackId(const DtString& id);
  /// Both marking texts are empty unless the PDU has its full length.
  const DtString& attachMarkingText() const;
  void setAttachMarkingText(const DtString& text);
  const DtString& trackMarkingText() const;
  void setTrackMarkingText(const DtString& text);

  void printData() const override;
  void setFromString(const char* text) override;
  const char* string() const override;

 private:
  mutable DtVector64 offset_;
  mutable DtString attachId_;
  mutable DtString trackId_;
  mutable DtString attachMarkingText_;
  mutable DtString trackMarkingText_;
};
