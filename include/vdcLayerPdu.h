#pragma once
#include "vistrelDrawControlPdu.h"

/// DtVdcLayerPduBase creates a named draw layer (type 2590), a group of drawing objects
/// handled together; the object id is the layer's id. The name ends the PDU at 172
/// (version 0: 176), its length at 168 (version 0: 164).
class DT_EXPORT DtVdcLayerPduBase : public DtVistrelDrawControlPdu {
 public:
  ~DtVdcLayerPduBase() override;

  /// Makes the PDU end with the name; an empty name stores length 0 and leaves the PDU.
  virtual void setName(DtString name);
  virtual DtString name() const;

  void printData() const override;
  /// Object id and name; the reader takes the first word of the name only.
  const char* string() const override;
  void setFromString(const char* text) override;

 protected:
  DtVdcLayerPduBase();
};

/// DtVdcLayerPdu (command 2590, 172 bytes); the caller sets the type.
class DT_EXPORT DtVdcLayerPdu : public DtVdcLayerPduBase {
 public:
  static constexpr int kLength = 172;

  explicit DtVdcLayerPdu(DtBufferPlaceHolder* holder = nullptr);
  DtVdcLayerPdu(const DtNetViewControlPdu* bytes, DtBufferPlaceHolder* holder,
                DtPduFactory* factory);
  ~DtVdcLayerPdu() override;
};

/// DtVdcLayerPduV0 (command 2590, 176 bytes, version 0).
class DT_EXPORT DtVdcLayerPduV0 : public DtVdcLayerPduBase {
 public:
  static constexpr int kLength = 176;

  explicit DtVdcLayerPduV0(DtBufferPlaceHolder* holder = nullptr);
  DtVdcLayerPduV0(const DtNetViewControlPdu* bytes, DtBufferPlaceHolder* holder,
                  DtPduFactory* factory);
  ~DtVdcLayerPduV0() override;
};
