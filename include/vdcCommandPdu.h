#pragma once
#include "vistrelDrawControlPdu.h"

/// DtVdcCommandPduBase tells the viewer to act on an existing drawing object, named by
/// the object id; the draw type is the command (2511 remove, 2512 hide, 2513 show, 2514
/// add to layer, 2515 remove from layer). The layer id (168; version 0: 164) matters
/// for the two layer commands only.
class DT_EXPORT DtVdcCommandPduBase : public DtVistrelDrawControlPdu {
 public:
  ~DtVdcCommandPduBase() override;

  virtual DtNetU32 layerId() const;
  virtual void setLayerId(DtNetU32 id);

  void printData() const override;
  /// Object id and type, and the layer id for the layer commands.
  const char* string() const override;
  void setFromString(const char* text) override;

 protected:
  DtVdcCommandPduBase();
};

/// DtVdcCommandPdu (command 2510, 172 bytes); a new one has type 2489, undefined.
class DT_EXPORT DtVdcCommandPdu : public DtVdcCommandPduBase {
 public:
  static constexpr int kLength = 172;

  explicit DtVdcCommandPdu(DtBufferPlaceHolder* holder = nullptr);
  DtVdcCommandPdu(const DtNetViewControlPdu* bytes, DtBufferPlaceHolder* holder,
                  DtPduFactory* factory);
  ~DtVdcCommandPdu() override;
};

/// DtVdcCommandPduV0 (command 2510, 176 bytes, version 0); type 2489 as well.
class DT_EXPORT DtVdcCommandPduV0 : public DtVdcCommandPduBase {
 public:
  static constexpr int kLength = 176;

  explicit DtVdcCommandPduV0(DtBufferPlaceHolder* holder = nullptr);
  DtVdcCommandPduV0(const DtNetViewControlPdu* bytes, DtBufferPlaceHolder* holder,
                    DtPduFactory* factory);
  ~DtVdcCommandPduV0() override;
};
