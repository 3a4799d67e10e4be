// Commands on drawings that already exist in the viewers, named by their object ids:
// show, hide, remove, layers, and the values of attribute panels. They work on drawings
// made by any earlier vcctl run, or by any other program.
#include "commands.h"
#include "link.h"
#include "values.h"

namespace vcctl {

using DtCmdLine::Type;

namespace {

// A command PDU for an object that this run's drawer does not hold: the drawer's own
// remove and attribute commands act only on objects added to it.
void sendCommand(Link& link, DtVdcDrawType type, unsigned int objectId, unsigned int layerId) {
  DtVdcCommandPdu pdu;
  pdu.setType(type);
  pdu.setObjectId(objectId);
  pdu.setLayerId(layerId);
  link.drawer().sendDrawControlPdu(pdu);
}

int show(const Args& a, Link& link) {
  link.drawer().show(objectId(a, "object"));
  return 0;
}

int hide(const Args& a, Link& link) {
  link.drawer().hide(objectId(a, "object"));
  return 0;
}

int remove(const Args& a, Link& link) {
  sendCommand(link, DtVdcCommandRemove, objectId(a, "object"), 0);
  return 0;
}

int addToLayer(const Args& a, Link& link) {
  link.drawer().addToLayer(objectId(a, "object"), objectId(a, "layer"));
  return 0;
}

int removeFromLayer(const Args& a, Link& link) {
  link.drawer().removeFromLayer(objectId(a, "object"), objectId(a, "layer"));
  return 0;
}

int attributeCommand(const Args& a, Link& link, bool show) {
  bool everyPanel = a.flag("template");
  DtVdcDrawType type =
      show ? (everyPanel ? DtVdcCommandShowTemplateAttribute : DtVdcCommandShowAttribute)
           : (everyPanel ? DtVdcCommandHideTemplateAttribute : DtVdcCommandHideAttribute);
  sendCommand(link, type, objectId(a, "attribute"), objectId(a, "panel"));
  return 0;
}

int showAttribute(const Args& a, Link& link) {
  return attributeCommand(a, link, true);
}
int hideAttribute(const Args& a, Link& link) {
  return attributeCommand(a, link, false);
}

int value(const Args& a, Link& link) {
  int given = a.has("number") + a.has("graph") + a.has("bitmap") + a.has("reset");
  if (given != 1) a.fail("give exactly one of --number, --graph, --bitmap and --reset");
  // The update on its own: the panel and its template stay as the viewer has them.
  DtVdcAttributeUpdatePdu pdu;
  pdu.setObjectId(objectId(a, "attribute"));
  pdu.setGroupId(objectId(a, "panel"));
  if (a.has("number")) {
    pdu.setType(DtVdcAttributeValueSet);
    pdu.setValueX(a.real("number"));
  } else if (a.has("graph")) {
    std::vector<double> xy = a.vector("graph");
    pdu.setType(DtVdcAttributeValueSet);
    pdu.setValueX(xy[0]);
    pdu.setValueY(xy[1]);
  } else if (a.has("bitmap")) {
    pdu.setType(DtVdcAttributeValueSetText);
    pdu.setText(
        fittingText(a, "bitmap",
                    static_cast<size_t>(DtBaseMsg::kMaxLength - DtVdcAttributeUpdatePdu::kLength)));
  } else {
    pdu.setType(DtVdcAttributeValueReset);
  }
  link.drawer().sendDrawControlPdu(pdu);
  return 0;
}

void idArgument(Command& c, const std::string& name, const std::string& help) {
  c.argument(name, Type::Integer, help).range(0, 4294967295.0);
}

void attributeArguments(Command& c) {
  idArgument(c, "panel", "panel id (or template id, with --template)");
  idArgument(c, "attribute", "attribute id");
  c.option("template", Type::Flag, "for every panel of a template");
}

}  // namespace

void declareSceneCommands(Command& root, Registry& registry) {
  idArgument(registry.add(root, "show", "show a hidden drawing", &show), "object", "object id");
  idArgument(registry.add(root, "hide", "hide a drawing, keeping it", &hide), "object",
             "object id");
  idArgument(registry.add(root, "remove", "remove a drawing from the viewers", &remove), "object",
             "object id");

  Command* c = &registry.add(root, "add-to-layer", "put a drawing into a layer", &addToLayer);
  idArgument(*c, "object", "object id");
  idArgument(*c, "layer", "layer id");
  c = &registry.add(root, "remove-from-layer", "take a drawing out of a layer", &removeFromLayer);
  idArgument(*c, "object", "object id");
  idArgument(*c, "layer", "layer id");

  attributeArguments(
      registry.add(root, "show-attribute", "show one attribute of a panel", &showAttribute));
  attributeArguments(
      registry.add(root, "hide-attribute", "hide one attribute of a panel", &hideAttribute));

  c = &registry.add(root, "value", "change the value of one attribute of a panel", &value);
  idArgument(*c, "panel", "panel id");
  idArgument(*c, "attribute", "attribute id");
  c->option("number", Type::Real, "new value of a number or a value bar").placeholder("X");
  c->option("graph", Type::Vector, "new point of a graph").placeholder("X,Y").size(2);
  c->option("bitmap", Type::Text, "new bitmap name").placeholder("NAME");
  c->option("reset", Type::Flag, "reset the attribute");
  c->details("Example: vcctl value 21 1 --number 88");
}

}  // namespace vcctl
