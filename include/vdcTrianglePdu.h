#pragma once
#include "vdcPolyObjectPdu.h"

/// DtVdcTrianglePduBase is a poly-object with three corners (types 2551 and 2552), each
/// three doubles, from byte 416 (version 0: 404).
class DT_EXPORT DtVdcTrianglePduBase : public DtVdcPolyObjectPduBase {
 public:
  static constexpr int kCorners = 3;

  ~DtVdcTrianglePduBase() override;

  /// Corners 0 to 2; others are ignored and read as the zero vector.
  virtual void setPoint(int i, const DtVector64& point);
  virtual DtVector64 point(int i) const;

  void printData() const override;
  /// The poly-object text, then the three corners.
  const char* string() const override;
  /// Applies the poly-object reader, then the corners from behind the 27th blank.
  void setFromString(const char* text) override;

 protected:
  DtVdcTrianglePduBase();
};

/// DtVdcTrianglePdu (command 2550, 488 bytes): relative locations 50 and 50.
class DT_EXPORT DtVdcTrianglePdu : public DtVdcTrianglePduBase {
 public:
  static constexpr int kLength = 488;

  explicit DtVdcTrianglePdu(DtBufferPlaceHolder* holder = nullptr);
  DtVdcTrianglePdu(const DtNetViewControlPdu* bytes, DtBufferPlaceHolder* holder,
                   DtPduFactory* factory);
  ~DtVdcTrianglePdu() override;
};

/// DtVdcTrianglePduV0 (command 2550, 484 bytes, version 0): relative location 50.
class DT_EXPORT DtVdcTrianglePduV0 : public DtVdcTrianglePduBase {
 public:
  static constexpr int kLength = 484;

  explicit DtVdcTrianglePduV0(DtBufferPlaceHolder* holder = nullptr);
  DtVdcTrianglePduV0(const DtNetViewControlPdu* bytes, DtBufferPlaceHolder* holder,
                     DtPduFactory* factory);
  ~DtVdcTrianglePduV0() override;
};
