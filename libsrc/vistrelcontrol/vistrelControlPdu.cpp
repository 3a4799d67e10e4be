#include "vistrelControlPdu.h"

#include <cstdarg>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <vector>

#include "dtOutput.h"
#include "rawPdu.h"
#include "vcNames.h"

namespace {
constexpr size_t kCommandOffset = 146;
constexpr size_t kIgnoreFlagsOffset = 152;

// Set once the banner has been printed; a plain flag, as control PDUs are built on the
// application's thread.
bool bannerPrinted = false;

void printBannerOnce() {
  if (bannerPrinted) return;
  bannerPrinted = true;
  DtInfo("Using Brennholt vistrel control API version %s for Quillon %s.\n", "1.2", "5.8");
}
}  // namespace

const char* DtEnumString(DtViewerCommand command) {
  static const char* const requests[] = {
      "DtVcAbsolute", "DtVcTether",  "DtVcCompass",     "DtVcMimic",      "DtVcOffsetMimic",
      "DtVcOrbit",    "DtVcTrack",   "DtVcTetherTrack", "DtVcMimicTrack", "DtVcGroup",
      "DtVcModeless", "DtVcOptions", "DtVcPivot",       "DtVcMove",       "DtVcRequestState"};
  static const char* const reports[] = {
      "DtVcAbsoluteStatus",    "DtVcTetherStatus", "DtVcCompassStatus", "DtVcMimicStatus",
      "DtVcOffsetMimicStatus", "DtVcOrbitStatus",  "DtVcTrackStatus",   "DtVcTetherTrackStatus",
      "DtVcMimicTrackStatus",  "DtVcGroupStatus",  "DtVcModelessStatus"};
  int c = static_cast<int>(command);
  if (c >= 0 && c <= 14) return requests[c];
  if (c >= 500 && c <= 510) return reports[c - 500];
  if (c == 512) return "DtVcPivotStatus";
  const char* drawType = vcnames::drawType(c);
  return drawType ? drawType : "UnknownEnum";
}

// ------------------------------------------------------------------ DtVistrelControlPdu

DtVistrelControlPdu::DtVistrelControlPdu() {
  text_[0] = '\0';
  printBannerOnce();
}

DtVistrelControlPdu::DtVistrelControlPdu(const DtVistrelControlPdu& other)
    : DtPdu(other), idCache_(other.idCache_) {
  std::memcpy(text_, other.text_, kTextSize);
}

DtVistrelControlPdu& DtVistrelControlPdu::operator=(const DtVistrelControlPdu& other) {
  if (this != &other) {
    DtPdu::operator=(other);
    idCache_ = other.idCache_;
    std::memcpy(text_, other.text_, kTextSize);
  }
  return *this;
}

DtVistrelControlPdu::~DtVistrelControlPdu() = default;

const DtString& DtVistrelControlPdu::viewerId() const {
  idCache_ = readDesignator(kViewerIdOffset);
  return idCache_;
}

void DtVistrelControlPdu::setViewerId(const DtString& id) {
  writeDesignator(kViewerIdOffset, id);
}

const DtString& DtVistrelControlPdu::senderId() const {
  idCache_ = readDesignator(kSenderIdOffset);
  return idCache_;
}

void DtVistrelControlPdu::setSenderId(const DtString& id) {
  writeDesignator(kSenderIdOffset, id);
}

DtViewerCommand DtVistrelControlPdu::viewerCommand() const {
  return static_cast<DtViewerCommand>(readU16(kCommandOffset));
}

void DtVistrelControlPdu::setViewerCommand(DtViewerCommand command) {
  writeU16(kCommandOffset, static_cast<unsigned int>(command) & 0xFFFFu);
}

unsigned long DtVistrelControlPdu::ignoreFlags() const {
  return static_cast<unsigned long>(
      static_cast<long>(static_cast<int32_t>(readU32(kIgnoreFlagsOffset))));
}

void DtVistrelControlPdu::setIgnoreFlags(unsigned long flags) {
  writeU32(kIgnoreFlagsOffset, static_cast<unsigned int>(flags & 0xFFFFFFFFul));
}

bool DtVistrelControlPdu::statusCommand() const {
  int c = viewerCommand();
  return c >= 500 && c <= 600;
}

void DtVistrelControlPdu::setStatusCommand(bool status) {
  int c = viewerCommand();
  // Clearing tests only for 500 or more, so a draw-control command loses 500 as well;
  // viewers depend on exactly this arithmetic.
  if (status && c <= 499) setViewerCommand(static_cast<DtViewerCommand>(c + 500));
  if (!status && c >= 500) setViewerCommand(static_cast<DtViewerCommand>(c - 500));
}

bool DtVistrelControlPdu::isNumber(const char* text) {
  if (!text) return false;
  int digits = 0;
  int points = 0;
  for (const char* p = text; *p; ++p) {
    if (*p >= '0' && *p <= '9') {
      ++digits;
    } else if (*p == '.') {
      ++points;
    } else if (*p == '-' && p == text) {
      // a sign is allowed in front only
    } else {
      return false;
    }
  }
  return digits > 0 && points <= 1;
}

void DtVistrelControlPdu::printData() const {
  DtDumpString("ViewerId", viewerId().c_str());
  DtDumpString("SenderId", senderId().c_str());
  DtViewerCommand command = viewerCommand();
  DtDumpEnum("Command", DtEnumString(command), command);
  unsigned long flags = ignoreFlags();
  DtDumpHexBytes("IgnoreFlags", &flags, 4);
}

