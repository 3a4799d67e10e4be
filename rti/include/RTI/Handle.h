#ifndef RTI_Handle_h
#define RTI_Handle_h

#include <RTI/SpecificConfig.h>
#include <RTI/VariableLengthData.h>
#include <iosfwd>
#include <string>

namespace rti1516 {
// Gives the RTI implementation (and only it) access to a handle's value.
struct HandleAccess;
}  // namespace rti1516

// A handle is a small value: copying and comparing it never allocates, which matters on
// the send and receive paths. A default-constructed handle is invalid.
#define RTI1516_DEFINE_HANDLE_CLASS(HandleKind)                                            \
  class RTI_EXPORT HandleKind {                                                            \
   public:                                                                                 \
    HandleKind() noexcept : _value(~0ull) {}                                               \
    bool isValid() const noexcept { return _value != ~0ull; }                              \
    bool operator==(HandleKind const& rhs) const noexcept { return _value == rhs._value; } \
    bool operator!=(HandleKind const& rhs) const noexcept { return _value != rhs._value; } \
    bool operator<(HandleKind const& rhs) const noexcept { return _value < rhs._value; }   \
    /* Eight bytes, most significant first. */                                             \
    VariableLengthData encode() const;                                                     \
    unsigned long encodedLength() const noexcept { return 8; }                             \
    unsigned long encode(void* buffer, unsigned long bufferSize) const;                    \
    std::wstring toString() const;                                                         \
                                                                                           \
   private:                                                                                \
    friend struct HandleAccess;                                                            \
    explicit HandleKind(unsigned long long value) noexcept : _value(value) {}              \
    unsigned long long _value;                                                             \
  };                                                                                       \
  RTI_EXPORT std::wostream& operator<<(std::wostream&, HandleKind const&);

namespace rti1516 {
RTI1516_DEFINE_HANDLE_CLASS(FederateHandle)
RTI1516_DEFINE_HANDLE_CLASS(ObjectClassHandle)
RTI1516_DEFINE_HANDLE_CLASS(InteractionClassHandle)
RTI1516_DEFINE_HANDLE_CLASS(ObjectInstanceHandle)
RTI1516_DEFINE_HANDLE_CLASS(AttributeHandle)
RTI1516_DEFINE_HANDLE_CLASS(ParameterHandle)
RTI1516_DEFINE_HANDLE_CLASS(DimensionHandle)
RTI1516_DEFINE_HANDLE_CLASS(MessageRetractionHandle)
RTI1516_DEFINE_HANDLE_CLASS(RegionHandle)
}  // namespace rti1516

#endif
