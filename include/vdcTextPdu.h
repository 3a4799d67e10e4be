#pragma once
#include "vdcAttachablePdu.h"

/// DtVdcTextPduBase shows a text at the anchor (types 2561 and 2562). The text ends the
/// PDU at byte 388 in both layouts, without terminator; its length is at 384 (version
/// 0: 376).
class DT_EXPORT DtVdcTextPduBase : public DtVdcAttachablePdu {
 public:
  static constexpr size_t kTextOffset = 388;

  ~DtVdcTextPduBase() override;

  /// Makes the PDU exactly 388 + length bytes long; an empty text stores length 0 and
  /// leaves the PDU as it was.
  virtual void setText(DtString text);
  virtual DtString text() const;

  void printData() const override;
  /// The attachable text, then the text.
  const char* string() const override;
  /// Applies the attachable reader, then takes the word behind the last blank as the
  /// text, so a text of several words comes back as its last word.
  void setFromString(const char* text) override;

 protected:
  DtVdcTextPduBase();
};

/// DtVdcTextPdu (command 2560, 388 bytes): relative locations 50 and 50.
class DT_EXPORT DtVdcTextPdu : public DtVdcTextPduBase {
 public:
  static constexpr int kLength = 388;

  explicit DtVdcTextPdu(DtBufferPlaceHolder* holder = nullptr);
  DtVdcTextPdu(const DtNetViewControlPdu* bytes, DtBufferPlaceHolder* holder,
               DtPduFactory* factory);
  ~DtVdcTextPdu() override;
};

/// DtVdcTextPduV0 (command 2560, 388 bytes, version 0): relative location 50.
class DT_EXPORT DtVdcTextPduV0 : public DtVdcTextPduBase {
 public:
  static constexpr int kLength = 388;

  explicit DtVdcTextPduV0(DtBufferPlaceHolder* holder = nullptr);
  DtVdcTextPduV0(const DtNetViewControlPdu* bytes, DtBufferPlaceHolder* holder,
                 DtPduFactory* factory);
  ~DtVdcTextPduV0() override;
};
