// Stepping and turning the eyepoint, its step size and turn rate, and switching modes
// by name.
#include <cstdlib>
#include <limits>
#include <map>

#include "commands.h"
#include "link.h"
#include "values.h"
#include "viewModeFields.h"

namespace vcctl {

using DtCmdLine::Type;

namespace {

const std::map<std::string, DtVistrelRemoteController::Direction> kDirections = {
    {"left", DtMoveVCPdu::LEFT},
    {"right", DtMoveVCPdu::RIGHT},
    {"up", DtMoveVCPdu::UP},
    {"down", DtMoveVCPdu::DOWN},
    {"forwards", DtMoveVCPdu::FORWARDS},
    {"backwards", DtMoveVCPdu::BACKWARDS},
};

// The modes that the controller can switch to by number, keeping their parameters: all
// but offset mimic, which it refuses, and the wide group, whose number is the group's.
std::map<std::string, DtViewerCommand> switchableModes() {
  std::map<std::string, DtViewerCommand> modes;
  for (const vcmodes::Mode& m : vcmodes::kModes)
    if (!m.wide && m.command != DtVcOffsetMimic) modes.emplace(m.name, m.command);
  return modes;
}
const std::map<std::string, DtViewerCommand> kModes = switchableModes();

template <typename Map>
std::vector<std::string> keysOf(const Map& map) {
  std::vector<std::string> keys;
  for (const auto& entry : map) keys.push_back(entry.first);
  return keys;
}

// "up", "down" or a number: one command for the three ways to change a rate.
struct Adjust {
  enum Kind { Up, Down, Set } kind;
  float value;
};

Adjust adjustment(const Args& args) {
  std::string word = args.text("value");
  if (word == "up") return {Adjust::Up, 0};
  if (word == "down") return {Adjust::Down, 0};
  char* end = nullptr;
  double value = std::strtod(word.c_str(), &end);
  if (word.empty() || !end || *end != '\0')
    args.fail("argument <value>: '" + word + "' is neither up, down nor a number");
  // A step or a rate of zero or less would freeze the eyepoint or turn its keys around.
  if (!(value > 0) || value > std::numeric_limits<float>::max())
    args.fail("argument <value>: '" + word + "' is not a number above 0 that fits a 32-bit float");
  return {Adjust::Set, static_cast<float>(value)};
}

int reset(const Args&, Link& link) {
  link.controller().reset();
  return 0;
}

int move(const Args& a, Link& link) {
  link.controller().moveEyepoint(kDirections.at(a.text("direction")));
  return 0;
}

int turn(const Args& a, Link& link) {
  link.controller().turnEyepoint(kDirections.at(a.text("direction")));
  return 0;
}

int place(const Args& a, Link& link) {
  std::optional<DtVector64> at = position(a, "at");
  std::optional<DtTaitBryan> orientation = angles(a, "orientation");
  // The controller quietly sends nothing without either; say so instead.
  if (!at && !orientation) a.fail("give --at, --orientation or both");
  link.controller().set(given(at), given(orientation));
  return 0;
}

int stepsize(const Args& a, Link& link) {
  Adjust adjust = adjustment(a);
  if (adjust.kind == Adjust::Up) link.controller().increaseStepsize();
  if (adjust.kind == Adjust::Down) link.controller().decreaseStepsize();
  if (adjust.kind == Adjust::Set) link.controller().setStepsize(adjust.value);
  return 0;
}

int turnrate(const Args& a, Link& link) {
  Adjust adjust = adjustment(a);
  if (adjust.kind == Adjust::Up) link.controller().increaseTurnrate();
  if (adjust.kind == Adjust::Down) link.controller().decreaseTurnrate();
  if (adjust.kind == Adjust::Set) link.controller().setTurnrate(adjust.value);
  return 0;
}

int mode(const Args& a, Link& link) {
  std::optional<DtVector64> at = position(a, "at");
  std::optional<DtTaitBryan> orientation = angles(a, "orientation");
  link.controller().setMode(kModes.at(a.text("mode")), given(at), given(orientation));
  return 0;
}

void directionArgument(Command& command) {
  command.argument("direction", Type::Text, "left, right, up, down, forwards or backwards")
      .choices(keysOf(kDirections));
}

}  // namespace

void declareMovementCommands(Command& root, Registry& registry) {
  registry.add(root, "reset", "put the eyepoint back where the viewer started", &reset);
  directionArgument(registry.add(root, "move", "move the eyepoint one step", &move));
  directionArgument(registry.add(root, "turn", "turn the eyepoint one step", &turn));

  Command* c = &registry.add(root, "set", "place the eyepoint, keeping the mode", &place);
  positionOption(*c, "at", "world location");
  anglesOption(*c, "orientation", "where the eye looks");

  c = &registry.add(root, "stepsize", "make the step size bigger, smaller or a given value",
                    &stepsize);
  c->argument("value", Type::Text, "up, down, or the step in metres (above 0)");
  c = &registry.add(root, "turnrate", "make the turn rate bigger, smaller or a given value",
                    &turnrate);
  c->argument("value", Type::Text, "up, down, or the rate in radians per step (above 0)");

  c = &registry.add(root, "mode",
                    "switch mode keeping the viewer's parameters, then place the eyepoint", &mode);
  c->argument("mode", Type::Text, "the mode").choices(keysOf(kModes));
  positionOption(*c, "at", "then place the eyepoint here");
  anglesOption(*c, "orientation", "then turn the eyepoint");
  c->details("Offset mimic cannot be chosen here: use 'vcctl turret'.");
}

}  // namespace vcctl
