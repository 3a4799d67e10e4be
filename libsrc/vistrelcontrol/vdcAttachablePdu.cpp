#include "vdcAttachablePdu.h"

#include <cstdio>
#include <cstring>

#include "dtOutput.h"
#include "vdcLayout.h"
#include "vdcTextForm.h"

namespace {
constexpr unsigned int kFlashingBit = 0x04;

const vdclayout::Attachable& layout(const DtVdcAttachablePdu& pdu) {
  return vdclayout::of(vdclayout::kAttachable, pdu);
}

bool validPoint(int i) {
  return i == 0 || i == 1;
}

// A screen percentage byte is signed: 200 means -56.
double screenFraction(char percent) {
  return static_cast<double>(static_cast<float>(static_cast<signed char>(percent))) / 100.0;
}

// The colour as four values, zero when the PDU cannot show it.
struct Rgba {
  int value[4] = {0, 0, 0, 0};
  explicit Rgba(const unsigned char* rgba) {
    if (rgba)
      for (int i = 0; i < 4; ++i) value[i] = rgba[i];
  }
};
}  // namespace

DtVdcAttachablePdu::DtVdcAttachablePdu() = default;
DtVdcAttachablePdu::~DtVdcAttachablePdu() = default;

DtVdcAttachablePdu::DtVcObjectAttachment DtVdcAttachablePdu::attachmentType() const {
  return static_cast<DtVcObjectAttachment>(readU8(layout(*this).kind));
}

void DtVdcAttachablePdu::setAttachmentType(DtVcObjectAttachment kind) {
  writeU8(layout(*this).kind, static_cast<unsigned int>(kind));
}

namespace {
// Each attachTo writes the kind and the anchors it names and leaves the other anchors,
// so a later kind can fall back on them.
void writeAnchor(DtVdcAttachablePdu& pdu, int i, const DtVector64& position) {
  pdu.writeVector64(layout(pdu).position[i], position);
}
void writeAnchor(DtVdcAttachablePdu& pdu, int i, DtNetU32 objectId) {
  pdu.writeU32(layout(pdu).objectId[i], objectId);
}
void writeAnchor(DtVdcAttachablePdu& pdu, int i, const DtString& entity) {
  pdu.writeDesignator(layout(pdu).entity[i], entity);
}
// A screen position in percent sets x and y only.
void writeAnchor(DtVdcAttachablePdu& pdu, int i, const char* percent) {
  if (!percent) return;
  size_t at = layout(pdu).position[i];
  pdu.writeFloat64(at, screenFraction(percent[0]));
  pdu.writeFloat64(at + 8, screenFraction(percent[1]));
}

template <typename First>
void attach(DtVdcAttachablePdu& pdu, DtVdcAttachablePdu::DtVcObjectAttachment kind,
            const First& first) {
  pdu.setAttachmentType(kind);
  writeAnchor(pdu, 0, first);
}
template <typename First, typename Second>
void attach(DtVdcAttachablePdu& pdu, DtVdcAttachablePdu::DtVcObjectAttachment kind,
            const First& first, const Second& second) {
  attach(pdu, kind, first);
  writeAnchor(pdu, 1, second);
}
}  // namespace

void DtVdcAttachablePdu::attachTo(const char* percent) {
  attach(*this, DtVcObjectNoAttach, percent);
}

void DtVdcAttachablePdu::attachTo(const char* percent1, const char* percent2) {
  attach(*this, DtVcObjectNoAttachNoAttach, percent1, percent2);
}

void DtVdcAttachablePdu::attachTo(const DtVector64& position) {
  attach(*this, DtVcObjectNoAttach, position);
}

void DtVdcAttachablePdu::attachTo(DtNetU32 objectId) {
  attach(*this, DtVcObjectAttachedToObject, objectId);
}

void DtVdcAttachablePdu::attachTo(const DtString& entity) {
  attach(*this, DtVcObjectAttachedToEntity, entity);
}

void DtVdcAttachablePdu::attachTo(DtNetU32 objectId1, DtNetU32 objectId2) {
  attach(*this, DtVcObjectAttachedToObjectObject, objectId1, objectId2);
}

void DtVdcAttachablePdu::attachTo(const DtString& entity1, const DtString& entity2) {
  attach(*this, DtVcObjectAttachedToEntityEntity, entity1, entity2);
}

