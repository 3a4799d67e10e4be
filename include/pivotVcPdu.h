#pragma once
#include "dtVector.h"
#include "vistrelControlPdu.h"

/// DtPivotVCPdu (command 12, 204 bytes) puts the eyepoint on a sphere around a fixed world
/// point: radius, body heading, pitch, heading offset, pitch offset and roll (singles from
/// byte 156), then the pivot point as three doubles packed right behind them at byte 180.
///
/// Its accessors are virtual, in the order declared here, and setFromString() sets the
/// fields through them, so a derived class can intercept every change.
class DT_EXPORT DtPivotVCPdu : public DtVistrelControlPdu {
 public:
  static constexpr int kLength = 204;

  explicit DtPivotVCPdu(DtBufferPlaceHolder* holder = nullptr);
  DtPivotVCPdu(const DtNetViewControlPdu* bytes, DtBufferPlaceHolder* holder,
               DtPduFactory* factory);
  ~DtPivotVCPdu() override;

  void printData() const override;
  /// Reads all nine numbers at single precision, the pivot point included: a point set
  /// from text keeps only single precision, although the wire carries doubles.
  void setFromString(const char* text) override;
  const char* string() const override;

  virtual float radius() const;
  virtual void setRadius(float radius);
  virtual float bodyHeading() const;
  virtual void setBodyHeading(float heading);
  virtual float pitch() const;
  virtual void setPitch(float pitch);
  virtual float headingOffset() const;
  virtual void setHeadingOffset(float offset);
  virtual float pitchOffset() const;
  virtual void setPitchOffset(float offset);
  virtual float roll() const;
  virtual void setRoll(float roll);
  virtual const DtVector64& pivotPoint() const;
  virtual void setPivotPoint(const DtVector64& point);

 private:
  mutable DtVector64 pivotPoint_;
};
