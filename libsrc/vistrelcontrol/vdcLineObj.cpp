#include "vdcLineObj.h"

#include "vdcObjectPdu.h"

namespace {

using Segments = std::vector<DtVdcLineSegment>;

// Segment indices come from the application unchecked: a read beyond the last segment
// sees a default segment, a write there goes nowhere.
const DtVdcLineSegment& segmentAt(const Segments& segments, int i) {
  static const DtVdcLineSegment none;
  return i >= 0 && static_cast<size_t>(i) < segments.size() ? segments[i] : none;
}

DtVdcLineSegment* findSegment(Segments& segments, int i) {
  return i >= 0 && static_cast<size_t>(i) < segments.size() ? &segments[i] : nullptr;
}

DtVdcColor& colorAt(Segments& segments, int i) {
  if (DtVdcLineSegment* segment = findSegment(segments, i)) return segment->color();
  thread_local DtVdcColor scratch;
  scratch = DtVdcLineSegment().color();
  return scratch;
}

void resize(Segments& segments, int count) {
  segments.resize(count > 0 ? count : 0);
}

// Segment writers. The style byte holds the arrow style in bits 0-1 and the appearance
// in bit 3, so values the PDU cannot hold fall back to the plain look.
void writeColor(DtVdcLinePdu& pdu, int i, const DtVdcLineSegment& s) {
  std::array<unsigned char, 4> rgba = vdcobj::colorBytes(s.color());
  pdu.setColor(static_cast<unsigned int>(i), rgba.data());
}

void writeLineStyle(DtVdcLinePdu& pdu, int i, const DtVdcLineSegment& s) {
  pdu.setAppearance(static_cast<unsigned int>(i), s.style() == DtVdcSegmentLightning
                                                      ? DtVdcLinePdu::DtVdcLineAppearanceLightning
                                                      : DtVdcLinePdu::DtVdcLineAppearanceStraight);
}

void writeArrowStyle(DtVdcLinePdu& pdu, int i, const DtVdcLineSegment& s) {
  int arrow = s.arrowStyle();
  bool known =
      arrow >= DtVdcLinePdu::DtVdcStyleNoArrow && arrow <= DtVdcLinePdu::DtVdcStyleArrowDouble;
  pdu.setArrowStyle(static_cast<unsigned int>(i),
                    known ? static_cast<DtVdcLinePdu::DtVdcLineArrowStyle>(arrow)
                          : DtVdcLinePdu::DtVdcStyleNoArrow);
}

void writePattern(DtVdcLinePdu& pdu, int i, const DtVdcLineSegment& s) {
  pdu.setPattern(static_cast<unsigned int>(i), DtNetU32(s.pattern()));
}

void writeThickness(DtVdcLinePdu& pdu, int i, const DtVdcLineSegment& s) {
  pdu.setThickness(static_cast<unsigned int>(i), vdcobj::lowByte(s.thickness()));
}

// The share goes as a whole percentage, truncated: a third of the line is 33.
void writePercentage(DtVdcLinePdu& pdu, int i, const DtVdcLineSegment& s) {
  pdu.setPercentage(static_cast<unsigned int>(i),
                    vdcobj::lowByte(vdcobj::truncated(s.percentage() * 100.0)));
}

// A new line gives every segment the same look and an equal share.
template <typename Line>
void initSegments(Line& line, int count, const DtVdcColor& color, DtVdcSegmentStyle style,
                  DtVdcSegmentArrowStyle arrowStyle, unsigned int thickness, unsigned int pattern) {
  line.setNumSegments(count);
  for (int i = 0; i < count; ++i) {
    line.setColor(color, i);
    line.setPattern(pattern, i);
    line.setThickness(thickness, i);
    line.setLineStyle(style, i);
    line.setArrowStyle(arrowStyle, i);
    line.setPercentage(1.0 / count, i);
  }
}

// The count first: the PDU ignores segments beyond the count it holds.
template <typename Line>
void updateSegments(Line& line) {
  line.setPduNumSegments();
  for (int i = 0; i < line.numSegments(); ++i) {
    line.setPduColor(i);
    line.setPduPattern(i);
    line.setPduThickness(i);
    line.setPduLineStyle(i);
    line.setPduArrowStyle(i);
    line.setPduPercentage(i);
  }
}

}  // namespace

// One segment field: the line's getter and setter over the segment's.
#define VDC_SEGMENT_FIELD(Class, Type, get, set, segmentGet, segmentSet)                   \
  Type Class::get(int i) const {                                                           \
    return segmentAt(segments_, i).segmentGet();                                           \
  }                                                                                        \
  void Class::set(Type value, int i) {                                                     \
    if (DtVdcLineSegment* segment = findSegment(segments_, i)) segment->segmentSet(value); \
  }

#define VDC_SEGMENT_PDU(Class, operation, writer) \
  void Class::operation(int i) {                  \
    writer(pdu_, i, segmentAt(segments_, i));     \
  }

