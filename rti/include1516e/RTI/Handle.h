#ifndef RTI_Handle_h
#define RTI_Handle_h

#include <RTI/Exception.h>
#include <RTI/SpecificConfig.h>
#include <RTI/VariableLengthData.h>
#include <cstddef>
#include <iosfwd>
#include <string>

// One class per kind of handle, for type safety; all have the same members. A handle is
// a small value holding its number, copied and compared without allocating. A
// default-constructed handle is invalid and equal to every other invalid handle of its
// kind; only the RTI makes valid ones (federates decode them with the ambassador's
// decode*Handle). Every member is defined in the library.
#define RTI1516E_DEFINE_HANDLE_CLASS(HandleKind)                       \
  class HandleKind##Friend;                                            \
  class RTI_EXPORT HandleKind {                                        \
   public:                                                             \
    HandleKind();                                                      \
    ~HandleKind() noexcept;                                            \
    HandleKind(HandleKind const& rhs);                                 \
    HandleKind& operator=(HandleKind const& rhs);                      \
    bool isValid() const;                                              \
    bool operator==(HandleKind const& rhs) const;                      \
    bool operator!=(HandleKind const& rhs) const;                      \
    bool operator<(HandleKind const& rhs) const;                       \
    long hash() const;                                                 \
    /* Eight bytes, most significant first. */                         \
    VariableLengthData encode() const;                                 \
    void encode(VariableLengthData& buffer) const;                     \
    /* CouldNotEncode when bufferSize is less than encodedLength(). */ \
    size_t encode(void* buffer, size_t bufferSize) const;              \
    size_t encodedLength() const;                                      \
    std::wstring toString() const;                                     \
                                                                       \
   private:                                                            \
    friend class HandleKind##Friend;                                   \
    explicit HandleKind(unsigned long long value) : _value(value) {}   \
    unsigned long long _value;                                         \
  };                                                                   \
  RTI_EXPORT std::wostream& operator<<(std::wostream&, HandleKind const&);

namespace rti1516e {
RTI1516E_DEFINE_HANDLE_CLASS(FederateHandle)
RTI1516E_DEFINE_HANDLE_CLASS(ObjectClassHandle)
RTI1516E_DEFINE_HANDLE_CLASS(InteractionClassHandle)
RTI1516E_DEFINE_HANDLE_CLASS(ObjectInstanceHandle)
RTI1516E_DEFINE_HANDLE_CLASS(AttributeHandle)
RTI1516E_DEFINE_HANDLE_CLASS(ParameterHandle)
RTI1516E_DEFINE_HANDLE_CLASS(DimensionHandle)
RTI1516E_DEFINE_HANDLE_CLASS(MessageRetractionHandle)
RTI1516E_DEFINE_HANDLE_CLASS(RegionHandle)
}  // namespace rti1516e

#undef RTI1516E_DEFINE_HANDLE_CLASS

#endif
