// A joined federate's path to the other members of its federation: another thread of this
// process (LocalLink) or the hub (HubLink). Interactions travel as protocol frames either
// way, so the ambassador delivers both the same way.
#ifndef VCRTI_LINK_H
#define VCRTI_LINK_H

#include "byte_buffer.h"
#include "fdd_model.h"

#include <RTI/Typedefs.h>

#include <cstdint>
#include <memory>

namespace vcrti {

class Link {
 public:
  virtual ~Link() = default;

  virtual std::uint64_t federateHandle() const = 0;
  virtual std::shared_ptr<const FddModel> model() const = 0;

  virtual void subscribe(std::uint32_t cls) = 0;
  virtual void unsubscribe(std::uint32_t cls) = 0;

  // To every other member subscribed to the class or to one of its ancestors, in the
  // order of the calls. The caller has checked the class and parameters.
  virtual void send(std::uint32_t cls, const rti1516::ParameterHandleValueMap& params,
                    const rti1516::VariableLengthData& tag) = 0;

  // Appends the complete frames received so far to `into`, waiting up to `waitSeconds`
  // when there are none. Returns whether anything was appended.
  virtual bool fetch(ByteBuffer& into, double waitSeconds) = 0;

  // Leaves the federation; the link is unusable afterwards.
  virtual void resign() = 0;
};

// Appends one Interaction frame. Throws RTIinternalError when it would exceed the cap.
void encodeInteraction(ByteBuffer& out, std::uint32_t cls,
                       const rti1516::ParameterHandleValueMap& params,
                       const rti1516::VariableLengthData& tag);

}  // namespace vcrti

#endif
