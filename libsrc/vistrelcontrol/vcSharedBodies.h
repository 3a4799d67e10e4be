#pragma once
// Body layouts that two view-control classes have in common, stated once (internal).
#include "vcPduPatterns.h"

namespace vcbody {

using vcpdu::Field;
using vcpdu::Kind;

// Tether, mimic and offset mimic: the eyepoint's offset from the entity (singles at 156)
// and its orientation, then the entity and its marking text. The classes name the offset
// differently (topo-up offset, offset) and so label it themselves.
namespace pose {
constexpr int kLength = 308;
constexpr size_t kOffset = 156;
inline constexpr Field kOrientation{Kind::Angles, 168, "Orientation:"};
inline constexpr Field kAttachId{Kind::Designator, 180, "AttachTo:"};
inline constexpr Field kMarking{Kind::Marking, 244, "AttachTo (MarkingText):"};
}  // namespace pose

// Tether-track and mimic-track: one entity to ride with at an offset, one to look at.
namespace twoEntity {
constexpr int kLength = 424;
inline constexpr Field kOffset{Kind::Vector32, 156, "Offset:"};
inline constexpr Field kAttachId{Kind::Designator, 168, "AttachId:"};
inline constexpr Field kTrackId{Kind::Designator, 232, "TrackId:"};
inline constexpr Field kAttachMarking{Kind::Marking, 296, "AttachId (MarkingText):"};
inline constexpr Field kTrackMarking{Kind::Marking, 360, "TrackId (MarkingText):"};
inline constexpr Field kFields[] = {kOffset, kAttachId, kTrackId, kAttachMarking, kTrackMarking};
inline constexpr vcpdu::Body kBody = vcpdu::body(kLength, kFields);
}  // namespace twoEntity

// Compass and pivot: the six singles that put the eyepoint on its sphere. Their labels,
// the lower-case "pitch:" included, are printed exactly so (orbit says "Pitch:").
namespace sphere {
inline constexpr Field kRadius{Kind::Float, 156, "Radius:"};
inline constexpr Field kBodyHeading{Kind::Float, 160, "BodyHeading:"};
inline constexpr Field kPitch{Kind::Float, 164, "pitch:"};
inline constexpr Field kHeadingOffset{Kind::Float, 168, "HeadingOff:"};
inline constexpr Field kPitchOffset{Kind::Float, 172, "PitchOff:"};
inline constexpr Field kRoll{Kind::Float, 176, "Roll:"};
}  // namespace sphere

}  // namespace vcbody
