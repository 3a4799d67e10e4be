#pragma once
// The stand-in viewer as a whole: it takes every control PDU heard on the federation,
// keeps those addressed to it, applies them to its eyepoint, settings and scene, answers
// state requests, and says in one line what it did with each.
#include <functional>
#include <memory>
#include <string>

#include "scene.h"
#include "settings.h"
#include "viewState.h"
#include "vistrelControl.h"

namespace vcviewer {

class Viewer {
 public:
  /// How answers leave the viewer (the federation, or a test's recorder).
  using Sender = std::function<void(const DtVistrelControlPdu&)>;
  /// Where the viewer's lines go.
  using Printer = std::function<void(const std::string&)>;

  /// `id` is the viewer id it answers to; `name` signs its answers.
  Viewer(std::string id, std::string name, Sender send, Printer print);

  /// Lines about PDUs that are not for this viewer too.
  void setVerbose(bool verbose) { verbose_ = verbose; }

  /// Takes one received PDU. PDUs for other viewers, status reports of other viewers and
  /// commands this viewer does not know are not applied.
  void receive(const DtVistrelControlPdu& pdu);

  /// An options PDU told the viewer to exit.
  bool exitRequested() const { return settings_.exitRequested(); }

  const std::string& id() const { return id_; }
  const ViewState& view() const { return view_; }
  const Settings& settings() const { return settings_; }
  const Scene& scene() const { return scene_; }

  /// The scene as a standalone SVG document.
  std::string svg() const;

 private:
  bool addressedToUs(const DtVistrelControlPdu& pdu) const;
  void answerState(const DtVistrelControlPdu& request);
  void say(const std::string& line) const;

  std::string id_;
  std::string name_;
  Sender send_;
  Printer print_;
  bool verbose_ = false;
  ViewState view_;
  Settings settings_;
  Scene scene_;
};

}  // namespace vcviewer
