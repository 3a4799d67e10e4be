#pragma once
// Where the viewer's pictures put things: the local frame they are drawn in, the place of
// each end of a drawing (a position, an entity, another drawing) and the entities' recent
// paths. The SVG and the live page's document both take their places from here.
//
// The local frame. Geocentric metres are too large for a picture (single-precision
// graphics jitter there), so pictures are drawn in metres east, north and up of a local
// origin. The origin is the eyepoint when it follows an entity, else the first entity
// with a position, else the eyepoint; it stays put until that place is more than
// kFrameReach away, so the picture does not slide under the user. A scene nowhere near
// the earth's surface (drawings sketched around 0,0,0) keeps the geocentric axes as they
// are, shifted to the origin.
//
// Drawings attached to an entity. An end anchored to an entity is at the entity's
// dead-reckoned position plus the drawing's offset in the entity's local east-north-up
// frame (as a tether's offset); an end at a free position is there plus the offset in
// the east-north-up frame there (along the geocentric axes for a place nowhere near the
// earth's surface, which has no up). The entity is looked up as the eyepoint's are (entities.h): by
// identifier, else by instance name, else by marking. When none matches, the end has no place: the
// drawing is kept but drawn nowhere in the scene, the page lists it as waiting for that entity and
// the SVG shows the designator in its tray of entities not known. When several match, the
// first discovered is taken and the page says how many matched.
#include <cstdint>
#include <deque>
#include <map>
#include <string>

#include "entities.h"
#include "geo.h"
#include "scene.h"

namespace vcviewer {

struct Eyepoint;

/// The frame pictures are drawn in; see above.
struct LocalFrame {
  vcgeo::Vec3 origin;        // geocentric metres
  vcgeo::Mat3 axes;          // geocentric components to local ones (rows: east, north, up)
  bool geographic = false;   // false: the geocentric axes, shifted
  std::uint64_t serial = 0;  // changes whenever the origin moves
  vcgeo::Vec3 local(const vcgeo::Vec3& world) const { return axes * (world - origin); }
};

/// Keeps the local frame from picture to picture.
class FrameKeeper {
 public:
  /// How far the wanted origin may drift before the frame moves to it.
  static constexpr double kFrameReach = 50000.0;
  const LocalFrame& update(const Eyepoint& eye, const Entities& entities, double now);
  const LocalFrame& current() const { return frame_; }

 private:
  LocalFrame frame_;
};

/// Where one end of a drawing is.
struct Placed {
  bool placed = false;
  vcgeo::Vec3 world;    // geocentric metres, offset included
  std::string entity;   // the label of the entity it hangs on, or ""
  int matches = 0;      // entities the designator matched
  std::string problem;  // why it has no place, or which of several it took; "" when neither
};

/// End `end` (0 or 1) of a 3D drawing at `now`. Ends anchored to other drawings are
/// followed a few drawings deep, so that a cycle ends.
Placed placeEnd(const Scene& scene, const Entities& entities, const Drawing& d, int end,
                double now);

/// The last few places of every entity, a sample every kEvery seconds, for the short
/// trails the pictures draw behind them.
class Trails {
 public:
  static constexpr std::size_t kPoints = 8;
  static constexpr double kEvery = 0.5;
  void sample(const Entities& entities, double now);
  /// Oldest first; null when the entity has none.
  const std::deque<vcgeo::Vec3>* of(DtObjectId object) const;

 private:
  std::map<DtObjectId, std::deque<vcgeo::Vec3>> trails_;
  double last_ = -1e300;
};

/// What the pictures need of the world at one moment, taken together so that the SVG and
/// the page's document of one snapshot agree.
struct WorldView {
  const Entities& entities;
  const Eyepoint& eye;
  const LocalFrame& frame;
  const Trails& trails;
  double now;  // on the entities' clock
};

}  // namespace vcviewer
