#include "vdcLinePdu.h"

#include "dtOutput.h"
#include "vdcLayout.h"

namespace {
enum Field { kColor, kPattern, kThickness, kStyle, kPercentage, kFieldCount };

struct LineLayout {
  size_t count;               // 0: the single version-0 form, which holds exactly one segment
  size_t checkLos;            // 0: the layout has no such flag
  size_t projected;           // 0: the layout has no such flag
  size_t records;             // first segment record
  size_t stride;              // record size; 0 in the single form
  size_t field[kFieldCount];  // within a record; absolute offsets in the single form
  size_t lineColor;           // color() without a segment
  size_t lineColorSetter;     // setColor() without a segment; 0 does nothing
};

constexpr const vdclayout::Attachable& kAttachableV0 = vdclayout::kAttachable.v0;

// Segment records: colour, pattern, thickness, style byte, percentage at 0, 4, 8, 12, 13.
// Version 0 had no records in a single line: its one segment is made of the attachable
// colour, the flag byte's style bits and the relative location.
constexpr vdclayout::Versions<LineLayout> kLine = {
    {384, 388, 389, 392, 16, {0, 4, 8, 12, 13}, 392, 392},
    {0,
     0,
     0,
     0,
     0,
     {kAttachableV0.color, 376, 380, kAttachableV0.flags, kAttachableV0.relativeLocation},
     kAttachableV0.color,
     kAttachableV0.color}};
// A segmented version-0 line keeps its colours in the records only, so the line-wide
// colour setter has nothing to write.
constexpr LineLayout kSegmentedV0 = {376, 0, 0, 388, 16, {0, 4, 8, 12, 13}, kAttachableV0.color, 0};

constexpr unsigned int kArrowBits = 0x03;
constexpr unsigned int kAppearanceBit = 0x08;

bool segmentedType(unsigned int type) {
  return type == DtVdc2DSegmentedLine || type == DtVdc3DSegmentedLine;
}

// Version 0 tells its two line PDUs apart by the draw type alone.
const LineLayout& layout(const DtVdcLinePdu& pdu) {
  const LineLayout& l = vdclayout::of(kLine, pdu);
  if (&l == &kLine.v0 && segmentedType(pdu.type())) return kSegmentedV0;
  return l;
}

enum class Access { read, write, firstSegment };

// Offset of a field of `segment`, or 0 when the access must do nothing.
size_t segmentField(const DtVdcLinePdu& pdu, unsigned int segment, Field f, Access access) {
  const LineLayout& l = layout(pdu);
  if (!l.count) return access == Access::write ? 0 : l.field[f];
  if (access == Access::firstSegment) {
    segment = 0;
  } else if (segment >= pdu.numSegments()) {
    return 0;
  }
  return l.records + l.stride * segment + l.field[f];
}
}  // namespace

DtVdcLinePdu::DtVdcLinePdu(DtBufferPlaceHolder* holder) {
  if (initFresh(kLength, holder, DtVdcLine, 1)) setRelativeLocations(50);
  setNumSegments(1);
  setPercentage(0, 100);
}

DtVdcLinePdu::DtVdcLinePdu(double) {}

DtVdcLinePdu::DtVdcLinePdu(const DtNetViewControlPdu* bytes, DtBufferPlaceHolder* holder,
                           DtPduFactory* factory) {
  initReceived(bytes, holder, factory, DtVdcLine);
}

DtVdcLinePdu::~DtVdcLinePdu() = default;

void DtVdcLinePdu::setNumSegments(unsigned char count) {
  const LineLayout& l = layout(*this);
  if (!l.count) return;
  changeSize(static_cast<int>(l.records + l.stride * count));
  writeU32(l.count, count);
}

unsigned int DtVdcLinePdu::numSegments() const {
  const LineLayout& l = layout(*this);
  return l.count ? readU32(l.count) : 1u;
}

namespace {
// Arrow style and appearance share the style byte; each replaces its own bits. The new
// value goes in unmasked, as the callers pass enumerators only.
unsigned int styleByte(unsigned int old, unsigned int keep, unsigned int value) {
  return (old & keep) | value;
}
}  // namespace

