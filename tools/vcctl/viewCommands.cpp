// The eyepoint modes and the group the viewer looks at. Every parameter of a mode is
// optional: what is left out keeps the viewer's current value.
#include "commands.h"
#include "link.h"
#include "values.h"

namespace vcctl {

using DtCmdLine::Type;

namespace {

// ------------------------------------------------------------------ modes
int absolute(const Args& a, Link& link) {
  std::optional<DtVector64> at = position(a, "at");
  std::optional<DtTaitBryan> orientation = angles(a, "orientation");
  link.controller().setAbsoluteMode(given(at), given(orientation));
  return 0;
}

int tether(const Args& a, Link& link) {
  std::optional<DtString> id = entity(a, "entity");
  std::optional<DtVector64> offset = position(a, "offset");
  std::optional<DtTaitBryan> orientation = angles(a, "orientation");
  link.controller().setTetherMode(given(id), given(offset), given(orientation));
  return 0;
}

int compass(const Args& a, Link& link) {
  std::optional<DtString> id = entity(a, "entity");
  std::optional<float> radius = real32(a, "radius");
  std::optional<float> heading = real32(a, "heading");
  std::optional<float> pitch = real32(a, "pitch");
  link.controller().setCompassMode(given(id), given(radius), given(heading), given(pitch));
  return 0;
}

int mimic(const Args& a, Link& link) {
  std::optional<DtString> id = entity(a, "entity");
  std::optional<DtVector64> offset = position(a, "offset");
  link.controller().setMimicMode(given(id), given(offset));
  return 0;
}

int turret(const Args& a, Link& link) {
  std::optional<DtString> id = entity(a, "entity");
  std::optional<DtVector64> offset = position(a, "offset");
  link.controller().setTurretMode(given(id), given(offset));
  return 0;
}

int orbit(const Args& a, Link& link) {
  std::optional<DtString> id = entity(a, "entity");
  std::optional<float> radius = real32(a, "radius");
  std::optional<float> heading = real32(a, "heading");
  std::optional<float> pitch = real32(a, "pitch");
  std::optional<float> rate = real32(a, "rate");
  link.controller().setOrbitMode(given(id), given(radius), given(heading), given(pitch),
                                 given(rate));
  return 0;
}

int pivot(const Args& a, Link& link) {
  std::optional<DtVector64> point = position(a, "point");
  std::optional<float> radius = real32(a, "radius");
  std::optional<float> heading = real32(a, "heading");
  std::optional<float> pitch = real32(a, "pitch");
  link.controller().setPivotMode(given(point), given(radius), given(heading), given(pitch));
  return 0;
}

int track(const Args& a, Link& link) {
  std::optional<DtString> id = entity(a, "entity");
  std::optional<DtVector64> at = position(a, "at");
  link.controller().setTrackMode(given(id), given(at));
  return 0;
}

int mimicTrack(const Args& a, Link& link) {
  std::optional<DtString> id = entity(a, "entity");
  std::optional<DtString> tracked = entity(a, "track");
  std::optional<DtVector64> offset = position(a, "offset");
  link.controller().setMimicTrackMode(given(id), given(tracked), given(offset));
  return 0;
}

int tetherTrack(const Args& a, Link& link) {
  std::optional<DtString> id = entity(a, "entity");
  std::optional<DtString> tracked = entity(a, "track");
  std::optional<DtVector64> offset = position(a, "offset");
  link.controller().setTetherTrackMode(given(id), given(tracked), given(offset));
  return 0;
}

int sendGroup(const Args& a, Link& link, bool wide) {
  DtGlobalObjectDesignatorList ids = entityList(a, "entities", DtGroupVCPdu::kLength);
  std::optional<float> radial = real32(a, "radial");
  std::optional<float> heading = real32(a, "heading");
  std::optional<float> pitch = real32(a, "pitch");
  // No entities keeps the group the viewer has.
  const DtGlobalObjectDesignatorList* list = ids.count() > 0 ? &ids : nullptr;
  if (wide)
    link.controller().setWideGroupMode(list, given(radial), given(heading), given(pitch));
  else
    link.controller().setGroupMode(list, given(radial), given(heading), given(pitch));
  return 0;
}

int group(const Args& a, Link& link) {
  return sendGroup(a, link, false);
}
int wideGroup(const Args& a, Link& link) {
  return sendGroup(a, link, true);
}

// ------------------------------------------------------------------ group membership
int primary(const Args& a, Link& link) {
  DtString id = *entity(a, "entity");
  link.controller().setPrimary(id);
  return 0;
}

int secondary(const Args& a, Link& link) {
  DtString id = *entity(a, "entity");
  link.controller().setSecondary(id);
  return 0;
}

int primarySecondary(const Args& a, Link& link) {
  DtString primaryId = *entity(a, "primary");
  DtString secondaryId = *entity(a, "secondary");
  link.controller().setPrimarySecondary(primaryId, secondaryId);
  return 0;
}

int setGroup(const Args& a, Link& link) {
  DtGlobalObjectDesignatorList ids = entityList(a, "entities", DtModelessVCPdu::kLength);
  link.controller().setGroup(ids);
  return 0;
}

int addToGroup(const Args& a, Link& link) {
  DtGlobalObjectDesignatorList ids = entityList(a, "entities", DtModelessVCPdu::kLength);
  link.controller().addToGroup(ids);
  return 0;
}

int removeFromGroup(const Args& a, Link& link) {
  DtGlobalObjectDesignatorList ids = entityList(a, "entities", DtModelessVCPdu::kLength);
  link.controller().removeFromGroup(ids);
  return 0;
}

// ------------------------------------------------------------------ declarations
void entityArgument(Command& command, const std::string& help) {
  command
      .argument("entity", Type::Text,
                help + " (site:host:entity); left out, the viewer keeps its own")
      .optional();
}

void realOption(Command& command, const std::string& name, const std::string& help) {
  command.option(name, Type::Real, help).placeholder("R");
}

void sphereOptions(Command& command, const std::string& heading) {
  // A distance below zero would put the eye on the far side of the centre.
  command.option("radius", Type::Real, "distance from the centre in metres")
      .placeholder("R")
      .range(0, 3.4e38);
  realOption(command, "heading", heading + " in radians");
  realOption(command, "pitch", "pitch in radians");
}

void groupOptions(Command& command) {
  command.arguments("entities", Type::Text,
                    "entities of the group (site:host:entity); none keeps the current group");
  realOption(command, "radial", "radial offset from the group in metres");
  realOption(command, "heading", "heading offset in radians");
  realOption(command, "pitch", "pitch offset in radians");
}

void trackOption(Command& command) {
  command.option("track", Type::Text, "entity to keep in view (site:host:entity)")
      .placeholder("ENTITY");
}

}  // namespace

void declareViewCommands(Command& root, Registry& registry) {
  Command* c = &registry.add(root, "absolute", "put the eyepoint at a fixed place", &absolute);
  positionOption(*c, "at", "world location");
  anglesOption(*c, "orientation", "where the eye looks");

  c = &registry.add(root, "tether", "follow an entity at an offset, keeping its own orientation",
                    &tether);
  entityArgument(*c, "entity to follow");
  positionOption(*c, "offset", "topo-up offset from the entity in metres");
  anglesOption(*c, "orientation", "where the eye looks");

  c = &registry.add(root, "compass", "circle an entity at a fixed compass heading", &compass);
  entityArgument(*c, "entity in the centre");
  sphereOptions(*c, "body heading");

  c = &registry.add(root, "mimic", "ride on an entity, looking where it looks", &mimic);
  entityArgument(*c, "entity to ride on");
  positionOption(*c, "offset", "eye offset on the entity in metres");

  c = &registry.add(root, "turret", "ride on an entity at an offset (offset mimic)", &turret);
  entityArgument(*c, "entity to ride on");
  positionOption(*c, "offset", "eye offset on the entity in metres");

  c = &registry.add(root, "orbit", "circle around an entity", &orbit);
  entityArgument(*c, "entity in the centre");
  sphereOptions(*c, "heading");
  realOption(*c, "rate", "azimuth rate in radians per second");
  c->details("Example: vcctl orbit 1:1:1 --radius 500 --rate 0.1");

  c = &registry.add(root, "pivot", "circle around a fixed point", &pivot);
  positionOption(*c, "point", "world location of the centre");
  sphereOptions(*c, "body heading");

  c = &registry.add(root, "track", "stay at a place and keep an entity in view", &track);
  entityArgument(*c, "entity to keep in view");
  positionOption(*c, "at", "world location of the eye");

  c = &registry.add(root, "mimic-track", "ride on one entity and keep another in view",
                    &mimicTrack);
  entityArgument(*c, "entity to ride on");
  trackOption(*c);
  positionOption(*c, "offset", "eye offset on the entity in metres");

  c = &registry.add(root, "tether-track", "follow one entity and keep another in view",
                    &tetherTrack);
  entityArgument(*c, "entity to follow");
  trackOption(*c);
  positionOption(*c, "offset", "offset from the followed entity in metres");

  c = &registry.add(root, "group", "look at a group of entities", &group);
  groupOptions(*c);
  c = &registry.add(root, "wide-group", "look at a group of entities from further out", &wideGroup);
  groupOptions(*c);

  c = &registry.add(root, "primary", "make an entity the group's primary", &primary);
  c->argument("entity", Type::Text, "entity id (site:host:entity)");
  c = &registry.add(root, "secondary", "make an entity the group's secondary", &secondary);
  c->argument("entity", Type::Text, "entity id (site:host:entity)");
  c = &registry.add(root, "primary-secondary", "set the group's primary and secondary at once",
                    &primarySecondary);
  c->argument("primary", Type::Text, "entity id (site:host:entity)");
  c->argument("secondary", Type::Text, "entity id (site:host:entity)");
  c = &registry.add(root, "set-group", "replace the whole group (no entities empties it)",
                    &setGroup);
  c->arguments("entities", Type::Text, "entity ids (site:host:entity)");
  c = &registry.add(root, "add-to-group", "add entities to the group", &addToGroup);
  c->arguments("entities", Type::Text, "entity ids (site:host:entity)").minCount(1);
  c = &registry.add(root, "remove-from-group", "take entities out of the group", &removeFromGroup);
  c->arguments("entities", Type::Text, "entity ids (site:host:entity)").minCount(1);
}

}  // namespace vcctl
