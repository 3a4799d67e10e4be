#include "vistrelDrawControlPdu.h"

#include <vector>

#include "dtOutput.h"
#include "vcNames.h"
#include "vdcLayout.h"

namespace {
constexpr size_t kMarkerOffset = 152;
constexpr size_t kParamVersionOffset = 156;

const vdclayout::Header& layout(const DtVistrelDrawControlPdu& pdu) {
  return vdclayout::of(vdclayout::kHeader, pdu);
}
}  // namespace

DtVistrelDrawControlPdu::DtVistrelDrawControlPdu() = default;
DtVistrelDrawControlPdu::~DtVistrelDrawControlPdu() = default;

DtNetU32 DtVistrelDrawControlPdu::objectId() const {
  return readU32(layout(*this).objectId);
}

void DtVistrelDrawControlPdu::setObjectId(DtNetU32 id) {
  writeU32(layout(*this).objectId, id);
}

void DtVistrelDrawControlPdu::setType(DtNetU32 type) {
  writeU32(layout(*this).type, type);
}

DtNetU32 DtVistrelDrawControlPdu::type() const {
  return readU32(layout(*this).type);
}

unsigned int DtVistrelDrawControlPdu::paramVersion() const {
  if (readU32(kMarkerOffset) != kParamVersionMarker) return 0;
  return readU16(kParamVersionOffset);
}

void DtVistrelDrawControlPdu::setParamVersion(unsigned int version) {
  if (version == 0) return;
  writeU32(kMarkerOffset, kParamVersionMarker);
  writeU16(kParamVersionOffset, version & 0xFFFFu);
}

int DtVistrelDrawControlPdu::setInternalText(DtString text, unsigned long offset) {
  size_t n = text.length();
  if (n == 0) return 0;
  // A PDU cannot outgrow its 16-bit length field; what would lie beyond is not stored.
  size_t room = offset < static_cast<unsigned long>(kMaxLength) ? kMaxLength - offset : 0;
  if (n > room) n = room;
  changeSize(static_cast<int>(offset + n));
  writeBytes(offset, text.c_str(), n);
  return static_cast<int>(n);
}

DtString DtVistrelDrawControlPdu::internalText(int length, unsigned long offset) const {
  if (length <= 0) return DtString();
  // Lengths come from the wire; no PDU holds more than its 16-bit length can say.
  size_t n = length < kMaxLength ? static_cast<size_t>(length) : static_cast<size_t>(kMaxLength);
  std::vector<char> buffer(n + 1, '\0');
  readBytes(offset, buffer.data(), n);
  internalText_ = buffer.data();
  return internalText_;
}

const char* DtVistrelDrawControlPdu::typeString(int type) {
  const char* name = vcnames::drawType(type);
  return name ? name : "UnknownEnum";
}

void DtVistrelDrawControlPdu::printData() const {
  DtVistrelControlPdu::printData();
  DtDumpInteger("ObjectId", objectId());
  unsigned int drawType = type();
  DtDumpEnum("Type", typeString(static_cast<int>(drawType)), drawType);
  // Any marked PDU shows its version here, even one that reads with version-0 offsets.
  if (unsigned int version = paramVersion()) DtDumpInteger("Param Version", version);
}

bool DtVistrelDrawControlPdu::initFresh(int length, DtBufferPlaceHolder* holder, int command,
                                        unsigned int version) {
  initPdu(length, holder);
  setViewerCommand(static_cast<DtViewerCommand>(command));
  setParamVersion(version);
  return holder == nullptr;
}

void DtVistrelDrawControlPdu::initReceived(const DtNetViewControlPdu* bytes,
                                           DtBufferPlaceHolder* holder, DtPduFactory* factory,
                                           int command) {
  initPdu(bytes, holder, factory);
  setViewerCommand(static_cast<DtViewerCommand>(command));
}

void DtVistrelDrawControlPdu::setCountedText(size_t lengthOffset, size_t textOffset,
                                             const DtString& text) {
  writeU32(lengthOffset, static_cast<unsigned int>(setInternalText(text, textOffset)));
}

DtString DtVistrelDrawControlPdu::countedText(size_t lengthOffset, size_t textOffset) const {
  unsigned int n = readU32(lengthOffset);
  return internalText(n > static_cast<unsigned int>(kMaxLength) ? kMaxLength : static_cast<int>(n),
                      textOffset);
}

unsigned char* DtVistrelDrawControlPdu::bytesAt(size_t offset, size_t count) const {
  return writableBytes(offset, count);
}
