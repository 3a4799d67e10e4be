#pragma once
// Scripted paths for entities that a tool moves without a simulation behind it, and when
// such an entity owes the federation an update.
#include <string>
#include <vector>

#include "deadReckoning.h"
#include "geo.h"
#include "rprCodec.h"

namespace vctrack {

/// A closed or open path on the local tangent plane at an origin, flown at constant speed
/// and height. Positions are east, north, up in metres from the origin.
class Track {
 public:
  enum Shape { Circle, Racetrack, Line, Waypoints };

  /// A circle of `size` metres radius around the origin, flown clockwise seen from above
  /// (so the aircraft turns right); a racetrack of two straights of 2 * `size` north-south
  /// joined by half circles of radius `size`; a line north from the origin.
  static Track shape(Shape shape, double size, double speed, double height);
  /// Through each point (east, north, up) in turn and back to the first.
  static Track through(const std::vector<vcgeo::Vec3>& points, double speed);

  /// Where the path is `distance` metres along it, and the direction of travel there
  /// (unit vector, east-north-up).
  void at(double distance, vcgeo::Vec3* position, vcgeo::Vec3* direction) const;
  /// Length of one lap (0 for an open line).
  double length() const { return length_; }
  double speed() const { return speed_; }

 private:
  Shape shape_ = Circle;
  double size_ = 0, speed_ = 0, height_ = 0, length_ = 0;
  std::vector<vcgeo::Vec3> points_;
  std::vector<double> along_;  // distance at each waypoint
};

/// One moved entity's true state in world terms: position, orientation (psi, theta,
/// phi), world velocity.
struct Truth {
  vcgeo::Vec3 position;
  vcgeo::Euler orientation;
  vcgeo::Vec3 velocity;
};
/// The true state of a body `distance` along `track` laid at the origin `origin`
/// (geodetic), level, nose along the path.
Truth truthAt(const Track& track, const vcgeo::Geodetic& origin, double distance);

/// Reads "lat lon height" lines (degrees, degrees, metres; '#' starts a comment) and gives
/// them as east, north, up from the first point. False, with the line in `error`, on a
/// line that is not three numbers or a file with fewer than two points.
bool readWaypoints(const std::string& path, vcgeo::Geodetic* origin,
                   std::vector<vcgeo::Vec3>* points, std::string* error);

/// When an entity's owner sends its Spatial again: once others' dead reckoning of the last
/// value strays from the truth by more than the thresholds (1 m, 3 degrees), and at least
/// every heartbeat (5 s) so that late joiners and lossy links catch up.
struct UpdatePolicy {
  double positionThreshold = 1.0;
  double orientationThreshold = 3.0 * 3.14159265358979323846 / 180.0;
  double heartbeat = 5.0;
  bool due(const vcrpr::Spatial& sent, double sentAt, const Truth& truth, double now) const;
};

}  // namespace vctrack