void DtVdcAttachablePdu::attachTo(const DtVector64& position1, const DtVector64& position2) {
  attach(*this, DtVcObjectNoAttachNoAttach, position1, position2);
}

void DtVdcAttachablePdu::attachTo(const DtString& entity1, DtNetU32 objectId2) {
  attach(*this, DtVcObjectAttachedToEntityObject, entity1, objectId2);
}

void DtVdcAttachablePdu::attachTo(DtNetU32 objectId1, const DtString& entity2) {
  attach(*this, DtVcObjectAttachedToObjectEntity, objectId1, entity2);
}

void DtVdcAttachablePdu::attachTo(const DtString& entity1, const DtVector64& position2) {
  attach(*this, DtVcObjectAttachedToEntityNoAttach, entity1, position2);
}

void DtVdcAttachablePdu::attachTo(const DtVector64& position1, const DtString& entity2) {
  attach(*this, DtVcObjectAttachedToNoAttachEntity, position1, entity2);
}

void DtVdcAttachablePdu::attachTo(DtNetU32 objectId1, const DtVector64& position2) {
  attach(*this, DtVcObjectAttachedToObjectNoAttach, objectId1, position2);
}

void DtVdcAttachablePdu::attachTo(const DtVector64& position1, DtNetU32 objectId2) {
  attach(*this, DtVcObjectAttachedToNoAttachObject, position1, objectId2);
}

namespace {
// Offset of the relative location of attach point `which`; `which` is trusted, as the
// viewer's own tools pass only 0 and 1. A negative sum wraps to an offset no buffer has.
size_t relativeLocationAt(const vdclayout::Attachable& l, int which) {
  return static_cast<size_t>(static_cast<long>(l.relativeLocation) +
                             static_cast<long>(l.relativeLocationStep) * which);
}
}  // namespace

void DtVdcAttachablePdu::setRelativeLocation(unsigned char percent, int which) {
  writeU8(relativeLocationAt(layout(*this), which), percent);
}

unsigned char DtVdcAttachablePdu::relativeLocation(int which) const {
  return static_cast<unsigned char>(readU8(relativeLocationAt(layout(*this), which)));
}

void DtVdcAttachablePdu::setRelativeLocations(unsigned char percent) {
  setRelativeLocation(percent, 0);
  setRelativeLocation(percent, 1);
}

void DtVdcAttachablePdu::setOffset(const DtVector64& offset) {
  writeVector64(layout(*this).offset, offset);
}

DtVector64 DtVdcAttachablePdu::offset() const {
  return readVector64(layout(*this).offset);
}

DtString DtVdcAttachablePdu::attachEntityId(int i) const {
  return validPoint(i) ? readDesignator(layout(*this).entity[i]) : DtString();
}

DtNetU32 DtVdcAttachablePdu::attachObjectId(int i) const {
  return validPoint(i) ? readU32(layout(*this).objectId[i]) : 0u;
}

DtVector64 DtVdcAttachablePdu::position(int i) const {
  return validPoint(i) ? readVector64(layout(*this).position[i]) : DtVector64();
}

void DtVdcAttachablePdu::setColor(unsigned char* rgba) {
  if (rgba) writeBytes(layout(*this).color, rgba, 4);
}

unsigned char* DtVdcAttachablePdu::color() const {
  return bytesAt(layout(*this).color, 4);
}

void DtVdcAttachablePdu::setFlashing(bool flashing) {
  setFlagBits(kFlashingBit, flashing);
}

bool DtVdcAttachablePdu::flashing() const {
  return (readU8(flagByteOffset()) & kFlashingBit) != 0;
}

size_t DtVdcAttachablePdu::flagByteOffset() const {
  return layout(*this).flags;
}

void DtVdcAttachablePdu::setFlagBits(unsigned int mask, bool on) {
  size_t at = flagByteOffset();
  unsigned int flags = readU8(at);
  writeU8(at, on ? (flags | mask) : (flags & ~mask));
}