void DtVdcLinePdu::setArrowStyle(DtVdcLineArrowStyle style) {
  size_t at = segmentField(*this, 0, kStyle, Access::firstSegment);
  writeU8(at, styleByte(readU8(at), ~kArrowBits, static_cast<unsigned int>(style)));
}

void DtVdcLinePdu::setArrowStyle(unsigned int segment, DtVdcLineArrowStyle style) {
  if (size_t at = segmentField(*this, segment, kStyle, Access::write))
    writeU8(at, styleByte(readU8(at), ~kArrowBits, static_cast<unsigned int>(style)));
}

DtVdcLinePdu::DtVdcLineArrowStyle DtVdcLinePdu::arrowStyle(unsigned int segment) const {
  size_t at = segmentField(*this, segment, kStyle, Access::read);
  return static_cast<DtVdcLineArrowStyle>(at ? readU8(at) & kArrowBits : 0u);
}

void DtVdcLinePdu::setAppearance(DtVdcLineAppearance appearance) {
  size_t at = segmentField(*this, 0, kStyle, Access::firstSegment);
  writeU8(at, styleByte(readU8(at), ~kAppearanceBit, static_cast<unsigned int>(appearance)));
}

void DtVdcLinePdu::setAppearance(unsigned int segment, DtVdcLineAppearance appearance) {
  if (size_t at = segmentField(*this, segment, kStyle, Access::write))
    writeU8(at, styleByte(readU8(at), ~kAppearanceBit, static_cast<unsigned int>(appearance)));
}

DtVdcLinePdu::DtVdcLineAppearance DtVdcLinePdu::appearance(unsigned int segment) const {
  size_t at = segmentField(*this, segment, kStyle, Access::read);
  return static_cast<DtVdcLineAppearance>(at ? readU8(at) & kAppearanceBit : 0u);
}

void DtVdcLinePdu::setThickness(unsigned char thickness) {
  writeU32(segmentField(*this, 0, kThickness, Access::firstSegment), thickness);
}

void DtVdcLinePdu::setThickness(unsigned int segment, unsigned char thickness) {
  if (size_t at = segmentField(*this, segment, kThickness, Access::write)) writeU32(at, thickness);
}

unsigned int DtVdcLinePdu::thickness(unsigned int segment) const {
  size_t at = segmentField(*this, segment, kThickness, Access::read);
  return at ? readU32(at) : 0u;
}

void DtVdcLinePdu::setPattern(DtNetU32 pattern) {
  writeU32(segmentField(*this, 0, kPattern, Access::firstSegment), pattern);
}

void DtVdcLinePdu::setPattern(unsigned int segment, DtNetU32 pattern) {
  if (size_t at = segmentField(*this, segment, kPattern, Access::write)) writeU32(at, pattern);
}

DtNetU32 DtVdcLinePdu::pattern(unsigned int segment) const {
  size_t at = segmentField(*this, segment, kPattern, Access::read);
  return at ? readU32(at) : 0u;
}

void DtVdcLinePdu::setColor(unsigned char* rgba) {
  size_t at = layout(*this).lineColorSetter;
  if (at && rgba) writeBytes(at, rgba, 4);
}

unsigned char* DtVdcLinePdu::color() const {
  return bytesAt(layout(*this).lineColor, 4);
}

void DtVdcLinePdu::setColor(unsigned int segment, unsigned char* rgba) {
  size_t at = segmentField(*this, segment, kColor, Access::write);
  if (at && rgba) writeBytes(at, rgba, 4);
}

unsigned char* DtVdcLinePdu::color(unsigned int segment) const {
  size_t at = segmentField(*this, segment, kColor, Access::read);
  return at ? bytesAt(at, 4) : nullptr;
}

void DtVdcLinePdu::setPercentage(unsigned int segment, unsigned char percentage) {
  if (size_t at = segmentField(*this, segment, kPercentage, Access::write)) writeU8(at, percentage);
}

unsigned char DtVdcLinePdu::percentage(unsigned int segment) const {
  size_t at = segmentField(*this, segment, kPercentage, Access::read);
  return static_cast<unsigned char>(at ? readU8(at) : 0u);
}

