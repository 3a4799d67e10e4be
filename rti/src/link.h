// A joined federate's path to the other members of its federation: another thread of this
// process (LocalLink) or the hub (HubLink). Everything travels as protocol frames either
// way, so the federate core delivers both the same way.
#ifndef VCRTI_LINK_H
#define VCRTI_LINK_H

#include "byte_buffer.h"
#include "core_types.h"
#include "fdd_model.h"
#include "protocol.h"

#include <cstdint>
#include <memory>

namespace vcrti {

class Link {
 public:
  virtual ~Link() = default;

  virtual std::uint32_t federateHandle() const = 0;
  virtual std::shared_ptr<const FddModel> model() const = 0;

  // In force when the call returns: whatever anyone sends afterwards reaches this federate.
  virtual void subscribeInteractions(std::uint32_t cls, bool on) = 0;
  virtual void subscribeObjects(std::uint32_t cls, bool on) = 0;

  // To every other member subscribed to the class or to one of its ancestors, in the
  // order of the calls. The caller has checked the class and parameters.
  virtual void sendInteraction(std::uint32_t cls, const HandleValues& params, ValueView tag) = 0;
  // To every other member that knows the instance or subscribes to its class, in the order
  // of the calls. The caller has checked that it owns the instance and its attributes.
  virtual void updateAttributes(InstanceHandle instance, const HandleValues& values,
                                ValueView tag) = 0;
  // Any other frame for the federation (object management), already checked and encoded.
  virtual void post(const unsigned char* frame, std::size_t size) = 0;

  // Appends the complete frames received so far to `into`, waiting up to `waitSeconds`
  // when there are none. Returns whether anything was appended.
  virtual bool fetch(ByteBuffer& into, double waitSeconds) = 0;

  // Leaves the federation; the link is unusable afterwards.
  virtual void resign(ResignMode mode) = 0;
};

// Appends one frame of a handle, a tag and handle/value entries: an Interaction (class),
// an Update (instance), or, with empty values, a RequestUpdate (instance) or
// RequestClassUpdate (class). Throws RtiError when it would exceed the frame cap.
void encodeValues(ByteBuffer& out, wire::MsgType type, std::uint64_t handle,
                  const HandleValues& values, ValueView tag);
void encodeHandles(ByteBuffer& out, wire::MsgType type, std::uint64_t handle,
                   const HandleSet& handles, ValueView tag);

}  // namespace vcrti

#endif
