#pragma once
// The eyepoint of the stand-in viewer: its mode and every parameter of every mode, changed
// by the view-control PDUs the way a viewer changes them, and reported back as a status
// PDU when asked.
#include <memory>
#include <string>
#include <vector>

#include "viewModeFields.h"
#include "vistrelControl.h"

namespace vcviewer {

/// An entity the eyepoint refers to, with the marking text that came along with its id.
struct EntityRef {
  std::string id;
  std::string marking;
};

/// Every parameter of every eyepoint mode. The modes share them by meaning, as their
/// ignore bits do: switching from tether to orbit without an attach id keeps the entity
/// the eye was on, and an orbit heading is the same heading an absolute view turns.
struct EyeParams {
  DtVector64 location;  // absolute and track; where moves act
  double heading = 0, pitch = 0, roll = 0;
  DtVector64 topoUpOffset;  // tether
  DtVector64 offset;        // mimic, offset mimic, tether-track, mimic-track
  DtVector64 pivotPoint;
  double radius = 0, bodyHeading = 0, headingOffset = 0, pitchOffset = 0;
  double azimuthRate = 0, radialOffset = 0;
  EntityRef primary;    // the attached entity, or the tracked one of track mode
  EntityRef secondary;  // the tracked entity of tether-track and mimic-track
};

class ViewState {
 public:
  /// Applies a mode, modeless or move PDU and returns the line saying what changed;
  /// returns an empty text for any other PDU. A set ignore bit keeps the current value of
  /// its field (component by component for vectors). Moves step `stepsize` metres and
  /// turn `turnrate` degrees.
  std::string apply(const DtVistrelControlPdu& pdu, double stepsize, double turnrate);

  /// A new status report (command + 500) of the current mode carrying all its
  /// parameters: the ignore bits of those fields are clear, every other bit is set. The
  /// viewer and sender ids are left for the caller.
  std::unique_ptr<DtVistrelControlPdu> status() const;

  /// The mode and its current parameters, worded as the lines are.
  std::string describe() const;

  DtViewerCommand mode() const { return mode_; }
  /// "orbit", "wide-group", ...: vcctl's name of the mode.
  std::string modeName() const;
  const EyeParams& params() const { return eye_; }
  bool wideGroup() const { return wideGroup_; }
  const std::vector<std::string>& group() const { return group_; }

 private:
  std::string applyMove(const DtMoveVCPdu& pdu, double stepsize, double turnrate);
  /// The description of the mode in force.
  const vcmodes::Mode& current() const;

  DtViewerCommand mode_ = DtVcAbsolute;
  bool wideGroup_ = false;
  EyeParams eye_;
  std::vector<std::string> group_;
};

}  // namespace vcviewer
