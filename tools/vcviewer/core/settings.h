#pragma once
// The viewer's display and behaviour settings, switched by options PDUs: each option whose
// presence bit is set is applied, the others keep their values.
#include <map>
#include <string>

#include "vistrelControl.h"

namespace vcviewer {

class Settings {
 public:
  /// Applies every present option in option order and returns the line saying what
  /// changed ("option stepsize=2.5 fog=on").
  std::string apply(const DtOptionsPdu& pdu);

  /// The value of a setting as the lines print it ("on", "2.5", "\"Desert\""), or empty
  /// when no options PDU has set it yet.
  std::string value(const std::string& name) const;
  const std::map<std::string, std::string>& values() const { return values_; }

  /// Metres per step of a move command.
  double stepsize() const { return stepsize_; }
  /// Degrees per turn command.
  double turnrate() const { return turnrate_; }
  /// How far the model and texture sets were cycled from the current one: +1 per "next",
  /// -1 per "previous"; naming a current set starts again from 0.
  int modelSetStep() const { return modelSetStep_; }
  int textureSetStep() const { return textureSetStep_; }
  /// An options PDU told the viewer to exit.
  bool exitRequested() const { return exit_; }

 private:
  void set(const std::string& name, const std::string& value, std::string& line);

  std::map<std::string, std::string> values_;
  double stepsize_ = 1.0;
  double turnrate_ = 1.0;
  int modelSetStep_ = 0;
  int textureSetStep_ = 0;
  bool exit_ = false;
};

}  // namespace vcviewer
