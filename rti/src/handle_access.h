// The implementation's door into handle values: handles are positions in the FDD tables
// (interaction classes, parameters, ...) or federate numbers. Each handle class admits
// its own friend class (FederateHandleFriend, ...); HandleAccess reaches all of them
// through one interface. The same for either API: VCRTI_API names the namespace of the
// handles (rti1516 unless the facade being built says otherwise).
#ifndef VCRTI_HANDLE_ACCESS_H
#define VCRTI_HANDLE_ACCESS_H

#include <RTI/Exception.h>
#include <RTI/Handle.h>
#include <RTI/VariableLengthData.h>

#include <cstdint>
#include <string>

#ifndef VCRTI_API
#define VCRTI_API rti1516
#endif

namespace VCRTI_API {

template <class H>
struct HandleFriendOf;

#define VCRTI_HANDLE_FRIEND(HandleKind)                                                     \
  class HandleKind##Friend {                                                                \
   public:                                                                                  \
    static HandleKind make(unsigned long long value) noexcept { return HandleKind(value); } \
    static unsigned long long value(HandleKind const& h) noexcept { return h._value; }      \
  };                                                                                        \
  template <>                                                                               \
  struct HandleFriendOf<HandleKind> {                                                       \
    using type = HandleKind##Friend;                                                        \
  };

VCRTI_HANDLE_FRIEND(FederateHandle)
VCRTI_HANDLE_FRIEND(ObjectClassHandle)
VCRTI_HANDLE_FRIEND(InteractionClassHandle)
VCRTI_HANDLE_FRIEND(ObjectInstanceHandle)
VCRTI_HANDLE_FRIEND(AttributeHandle)
VCRTI_HANDLE_FRIEND(ParameterHandle)
VCRTI_HANDLE_FRIEND(DimensionHandle)
VCRTI_HANDLE_FRIEND(MessageRetractionHandle)
VCRTI_HANDLE_FRIEND(RegionHandle)
#undef VCRTI_HANDLE_FRIEND

struct HandleAccess {
  template <class H>
  static H make(unsigned long long value) noexcept {
    return HandleFriendOf<H>::type::make(value);
  }
  template <class H>
  static unsigned long long value(const H& h) noexcept {
    return HandleFriendOf<H>::type::value(h);
  }
};

// The same door for the facades' own use.
template <class H>
H makeHandle(std::uint64_t v) {
  return HandleAccess::make<H>(v);
}

template <class H>
std::uint64_t valueOf(const H& h) {
  return HandleAccess::value(h);
}

// Member handles are 32 bits below the API; one the API holds wider names nothing (the
// value that stands for no class or member).
template <class H>
std::uint32_t memberOf(const H& h) {
  const std::uint64_t v = valueOf(h);
  return v > 0xFFFFFFFFu ? 0xFFFFFFFFu : static_cast<std::uint32_t>(v);
}

// A handle as its encode() writes it: eight bytes, most significant first.
template <class H>
H decodeHandle(VariableLengthData const& data, const wchar_t* kind) {
  if (data.size() != 8 || data.data() == nullptr)
    throw CouldNotDecode(std::wstring(L"an encoded ") + kind + L" has 8 bytes, not " +
                         std::to_wstring(data.size()));
  const auto* b = static_cast<const unsigned char*>(data.data());
  std::uint64_t v = 0;
  for (int i = 0; i < 8; ++i) v = (v << 8) | b[i];
  return makeHandle<H>(v);
}

}  // namespace VCRTI_API

#endif