const char* DtVdcAttachablePdu::typeString(DtVcObjectAttachment kind) {
  static const char* const names[] = {"DtVcObjectNoAttach",
                                      "DtVcObjectNoAttachNoAttach",
                                      "DtVcObjectAttachedToEntity",
                                      "DtVcObjectAttachedToObject",
                                      "DtVcObjectAttachedToEntityNoAttach",
                                      "DtVcObjectAttachedToObjectNoAttach",
                                      "DtVcObjectAttachedToNoAttachEntity",
                                      "DtVcObjectAttachedToNoAttachObject",
                                      "DtVcObjectAttachedToEntityObject",
                                      "DtVcObjectAttachedToObjectEntity",
                                      "DtVcObjectAttachedToEntityEntity",
                                      "DtVcObjectAttachedToObjectObject"};
  int k = static_cast<int>(kind);
  return k >= 0 && k < static_cast<int>(sizeof names / sizeof names[0]) ? names[k] : "UnknownEnum";
}

void DtVdcAttachablePdu::printData() const {
  DtVistrelDrawControlPdu::printData();
  DtVcObjectAttachment kind = attachmentType();
  DtDumpEnum("Attachment type", typeString(kind), kind);
  DtDumpString("pos1", position(0).string());
  DtDumpString("pos2", position(1).string());
  DtDumpString("AttachEntityId1", attachEntityId(0));
  DtDumpString("AttachEntityId2", attachEntityId(1));
  DtDumpInteger("AttachObjectId1", attachObjectId(0));
  DtDumpInteger("AttachObjectId2", attachObjectId(1));
  DtDumpInteger("RelativeLocation(percent)", relativeLocation(0));
  DtDumpString("Offset", offset().string());
  Rgba c(color());
  DtDumpString("Color", "");
  DtDumpInteger(" r", c.value[0]);
  DtDumpInteger(" g", c.value[1]);
  DtDumpInteger(" b", c.value[2]);
  DtDumpInteger(" a", c.value[3]);
  DtDumpBoolean("Flashing", flashing());
}

const char* DtVdcAttachablePdu::string() const {
  DtVector64 p1 = position(0);
  DtVector64 p2 = position(1);
  DtString entity1 = attachEntityId(0);
  DtString entity2 = attachEntityId(1);
  Rgba c(color());
  // Fields 8 and 9 carry position 1's y and z where position 2's belong; the viewers'
  // readers expect exactly this line, so it stays.
  return formatText(
      "%u %d %d %f %f %f %f %f %f %s %s %u %u %d %d %d %d %d %d",
      static_cast<unsigned int>(objectId()), static_cast<int>(static_cast<unsigned int>(type())),
      static_cast<int>(attachmentType()), p1.x(), p1.y(), p1.z(), p2.x(), p1.y(), p1.z(),
      entity1.c_str(), entity2.c_str(), static_cast<unsigned int>(attachObjectId(0)),
      static_cast<unsigned int>(attachObjectId(1)), static_cast<int>(relativeLocation(0)),
      c.value[0], c.value[1], c.value[2], c.value[3], flashing() ? 1 : 0);
}

void DtVdcAttachablePdu::setFromString(const char* text) {
  unsigned int id = 0, object1 = 0, object2 = 0;
  int drawType = 0, kind = 0, relative = 0, flash = 0;
  float p[6] = {0, 0, 0, 0, 0, 0};
  int rgba[4] = {0, 0, 0, 0};
  vdctext::EntityName entity1, entity2;
  std::sscanf(text ? text : "",
              "%u %d %d %f %f %f %f %f %f " VDC_ENTITY " " VDC_ENTITY " %u %u %d %d %d %d %d %d",
              &id, &drawType, &kind, &p[0], &p[1], &p[2], &p[3], &p[4], &p[5], entity1.text,
              entity2.text, &object1, &object2, &relative, &rgba[0], &rgba[1], &rgba[2], &rgba[3],
              &flash);
  setObjectId(id);
  setType(static_cast<unsigned int>(drawType));
  attachTo(DtVector64(p[0], p[1], p[2]), DtVector64(p[3], p[4], p[5]));
  attachTo(DtString(entity1.text), DtString(entity2.text));
  attachTo(DtNetU32(object1), DtNetU32(object2));
  // The three calls above each wrote a kind of their own; the line's kind wins.
  setAttachmentType(static_cast<DtVcObjectAttachment>(kind));
  unsigned char bytes[4];
  for (int i = 0; i < 4; ++i) bytes[i] = static_cast<unsigned char>(rgba[i]);
  setColor(bytes);
  setFlashing(flash == 1);
}
