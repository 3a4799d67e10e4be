#pragma once
#include "vistrelDrawControlPdu.h"

/// DtVdcAttributeUpdatePduBase changes the value of an existing attribute: a pair of
/// numbers (type 2581; x at 168, y at 176 in both layouts), a reset (2582) or a text
/// (2583; ending the PDU at 192, length at 188; version 0: 196 and 184). The attribute's
/// group id is at 184 (version 0: 164).
class DT_EXPORT DtVdcAttributeUpdatePduBase : public DtVistrelDrawControlPdu {
 public:
  ~DtVdcAttributeUpdatePduBase() override;

  /// Makes the PDU end with the text; an empty text stores length 0 and leaves the PDU.
  virtual void setText(DtString text);
  virtual DtString text() const;
  virtual DtNetU32 groupId() const;
  virtual void setGroupId(DtNetU32 id);
  virtual double valueX() const;
  virtual double valueY() const;
  virtual void setValueX(double x);
  virtual void setValueY(double y);

  void printData() const override;
  /// By the type: object id and type, then the values (2581) or the text (2583). For
  /// any other type the text area is returned as it stands.
  const char* string() const override;
  void setFromString(const char* text) override;

 protected:
  DtVdcAttributeUpdatePduBase();
};

/// DtVdcAttributeUpdatePdu (command 2580, 192 bytes).
class DT_EXPORT DtVdcAttributeUpdatePdu : public DtVdcAttributeUpdatePduBase {
 public:
  static constexpr int kLength = 192;

  explicit DtVdcAttributeUpdatePdu(DtBufferPlaceHolder* holder = nullptr);
  DtVdcAttributeUpdatePdu(const DtNetViewControlPdu* bytes, DtBufferPlaceHolder* holder,
                          DtPduFactory* factory);
  ~DtVdcAttributeUpdatePdu() override;
};

/// DtVdcAttributeUpdatePduV0 (command 2580, 196 bytes, version 0).
class DT_EXPORT DtVdcAttributeUpdatePduV0 : public DtVdcAttributeUpdatePduBase {
 public:
  static constexpr int kLength = 196;

  explicit DtVdcAttributeUpdatePduV0(DtBufferPlaceHolder* holder = nullptr);
  DtVdcAttributeUpdatePduV0(const DtNetViewControlPdu* bytes, DtBufferPlaceHolder* holder,
                            DtPduFactory* factory);
  ~DtVdcAttributeUpdatePduV0() override;
};
