#include "eyepoint.h"

#include <cmath>

#include "viewModeFields.h"

namespace vcviewer {

namespace {

vcgeo::Vec3 v3(const DtVector64& v) {
  return {v.x(), v.y(), v.z()};
}

// The group is framed in this field of view, whatever the real viewer's lens.
constexpr double kFieldOfView = 60.0 * 3.14159265358979323846 / 180.0;

}  // namespace

vcgeo::Vec3 lookDirection(const vcgeo::Vec3& world, double bearing, double elevation) {
  const vcgeo::Vec3 ned{std::cos(elevation) * std::cos(bearing),
                        std::cos(elevation) * std::sin(bearing), -std::sin(elevation)};
  return vcgeo::worldToNed(world).transposed() * ned;
}

vcgeo::Euler lookingAt(const vcgeo::Vec3& from, const vcgeo::Vec3& to, double roll) {
  const vcgeo::Vec3 ned = vcgeo::worldToNed(from) * (to - from);
  const double heading = std::atan2(ned.y, ned.x);
  const double pitch = std::atan2(-ned.z, std::hypot(ned.x, ned.y));
  return vcgeo::fromLocal(from, {heading, pitch, roll});
}

const Eyepoint& EyepointTracker::update(const ViewState& view, const Entities& entities,
                                        double now) {
  const EyeParams& p = view.params();
  const DtViewerCommand mode = view.mode();
  if (!started_ || mode != lastMode_) {
    started_ = true;
    lastMode_ = mode;
    orbitSince_ = now;
  }
  Eyepoint next = eye_;
  next.problem.clear();
  next.entity.clear();
  // The state of the entity a designator names, or false with the reason noted.
  auto follow = [&](const EntityRef& ref, vcdr::State* state) {
    const EntityMatch m = entities.find(ref.id, ref.marking);
    if (!m.entity || !m.entity->hasSpatial) {
      next.problem = "entity " + (ref.id.empty() ? "\"" + ref.marking + "\"" : ref.id) +
                     (m.entity ? " has no position yet" : " not found");
      return false;
    }
    if (m.count > 1)
      next.problem = std::to_string(m.count) + " entities match " + ref.id + ", following " +
                     m.entity->label();
    *state = m.entity->at(now);
    if (next.entity.empty()) next.entity = m.entity->label();
    return true;
  };
  auto setLocal = [&](const vcgeo::Euler& hpr) {
    next.orientation = vcgeo::fromLocal(next.position, hpr);
  };
  auto onSphere = [&](const vcgeo::Vec3& centre, double bearing, double elevation) {
    next.position = centre - lookDirection(centre, bearing, elevation) * p.radius;
    next.orientation = lookingAt(next.position, centre, p.roll);
  };
  const vcgeo::Euler own{p.heading, p.pitch, p.roll};
  const vcmodes::Mode* described = vcmodes::find(mode, view.wideGroup());
  vcdr::State a, b;
  bool computed = true;  // false: what the mode names is missing, the eye stays
  // Every entity the mode's fields name must be known, the first one missing is the one
  // reported: a is the attached one, b the one the two-entity modes look at.
  for (size_t i = 0; described && i < described->count; ++i) {
    const vcmodes::Field& f = described->fields[i];
    if (f.kind != vcmodes::Kind::Entity) continue;
    const bool attached = f.what == vcmodes::What::Attached;
    computed = computed && follow(attached ? p.primary : p.secondary, attached ? &a : &b);
  }
  // The eye's offset from the attached entity, turned from the frame its field counts in
  // (the entity's east-north-up or its body axes) into geocentric axes.
  auto offsetFrom = [&](const vcdr::State& at) {
    for (size_t i = 0; described && i < described->count; ++i) {
      const vcmodes::Field& f = described->fields[i];
      if (f.what != vcmodes::What::TopoUpOffset && f.what != vcmodes::What::Offset) continue;
      const vcgeo::Mat3 frame = f.frame == vcmodes::Frame::Body
                                    ? vcgeo::referenceToBody(at.orientation)
                                    : vcgeo::worldToEnu(at.position);
      return frame.transposed() * v3(f.what == vcmodes::What::Offset ? p.offset : p.topoUpOffset);
    }
    return vcgeo::Vec3{};
  };
  switch (computed ? mode : DtVcModeless) {
    case DtVcAbsolute:
    case DtVcMove:
      next.position = v3(p.location);
      setLocal(own);
      break;
    case DtVcTether:
      next.position = a.position + offsetFrom(a);
      setLocal(own);
      break;
    case DtVcMimic:
    case DtVcOffsetMimic:
      next.position = a.position + offsetFrom(a);
      next.orientation =
          vcgeo::anglesOf(vcgeo::referenceToBody(own) * vcgeo::referenceToBody(a.orientation));
      break;
    case DtVcTrack:
      next.position = v3(p.location);
      next.orientation = lookingAt(next.position, a.position, 0.0);
      break;
    case DtVcTetherTrack:
    case DtVcMimicTrack:
      next.position = a.position + offsetFrom(a);
      next.orientation = lookingAt(next.position, b.position, 0.0);
      break;
    case DtVcCompass:
      onSphere(a.position, p.bodyHeading + p.headingOffset, p.pitch + p.pitchOffset);
      break;
    case DtVcOrbit:
      onSphere(a.position, p.heading + p.headingOffset + p.azimuthRate * (now - orbitSince_),
               p.pitch + p.pitchOffset);
      break;
    case DtVcPivot:
      onSphere(v3(p.pivotPoint), p.bodyHeading + p.headingOffset, p.pitch + p.pitchOffset);
      break;
    case DtVcGroup: {
      std::vector<vcgeo::Vec3> at;
      for (const std::string& id : view.group()) {
        vcdr::State s;
        if (follow(EntityRef{id, ""}, &s)) at.push_back(s.position);
      }
      next.entity.clear();
      if (!(computed = !at.empty())) break;
      vcgeo::Vec3 centre;
      for (const auto& q : at) centre = centre + q * (1.0 / static_cast<double>(at.size()));
      double spread = 0;
      for (const auto& q : at) spread = std::fmax(spread, vcgeo::norm(q - centre));
      const double distance = spread / std::tan(kFieldOfView / 2) + p.radialOffset;
      next.position =
          centre -
          lookDirection(centre, p.heading + p.headingOffset, p.pitch + p.pitchOffset) * distance;
      next.orientation = lookingAt(next.position, centre, 0.0);
      break;
    }
    default:
      computed = false;  // what the mode names is missing: the eye stays
      break;
  }
  if (!computed) {
    next.position = eye_.position;
    next.orientation = eye_.orientation;
  }
  next.placed = eye_.placed || computed;
  next.local = vcgeo::toLocal(next.position, next.orientation);
  eye_ = next;
  return eye_;
}

}  // namespace vcviewer
