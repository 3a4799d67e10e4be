#pragma once
#include "dtVector.h"
#include "vistrelControlPdu.h"

/// DtAbsoluteVCPdu (command 0, 196 bytes) puts the viewer's eyepoint at a fixed world
/// location (three doubles at byte 160) with a fixed orientation (heading, pitch, roll as
/// single floats at byte 184), free of any entity.
class DT_EXPORT DtAbsoluteVCPdu : public DtVistrelControlPdu {
 public:
  static constexpr int kLength = 196;

  explicit DtAbsoluteVCPdu(DtBufferPlaceHolder* holder = nullptr);
  DtAbsoluteVCPdu(const DtNetViewControlPdu* bytes, DtBufferPlaceHolder* holder,
                  DtPduFactory* factory);
  ~DtAbsoluteVCPdu() override;

  /// Refreshes the cache from the bytes and returns it.
  const DtVector64& worldLocation() const;
  void setWorldLocation(const DtVector64& location);
  /// Refreshes the cache from the bytes (single precision, widened) and returns it.
  const DtTaitBryan& orientation() const;
  /// Narrows each angle to single precision.
  void setOrientation(const DtTaitBryan& orientation);

  void printData() const override;
  void setFromString(const char* text) override;
  const char* string() const override;

 private:
  mutable DtVector64 location_;
  mutable DtTaitBryan orientation_;
};
