#pragma once
#include "vdcAttachablePdu.h"

/// DtVdcPolyObjectPduBase is a closed shape (circle, sphere, square, cube, cylinder:
/// types 2541 to 2545) at the anchor: fill (bit 6 of the attachable flag byte), stipple
/// pattern (384; version 0: 376), scale (388; 380) and rotation as heading, pitch, roll
/// (400; 392), all in single precision. It is also the base of the area and triangle
/// PDUs.
class DT_EXPORT DtVdcPolyObjectPduBase : public DtVdcAttachablePdu {
 public:
  ~DtVdcPolyObjectPduBase() override;

  /// Declared const for the drawing objects that call it on a const PDU; it writes the
  /// flag byte all the same.
  virtual void setFill(bool fill) const;
  virtual bool fill() const;
  virtual void setPattern(DtNetU32 pattern);
  virtual DtNetU32 pattern() const;
  /// Narrowed to single precision.
  virtual void setScale(const DtVector64& scale);
  virtual DtVector64 scale() const;
  /// Narrowed to single precision.
  virtual void setRotation(const DtTaitBryan& rotation);
  virtual DtTaitBryan rotation() const;

  void printData() const override;
  /// The attachable text, then fill, pattern, scale and rotation.
  const char* string() const override;
  /// Applies the attachable reader, then reads fill, pattern, scale and rotation from
  /// behind the 20th blank, one field later than the writer put them.
  void setFromString(const char* text) override;

 protected:
  DtVdcPolyObjectPduBase();

  /// Point `i` of `count` points of 24 bytes from `first`; out-of-range points are
  /// neither written nor read (they read as the zero vector).
  void writePoint(size_t first, int count, int i, const DtVector64& point);
  DtVector64 readPoint(size_t first, int count, int i) const;
};

/// DtVdcPolyObjectPdu (command 2540, 412 bytes): a new one is anchored at 100 percent
/// on both attach points and has the solid stipple pattern 0x00FFFFFF.
class DT_EXPORT DtVdcPolyObjectPdu : public DtVdcPolyObjectPduBase {
 public:
  static constexpr int kLength = 412;

  explicit DtVdcPolyObjectPdu(DtBufferPlaceHolder* holder = nullptr);
  DtVdcPolyObjectPdu(const DtNetViewControlPdu* bytes, DtBufferPlaceHolder* holder,
                     DtPduFactory* factory);
  ~DtVdcPolyObjectPdu() override;
};

/// DtVdcPolyObjectPduV0 (command 2540, 412 bytes, version 0): relative location 50.
class DT_EXPORT DtVdcPolyObjectPduV0 : public DtVdcPolyObjectPduBase {
 public:
  static constexpr int kLength = 412;

  explicit DtVdcPolyObjectPduV0(DtBufferPlaceHolder* holder = nullptr);
  DtVdcPolyObjectPduV0(const DtNetViewControlPdu* bytes, DtBufferPlaceHolder* holder,
                       DtPduFactory* factory);
  ~DtVdcPolyObjectPduV0() override;
};
