#include "tracks.h"

#include <cmath>
#include <fstream>
#include <sstream>

namespace vctrack {

namespace {
constexpr double kPi = 3.14159265358979323846;
}

Track Track::shape(Shape shape, double size, double speed, double height) {
  Track t;
  t.shape_ = shape;
  t.size_ = size;
  t.speed_ = speed;
  t.height_ = height;
  t.length_ = shape == Circle ? 2 * kPi * size : shape == Racetrack ? (4 + 2 * kPi) * size : 0.0;
  return t;
}

Track Track::through(const std::vector<vcgeo::Vec3>& points, double speed) {
  Track t;
  t.shape_ = Waypoints;
  t.speed_ = speed;
  t.points_ = points;
  double total = 0;
  for (std::size_t i = 0; i < points.size(); ++i) {
    t.along_.push_back(total);
    total += vcgeo::norm(points[(i + 1) % points.size()] - points[i]);
  }
  t.length_ = total;
  return t;
}

void Track::at(double distance, vcgeo::Vec3* p, vcgeo::Vec3* d) const {
  double s = length_ > 0 ? std::fmod(distance, length_) : distance;
  if (s < 0) s += length_;
  const double r = size_, h = height_;
  switch (shape_) {
    case Circle: {
      const double a = s / r;
      *p = {r * std::sin(a), r * std::cos(a), h};
      *d = {std::cos(a), -std::sin(a), 0};
      return;
    }
    case Racetrack: {
      const double straight = 2 * r, bend = kPi * r;
      if (s < straight) {
        *p = {r, r - s, h}, *d = {0, -1, 0};
      } else if ((s -= straight) < bend) {
        const double a = s / r;
        *p = {r * std::cos(a), -r - r * std::sin(a), h}, *d = {-std::sin(a), -std::cos(a), 0};
      } else if ((s -= bend) < straight) {
        *p = {-r, -r + s, h}, *d = {0, 1, 0};
      } else {
        const double a = (s - straight) / r;
        *p = {-r * std::cos(a), r + r * std::sin(a), h}, *d = {std::sin(a), std::cos(a), 0};
      }
      return;
    }
    case Line:
      *p = {0, s, h}, *d = {0, 1, 0};
      return;
    case Waypoints: {
      std::size_t i = 0;
      while (i + 1 < points_.size() && along_[i + 1] <= s) ++i;
      const vcgeo::Vec3 from = points_[i], to = points_[(i + 1) % points_.size()];
      const double legLength = vcgeo::norm(to - from);
      const vcgeo::Vec3 dir =
          legLength > 0 ? (to - from) * (1.0 / legLength) : vcgeo::Vec3{0, 1, 0};
      *p = from + dir * (s - along_[i]);
      *d = dir;
      return;
    }
  }
}

Truth truthAt(const Track& track, const vcgeo::Geodetic& origin, double distance) {
  vcgeo::Vec3 enu, dir;
  track.at(distance, &enu, &dir);
  const vcgeo::Vec3 base = vcgeo::toGeocentric(origin);
  const vcgeo::Mat3 toWorld = vcgeo::worldToEnu(base).transposed();
  Truth t;
  t.position = base + toWorld * enu;
  t.velocity = toWorld * dir * track.speed();
  const double heading = std::atan2(dir.x, dir.y);
  const double pitch = std::atan2(dir.z, std::hypot(dir.x, dir.y));
  t.orientation = vcgeo::fromLocal(t.position, {heading, pitch, 0.0});
  return t;
}

bool readWaypoints(const std::string& path, vcgeo::Geodetic* origin,
                   std::vector<vcgeo::Vec3>* points, std::string* error) {
  std::ifstream in(path);
  if (!in) {
    *error = "cannot read " + path;
    return false;
  }
  std::vector<vcgeo::Geodetic> read;
  std::string line;
  for (int number = 1; std::getline(in, line); ++number) {
    const auto hash = line.find('#');
    if (hash != std::string::npos) line.erase(hash);
    std::istringstream words(line);
    double lat, lon, height;
    std::string rest;
    if (!(words >> lat)) {
      if (line.find_first_not_of(" \t\r") == std::string::npos) continue;
    } else if ((words >> lon >> height) && !(words >> rest) && std::fabs(lat) <= 90 &&
               std::fabs(lon) <= 180) {
      read.push_back({lat * kPi / 180, lon * kPi / 180, height});
      continue;
    }
    *error = path + ":" + std::to_string(number) +
             ": want \"latitude longitude height\" (degrees, degrees, metres)";
    return false;
  }
  if (read.size() < 2) {
    *error = path + ": a path needs at least two points";
    return false;
  }
  *origin = read.front();
  const vcgeo::Vec3 base = vcgeo::toGeocentric(*origin);
  const vcgeo::Mat3 toEnu = vcgeo::worldToEnu(base);
  points->clear();
  for (const auto& g : read) points->push_back(toEnu * (vcgeo::toGeocentric(g) - base));
  return true;
}

bool UpdatePolicy::due(const vcrpr::Spatial& sent, double sentAt, const Truth& truth,
                       double now) const {
  const double dt = now - sentAt;
  if (dt >= heartbeat) return true;
  const vcdr::State guess = vcdr::extrapolate(sent, dt);
  if (vcgeo::norm(guess.position - truth.position) > positionThreshold) return true;
  // The angle of the rotation between what others assume and the truth.
  const vcgeo::Mat3 a = vcgeo::referenceToBody(guess.orientation);
  const vcgeo::Mat3 b = vcgeo::referenceToBody(truth.orientation);
  double trace = 0;
  for (int i = 0; i < 3; ++i) trace += vcgeo::dot(a.row(i), b.row(i));
  const double c = std::fmax(-1.0, std::fmin(1.0, (trace - 1) / 2));
  return std::acos(c) > orientationThreshold;
}

}  // namespace vctrack
