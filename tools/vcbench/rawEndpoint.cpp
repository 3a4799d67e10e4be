// The raw endpoint: ViewControl interactions whose one parameter holds `size` bytes
// that look like a control PDU (its 12-byte header, kind 202), carrying vcbench's own
// message in the first bytes of the body. Only the standard API is used (joining and
// leaving through the toolkit's helpers, which know both APIs' ways).
#include "dtRtiSession.h"

#include <RTI/Exception.h>

#include <cstring>
#include <stdexcept>
#include <string>
#include <vector>

#include "endpoint.h"
#include "wire.h"

namespace vcbench {

namespace {

std::string narrow(const std::wstring& s) {
  std::string out;
  for (wchar_t c : s) out += c < 128 ? static_cast<char>(c) : '?';
  return out;
}

class RawEndpoint : public Endpoint, public DtRtiReceiver {
 public:
  RawEndpoint(const Settings& settings, Handler& handler)
      : handler_(handler),
        federation_(settings.federation),
        data_(wire::buffer(static_cast<size_t>(settings.size))),
        ping_(wire::buffer(static_cast<size_t>(settings.size))),
        control_(wire::buffer(wire::kMessageSize)) {
    try {
      rti_ = DtRtiJoin(settings.federation, settings.federate, settings.fdd, *this);
      cls_ = rti_->getInteractionClassHandle(L"ViewControl");
      param_ = rti_->getParameterHandle(cls_, L"ViewControlPdu");
      rti_->publishInteractionClass(cls_);
      rti_->subscribeInteractionClass(cls_, true);
    } catch (const dtrti::Exception& e) {
      throw std::runtime_error("cannot join " + settings.federation + ": " + narrow(e.what()));
    }
    wire::mark(data_.data(), Kind::Data, 0, 0);
  }

  // The last to leave destroys the federation, through its own ambassador: a second one
  // made just for that, while this one's connection is still closing, can hang some RTIs
  // (OpenRTI's local node is shutting down as the new one asks to connect through it).
  ~RawEndpoint() override {
    try {
      DtRtiLeave(*rti_, federation_);
    } catch (const dtrti::Exception&) {
      // Gone already: nothing to leave.
    }
  }

  void sendData(std::uint64_t seq) override {
    wire::setA(data_.data(), seq);
    guarded([&] { sendBuffer(dataValues_, data_); });
  }

  void send(Kind kind, std::uint64_t a, std::uint64_t b) override {
    if (kind == Kind::Ping) {
      wire::mark(ping_.data(), kind, a, b);
      guarded([&] { sendBuffer(pingValues_, ping_); });
    } else {
      wire::mark(control_.data(), kind, a, b);
      guarded([&] { sendBuffer(controlValues_, control_); });
    }
  }

  // Waiting takes the single-callback form, which returns with the first callback, and
  // what else has come is taken at once after it.
  void poll(double waitSeconds) override {
    guarded([&] {
      if (waitSeconds > 0 && !rti_->evokeCallback(waitSeconds)) return;
      rti_->evokeMultipleCallbacks(0.0, 0.001);
    });
  }

  void interactionReceived(dtrti::InteractionClassHandle,
                           dtrti::ParameterHandleValueMap const& values) override {
    auto it = values.find(param_);
    if (it == values.end()) return;
    Message m;
    if (wire::read(it->second.data(), it->second.size(), m)) handler_.onMessage(m);
  }

 private:
  // The value points at our buffer as it is now. It is pointed again before every send:
  // an RTI may take a copy of the bytes when it is given the pointer rather than when it
  // sends, and then a pointer set once would send the first contents for ever.
  void sendBuffer(dtrti::ParameterHandleValueMap& values, std::vector<unsigned char>& buffer) {
    values[param_].setDataPointer(buffer.data(), static_cast<unsigned long>(buffer.size()));
    rti_->sendInteraction(cls_, values, tag_);
  }

  // The runs report std::exception; an RTI exception would get past them and end the
  // process in std::terminate when the hub goes away.
  template <typename Call>
  void guarded(Call call) {
    try {
      call();
    } catch (const dtrti::Exception& e) {
      throw std::runtime_error("connection to " + federation_ + " lost: " + narrow(e.what()));
    }
  }

  Handler& handler_;
  std::string federation_;
  std::unique_ptr<dtrti::RTIambassador> rti_;
  dtrti::InteractionClassHandle cls_;
  dtrti::ParameterHandle param_;
  std::vector<unsigned char> data_, ping_, control_;
  dtrti::ParameterHandleValueMap dataValues_, pingValues_, controlValues_;
  dtrti::VariableLengthData tag_;
};

}  // namespace

std::unique_ptr<Endpoint> makeRawEndpoint(const Settings& settings, Handler& handler) {
  return std::make_unique<RawEndpoint>(settings, handler);
}

}  // namespace vcbench
