#include "placement.h"

#include "eyepoint.h"

namespace vcviewer {

namespace {

// A drawing anchored to a drawing anchored to ... is followed this far.
constexpr int kMaxAnchorDepth = 8;

vcgeo::Vec3 v3(const DtVector64& v) {
  return {v.x(), v.y(), v.z()};
}

// Closer to the earth's centre than this, or farther than this, a place is not on the
// earth's surface and has no local horizon worth drawing in.
constexpr double kInnermost = 5.0e6, kOutermost = 5.0e7;

bool nearTheEarth(const vcgeo::Vec3& at) {
  const double r = vcgeo::norm(at);
  return r > kInnermost && r < kOutermost;
}

// Takes geocentric components to east-north-up ones at `at`, or leaves them as they are
// where there is no local horizon.
vcgeo::Mat3 localAxes(const vcgeo::Vec3& at) {
  return nearTheEarth(at) ? vcgeo::worldToEnu(at) : vcgeo::Mat3();
}

Placed placeAt(const Scene& scene, const Entities& entities, const Drawing& d, int end, double now,
               int depth);

// Where a drawing anchored to `d` at `percent` sits: that far along a line, else at the
// middle of its points, else at its own first end.
Placed pointOn(const Scene& scene, const Entities& entities, const Drawing& d, int percent,
               double now, int depth) {
  Placed p;
  if (depth > kMaxAnchorDepth || d.is2D()) {
    p.problem = "drawing " + std::to_string(d.id) + " has no place in the scene";
    return p;
  }
  if (d.isLine() && d.anchors[1].kind != Anchor::None) {
    Placed a = placeAt(scene, entities, d, 0, now, depth);
    if (!a.placed) return a;
    Placed b = placeAt(scene, entities, d, 1, now, depth);
    if (!b.placed) return b;
    a.world = a.world + (b.world - a.world) * (percent / 100.0);
    if (a.entity.empty()) a.entity = b.entity;
    return a;
  }
  if (!d.points.empty()) {
    vcgeo::Vec3 sum;
    for (const DtVector64& q : d.points) sum = sum + v3(q);
    p.placed = true;
    p.world = sum * (1.0 / static_cast<double>(d.points.size()));
    return p;
  }
  return placeAt(scene, entities, d, 0, now, depth);
}

Placed placeAt(const Scene& scene, const Entities& entities, const Drawing& d, int end, double now,
               int depth) {
  const Anchor& a = d.anchors[end];
  Placed p;
  switch (a.kind) {
    case Anchor::Position:
      p.placed = true;
      p.world = v3(a.position) + localAxes(v3(a.position)).transposed() * v3(d.offset);
      break;
    case Anchor::Entity: {
      // A drawing carries no marking of its own: its designator may be one.
      const EntityMatch m = entities.find(a.entity, a.entity);
      p.matches = m.count;
      if (!m.entity) {
        p.problem = "entity " + a.entity + " not found";
      } else if (!m.entity->hasSpatial) {
        p.problem = "entity " + m.entity->label() + " has no position yet";
      } else {
        const vcgeo::Vec3 at = m.entity->at(now).position;
        p.placed = true;
        p.entity = m.entity->label();
        p.world = at + localAxes(at).transposed() * v3(d.offset);
        if (m.count > 1)
          p.problem =
              std::to_string(m.count) + " entities match " + a.entity + ", attached to " + p.entity;
      }
      break;
    }
    case Anchor::Object: {
      const Drawing* other = scene.find(a.objectId);
      if (!other) {
        p.problem = "drawing " + std::to_string(a.objectId) + " not found";
        break;
      }
      return pointOn(scene, entities, *other, a.percent, now, depth + 1);
    }
    case Anchor::None:
      break;
  }
  return p;
}

}  // namespace

Placed placeEnd(const Scene& scene, const Entities& entities, const Drawing& d, int end,
                double now) {
  return placeAt(scene, entities, d, end, now, 0);
}

const LocalFrame& FrameKeeper::update(const Eyepoint& eye, const Entities& entities, double now) {
  bool have = false;
  vcgeo::Vec3 wanted;
  if (eye.placed && !eye.entity.empty()) {
    have = true;
    wanted = eye.position;
  } else {
    for (const auto& kv : entities.all()) {
      if (!kv.second.hasSpatial) continue;
      have = true;
      wanted = kv.second.at(now).position;
      break;
    }
    if (!have && eye.placed) {
      have = true;
      wanted = eye.position;
    }
  }
  if (!have || !vcgeo::finite(wanted) || vcgeo::norm(wanted - frame_.origin) <= kFrameReach)
    return frame_;
  frame_.origin = wanted;
  frame_.geographic = nearTheEarth(wanted);
  frame_.axes = localAxes(wanted);
  ++frame_.serial;
  return frame_;
}

void Trails::sample(const Entities& entities, double now) {
  if (now - last_ < kEvery) return;
  last_ = now;
  const auto& all = entities.all();
  for (auto it = trails_.begin(); it != trails_.end();)
    it = all.count(it->first) ? std::next(it) : trails_.erase(it);
  for (const auto& kv : all) {
    if (!kv.second.hasSpatial) continue;
    std::deque<vcgeo::Vec3>& trail = trails_[kv.first];
    trail.push_back(kv.second.at(now).position);
    if (trail.size() > kPoints) trail.pop_front();
  }
}

const std::deque<vcgeo::Vec3>* Trails::of(DtObjectId object) const {
  auto it = trails_.find(object);
  return it == trails_.end() ? nullptr : &it->second;
}

}  // namespace vcviewer