// Everything both lines do alike with their segments.
#define VDC_SEGMENTED_LINE(Class)                                                          \
  int Class::numSegments() const {                                                         \
    return static_cast<int>(segments_.size());                                             \
  }                                                                                        \
  void Class::setNumSegments(int count) {                                                  \
    resize(segments_, count);                                                              \
  }                                                                                        \
  DtVdcColor Class::color(int i) const {                                                   \
    return segmentAt(segments_, i).color();                                                \
  }                                                                                        \
  DtVdcColor& Class::color(int i) {                                                        \
    return colorAt(segments_, i);                                                          \
  }                                                                                        \
  void Class::setColor(const DtVdcColor& color, int i) {                                   \
    if (DtVdcLineSegment* segment = findSegment(segments_, i)) segment->setColor(color);   \
  }                                                                                        \
  VDC_SEGMENT_FIELD(Class, DtVdcSegmentStyle, lineStyle, setLineStyle, style, setStyle)    \
  VDC_SEGMENT_FIELD(Class, DtVdcSegmentArrowStyle, arrowStyle, setArrowStyle, arrowStyle,  \
                    setArrowStyle)                                                         \
  VDC_SEGMENT_FIELD(Class, unsigned int, pattern, setPattern, pattern, setPattern)         \
  VDC_SEGMENT_FIELD(Class, unsigned int, thickness, setThickness, thickness, setThickness) \
  VDC_SEGMENT_FIELD(Class, double, percentage, setPercentage, percentage, setPercentage)   \
  VDC_VALUE(Class, bool, flashing, setFlashing, flashing_)                                 \
  DtVdcLinePdu& Class::pdu() {                                                             \
    return pdu_;                                                                           \
  }                                                                                        \
  void Class::setPduFlashing() {                                                           \
    pdu_.setFlashing(flashing_);                                                           \
  }                                                                                        \
  void Class::setPduNumSegments() {                                                        \
    pdu_.setNumSegments(vdcobj::lowByte(segments_.size()));                                \
  }                                                                                        \
  VDC_SEGMENT_PDU(Class, setPduColor, writeColor)                                          \
  VDC_SEGMENT_PDU(Class, setPduLineStyle, writeLineStyle)                                  \
  VDC_SEGMENT_PDU(Class, setPduArrowStyle, writeArrowStyle)                                \
  VDC_SEGMENT_PDU(Class, setPduPattern, writePattern)                                      \
  VDC_SEGMENT_PDU(Class, setPduThickness, writeThickness)                                  \
  VDC_SEGMENT_PDU(Class, setPduPercentage, writePercentage)

// ------------------------------------------------------------------ 2D line

DtVdcLine2DObject::DtVdcLine2DObject(unsigned int id, const DtVdcVector2D& start,
                                     const DtVdcVector2D& end, int numSegments, DtVdcColor color,
                                     DtVdcSegmentStyle style, DtVdcSegmentArrowStyle arrowStyle,
                                     unsigned int thickness, unsigned int pattern, bool flashing)
    : DtVdcObject(id), startPosition_(start), endPosition_(end), flashing_(flashing) {
  vdcobj::identify(pdu_, id, DtVdc2DLine);
  initSegments(*this, numSegments, color, style, arrowStyle, thickness, pattern);
  updatePdu();
  // A screen line has no scene offset.
  pdu_.setOffset(DtVector64());
}

DtVdcLine2DObject::~DtVdcLine2DObject() = default;

VDC_SEGMENTED_LINE(DtVdcLine2DObject)
VDC_FIELD(DtVdcLine2DObject, DtVdcVector2D, startPosition, setStartPosition, startPosition_)
VDC_FIELD(DtVdcLine2DObject, DtVdcVector2D, endPosition, setEndPosition, endPosition_)

void DtVdcLine2DObject::updatePdu() {
  setPduAttach();
  setPduFlashing();
  updateSegments(*this);
}

void DtVdcLine2DObject::setPduAttach() {
  std::array<char, 2> start = vdcobj::screenPercent(startPosition_);
  std::array<char, 2> end = vdcobj::screenPercent(endPosition_);
  pdu_.attachTo(start.data(), end.data());
}

// ------------------------------------------------------------------ 3D line

DtVdcLine3DObject::DtVdcLine3DObject(unsigned int id, const DtVdc3DAttachPoint& start,
                                     const DtVdc3DAttachPoint& end, int numSegments,
                                     const DtVector64& enuOffset, DtVdcColor color,
                                     DtVdcSegmentStyle style, DtVdcSegmentArrowStyle arrowStyle,
                                     unsigned int thickness, unsigned int pattern, bool flashing,
                                     bool checkLos, bool projected)
    : DtVdcObject(id),
      startAttachment_(start),
      endAttachment_(end),
      enuOffset_(enuOffset),
      flashing_(flashing),
      checkLos_(checkLos),
      projected_(projected) {
  vdcobj::identify(pdu_, id, DtVdc3DLine);
  initSegments(*this, numSegments, color, style, arrowStyle, thickness, pattern);
  updatePdu();
}

DtVdcLine3DObject::~DtVdcLine3DObject() = default;

VDC_SEGMENTED_LINE(DtVdcLine3DObject)
VDC_FIELD(DtVdcLine3DObject, DtVdc3DAttachPoint, startAttachment, setStartAttachment,
          startAttachment_)
VDC_FIELD(DtVdcLine3DObject, DtVdc3DAttachPoint, endAttachment, setEndAttachment, endAttachment_)
VDC_FIELD(DtVdcLine3DObject, DtVector64, enuOffset, setEnuOffset, enuOffset_)
VDC_VALUE(DtVdcLine3DObject, bool, checkLos, setCheckLos, checkLos_)
VDC_VALUE(DtVdcLine3DObject, bool, projected, setProjected, projected_)

void DtVdcLine3DObject::updatePdu() {
  setPduAttach();
  setPduOffset();
  setPduFlashing();
  setPduCheckLos();
  setPduProjected();
  updateSegments(*this);
}

void DtVdcLine3DObject::setPduAttach() {
  vdcobj::attach(pdu_, startAttachment_, endAttachment_);
}
void DtVdcLine3DObject::setPduOffset() {
  pdu_.setOffset(enuOffset_);
}
void DtVdcLine3DObject::setPduCheckLos() {
  pdu_.setCheckLos(checkLos_);
}
void DtVdcLine3DObject::setPduProjected() {
  pdu_.setProjected(projected_);
}
