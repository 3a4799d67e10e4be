// The implementation's door into handle values: handles are positions in the FDD tables
// (interaction classes, parameters, ...) or federate numbers. Each handle class admits
// its own friend class (FederateHandleFriend, ...); HandleAccess reaches all of them
// through one interface. The same for either API: VCRTI_API names the namespace of the
// handles (rti1516 unless the facade being built says otherwise).
#ifndef VCRTI_HANDLE_ACCESS_H
#define VCRTI_HANDLE_ACCESS_H

#include <RTI/Handle.h>

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

}  // namespace VCRTI_API

#endif
