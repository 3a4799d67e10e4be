#pragma once
#include "dtVector.h"
#include "vistrelControlPdu.h"

/// DtMoveVCPdu (command 13, 208 bytes) steps or turns the eyepoint one way, or places it:
/// turn and move direction (one byte each at 156 and 157), a reset flag (158), then the
/// position and the orientation as six doubles from byte 160. It is the one view-control
/// PDU whose orientation travels at double precision.
class DT_EXPORT DtMoveVCPdu : public DtVistrelControlPdu {
 public:
  /// One byte on the wire, so a received value may be any of 0 to 255.
  enum Direction : int { LEFT = 0, RIGHT = 1, UP = 2, DOWN = 3, FORWARDS = 4, BACKWARDS = 5 };

  static constexpr int kLength = 208;

  explicit DtMoveVCPdu(DtBufferPlaceHolder* holder = nullptr);
  DtMoveVCPdu(const DtNetViewControlPdu* bytes, DtBufferPlaceHolder* holder, DtPduFactory* factory);
  ~DtMoveVCPdu() override;

  Direction turn() const;
  /// Stores the low 8 bits.
  void setTurn(Direction direction);
  Direction move() const;
  /// Stores the low 8 bits.
  void setMove(Direction direction);
  const DtVector64& position() const;
  void setPosition(const DtVector64& position);
  const DtTaitBryan& orientation() const;
  void setOrientation(const DtTaitBryan& orientation);
  /// Any non-zero byte means reset.
  bool reset() const;
  void setReset(bool reset);

  void printData() const override;
  /// Turn, move and position only; orientation and reset have no text form. The position
  /// is read at single precision.
  void setFromString(const char* text) override;
  const char* string() const override;

 private:
  mutable DtVector64 position_;
  mutable DtTaitBryan orientation_;
};
