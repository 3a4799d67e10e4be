#pragma once
// The simulation's entities as the stand-in viewer knows them: RPR FOM objects taken from
// the federation, their attribute values decoded (bad ones counted, never trusted) and
// dead-reckoned to the time they are looked at.
//
// Which entity a designator means:
//  1. a designator written "site:app:entity" (other than 0:0:0) means the entity whose
//     EntityIdentifier it is;
//  2. any other non-empty designator means the entity of that HLA object instance name;
//  3. when that finds nothing, or the designator is empty or 0:0:0, a non-empty marking
//     text means the entity whose Marking it is.
// When several entities match, the one discovered first is taken and the match says
// how many there were; when none does, the eyepoint stays where it was and the page says
// which designator was not found.
#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <string>
#include <vector>

#include "deadReckoning.h"
#include "dtObjects.h"
#include "rprCodec.h"

namespace vcviewer {

struct Entity {
  DtObjectId object = 0;
  std::string className;     // as discovered: "BaseEntity.PhysicalEntity.Platform.Aircraft"
  std::string instanceName;  // the RTI's
  bool hasId = false;
  vcrpr::EntityId id;
  bool hasType = false;
  vcrpr::EntityType type;
  std::string marking;
  bool hasSpatial = false;
  vcrpr::Spatial spatial;
  double spatialTime = 0;  // when the Spatial value came, on the table's clock
  /// Where the entity is at `now` (the table's clock), by its dead-reckoning algorithm.
  vcdr::State at(double now) const { return vcdr::extrapolate(spatial, now - spatialTime); }
  /// "1:2:3" when its identifier is known, else its instance name.
  std::string label() const;
};

/// What looking an entity up found.
struct EntityMatch {
  const Entity* entity = nullptr;  // null: none
  int count = 0;                   // how many matched
  std::string by;                  // "identifier", "instance name", "marking"
};

class Entities : public DtObjectListener {
 public:
  using Clock = std::function<double()>;
  /// `clock` gives seconds on any steady scale; the default is the process's steady clock.
  explicit Entities(Clock clock = Clock());

  /// Every RPR FOM 2.0 class whose instances are entities, most derived last: subscribing
  /// to each one is what lets a viewer see every entity on an RTI that matches
  /// subscriptions to the registered class only. Named from HLAobjectRoot, the one form
  /// every RTI takes.
  static const std::vector<std::string>& classNames();
  /// The attributes taken: vcrpr::entityAttributeNames(), indexed by vcrpr::EntityAttribute.
  static const std::vector<std::string>& attributeNames() { return vcrpr::entityAttributeNames(); }

  void objectDiscovered(DtObjectId id, const std::string& className,
                        const std::string& instanceName) override;
  void objectReflected(DtObjectId id, const DtAttributeValue* values, int count) override;
  void objectRemoved(DtObjectId id) override;

  EntityMatch find(const std::string& designator, const std::string& marking) const;
  const std::map<DtObjectId, Entity>& all() const { return entities_; }
  std::size_t size() const { return entities_.size(); }
  double now() const { return clock_(); }

  /// Values that were refused, by attribute, and the last refusal worded for a person.
  const std::uint64_t* faults() const { return faults_; }
  std::uint64_t faultCount() const;
  const std::string& lastFault() const { return lastFault_; }
  /// Counts discoveries, removals and changes of identifier or marking (not movement): a
  /// page redraws its list when it moves.
  std::uint64_t revision() const { return revision_; }

 private:
  void refuse(vcrpr::EntityAttribute a, const Entity& e, vcrpr::Fault why);

  Clock clock_;
  std::map<DtObjectId, Entity> entities_;
  std::uint64_t faults_[4] = {0, 0, 0, 0};
  std::string lastFault_;
  std::uint64_t revision_ = 0;
};

/// The table for a person or a script, one line per entity in discovery order:
///   entity ID "MARKING" INSTANCE CLASS ALGORITHM X Y Z
/// (ID "-" when none came; position dead-reckoned to now, geocentric metres with three
/// decimals; "- - - -" before any Spatial), then "entities N faults F".
std::vector<std::string> describeEntities(const Entities& entities);

}  // namespace vcviewer
