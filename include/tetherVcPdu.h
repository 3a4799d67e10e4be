#pragma once
#include "dtVector.h"
#include "vistrelControlPdu.h"

/// DtTetherVCPdu (command 1, 308 bytes) tethers the eyepoint to an entity: it follows the
/// entity at a topo-up offset (three singles at byte 156) and looks along the given
/// orientation (heading, pitch, roll as singles at byte 168). The entity is named by its
/// identifier (byte 180) and, for viewers that know it only by its marking, by a 64-byte
/// marking text (byte 244).
class DT_EXPORT DtTetherVCPdu : public DtVistrelControlPdu {
 public:
  static constexpr int kLength = 308;

  explicit DtTetherVCPdu(DtBufferPlaceHolder* holder = nullptr);
  DtTetherVCPdu(const DtNetViewControlPdu* bytes, DtBufferPlaceHolder* holder,
                DtPduFactory* factory);
  ~DtTetherVCPdu() override;

  /// Single precision on the wire: the setter narrows, the getter widens.
  const DtVector64& topoUpOffset() const;
  void setTopoUpOffset(const DtVector64& offset);
  const DtTaitBryan& orientation() const;
  void setOrientation(const DtTaitBryan& orientation);
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
  mutable DtVector64 topoUpOffset_;
  mutable DtTaitBryan orientation_;
  mutable DtString attachId_;
  mutable DtString markingText_;
};
