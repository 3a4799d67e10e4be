#pragma once
#include "vdcAttachablePdu.h"

/// DtVdcAttributePduBase defines one attribute or attribute group of an attribute panel
/// (types 2571 to 2577) at the anchor: its name (ending the PDU at 408, length at 404;
/// version 0: 376), its group id (400; version 0: 380) and an optional value range
/// (minimum 384, maximum 392 in both layouts). Whether there is a range is told by the
/// whole attachable flag byte, so a range and flashing cannot be told apart: setting a
/// range clears flashing, and a flashing attribute reports a range.
class DT_EXPORT DtVdcAttributePduBase : public DtVdcAttachablePdu {
 public:
  static constexpr size_t kNameOffset = 408;

  ~DtVdcAttributePduBase() override;

  /// Makes the PDU exactly 408 + length bytes long; an empty name stores length 0 and
  /// leaves the PDU as it was.
  virtual void setName(DtString name);
  virtual DtString name() const;
  virtual DtNetU32 attributeGroupId() const;
  virtual void setAttributeGroupId(DtNetU32 id);
  virtual bool hasRange() const;
  virtual double rangeMin() const;
  virtual double rangeMax() const;
  /// Writes both values and the value 1 into the whole flag byte.
  virtual void setRange(double minimum, double maximum);

  void printData() const override;
  /// The attachable text, the group id, a name flag with the name (or 0 0), the range
  /// flag, minimum and maximum.
  const char* string() const override;
  /// Applies the attachable reader, then reads the attribute's fields from the sixth
  /// blank counted from the end, so a name with blanks cannot be read back.
  void setFromString(const char* text) override;

 protected:
  DtVdcAttributePduBase();
};

/// DtVdcAttributePdu (command 2570, 408 bytes).
class DT_EXPORT DtVdcAttributePdu : public DtVdcAttributePduBase {
 public:
  static constexpr int kLength = 408;

  explicit DtVdcAttributePdu(DtBufferPlaceHolder* holder = nullptr);
  DtVdcAttributePdu(const DtNetViewControlPdu* bytes, DtBufferPlaceHolder* holder,
                    DtPduFactory* factory);
  ~DtVdcAttributePdu() override;
};

/// DtVdcAttributePduV0 (command 2570, 408 bytes, version 0).
class DT_EXPORT DtVdcAttributePduV0 : public DtVdcAttributePduBase {
 public:
  static constexpr int kLength = 408;

  explicit DtVdcAttributePduV0(DtBufferPlaceHolder* holder = nullptr);
  DtVdcAttributePduV0(const DtNetViewControlPdu* bytes, DtBufferPlaceHolder* holder,
                      DtPduFactory* factory);
  ~DtVdcAttributePduV0() override;
};
