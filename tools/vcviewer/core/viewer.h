#pragma once
// The stand-in viewer as a whole: it takes every control PDU heard on the federation,
// keeps those addressed to it, applies them to its eyepoint, settings and scene, answers
// state requests, and says in one line what it did with each.
#include <cstdint>
#include <deque>
#include <functional>
#include <memory>
#include <string>

#include "entities.h"
#include "eyepoint.h"
#include "placement.h"
#include "scene.h"
#include "settings.h"
#include "viewState.h"
#include "vistrelControl.h"

namespace vcviewer {

/// One command the viewer took, as the live page lists it.
struct CommandRecord {
  double time = 0;  // when it arrived, seconds since the epoch
  std::string sender;
  std::string pdu;      // "DtVcOrbit", "DtVdc3DLine", ...
  std::string summary;  // the line the viewer said about it
};

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
  /// The federation's entities; the connection tells them what it hears.
  Entities& entities() { return entities_; }
  const Entities& entities() const { return entities_; }
  /// Where the eye is now: it moves with time and with the entities whenever it is
  /// looked at, not only when a command comes.
  const Eyepoint& eyepoint() const { return eyepoint_.update(view_, entities_, entities_.now()); }

  /// The scene as a standalone SVG document.
  std::string svg() const;
  /// The scene, the eyepoint, the settings and the recent commands as one JSON document,
  /// with the SVG picture inside, for the live page.
  std::string json() const;
  /// The world as the pictures see it now: the eyepoint, the local frame (moved when the
  /// eyepoint or the entities went far) and the entities' trails (sampled).
  WorldView world() const;

  /// The last commands taken, oldest first; at most kRecentCommands of them, so a busy
  /// sender cannot grow the viewer.
  static constexpr size_t kRecentCommands = 60;
  const std::deque<CommandRecord>& recent() const { return recent_; }
  /// Counts the commands taken: whoever shows the viewer's state redraws when it moves.
  std::uint64_t revision() const { return revision_; }

 private:
  bool addressedToUs(const DtVistrelControlPdu& pdu) const;
  void answerState(const DtVistrelControlPdu& request);
  void say(const std::string& line) const;
  void record(const DtVistrelControlPdu& pdu, const std::string& line);

  std::string id_;
  std::string name_;
  Sender send_;
  Printer print_;
  bool verbose_ = false;
  ViewState view_;
  Settings settings_;
  Scene scene_;
  Entities entities_;
  mutable EyepointTracker eyepoint_;
  mutable FrameKeeper frame_;
  mutable Trails trails_;
  std::deque<CommandRecord> recent_;
  std::uint64_t revision_ = 0;
};

}  // namespace vcviewer
