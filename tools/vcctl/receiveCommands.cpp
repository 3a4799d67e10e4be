// Commands that wait for what the federation sends: the viewer's answer to a state
// request, and everything at all.
#include <chrono>
#include <cinttypes>

#include "commands.h"
#include "link.h"
#include "output.h"
#include "values.h"

namespace vcctl {

using DtCmdLine::Type;

namespace {

using Clock = std::chrono::steady_clock;

double secondsLeft(Clock::time_point deadline) {
  return std::chrono::duration<double>(deadline - Clock::now()).count();
}

// Lets the connection deliver until `done` or the deadline; false when the connection
// went away meanwhile.
template <typename Done>
bool drainUntil(DtExerciseConn& conn, Clock::time_point deadline, Done done) {
  while (!done()) {
    double left = secondsLeft(deadline);
    if (left <= 0) return true;
    conn.drainInput(left < 0.1 ? left : 0.1);
    if (!conn.connected()) return false;
  }
  return true;
}

struct StateWait {
  bool answered = false;
};

void onAnswer(const DtVistrelControlPdu& pdu, void* usr) {
  auto* wait = static_cast<StateWait*>(usr);
  // Other controllers' commands reach the same callback; only a status report answers.
  if (wait->answered || !pdu.statusCommand()) return;
  wait->answered = true;
  DtString viewer = pdu.viewerId();
  out("answer from %s: %s\n", viewer.c_str(), describe(pdu).c_str());
  pdu.printData();
}

int state(const Args& a, Link& link) {
  double timeout = a.real("timeout");
  DtVistrelRemoteController& controller = link.controller();
  StateWait wait;
  const DtString viewer(link.settings().viewer);
  controller.addViewModeChangeCallback(&onAnswer, &wait, viewer);
  controller.requestCurrentViewMode(viewer);
  DtExerciseConn* conn = link.connection();
  if (!conn) {
    out("dry run: no answer to wait for\n");
    return 0;
  }
  auto deadline = Clock::now() + std::chrono::duration_cast<Clock::duration>(
                                     std::chrono::duration<double>(timeout));
  bool alive = drainUntil(*conn, deadline, [&] { return wait.answered; });
  controller.removeViewModeChangeCallback(&onAnswer, &wait, viewer);
  if (!alive) throw LinkError("connection lost: " + std::string(conn->errorText().c_str()));
  if (wait.answered) return 0;
  complain("no answer from viewer %s within %g s", viewer.c_str(), timeout);
  return 1;
}

struct Listener {
  long long seen = 0;
  long long limit = -1;  // none
};

void onPdu(DtVistrelControlInteraction* inter, void* usr) {
  auto* listener = static_cast<Listener*>(usr);
  // One drain delivers everything that has arrived: the PDUs beyond the count are
  // dropped here, not printed.
  if (listener->limit >= 0 && listener->seen >= listener->limit) return;
  ++listener->seen;
  const DtVistrelControlPdu* pdu = inter->vcPdu();
  if (!pdu) {
    out("--- %lld: a ViewControl interaction without a control PDU\n", listener->seen);
    return;
  }
  DtString sender = pdu->senderId();
  DtString viewer = pdu->viewerId();
  out("--- %lld: %s from %s to %s, %d bytes\n", listener->seen, describe(*pdu).c_str(),
      sender.c_str(), viewer.c_str(), pdu->length());
  pdu->printData();
}

int listen(const Args& a, Link& link) {
  if (link.settings().dryRun) a.fail("there is nothing to listen to in a dry run");
  long long count = a.has("count") ? a.integer("count") : -1;
  double seconds = a.has("seconds") ? a.real("seconds") : -1;
  link.acceptNewFederation();
  DtExerciseConn* conn = link.connection();
  Listener listener;
  listener.limit = count;
  DtVistrelControlInteraction::addCallback(conn, &onPdu, &listener);
  // The subscription is in place once addCallback returns: a script may start sending
  // as soon as it sees this line.
  out("listening on %s as %s\n", link.settings().federation.c_str(), link.settings().name.c_str());
  auto deadline = seconds >= 0 ? Clock::now() + std::chrono::duration_cast<Clock::duration>(
                                                    std::chrono::duration<double>(seconds))
                               : Clock::time_point::max();
  bool alive = drainUntil(*conn, deadline, [&] { return count >= 0 && listener.seen >= count; });
  DtVistrelControlInteraction::removeCallback(conn, &onPdu, &listener);
  if (!alive) throw LinkError("connection lost: " + std::string(conn->errorText().c_str()));
  return 0;
}

}  // namespace

void declareReceiveCommands(Command& root, Registry& registry) {
  Command* c =
      &registry.add(root, "state", "ask the viewer for its mode and print its answer", &state);
  c->option("timeout", Type::Real, "how long to wait for the answer, in seconds")
      .placeholder("S")
      .range(0, 3600)
      .defaultValue("5");
  c->details(
      "Exits 1 when no answer comes in time. Ask one viewer with 'vcctl --viewer ID state'.");

  c = &registry.add(root, "listen", "print every control PDU that arrives", &listen);
  c->option("count", Type::Integer, "stop after this many PDUs").placeholder("N").range(1, 1e12);
  c->option("seconds", Type::Real, "stop after this long").placeholder("S").range(0, 1e9);
  c->details(
      "Without --count or --seconds it listens until interrupted. A federation that does not\n"
      "exist yet is created (with a note on stderr), so that senders can join it later.");
}

}  // namespace vcctl
