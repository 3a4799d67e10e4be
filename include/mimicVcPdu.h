#pragma once
#include "dtVector.h"
#include "vistrelControlPdu.h"

/// DtMimicVCPdu (command 3, 308 bytes) puts the eyepoint on an entity so that it moves
/// and turns with it: an offset from the entity (three singles at byte 156), a body
/// orientation (heading, pitch, roll as singles at byte 168), the entity's identifier
/// (byte 180) and its 64-byte marking text (byte 244).
class DT_EXPORT DtMimicVCPdu : public DtVistrelControlPdu {
 public:
  static constexpr int kLength = 308;

  explicit DtMimicVCPdu(DtBufferPlaceHolder* holder = nullptr);
  DtMimicVCPdu(const DtNetViewControlPdu* bytes, DtBufferPlaceHolder* holder,
               DtPduFactory* factory);
  ~DtMimicVCPdu() override;

  /// Single precision on the wire: the setter narrows, the getter widens.
  const DtVector64& offset() const;
  void setOffset(const DtVector64& offset);
  const DtTaitBryan& bodyOrientation() const;
  void setBodyOrientation(const DtTaitBryan& orientation);
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
  mutable DtVector64 offset_;
  mutable DtTaitBryan bodyOrientation_;
  mutable DtString attachId_;
  mutable DtString markingText_;
};

/// DtOffsetMimicVCPdu (command 4) asks for mimic mode with the offset applied. Only the
/// command differs: body, text forms and dump are the mimic's. Both constructors set the
/// command (received bytes keep their status form, 504).
class DT_EXPORT DtOffsetMimicVCPdu : public DtMimicVCPdu {
 public:
  explicit DtOffsetMimicVCPdu(DtBufferPlaceHolder* holder = nullptr);
  DtOffsetMimicVCPdu(const DtNetViewControlPdu* bytes, DtBufferPlaceHolder* holder,
                     DtPduFactory* factory);
  ~DtOffsetMimicVCPdu() override;
};
