// The library endpoint: the stream is orbit commands of a DtVistrelRemoteController
// (312-byte PDUs), heard by the other end's controller in a view-mode callback. A ping
// is an orbit command with a negative radius and its number in the heading; the other
// messages are track commands whose track id spells them out.
#include <cstdio>
#include <cstring>

#include "endpoint.h"
#include "vistrelControl.h"

namespace vcbench {

namespace {

// Pings are numbered in a float: exact below 2^24.
constexpr std::uint64_t kPingModulus = 1u << 24;
const char* const kPrefix = "vcbench ";

class LibraryEndpoint : public Endpoint {
 public:
  LibraryEndpoint(const Settings& settings, Handler& handler) : handler_(handler) {
    DtExerciseConnStatus status;
    conn_ = std::make_unique<DtExerciseConn>(settings.federation.c_str(), settings.federate.c_str(),
                                             static_cast<DtFomMapper*>(nullptr),
                                             settings.fdd.c_str(), &status);
    if (!status.ok) throw std::runtime_error(status.message.c_str());
    controller_ = std::make_unique<DtVistrelRemoteController>(
        conn_.get(), DtVistrelRemoteController::SEND_TO_ALL);
    controller_->setControllerId(settings.federate.c_str());
    controller_->addViewModeChangeCallback(&LibraryEndpoint::onPdu, this,
                                           DtVistrelRemoteController::SEND_TO_ALL);
  }

  ~LibraryEndpoint() override {
    controller_.reset();
    conn_.reset();
  }

  void sendData(std::uint64_t) override {
    controller_->setOrbitMode(&entity_, &radius_, &heading_, &pitch_, &rate_);
  }

  void send(Kind kind, std::uint64_t a, std::uint64_t b) override {
    if (kind == Kind::Ping) {
      float radius = -1.0f;
      float number = static_cast<float>(a % kPingModulus);
      controller_->setOrbitMode(&entity_, &radius, &number, &pitch_, &rate_);
      return;
    }
    char text[64];
    std::snprintf(text, sizeof text, "%s%d %llu %llu", kPrefix, static_cast<int>(kind),
                  static_cast<unsigned long long>(a), static_cast<unsigned long long>(b));
    DtString id(text);
    controller_->setTrackMode(&id, nullptr);
  }

  void poll(double waitSeconds) override {
    conn_->drainInput(waitSeconds > 0 ? waitSeconds : 0.0);
    if (!conn_->connected()) throw std::runtime_error(conn_->errorText().c_str());
  }

 private:
  static void onPdu(const DtVistrelControlPdu& pdu, void* usr) {
    static_cast<LibraryEndpoint*>(usr)->received(pdu);
  }

  void received(const DtVistrelControlPdu& pdu) {
    switch (pdu.viewerCommand()) {
      case DtVcOrbit: {
        // createFromNet makes orbit commands DtOrbitVCPdu objects.
        const auto& orbit = static_cast<const DtOrbitVCPdu&>(pdu);
        if (orbit.radius() >= 0) {
          handler_.onMessage(Message{Kind::Data, 0, 0});
        } else {
          handler_.onMessage(Message{Kind::Ping, static_cast<std::uint64_t>(orbit.heading()), 0});
        }
        return;
      }
      case DtVcTrack: {
        const DtString id = static_cast<const DtTrackVCPdu&>(pdu).trackId();
        int kind = 0;
        unsigned long long a = 0, b = 0;
        if (std::strncmp(id.c_str(), kPrefix, std::strlen(kPrefix)) == 0 &&
            std::sscanf(id.c_str() + std::strlen(kPrefix), "%d %llu %llu", &kind, &a, &b) == 3)
          handler_.onMessage(Message{static_cast<Kind>(kind), a, b});
        return;
      }
      default:
        return;
    }
  }

  Handler& handler_;
  std::unique_ptr<DtExerciseConn> conn_;
  std::unique_ptr<DtVistrelRemoteController> controller_;
  DtString entity_{"1:2:3"};
  float radius_ = 120.0f;
  float heading_ = 0.5f;
  float pitch_ = -0.3f;
  float rate_ = 0.1f;
};

}  // namespace

std::unique_ptr<Endpoint> makeLibraryEndpoint(const Settings& settings, Handler& handler) {
  return std::make_unique<LibraryEndpoint>(settings, handler);
}

}  // namespace vcbench
