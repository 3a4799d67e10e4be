// What the RTI's cores, links and FDD reader speak among themselves: plain numbers for
// handles, views of bytes for values, and one error type naming the fault. An API facade
// turns these into its own handle, value and exception classes, so that everything below
// it is written once for any API.
#ifndef VCRTI_CORE_TYPES_H
#define VCRTI_CORE_TYPES_H

#include <cstddef>
#include <cstdint>
#include <exception>
#include <string>
#include <utility>
#include <vector>

namespace vcrti {

// Object instances are numbered by the federate that registers them: its federate handle
// in the upper half, its own count in the lower, so a registration needs no round trip.
using InstanceHandle = std::uint64_t;

struct ValueView {
  const unsigned char* data = nullptr;
  std::size_t size = 0;
};

// Parameters of an interaction or attributes of an update, in the order given.
using HandleValues = std::vector<std::pair<std::uint32_t, ValueView>>;
// A set of attribute handles: sorted, no duplicates.
using HandleSet = std::vector<std::uint32_t>;

// Every fault a service can report. The names are those of the standard's exceptions, so
// a facade maps each to its own class of the same name.
#define VCRTI_FAULTS(X)               \
  X(AttributeNotDefined)              \
  X(AttributeNotOwned)                \
  X(CouldNotDecode)                   \
  X(CouldNotOpenFDD)                  \
  X(DeletePrivilegeNotHeld)           \
  X(ErrorReadingFDD)                  \
  X(FederateAlreadyExecutionMember)   \
  X(FederateNotExecutionMember)       \
  X(FederateOwnsAttributes)           \
  X(FederatesCurrentlyJoined)         \
  X(FederationExecutionAlreadyExists) \
  X(FederationExecutionDoesNotExist)  \
  X(IllegalName)                      \
  X(InteractionClassNotDefined)       \
  X(InteractionClassNotPublished)     \
  X(InteractionParameterNotDefined)   \
  X(InvalidAttributeHandle)           \
  X(InvalidInteractionClassHandle)    \
  X(InvalidObjectClassHandle)         \
  X(InvalidParameterHandle)           \
  X(NameNotFound)                     \
  X(ObjectClassNotDefined)            \
  X(ObjectClassNotPublished)          \
  X(ObjectInstanceNameInUse)          \
  X(ObjectInstanceNameNotReserved)    \
  X(ObjectInstanceNotKnown)           \
  X(RTIinternalError)

// Faults that only the 1516-2010 API names: the 2000 facade reports each as the nearest
// fault it has (FOM modules come only through the 2010 API).
#define VCRTI_FAULTS_2010(X) X(InconsistentFDD)

enum class Fault {
#define VCRTI_FAULT_ENUM(name) name,
  VCRTI_FAULTS(VCRTI_FAULT_ENUM) VCRTI_FAULTS_2010(VCRTI_FAULT_ENUM)
#undef VCRTI_FAULT_ENUM
};

class RtiError : public std::exception {
 public:
  RtiError(Fault fault, std::wstring message) : fault_(fault), message_(std::move(message)) {}
  Fault fault() const noexcept { return fault_; }
  const std::wstring& message() const noexcept { return message_; }
  const char* what() const noexcept override { return "RTI error"; }

 private:
  Fault fault_;
  std::wstring message_;
};

// What the other members of a federation tell a federate, delivered on its evoke.
// Values point into the RTI's receive buffer and are valid until the call returns.
class FederateCallbacks {
 public:
  virtual ~FederateCallbacks() = default;
  virtual void receiveInteraction(std::uint32_t cls, const HandleValues& params, ValueView tag) = 0;
  virtual void nameReservation(const std::wstring& name, bool succeeded) = 0;
  virtual void discoverInstance(InstanceHandle instance, std::uint32_t cls,
                                const std::wstring& name) = 0;
  virtual void reflectAttributes(InstanceHandle instance, const HandleValues& attributes,
                                 ValueView tag) = 0;
  virtual void removeInstance(InstanceHandle instance, ValueView tag) = 0;
  virtual void provideAttributes(InstanceHandle instance, const HandleSet& attributes,
                                 ValueView tag) = 0;
};

// What a facade says of a service of its API that this RTI does not provide: the same
// words whichever API it is called through.
inline std::wstring unsupportedService(const wchar_t* operation) {
  return std::wstring(operation) + L" is not supported by this RTI";
}

// What becomes of a resigning federate's instances.
enum class ResignMode : std::uint32_t {
  DeleteInstances = 0,  // removed for everyone
  KeepInstances = 1,    // stay, owned by nobody
  RefuseIfOwning = 2,   // the federate may not leave while it owns any
};

}  // namespace vcrti

#endif
