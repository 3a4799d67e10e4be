// The eyepoint modes and the group the viewer looks at. Every parameter of a mode is
// optional: what is left out keeps the viewer's current value.
#include <memory>

#include "commands.h"
#include "link.h"
#include "values.h"
#include "viewModeFields.h"

namespace vcctl {

using DtCmdLine::Type;

namespace {

// ------------------------------------------------------------------ modes
// Every mode is declared and sent from its rows in the modes' description: each option
// a row names is read as that row's kind and written where the row says.

bool isArgument(const vcmodes::Field& f) {
  return f.what == vcmodes::What::Attached || f.kind == vcmodes::Kind::Entities;
}

int sendMode(const vcmodes::Mode& mode, const Args& a, Link& link) {
  std::unique_ptr<DtVistrelControlPdu> pdu(vcmodes::newPdu(mode));
  vcmodes::Command command(*pdu, mode);
  for (size_t i = 0; i < mode.count; ++i) {
    const char* name = mode.fields[i].option;
    if (!name) continue;
    switch (mode.fields[i].kind) {
      case vcmodes::Kind::Real:
        command.give(name, given(real32(a, name)));
        break;
      case vcmodes::Kind::Vector32:
      case vcmodes::Kind::Vector64:
        command.give(name, given(position(a, name)));
        break;
      case vcmodes::Kind::Angles:
        command.give(name, given(angles(a, name)));
        break;
      case vcmodes::Kind::Entity:
        command.give(name, given(entity(a, name)));
        break;
      case vcmodes::Kind::Entities: {
        // No entities keeps the group the viewer has.
        const DtGlobalObjectDesignatorList ids = entityList(a, name, mode.length);
        command.give(name, ids.count() > 0 ? &ids : nullptr);
        break;
      }
      default:
        break;  // modes have no other kinds of field
    }
  }
  link.controller().send(command.pdu());
  return 0;
}

// The row's help with its unit; world positions say they are geocentric.
std::string helpOf(const vcmodes::Field& f) {
  std::string help = f.help;
  const char* unit = vcmodes::unit(f.what);
  if (f.frame == vcmodes::Frame::World && f.kind != vcmodes::Kind::Angles) help += ", geocentric,";
  if (unit && f.kind != vcmodes::Kind::Angles) help += std::string(" in ") + unit;
  return help;
}

void declareMode(Command& root, Registry& registry, const vcmodes::Mode& mode) {
  Command& c = registry.add(root, mode.name, mode.summary,
                            [&mode](const Args& a, Link& link) { return sendMode(mode, a, link); });
  // The arguments first, then the options in the order the body has them.
  for (int arguments = 1; arguments >= 0; --arguments) {
    for (size_t i = 0; i < mode.count; ++i) {
      const vcmodes::Field& f = mode.fields[i];
      if (!f.option || isArgument(f) != (arguments == 1)) continue;
      switch (f.kind) {
        case vcmodes::Kind::Real:
          // A distance below zero would put the eye on the far side of the centre.
          if (f.what == vcmodes::What::Radius)
            c.option(f.option, Type::Real, helpOf(f)).placeholder("R").range(0, 3.4e38);
          else
            c.option(f.option, Type::Real, helpOf(f)).placeholder("R");
          break;
        case vcmodes::Kind::Vector32:
        case vcmodes::Kind::Vector64:
          positionOption(c, f.option, helpOf(f));
          break;
        case vcmodes::Kind::Angles:
          anglesOption(c, f.option, helpOf(f));
          break;
        case vcmodes::Kind::Entity:
          if (isArgument(f))
            c.argument(f.option, Type::Text,
                       helpOf(f) + " (site:host:entity); left out, the viewer keeps its own")
                .optional();
          else
            c.option(f.option, Type::Text, helpOf(f) + " (site:host:entity)").placeholder("ENTITY");
          break;
        case vcmodes::Kind::Entities:
          c.arguments(f.option, Type::Text,
                      helpOf(f) + " (site:host:entity); none keeps the current group");
          break;
        default:
          break;
      }
    }
  }
  c.details(
      std::string("What is left out keeps the viewer's current value.") +
      (mode.command == DtVcOrbit ? "\nExample: vcctl orbit 1:1:1 --radius 500 --rate 0.1" : ""));
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

}  // namespace

void declareViewCommands(Command& root, Registry& registry) {
  for (const vcmodes::Mode& mode : vcmodes::kModes) declareMode(root, registry, mode);

  Command* c = &registry.add(root, "primary", "make an entity the group's primary", &primary);
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