int DtVistrelControlPdu::internalGetPduKind() const {
  return kPduKind;
}

void DtVistrelControlPdu::setFromString(const char*) {}

const char* DtVistrelControlPdu::string() const {
  text_[0] = '\0';
  return text_;
}

const char* DtVistrelControlPdu::formatText(const char* format, ...) const {
  va_list args;
  va_start(args, format);
  int n = std::vsnprintf(text_, kTextSize, format, args);
  va_end(args);
  if (n < 0) text_[0] = '\0';
  return text_;
}

// ------------------------------------------------------------------ creation

namespace {
// Received bytes may sit at any address (vcviewer and the fuzz targets hand them over at
// arbitrary offsets), so the header is never read as a struct: the kind is read byte by
// byte, and the pointer becomes a control PDU's without a class cast, which would
// already assume the header's alignment. The creators read raw bytes byte-wise too.
DtNetViewControlPdu* controlPduBytes(const DtNetPduHeader* bytes) {
  if (!bytes || DtPdu::headerKind(bytes) != static_cast<unsigned>(DtVistrelControlPdu::kPduKind))
    return nullptr;
  return reinterpret_cast<DtNetViewControlPdu*>(const_cast<DtNetPduHeader*>(bytes));
}
}  // namespace

DtVistrelControlPdu* DtVistrelControlPdu::createFromNet(const DtNetPduHeader* bytes,
                                                        DtBufferPlaceHolder* holder,
                                                        DtPduFactory* factory) {
  DtNetViewControlPdu* raw = controlPduBytes(bytes);
  if (!raw) return nullptr;
  if (DtVistrelControlPdu* pdu = createViewControl(raw, holder, factory)) return pdu;
  if (DtVistrelControlPdu* pdu = createDrawControlCurrent(raw, holder, factory)) return pdu;
  return new DtUnknownVistrelControlPdu(raw, holder, factory);
}

DtVistrelControlPdu* DtVistrelControlPdu::create(const DtNetPduHeader* bytes,
                                                 DtBufferPlaceHolder* holder,
                                                 DtPduFactory* factory) {
  DtNetViewControlPdu* raw = controlPduBytes(bytes);
  if (!raw) return nullptr;
  if (DtVistrelControlPdu* pdu = createViewControl(raw, holder, factory)) return pdu;
  if (DtVistrelControlPdu* pdu = createDrawControl(raw, holder, factory)) return pdu;
  return new DtUnknownVistrelControlPdu(raw, holder, factory);
}

DtVistrelControlPdu* DtVistrelControlPdu::createFromBytes(const void* bytes, size_t size,
                                                          bool current) {
  if (!bytes || size < 3) return nullptr;
  // Bytes that end inside the header may still hold its length field, which the
  // creators read from the padded copy: the claim is read the same way here.
  size_t claimed = static_cast<size_t>(headerLength(bytes, size));
  if (claimed < static_cast<size_t>(kHeaderSize)) claimed = kHeaderSize;
  const auto* header = static_cast<const DtNetPduHeader*>(bytes);
  // The wrapping constructors read as many bytes as the header claims; when the sender
  // sent fewer, they read a zero-padded copy instead of memory that is not ours.
  std::vector<unsigned char> padded;
  if (claimed > size) {
    padded.assign(claimed, 0);
    std::memcpy(padded.data(), bytes, size);
    header = reinterpret_cast<const DtNetPduHeader*>(padded.data());
  }
  return current ? createFromNet(header) : create(header);
}

DtVistrelControlPdu* DtVistrelControlPdu::createDrawControl(DtNetViewControlPdu* bytes,
                                                            DtBufferPlaceHolder* holder,
                                                            DtPduFactory*) {
  return drawControlParamVersion(bytes) != 0 ? createDrawControlCurrent(bytes, holder, nullptr)
                                             : createDrawControlV0(bytes, holder, nullptr);
}

unsigned int DtVistrelControlPdu::drawControlParamVersion(const DtNetViewControlPdu* bytes) {
  if (!bytes || rawpdu::u32(bytes, 152) != 0x600DF00Du) return 0;
  return rawpdu::u16(bytes, 156);
}

DtVistrelControlPdu* DtNewVistrelControlPdu(DtViewerCommand command) {
  if (DtVistrelControlPdu* pdu = DtNewViewControlPdu(command)) return pdu;
  return DtNewDrawControlPdu(command);
}

// ------------------------------------------------------------------ request state, unknown

DtRequestStateVCPdu::DtRequestStateVCPdu(DtBufferPlaceHolder* holder) {
  initPdu(kHeaderLength, holder);
  setViewerCommand(DtVcRequestState);
}

DtRequestStateVCPdu::DtRequestStateVCPdu(const DtNetViewControlPdu* bytes,
                                         DtBufferPlaceHolder* holder, DtPduFactory* factory) {
  initPdu(bytes, holder, factory);
}

DtRequestStateVCPdu::~DtRequestStateVCPdu() = default;

DtUnknownVistrelControlPdu::DtUnknownVistrelControlPdu(const DtNetViewControlPdu* bytes,
                                                       DtBufferPlaceHolder* holder,
                                                       DtPduFactory* factory) {
  initPdu(bytes, holder, factory);
}

DtUnknownVistrelControlPdu::~DtUnknownVistrelControlPdu() = default;
