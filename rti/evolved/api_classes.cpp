// Out-of-line parts of the 1516-2010 API's handles, abstract bases and supplemental
// records. Keeping the key functions here anchors the type information in the library,
// so that what it throws and calls crosses the library boundary by type.
#include <RTI/FederateAmbassador.h>
#include <RTI/LogicalTime.h>
#include <RTI/LogicalTimeFactory.h>
#include <RTI/LogicalTimeInterval.h>
#include <RTI/NullFederateAmbassador.h>
#include <RTI/RTI1516.h>
#include <RTI/RTIambassador.h>
#include <RTI/RangeBounds.h>

#include <ostream>
#include <sstream>

namespace rti1516e {

std::wstring rtiName() {
  return L"vistrel embedded rti1516e";
}
std::wstring rtiVersion() {
  return L"1.0.0";
}

// -------------------------------------------------------------------------- Handles

// An invalid handle holds the one value no FDD table position or federate number takes.
constexpr unsigned long long kInvalidHandle = ~0ull;
constexpr size_t kEncodedHandleLength = 8;

#define RTI1516E_DEFINE_HANDLE_MEMBERS(HandleKind)                                         \
  HandleKind::HandleKind() : _value(kInvalidHandle) {}                                     \
  HandleKind::~HandleKind() noexcept = default;                                            \
  HandleKind::HandleKind(HandleKind const& rhs) = default;                                 \
  HandleKind& HandleKind::operator=(HandleKind const& rhs) = default;                      \
  bool HandleKind::isValid() const {                                                       \
    return _value != kInvalidHandle;                                                       \
  }                                                                                        \
  bool HandleKind::operator==(HandleKind const& rhs) const {                               \
    return _value == rhs._value;                                                           \
  }                                                                                        \
  bool HandleKind::operator!=(HandleKind const& rhs) const {                               \
    return _value != rhs._value;                                                           \
  }                                                                                        \
  bool HandleKind::operator<(HandleKind const& rhs) const {                                \
    return _value < rhs._value;                                                            \
  }                                                                                        \
  long HandleKind::hash() const {                                                          \
    return static_cast<long>(_value ^ (_value >> 32));                                     \
  }                                                                                        \
  VariableLengthData HandleKind::encode() const {                                          \
    unsigned char b[kEncodedHandleLength];                                                 \
    encode(b, sizeof b);                                                                   \
    return VariableLengthData(b, sizeof b);                                                \
  }                                                                                        \
  void HandleKind::encode(VariableLengthData& buffer) const {                              \
    unsigned char b[kEncodedHandleLength];                                                 \
    encode(b, sizeof b);                                                                   \
    buffer.setData(b, sizeof b);                                                           \
  }                                                                                        \
  size_t HandleKind::encodedLength() const {                                               \
    return kEncodedHandleLength;                                                           \
  }                                                                                        \
  size_t HandleKind::encode(void* buffer, size_t bufferSize) const {                       \
    if (bufferSize < kEncodedHandleLength || buffer == nullptr)                            \
      throw CouldNotEncode(L"an encoded " L## #HandleKind L" takes 8 bytes, not " +        \
                           std::to_wstring(bufferSize));                                   \
    auto* b = static_cast<unsigned char*>(buffer);                                         \
    for (int i = 0; i < 8; ++i) b[i] = static_cast<unsigned char>(_value >> (56 - 8 * i)); \
    return kEncodedHandleLength;                                                           \
  }                                                                                        \
  std::wstring HandleKind::toString() const {                                              \
    if (!isValid()) return L## #HandleKind L"(invalid)";                                   \
    std::wostringstream os;                                                                \
    os << L## #HandleKind << L'(' << _value << L')';                                       \
    return os.str();                                                                       \
  }                                                                                        \
  std::wostream& operator<<(std::wostream& os, HandleKind const& h) {                      \
    return os << h.toString();                                                             \
  }

RTI1516E_DEFINE_HANDLE_MEMBERS(FederateHandle)
RTI1516E_DEFINE_HANDLE_MEMBERS(ObjectClassHandle)
RTI1516E_DEFINE_HANDLE_MEMBERS(InteractionClassHandle)
RTI1516E_DEFINE_HANDLE_MEMBERS(ObjectInstanceHandle)
RTI1516E_DEFINE_HANDLE_MEMBERS(AttributeHandle)
RTI1516E_DEFINE_HANDLE_MEMBERS(ParameterHandle)
RTI1516E_DEFINE_HANDLE_MEMBERS(DimensionHandle)
RTI1516E_DEFINE_HANDLE_MEMBERS(MessageRetractionHandle)
RTI1516E_DEFINE_HANDLE_MEMBERS(RegionHandle)

// ------------------------------------------------------------------- Abstract bases

LogicalTime::~LogicalTime() noexcept = default;
std::wostream& operator<<(std::wostream& os, LogicalTime const& t) {
  return os << t.toString();
}

LogicalTimeInterval::~LogicalTimeInterval() noexcept = default;
std::wostream& operator<<(std::wostream& os, LogicalTimeInterval const& t) {
  return os << t.toString();
}

LogicalTimeFactory::~LogicalTimeFactory() noexcept = default;

FederateAmbassador::FederateAmbassador() = default;
FederateAmbassador::~FederateAmbassador() noexcept = default;

RTIambassador::RTIambassador() noexcept = default;
RTIambassador::~RTIambassador() = default;

// ------------------------------------------------------------- Records of the API

FederateRestoreStatus::FederateRestoreStatus(FederateHandle const& thePreHandle,
                                             FederateHandle const& thePostHandle,
                                             RestoreStatus theStatus)
    : preRestoreHandle(thePreHandle), postRestoreHandle(thePostHandle), status(theStatus) {}

FederationExecutionInformation::FederationExecutionInformation(
    std::wstring const& theFederationExecutionName,
    std::wstring const& theLogicalTimeImplementationName)
    : federationExecutionName(theFederationExecutionName),
      logicalTimeImplementationName(theLogicalTimeImplementationName) {}

SupplementalReflectInfo::SupplementalReflectInfo()
    : hasProducingFederate(false), hasSentRegions(false) {}
SupplementalReflectInfo::SupplementalReflectInfo(FederateHandle const& theFederateHandle)
    : hasProducingFederate(true), hasSentRegions(false), producingFederate(theFederateHandle) {}
SupplementalReflectInfo::SupplementalReflectInfo(RegionHandleSet const& theRegionHandleSet)
    : hasProducingFederate(false), hasSentRegions(true), sentRegions(theRegionHandleSet) {}
SupplementalReflectInfo::SupplementalReflectInfo(FederateHandle const& theFederateHandle,
                                                 RegionHandleSet const& theRegionHandleSet)
    : hasProducingFederate(true),
      hasSentRegions(true),
      producingFederate(theFederateHandle),
      sentRegions(theRegionHandleSet) {}

SupplementalReceiveInfo::SupplementalReceiveInfo()
    : hasProducingFederate(false), hasSentRegions(false) {}
SupplementalReceiveInfo::SupplementalReceiveInfo(FederateHandle const& theFederateHandle)
    : hasProducingFederate(true), hasSentRegions(false), producingFederate(theFederateHandle) {}
SupplementalReceiveInfo::SupplementalReceiveInfo(RegionHandleSet const& theRegionHandleSet)
    : hasProducingFederate(false), hasSentRegions(true), sentRegions(theRegionHandleSet) {}
SupplementalReceiveInfo::SupplementalReceiveInfo(FederateHandle const& theFederateHandle,
                                                 RegionHandleSet const& theRegionHandleSet)
    : hasProducingFederate(true),
      hasSentRegions(true),
      producingFederate(theFederateHandle),
      sentRegions(theRegionHandleSet) {}

SupplementalRemoveInfo::SupplementalRemoveInfo() : hasProducingFederate(false) {}
SupplementalRemoveInfo::SupplementalRemoveInfo(FederateHandle const& theFederateHandle)
    : hasProducingFederate(true), producingFederate(theFederateHandle) {}

// -------------------------------------------------------------------- RangeBounds

RangeBounds::RangeBounds() : _lowerBound(0), _upperBound(0) {}
RangeBounds::RangeBounds(unsigned long lowerBound, unsigned long upperBound)
    : _lowerBound(lowerBound), _upperBound(upperBound) {}
RangeBounds::~RangeBounds() noexcept = default;
RangeBounds::RangeBounds(RangeBounds const&) = default;
RangeBounds& RangeBounds::operator=(RangeBounds const&) = default;
unsigned long RangeBounds::getLowerBound() const {
  return _lowerBound;
}
unsigned long RangeBounds::getUpperBound() const {
  return _upperBound;
}
void RangeBounds::setLowerBound(unsigned long lowerBound) {
  _lowerBound = lowerBound;
}
void RangeBounds::setUpperBound(unsigned long upperBound) {
  _upperBound = upperBound;
}

}  // namespace rti1516e
