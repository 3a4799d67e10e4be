#include "link.h"

#include <cstdio>
#include <utility>

#include "output.h"
#include "toolSupport.h"

namespace vcctl {

/// The transport of a dry run: it shows the bytes a command would put on the wire, and
/// what they say when read back the way a viewer reads them.
class PduPrinter : public DtCustomRemoteControlSender {
 public:
  void send(const char* pdu, int length) override {
    out("hex %s\n", toHex(pdu, static_cast<size_t>(length)).c_str());
    std::unique_ptr<DtVistrelControlPdu> copy(
        DtVistrelControlPdu::createFromBytes(pdu, static_cast<size_t>(length)));
    if (copy) copy->printData();
  }
};

/// Every command of the controller, and (through KeepDrawnSender) every drawing, leaves
/// through the controller's virtual send: the one place to report each PDU and to notice
/// a connection that went away underneath.
class ConfirmingController : public DtVistrelRemoteController {
 public:
  using DtVistrelRemoteController::DtVistrelRemoteController;

  void send(const DtVistrelControlPdu& pdu) const override {
    DtExerciseConn* conn = exerciseConn();
    if (!conn) {
      out("would send %s to %s, %d bytes\n", describe(pdu).c_str(), targetVistrelId().c_str(),
          pdu.length());
    }
    DtVistrelRemoteController::send(pdu);
    if (!conn) return;
    if (!conn->connected())
      throw LinkError("connection to " + std::string(conn->execName()) +
                      " lost: " + conn->errorText().c_str());
    out("sent %s to %s\n", describe(pdu).c_str(), targetVistrelId().c_str());
  }
};

/// The drawer removes from the viewers every object it still holds when it is
/// destroyed, so a tool that exits right after drawing would wipe out its own drawing.
/// The drawer therefore sends through this forwarder, which is muted before the drawer
/// goes: its farewell remove commands end here, and the drawings stay until a `remove`
/// command asks for it. Forwarding through the controller also addresses the drawings
/// to --viewer, which the drawer alone never does.
class KeepDrawnSender : public DtCustomRemoteControlSender {
 public:
  explicit KeepDrawnSender(const DtVistrelRemoteController& controller) : controller_(controller) {}

  void send(const char* pdu, int length) override {
    if (muted_) return;
    std::unique_ptr<DtVistrelControlPdu> copy(
        DtVistrelControlPdu::createFromBytes(pdu, static_cast<size_t>(length)));
    if (copy) controller_.send(*copy);
  }
  void mute() { muted_ = true; }

 private:
  const DtVistrelRemoteController& controller_;
  bool muted_ = false;
};

Link::Link(Settings settings) : settings_(std::move(settings)) {}

Link::~Link() {
  if (keepDrawn_) keepDrawn_->mute();
}

DtVistrelRemoteController& Link::controller() {
  open();
  return *controller_;
}

DtVistrelRemoteDrawer& Link::drawer() {
  open();
  return *drawer_;
}

DtExerciseConn* Link::connection() {
  open();
  return conn_.get();
}

void Link::keep(std::unique_ptr<DtVdcObject> object) {
  kept_.push_back(std::move(object));
}

void Link::close() {
  if (!conn_ || conn_->resign()) return;
  throw LinkError(std::string(conn_->errorText().c_str()) +
                  ": what was sent last may not have reached any federate");
}

void Link::open() {
  if (controller_) return;
  const DtString viewer(settings_.viewer);
  if (settings_.dryRun) {
    printer_ = std::make_unique<PduPrinter>();
    controller_ = std::make_unique<ConfirmingController>(printer_.get(), viewer);
  } else {
    DtExerciseConnStatus status;
    auto conn = std::make_unique<DtExerciseConn>(
        settings_.federation.c_str(), settings_.name.c_str(), static_cast<DtFomMapper*>(nullptr),
        settings_.fdd.c_str(), &status);
    if (!status.ok || !conn->connected())
      throw LinkError(status.message.isNull() ? "cannot join " + settings_.federation
                                              : std::string(status.message.c_str()));
    // Sending into a model without the class would be accepted and go nowhere.
    std::string problem = vctools::viewControlProblem(*conn, settings_.fdd);
    if (!problem.empty()) throw LinkError(problem);
    // Finding no federation to join means a mistyped name far more often than a viewer
    // that has yet to come: whatever went into it could reach no one.
    if (conn->createdFederation()) {
      const std::string federation = "federation \"" + settings_.federation + "\" did not exist";
      if (waitsForOthers_)
        complain("note: %s; vcctl created it and waits for others to join", federation.c_str());
      else if (settings_.allowNewFederation)
        complain("note: %s; vcctl created it, so no federate can receive what it sends",
                 federation.c_str());
      else
        throw LinkError("nothing sent: " + federation +
                        ", so no viewer is in it and no federate could receive anything (check "
                        "the name, or pass --allow-new-federation)");
    }
    DtVistrelControlRegister(conn.get());
    conn_ = std::move(conn);
    controller_ = std::make_unique<ConfirmingController>(conn_.get(), viewer);
  }
  controller_->setControllerId(settings_.name.c_str());
  keepDrawn_ = std::make_unique<KeepDrawnSender>(*controller_);
  drawer_ =
      std::make_unique<DtVistrelRemoteDrawer>(keepDrawn_.get(), DtString(settings_.name), viewer);
}

std::string describe(const DtVistrelControlPdu& pdu) {
  auto* draw = dynamic_cast<const DtVistrelDrawControlPdu*>(&pdu);
  if (!draw) return DtEnumString(pdu.viewerCommand());
  unsigned int type = draw->type();
  std::string name = DtVistrelDrawControlPdu::typeString(static_cast<int>(type));
  // The dumps' type names leave out the attribute commands; a report should not.
  static const char* const kAttributeCommands[] = {
      "DtVdcCommandShowAttribute", "DtVdcCommandShowTemplateAttribute", "DtVdcCommandHideAttribute",
      "DtVdcCommandHideTemplateAttribute"};
  if (type >= DtVdcCommandShowAttribute && type <= DtVdcCommandHideTemplateAttribute)
    name = kAttributeCommands[type - DtVdcCommandShowAttribute];
  else if (name == "UnknownEnum")
    name = "draw type " + std::to_string(type);
  std::string id = std::to_string(draw->objectId().value());
  if (auto* update = dynamic_cast<const DtVdcAttributeUpdatePduBase*>(draw))
    return name + " attribute " + id + " of panel " + std::to_string(update->groupId().value());
  if (auto* command = dynamic_cast<const DtVdcCommandPduBase*>(draw)) {
    if (type == DtVdcCommandAddToLayer || type == DtVdcCommandRemoveFromLayer)
      return name + " object " + id + " layer " + std::to_string(command->layerId().value());
    if (type >= DtVdcCommandShowAttribute && type <= DtVdcCommandHideTemplateAttribute)
      return name + " attribute " + id + " of panel " + std::to_string(command->layerId().value());
  }
  return name + " object " + id;
}

std::string toHex(const void* bytes, size_t count) {
  static const char digits[] = "0123456789abcdef";
  const unsigned char* b = static_cast<const unsigned char*>(bytes);
  std::string text;
  text.reserve(count * 2);
  for (size_t i = 0; i < count; ++i) {
    text += digits[b[i] >> 4];
    text += digits[b[i] & 15];
  }
  return text;
}

}  // namespace vcctl
