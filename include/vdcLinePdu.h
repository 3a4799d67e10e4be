#pragma once
#include "vdcAttachablePdu.h"

/// DtVdcLinePdu (command 2520, 392 bytes + 16 per segment; types 2521 and 2522, set by
/// the caller) draws a polyline between the attach points: segment records of 16 bytes
/// from byte 392 (colour, stipple pattern, thickness, style byte, percentage of the
/// line's length), with their count at 384 and the line-of-sight and projected flags at
/// 388 and 389. It is also the accessor class of the version-0 lines, which come in two
/// forms told apart by the draw type: segmented (2531, 2532: count at 376, records from
/// 388) and single (any other type: one segment made of the attachable colour, the flag
/// byte's style bits, the relative location, and pattern and thickness at 376 and 380).
/// A new line has one segment covering 100 percent.
class DT_EXPORT DtVdcLinePdu : public DtVdcAttachablePdu {
 public:
  static constexpr int kLength = 392;

  /// Bits 0-1 of a segment's style byte.
  enum DtVdcLineArrowStyle : int {
    DtVdcStyleNoArrow = 0,
    DtVdcStyleArrowEnd = 1,
    DtVdcStyleArrowStart = 2,
    DtVdcStyleArrowDouble = 3
  };
  /// Bit 3 of the style byte; the values are the masks themselves so that arrow style
  /// and appearance can be ORed into one byte.
  enum DtVdcLineAppearance : int {
    DtVdcLineAppearanceStraight = 0,
    DtVdcLineAppearanceLightning = 8
  };

  explicit DtVdcLinePdu(DtBufferPlaceHolder* holder = nullptr);
  /// Builds nothing: for the version-0 lines, which lay out their own buffers.
  explicit DtVdcLinePdu(double);
  DtVdcLinePdu(const DtNetViewControlPdu* bytes, DtBufferPlaceHolder* holder,
               DtPduFactory* factory);
  ~DtVdcLinePdu() override;

  /// Resizes the PDU to hold exactly `count` segment records; the single version-0 form
  /// has no count and ignores this.
  virtual void setNumSegments(unsigned char count);
  virtual unsigned int numSegments() const;

  // Segment-0 setters: they write segment 0 whatever the count (past the PDU's length
  // when it has none), or the single fields of a single version-0 line.
  virtual void setArrowStyle(DtVdcLineArrowStyle style);
  // Per-segment setters do nothing unless `segment` is below the count, and nothing at
  // all on a single version-0 line. Getters give 0 (null) for a segment beyond the
  // count; on a single version-0 line they read the single fields whatever the index.
  virtual void setArrowStyle(unsigned int segment, DtVdcLineArrowStyle style);
  virtual DtVdcLineArrowStyle arrowStyle(unsigned int segment) const;
  virtual void setAppearance(DtVdcLineAppearance appearance);
  virtual void setAppearance(unsigned int segment, DtVdcLineAppearance appearance);
  virtual DtVdcLineAppearance appearance(unsigned int segment) const;
  virtual void setThickness(unsigned char thickness);
  virtual void setThickness(unsigned int segment, unsigned char thickness);
  virtual unsigned int thickness(unsigned int segment) const;
  virtual void setPattern(DtNetU32 pattern);
  virtual void setPattern(unsigned int segment, DtNetU32 pattern);
  virtual DtNetU32 pattern(unsigned int segment) const;
  virtual void setColor(unsigned int segment, unsigned char* rgba);
  virtual unsigned char* color(unsigned int segment) const;
  virtual void setPercentage(unsigned int segment, unsigned char percentage);
  virtual unsigned char percentage(unsigned int segment) const;
  /// Current layout only; version 0 ignores the setters and reads false.
  virtual void setCheckLos(bool check);
  virtual bool checkLos() const;
  virtual void setProjected(bool projected);
  virtual bool projected() const;
  using DtVdcAttachablePdu::typeString;
  virtual const char* typeString(DtVdcLineArrowStyle style) const;
  virtual const char* typeString(DtVdcLineAppearance appearance) const;

  /// Segment 0's colour; on a single version-0 line the attachable colour, and on a
  /// segmented version-0 line nothing at all.
  void setColor(unsigned char* rgba) override;
  /// Segment 0's colour; in version 0 the attachable colour.
  unsigned char* color() const override;

  void printData() const override;
};

/// DtVdcLinePduV0 (command 2520, 392 bytes) is a single-segment line in the version-0
/// layout, for viewers that know no other.
class DT_EXPORT DtVdcLinePduV0 : public DtVdcLinePdu {
 public:
  static constexpr int kLength = 392;

  explicit DtVdcLinePduV0(DtBufferPlaceHolder* holder = nullptr);
  DtVdcLinePduV0(const DtNetViewControlPdu* bytes, DtBufferPlaceHolder* holder,
                 DtPduFactory* factory);
  ~DtVdcLinePduV0() override;
};

/// DtVdcSegmentedLinePduV0 (command 2530, 388 bytes) is a multi-segment line in the
/// version-0 layout. Its draw type starts at 0, which reads as a single line: set the
/// type (2531 or 2532) first, then the count, then the segments.
class DT_EXPORT DtVdcSegmentedLinePduV0 : public DtVdcLinePdu {
 public:
  static constexpr int kLength = 388;

  explicit DtVdcSegmentedLinePduV0(DtBufferPlaceHolder* holder = nullptr);
  DtVdcSegmentedLinePduV0(const DtNetViewControlPdu* bytes, DtBufferPlaceHolder* holder,
                          DtPduFactory* factory);
  ~DtVdcSegmentedLinePduV0() override;
};
