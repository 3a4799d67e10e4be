#pragma once
#include "dtExport.h"
#include "vdcColor.h"

/// How a line segment is drawn. Only the lightning zig-zag reaches the viewer as such;
/// any other value is drawn straight.
enum DtVdcSegmentStyle : int { DtVdcSegmentStraight = 0, DtVdcSegmentLightning = 1 };

/// Arrow heads of a line segment. Values above 3 are kept but drawn without arrows.
enum DtVdcSegmentArrowStyle : int {
  DtVdcSegmentNoArrow = 0,
  DtVdcSegmentArrowEnd = 1,
  DtVdcSegmentArrowStart = 2,
  DtVdcSegmentArrowDouble = 3
};

/// DtVdcLineSegment is the look of one segment of a line: colour, stipple pattern (bit
/// mask, all ones solid), thickness, style, arrow style, and its share of the whole
/// line as a fraction (1.0 the whole line).
class DT_EXPORT DtVdcLineSegment {
 public:
  /// A white, solid, 1-thick segment covering the whole line.
  DtVdcLineSegment();
  DtVdcLineSegment(double percentage, DtVdcColor color, unsigned int pattern,
                   unsigned int thickness, DtVdcSegmentStyle style,
                   DtVdcSegmentArrowStyle arrowStyle);

  const DtVdcColor& color() const { return color_; }
  DtVdcColor& color() { return color_; }
  void setColor(const DtVdcColor& color) { color_ = color; }
  unsigned int pattern() const { return pattern_; }
  void setPattern(unsigned int pattern) { pattern_ = pattern; }
  unsigned int thickness() const { return thickness_; }
  void setThickness(unsigned int thickness) { thickness_ = thickness; }
  double percentage() const { return percentage_; }
  void setPercentage(double percentage) { percentage_ = percentage; }
  DtVdcSegmentStyle style() const { return style_; }
  void setStyle(DtVdcSegmentStyle style) { style_ = style; }
  DtVdcSegmentArrowStyle arrowStyle() const { return arrowStyle_; }
  void setArrowStyle(DtVdcSegmentArrowStyle arrowStyle) { arrowStyle_ = arrowStyle; }

 private:
  DtVdcColor color_;
  unsigned int pattern_;
  unsigned int thickness_;
  double percentage_;
  DtVdcSegmentStyle style_;
  DtVdcSegmentArrowStyle arrowStyle_;
};

// The segment accessors of the segmented lines, in the order both lines declare them.
// The int argument is the segment index: a getter beyond the last segment answers a
// default segment's value, and a setter there does nothing. setNumSegments keeps the
// existing segments, adds default ones and does not rebalance the shares; the share
// (percentage) is a fraction of the whole line, 1.0 the whole line.
#define DT_VDC_SEGMENT_ACCESSORS                                         \
  virtual int numSegments() const;                                       \
  virtual void setNumSegments(int count);                                \
  virtual DtVdcColor color(int segment) const;                           \
  virtual DtVdcColor& color(int segment);                                \
  virtual void setColor(const DtVdcColor& color, int segment);           \
  virtual DtVdcSegmentStyle lineStyle(int segment) const;                \
  virtual void setLineStyle(DtVdcSegmentStyle style, int segment);       \
  virtual DtVdcSegmentArrowStyle arrowStyle(int segment) const;          \
  virtual void setArrowStyle(DtVdcSegmentArrowStyle style, int segment); \
  virtual unsigned int pattern(int segment) const;                       \
  virtual void setPattern(unsigned int pattern, int segment);            \
  virtual unsigned int thickness(int segment) const;                     \
  virtual void setThickness(unsigned int thickness, int segment);        \
  virtual double percentage(int segment) const;                          \
  virtual void setPercentage(double share, int segment);

// The per-segment PDU writers, in the order both lines declare them: colour bytes,
// appearance (lightning for style 1, straight otherwise), arrow style (0 to 3, else no
// arrow), pattern, thickness cut to 8 bits, share as a whole percentage cut to 8 bits.
#define DT_VDC_SEGMENT_PDU_OPERATIONS         \
  virtual void setPduColor(int segment);      \
  virtual void setPduLineStyle(int segment);  \
  virtual void setPduArrowStyle(int segment); \
  virtual void setPduPattern(int segment);    \
  virtual void setPduThickness(int segment);  \
  virtual void setPduPercentage(int segment);
