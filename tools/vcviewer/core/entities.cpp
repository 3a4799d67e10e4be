#include "entities.h"

#include <chrono>
#include <cstdio>

#include "textFormat.h"

namespace vcviewer {

std::string Entity::label() const {
  return hasId ? id.text() : instanceName;
}

Entities::Entities(Clock clock) : clock_(std::move(clock)) {
  if (!clock_)
    clock_ = [] {
      return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch())
          .count();
    };
}

const std::vector<std::string>& Entities::classNames() {
  static const std::vector<std::string> names = {
      "HLAobjectRoot.BaseEntity",
      "HLAobjectRoot.BaseEntity.PhysicalEntity",
      "HLAobjectRoot.BaseEntity.PhysicalEntity.Platform",
      "HLAobjectRoot.BaseEntity.PhysicalEntity.Platform.Aircraft",
      "HLAobjectRoot.BaseEntity.PhysicalEntity.Platform.AmphibiousVehicle",
      "HLAobjectRoot.BaseEntity.PhysicalEntity.Platform.GroundVehicle",
      "HLAobjectRoot.BaseEntity.PhysicalEntity.Platform.MultiDomainPlatform",
      "HLAobjectRoot.BaseEntity.PhysicalEntity.Platform.Spacecraft",
      "HLAobjectRoot.BaseEntity.PhysicalEntity.Platform.SubmersibleVessel",
      "HLAobjectRoot.BaseEntity.PhysicalEntity.Platform.SurfaceVessel",
      "HLAobjectRoot.BaseEntity.PhysicalEntity.Lifeform",
      "HLAobjectRoot.BaseEntity.PhysicalEntity.Lifeform.Human",
      "HLAobjectRoot.BaseEntity.PhysicalEntity.Lifeform.NonHuman",
      "HLAobjectRoot.BaseEntity.PhysicalEntity.CulturalFeature",
      "HLAobjectRoot.BaseEntity.PhysicalEntity.Munition",
      "HLAobjectRoot.BaseEntity.PhysicalEntity.Expendables",
      "HLAobjectRoot.BaseEntity.PhysicalEntity.Radio",
      "HLAobjectRoot.BaseEntity.PhysicalEntity.Sensor",
      "HLAobjectRoot.BaseEntity.PhysicalEntity.Supplies",
  };
  return names;
}

void Entities::objectDiscovered(DtObjectId id, const std::string& className,
                                const std::string& instanceName) {
  Entity& e = entities_[id];
  e.object = id;
  e.className = className;
  e.instanceName = instanceName;
  ++revision_;
}

void Entities::refuse(vcrpr::EntityAttribute a, const Entity& e, vcrpr::Fault why) {
  ++faults_[a];
  lastFault_ = attributeNames()[a] + " of " + e.label() + ": " + vcrpr::faultName(why);
}

void Entities::objectReflected(DtObjectId id, const DtAttributeValue* values, int count) {
  auto it = entities_.find(id);
  if (it == entities_.end()) return;
  Entity& e = it->second;
  for (int i = 0; i < count; ++i) {
    const DtAttributeValue& v = values[i];
    vcrpr::Fault why = vcrpr::Fault::None;
    switch (v.index) {
      case vcrpr::kEntityIdentifier: {
        vcrpr::EntityId id2;
        why = vcrpr::decode(v.data, v.size, &id2);
        if (why == vcrpr::Fault::None && !(e.hasId && id2 == e.id)) {
          e.id = id2, e.hasId = true;
          ++revision_;
        }
        break;
      }
      case vcrpr::kEntityType:
        why = vcrpr::decode(v.data, v.size, &e.type);
        if (why == vcrpr::Fault::None) e.hasType = true;
        break;
      case vcrpr::kSpatial:
        why = vcrpr::decode(v.data, v.size, &e.spatial);
        if (why == vcrpr::Fault::None) {
          e.hasSpatial = true;
          e.spatialTime = clock_();
        }
        break;
      case vcrpr::kMarking: {
        std::string text;
        why = vcrpr::decodeMarking(v.data, v.size, &text);
        if (why == vcrpr::Fault::None && text != e.marking) {
          e.marking = text;
          ++revision_;
        }
        break;
      }
      default:
        continue;
    }
    if (why != vcrpr::Fault::None) refuse(static_cast<vcrpr::EntityAttribute>(v.index), e, why);
  }
}

void Entities::objectRemoved(DtObjectId id) {
  if (entities_.erase(id)) ++revision_;
}

EntityMatch Entities::find(const std::string& designator, const std::string& marking) const {
  EntityMatch m;
  auto collect = [&](const char* by, auto&& matches) {
    for (const auto& kv : entities_) {
      if (!matches(kv.second)) continue;
      // The map is in discovery order: the first match is the oldest entity.
      if (!m.entity) m.entity = &kv.second;
      ++m.count;
    }
    if (m.count) m.by = by;
    return m.count > 0;
  };
  vcrpr::EntityId id;
  const bool isId = vcrpr::EntityId::parse(designator, &id);
  if (isId && !(id == vcrpr::EntityId{})) {
    if (collect("identifier", [&](const Entity& e) { return e.hasId && e.id == id; })) return m;
  } else if (!designator.empty() && !isId) {
    if (collect("instance name", [&](const Entity& e) { return e.instanceName == designator; }))
      return m;
  }
  if (!marking.empty()) collect("marking", [&](const Entity& e) { return e.marking == marking; });
  return m;
}

std::uint64_t Entities::faultCount() const {
  return faults_[0] + faults_[1] + faults_[2] + faults_[3];
}

std::vector<std::string> describeEntities(const Entities& entities) {
  std::vector<std::string> lines;
  const double now = entities.now();
  for (const auto& kv : entities.all()) {
    const Entity& e = kv.second;
    std::string line = "entity " + (e.hasId ? e.id.text() : std::string("-")) + " " +
                       quoted(e.marking) + " " + word(e.instanceName) + " " +
                       word(e.className.substr(e.className.rfind('.') + 1)) + " ";
    if (e.hasSpatial) {
      const vcdr::State s = e.at(now);
      char where[128];
      std::snprintf(where, sizeof where, "%s %.3f %.3f %.3f",
                    vcrpr::algorithmName(e.spatial.algorithm), s.position.x, s.position.y,
                    s.position.z);
      line += where;
    } else {
      line += "- - - -";
    }
    lines.push_back(line);
  }
  lines.push_back("entities " + std::to_string(entities.size()) + " faults " +
                  std::to_string(entities.faultCount()));
  return lines;
}

}  // namespace vcviewer
