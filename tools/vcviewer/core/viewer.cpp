#include "viewer.h"

#include <chrono>
#include <utility>

#include "sceneJson.h"
#include "svgWriter.h"
#include "textFormat.h"

namespace vcviewer {

Viewer::Viewer(std::string id, std::string name, Sender send, Printer print)
    : id_(std::move(id)),
      name_(std::move(name)),
      send_(std::move(send)),
      print_(std::move(print)) {}

void Viewer::say(const std::string& line) const {
  if (print_) print_(line);
}

// The drawer never addresses its PDUs, so an empty viewer id means every viewer, as
// "0:0:0" does.
bool Viewer::addressedToUs(const DtVistrelControlPdu& pdu) const {
  const DtString& viewer = pdu.viewerId();
  return viewer == id_ || viewer == "0:0:0" || viewer.isNull();
}

void Viewer::receive(const DtVistrelControlPdu& pdu) {
  DtViewerCommand command = pdu.viewerCommand();
  if (!addressedToUs(pdu)) {
    if (verbose_)
      say(std::string("ignored ") + DtEnumString(command) + " for " +
          word(pdu.viewerId().stdString()));
    return;
  }
  // Other viewers' reports reach us too; they are not commands.
  if (pdu.statusCommand()) {
    if (verbose_)
      say(std::string("ignored report ") + DtEnumString(command) + " from " +
          word(pdu.senderId().stdString()));
    return;
  }
  std::string line;
  if (auto* draw = dynamic_cast<const DtVistrelDrawControlPdu*>(&pdu)) {
    line = scene_.apply(*draw);
  } else if (auto* options = dynamic_cast<const DtOptionsPdu*>(&pdu)) {
    line = settings_.apply(*options);
  } else if (command == DtVcRequestState) {
    answerState(pdu);
    return;
  } else {
    line = view_.apply(pdu, settings_.stepsize(), settings_.turnrate());
  }
  if (line.empty()) line = "ignored unknown command " + std::to_string(static_cast<int>(command));
  say(line);
  record(pdu, line);
}

void Viewer::record(const DtVistrelControlPdu& pdu, const std::string& line) {
  CommandRecord r;
  r.time =
      std::chrono::duration<double>(std::chrono::system_clock::now().time_since_epoch()).count();
  r.sender = pdu.senderId().stdString();
  r.pdu = DtEnumString(pdu.viewerCommand());
  r.summary = line;
  recent_.push_back(std::move(r));
  if (recent_.size() > kRecentCommands) recent_.pop_front();
  ++revision_;
}

void Viewer::answerState(const DtVistrelControlPdu& request) {
  std::unique_ptr<DtVistrelControlPdu> report = view_.status();
  report->setViewerId(id_);
  report->setSenderId(name_);
  if (send_) send_(*report);
  std::string line = std::string("state -> ") + DtEnumString(report->viewerCommand());
  say(line);
  record(request, line);
}

WorldView Viewer::world() const {
  const double now = entities_.now();
  const Eyepoint& eye = eyepoint_.update(view_, entities_, now);
  trails_.sample(entities_, now);
  return WorldView{entities_, eye, frame_.update(eye, entities_, now), trails_, now};
}

std::string Viewer::svg() const {
  return renderSvg(id_, view_, settings_, scene_, world());
}

std::string Viewer::json() const {
  const WorldView w = world();
  return renderJson(id_, view_, settings_, scene_, w, recent_, revision_,
                    renderSvg(id_, view_, settings_, scene_, w));
}

}  // namespace vcviewer