void DtVdcLinePdu::setCheckLos(bool check) {
  if (size_t at = layout(*this).checkLos) writeU8(at, check ? 1u : 0u);
}

bool DtVdcLinePdu::checkLos() const {
  size_t at = layout(*this).checkLos;
  return at && readU8(at) != 0;
}

void DtVdcLinePdu::setProjected(bool projected) {
  if (size_t at = layout(*this).projected) writeU8(at, projected ? 1u : 0u);
}

bool DtVdcLinePdu::projected() const {
  size_t at = layout(*this).projected;
  return at && readU8(at) != 0;
}

const char* DtVdcLinePdu::typeString(DtVdcLineArrowStyle style) const {
  switch (style) {
    case DtVdcStyleNoArrow:
      return "DtVdcStyleNoArrow";
    case DtVdcStyleArrowEnd:
      return "DtVdcStyleArrowEnd";
    case DtVdcStyleArrowStart:
      return "DtVdcStyleArrowStart";
    case DtVdcStyleArrowDouble:
      return "DtVdcStyleArrowDouble";
  }
  return "UnknownEnum";
}

const char* DtVdcLinePdu::typeString(DtVdcLineAppearance appearance) const {
  switch (appearance) {
    case DtVdcLineAppearanceStraight:
      return "DtVdcLineAppearanceStraight";
    case DtVdcLineAppearanceLightning:
      return "DtVdcLineAppearanceLightning";
  }
  return "UnknownEnum";
}

void DtVdcLinePdu::printData() const {
  DtVdcAttachablePdu::printData();
  // The dump shows the count as one byte and lists that many segments.
  unsigned int count = numSegments() & 0xFFu;
  DtDumpInteger("Segments:", count);
  for (unsigned int i = 0; i < count; ++i) {
    DtDumpInteger("Segment:", i + 1);
    DtDumpInteger("Percentage:", percentage(i));
    DtDumpInteger("Thickness:", thickness(i) & 0xFFu);
    DtDumpHexWord("Pattern:", pattern(i));
    DtVdcLineArrowStyle style = arrowStyle(i);
    DtDumpEnum("LineArrowStyle:", typeString(style), style);
    DtVdcLineAppearance look = appearance(i);
    DtDumpEnum("LineAppearance:", typeString(look), look);
    const unsigned char* rgba = color(i);
    DtDumpString("Color:", "");
    DtDumpInteger(" r:", rgba ? rgba[0] : 0);
    DtDumpInteger(" g:", rgba ? rgba[1] : 0);
    DtDumpInteger(" b:", rgba ? rgba[2] : 0);
    DtDumpInteger(" a:", rgba ? rgba[3] : 0);
  }
}

// ------------------------------------------------------------------ version 0

DtVdcLinePduV0::DtVdcLinePduV0(DtBufferPlaceHolder* holder) : DtVdcLinePdu(0.0) {
  if (initFresh(kLength, holder, DtVdcLine, 0)) setRelativeLocations(100);
}

DtVdcLinePduV0::DtVdcLinePduV0(const DtNetViewControlPdu* bytes, DtBufferPlaceHolder* holder,
                               DtPduFactory* factory)
    : DtVdcLinePdu(0.0) {
  initReceived(bytes, holder, factory, DtVdcLine);
}

DtVdcLinePduV0::~DtVdcLinePduV0() = default;

DtVdcSegmentedLinePduV0::DtVdcSegmentedLinePduV0(DtBufferPlaceHolder* holder) : DtVdcLinePdu(0.0) {
  if (initFresh(kLength, holder, DtVdcSegmentedLine, 0)) setRelativeLocations(100);
}

DtVdcSegmentedLinePduV0::DtVdcSegmentedLinePduV0(const DtNetViewControlPdu* bytes,
                                                 DtBufferPlaceHolder* holder, DtPduFactory* factory)
    : DtVdcLinePdu(0.0) {
  initReceived(bytes, holder, factory, DtVdcSegmentedLine);
}

DtVdcSegmentedLinePduV0::~DtVdcSegmentedLinePduV0() = default;
