// "vcctl draw KIND": one drawing object per command, made by the library's drawing
// classes and sent by its drawer under the object id given with --id. Later commands
// (show, hide, remove, layers, values) name the object by that id.
#include <memory>
#include <vector>

#include "commands.h"
#include "link.h"
#include "values.h"

namespace vcctl {

using DtCmdLine::Type;

namespace {

const std::vector<std::string> kStyles = {"straight", "lightning"};
const std::vector<std::string> kArrows = {"none", "end", "start", "double"};

template <typename T>
T indexOf(const std::vector<std::string>& words, const std::string& word) {
  for (size_t i = 0; i < words.size(); ++i)
    if (words[i] == word) return static_cast<T>(i);
  return static_cast<T>(0);
}

void flashingOption(Command& c) {
  c.option("flashing", Type::Flag, "make it flash");
}

void patternOption(Command& c, const std::string& what) {
  c.option("pattern", Type::Integer, what + " bit mask, all ones solid")
      .placeholder("MASK")
      .range(0, 4294967295.0)
      .defaultValue("0xffffffff");
}

void fillOptions(Command& c) {
  c.option("fill", Type::Flag, "fill it rather than draw its outline");
  patternOption(c, "fill pattern");
  flashingOption(c);
}

unsigned int pattern(const Args& a) {
  return static_cast<unsigned int>(a.integer("pattern"));
}

DtVector64 offsetOf(const Args& a) {
  return positionOr(a, "offset", DtVector64(0, 0, 0));
}

DtTaitBryan rotationOf(const Args& a) {
  std::optional<DtTaitBryan> r = angles(a, "rotation");
  return r ? *r : DtTaitBryan(0, 0, 0);
}

// ------------------------------------------------------------------ line segments
void segmentOptions(Command& c) {
  c.option("segments", Type::Integer,
           "number of segments, equal shares unless --shares says otherwise")
      .placeholder("N")
      .range(1, 255);
  colorOption(c, "white");
  c.option("colors", Type::Text, "a colour per segment, separated by '/' (red/0,255,0/blue)")
      .placeholder("C/C/..");
  c.option("shares", Type::Vector, "each segment's share of the line as a fraction (0.5,0.25,0.25)")
      .placeholder("F,F,..")
      .range(0, 1);
  c.option("thickness", Type::Integer, "thickness")
      .placeholder("N")
      .range(0, 255)
      .defaultValue("1");
  patternOption(c, "stipple");
  c.option("style", Type::Text, "how the line runs").choices(kStyles).defaultValue("straight");
  c.option("arrow", Type::Text, "arrow heads").choices(kArrows).defaultValue("none");
  flashingOption(c);
}

struct Segments {
  int count = 1;
  std::vector<DtVdcColor> colors;
  std::vector<double> shares;
};

Segments segments(const Args& a) {
  Segments s;
  if (a.has("colors")) {
    for (const std::string& word : split(a.text("colors"), '/')) {
      DtVdcColor color;
      std::string why;
      if (!parseColor(word, color, why)) a.fail("option '--colors': '" + word + "' " + why);
      s.colors.push_back(color);
    }
  }
  if (a.has("shares")) s.shares = a.vector("shares");
  if (a.has("segments"))
    s.count = static_cast<int>(a.integer("segments"));
  else if (!s.colors.empty())
    s.count = static_cast<int>(s.colors.size());
  else if (!s.shares.empty())
    s.count = static_cast<int>(s.shares.size());
  const std::string n = std::to_string(s.count);
  if (!s.colors.empty() && s.colors.size() != static_cast<size_t>(s.count))
    a.fail("option '--colors' names " + std::to_string(s.colors.size()) + " colours for " + n +
           " segments");
  if (!s.shares.empty() && s.shares.size() != static_cast<size_t>(s.count))
    a.fail("option '--shares' gives " + std::to_string(s.shares.size()) + " shares for " + n +
           " segments");
  return s;
}

// Both lines have the same segment accessors; the constructor gave every segment the
// common look and an equal share.
template <typename Line>
void applySegments(Line& line, const Segments& s) {
  for (int i = 0; i < s.count; ++i) {
    if (!s.colors.empty()) line.setColor(s.colors[static_cast<size_t>(i)], i);
    if (!s.shares.empty()) line.setPercentage(s.shares[static_cast<size_t>(i)], i);
  }
}

DtVdcSegmentStyle styleOf(const Args& a) {
  return indexOf<DtVdcSegmentStyle>(kStyles, a.text("style"));
}
DtVdcSegmentArrowStyle arrowOf(const Args& a) {
  return indexOf<DtVdcSegmentArrowStyle>(kArrows, a.text("arrow"));
}
unsigned int thicknessOf(const Args& a) {
  return static_cast<unsigned int>(a.integer("thickness"));
}

// The room a variable-length text has in one PDU after the fixed part.
constexpr size_t roomAfter(int fixedLength) {
  return static_cast<size_t>(DtBaseMsg::kMaxLength - fixedLength);
}

// ------------------------------------------------------------------ attribute panels
struct DeclaredAttribute {
  unsigned int id;
  std::string name;
  DtVdcAttributeTemplateObject::DtVdcAttributeType type;
  double min = 0, max = 0;
};

const std::vector<std::string> kAttributeKinds = {"label", "number", "bar", "graph", "bitmap"};

DeclaredAttribute declaredAttribute(const Args& a, const std::string& word) {
  std::vector<std::string> parts = split(word, ':');
  auto bad = [&](const std::string& why) {
    a.fail("argument <attributes>: '" + word + "' " + why);
  };
  if (parts.size() < 2 || parts[0].empty() || parts[1].empty())
    bad("is not ID:NAME[:KIND] (KIND label, number, bar:MIN:MAX, graph or bitmap)");
  DeclaredAttribute decl;
  char* end = nullptr;
  unsigned long id = std::strtoul(parts[0].c_str(), &end, 10);
  if (!end || *end != '\0' || parts[0][0] == '-') bad("does not start with a whole-number id");
  decl.id = static_cast<unsigned int>(id);
  decl.name = parts[1];
  if (decl.name.size() > roomAfter(DtVdcAttributePdu::kLength))
    bad("has a name of " + std::to_string(decl.name.size()) + " bytes, but the PDU holds at most " +
        std::to_string(roomAfter(DtVdcAttributePdu::kLength)));
  std::string kind = parts.size() > 2 ? parts[2] : "number";
  bool known = false;
  for (const std::string& k : kAttributeKinds) known = known || k == kind;
  if (!known) bad("has kind '" + kind + "': use label, number, bar:MIN:MAX, graph or bitmap");
  decl.type = indexOf<DtVdcAttributeTemplateObject::DtVdcAttributeType>(kAttributeKinds, kind);
  size_t expected = kind == "bar" ? 5 : (parts.size() > 2 ? 3 : 2);
  if (parts.size() != expected)
    bad(kind == "bar" ? "needs its range: ID:NAME:bar:MIN:MAX" : "has words after its kind");
  if (kind == "bar") {
    char* e1 = nullptr;
    char* e2 = nullptr;
    decl.min = std::strtod(parts[3].c_str(), &e1);
    decl.max = std::strtod(parts[4].c_str(), &e2);
    if (parts[3].empty() || parts[4].empty() || *e1 != '\0' || *e2 != '\0')
      bad("has a range that is not two numbers");
  }
  return decl;
}

// ------------------------------------------------------------------ handlers
// Each builds one drawing object and hands it to the drawer, which sends it.
void add(Link& link, std::unique_ptr<DtVdcObject> object) {
  link.drawer().add(object.release());
}

int line2d(const Args& a, Link& link) {
  Segments s = segments(a);
  auto line = std::make_unique<DtVdcLine2DObject>(objectId(a), screen(a, "from"), screen(a, "to"),
                                                  s.count, color(a), styleOf(a), arrowOf(a),
                                                  thicknessOf(a), pattern(a), a.flag("flashing"));
  applySegments(*line, s);
  add(link, std::move(line));
  return 0;
}

int line3d(const Args& a, Link& link) {
  Segments s = segments(a);
  DtVdc3DAttachPoint from = anchor(a, "from");
  DtVdc3DAttachPoint to = anchor(a, "to");
  auto line = std::make_unique<DtVdcLine3DObject>(
      objectId(a), from, to, s.count, offsetOf(a), color(a), styleOf(a), arrowOf(a), thicknessOf(a),
      pattern(a), a.flag("flashing"), a.flag("check-los"), a.flag("projected"));
  applySegments(*line, s);
  add(link, std::move(line));
  return 0;
}

template <typename Shape>
int screenShape(const Args& a, Link& link) {
  add(link,
      std::make_unique<Shape>(objectId(a), screen(a, "at"), screen(a, "size"), a.real("rotation"),
                              color(a), a.flag("fill"), pattern(a), a.flag("flashing")));
  return 0;
}

int ellipsoid(const Args& a, Link& link) {
  DtVdc3DAttachPoint at = anchor(a, "attach");
  add(link, std::make_unique<DtVdcEllipsoidObject>(objectId(a), at, *position(a, "diameters"),
                                                   offsetOf(a), rotationOf(a), color(a),
                                                   a.flag("flashing")));
  return 0;
}

int cuboid(const Args& a, Link& link) {
  DtVdc3DAttachPoint at = anchor(a, "attach");
  std::vector<double> size = a.vector("size");
  add(link,
      std::make_unique<DtVdcCuboidObject>(objectId(a), at, size[0], size[1], size[2], offsetOf(a),
                                          rotationOf(a), color(a), a.flag("flashing")));
  return 0;
}

int cylinder(const Args& a, Link& link) {
  DtVdc3DAttachPoint from = anchor(a, "attach");
  DtVdc3DAttachPoint to = anchor(a, "to");
  auto shape = std::make_unique<DtVdcCylinderObject>(objectId(a), from, to, screen(a, "diameters"),
                                                     offsetOf(a), color(a), a.flag("flashing"));
  // Nothing derives these from the two anchors: the caller says them.
  shape->setLength(a.real("length"));
  shape->setRotation(rotationOf(a));
  add(link, std::move(shape));
  return 0;
}

int triangle2d(const Args& a, Link& link) {
  add(link, std::make_unique<DtVdcTriangle2DObject>(
                objectId(a), screen(a, "corners", 0), screen(a, "corners", 1),
                screen(a, "corners", 2), screen(a, "at"), screen(a, "scale"), a.real("rotation"),
                color(a), a.flag("fill"), pattern(a), a.flag("flashing")));
  return 0;
}

DtVector64 corner(const Args& a, size_t index) {
  std::vector<double> v = a.vector("corners", index);
  return DtVector64(v[0], v[1], v[2]);
}

int triangle3d(const Args& a, Link& link) {
  add(link, std::make_unique<DtVdcTriangle3DObject>(objectId(a), corner(a, 0), corner(a, 1),
                                                    corner(a, 2), color(a), a.flag("flashing")));
  return 0;
}

int area(const Args& a, Link& link) {
  std::vector<DtVector64> corners;
  for (size_t i = 0; i < a.count("corners"); ++i) corners.push_back(corner(a, i));
  add(link, std::make_unique<DtVdcArea3DObject>(
                objectId(a), corners, color(a),
                fittingText(a, "texture-dir", DtVdcAreaPduBase::kTextureNameSize),
                fittingText(a, "texture", DtVdcAreaPduBase::kTextureNameSize),
                static_cast<int>(a.integer("tiles")), a.flag("flashing")));
  return 0;
}

int text2d(const Args& a, Link& link) {
  add(link, std::make_unique<DtVdcText2DObject>(
                objectId(a), fittingText(a, "text", roomAfter(DtVdcTextPdu::kLength)),
                screen(a, "at"), color(a), a.flag("flashing")));
  return 0;
}

int text3d(const Args& a, Link& link) {
  DtVdc3DAttachPoint at = anchor(a, "attach");
  add(link, std::make_unique<DtVdcText3DObject>(
                objectId(a), fittingText(a, "text", roomAfter(DtVdcTextPdu::kLength)), at,
                offsetOf(a), color(a), a.flag("flashing")));
  return 0;
}

int layer(const Args& a, Link& link) {
  add(link, std::make_unique<DtVdcDrawLayerObject>(
                objectId(a), fittingText(a, "name", roomAfter(DtVdcLayerPdu::kLength))));
  return 0;
}

int panelTemplate(const Args& a, Link& link) {
  std::vector<DeclaredAttribute> attributes;
  for (size_t i = 0; i < a.count("attributes"); ++i) {
    attributes.push_back(declaredAttribute(a, a.text("attributes", i)));
    // The drawer finds a template's attributes by id among its objects: one with the
    // template's own id would be taken for the template, without end.
    if (attributes.back().id == objectId(a))
      a.fail("argument <attributes>: '" + a.text("attributes", i) + "' has the template's own id " +
             std::to_string(objectId(a)) + ": give it another");
  }
  auto panel = std::make_unique<DtVdcAttributeGroupTemplateObject>(
      objectId(a), fittingText(a, "name", roomAfter(DtVdcAttributePdu::kLength)));
  for (const DeclaredAttribute& d : attributes) {
    if (d.type == DtVdcAttributeTemplateObject::DtVdcValueBarAttribute)
      panel->createAttributeTemplate(d.id, DtString(d.name), d.min, d.max);
    else
      panel->createAttributeTemplate(d.id, DtString(d.name), d.type);
  }
  add(link, std::move(panel));
  return 0;
}

int panel(const Args& a, Link& link) {
  DtVdc3DAttachPoint at = anchor(a, "attach");
  // The panel needs its template only for the template's id: the viewer already knows
  // the template's attributes, and values are sent with 'vcctl value'.
  auto declared =
      std::make_unique<DtVdcAttributeGroupTemplateObject>(objectId(a, "template"), DtString(""));
  auto group = std::make_unique<DtVdcAttributeGroupObject>(
      objectId(a), declared.get(), at, offsetOf(a), color(a), a.flag("flashing"));
  link.keep(std::move(declared));
  add(link, std::move(group));
  return 0;
}

void anchoredLook(Command& c) {
  positionOption(c, "offset", "east-north-up offset from the anchor in metres");
  colorOption(c, "white");
  flashingOption(c);
}

}  // namespace

void declareDrawCommands(Command& root, Registry& registry) {
  Command& draw =
      root.command("draw", "draw in the viewers' scenes; drawings stay after vcctl exits");
  draw.details(
      "Screen positions (2D drawings) are fractions of the screen: 0,0 bottom left, 1,1 top\n"
      "right. Scene drawings hang on an ANCHOR: a position X,Y,Z, an entity id such as\n"
      "1:1:1, or object:ID[@PERCENT] along another drawing.\n"
      "Example: vcctl draw text2d --id 3 --at 0.1,0.9 --color yellow \"Hello\"");

  Command* c = &registry.add(draw, "line2d", "a line on the screen", &line2d);
  idOption(*c, "line");
  screenOption(*c, "from", "start on the screen").required();
  screenOption(*c, "to", "end on the screen").required();
  segmentOptions(*c);

  c = &registry.add(draw, "line3d", "a line in the scene between two anchors", &line3d);
  idOption(*c, "line");
  anchorOption(*c, "from", "start").required();
  anchorOption(*c, "to", "end").required();
  positionOption(*c, "offset", "east-north-up offset of the whole line in metres");
  c->option("check-los", Type::Flag, "draw only while the two ends see each other");
  c->option("projected", Type::Flag, "project the line onto the ground");
  segmentOptions(*c);

  for (bool rectangle : {false, true}) {
    const std::string name = rectangle ? "rectangle" : "ellipse";
    c = &registry.add(
        draw, name, rectangle ? "a rectangle on the screen" : "an ellipse on the screen",
        rectangle ? &screenShape<DtVdcRectangleObject> : &screenShape<DtVdcEllipseObject>);
    idOption(*c, name);
    screenOption(*c, "at", "centre on the screen").required();
    screenOption(*c, "size", "half-width and half-height, fractions of the screen").required();
    c->option("rotation", Type::Real, "rotation in radians").placeholder("R").defaultValue("0");
    colorOption(*c, "white");
    fillOptions(*c);
  }

  c = &registry.add(draw, "ellipsoid", "an ellipsoid in the scene", &ellipsoid);
  idOption(*c, "ellipsoid");
  anchorOption(*c, "attach", "centre").required();
  positionOption(*c, "diameters", "half-axes along x, y and z in metres").required();
  anglesOption(*c, "rotation", "rotation");
  anchoredLook(*c);

  c = &registry.add(draw, "cuboid", "a box in the scene", &cuboid);
  idOption(*c, "box");
  anchorOption(*c, "attach", "centre").required();
  c->option("size", Type::Vector, "half of its length, width and height in metres")
      .placeholder("L,W,H")
      .size(3)
      .required();
  anglesOption(*c, "rotation", "rotation");
  anchoredLook(*c);

  c = &registry.add(draw, "cylinder", "a cylinder in the scene, from one anchor or between two",
                    &cylinder);
  idOption(*c, "cylinder");
  anchorOption(*c, "attach", "one end").required();
  anchorOption(*c, "to", "the other end, if it spans two anchors");
  c->option("diameters", Type::Vector, "the two diameters of its cross-section in metres")
      .placeholder("A,B")
      .size(2)
      .required();
  c->option("length", Type::Real, "length in metres").placeholder("L").defaultValue("0");
  anglesOption(*c, "rotation", "rotation");
  anchoredLook(*c);

  c = &registry.add(draw, "triangle2d", "a triangle on the screen", &triangle2d);
  idOption(*c, "triangle");
  c->arguments("corners", Type::Vector, "three corners X,Y relative to --at").size(2).minCount(3);
  screenOption(*c, "at", "where its origin is on the screen").defaultValue("0,0");
  screenOption(*c, "scale", "scale along x and y").defaultValue("1,1");
  c->option("rotation", Type::Real, "rotation in radians").placeholder("R").defaultValue("0");
  colorOption(*c, "white");
  fillOptions(*c);

  c = &registry.add(draw, "triangle3d", "a triangle in the scene", &triangle3d);
  idOption(*c, "triangle");
  c->arguments("corners", Type::Vector, "three corners X,Y,Z in the world").size(3).minCount(3);
  colorOption(*c, "white");
  flashingOption(*c);

  c = &registry.add(draw, "area", "a polygon in the scene, optionally textured", &area);
  idOption(*c, "area");
  c->arguments("corners", Type::Vector, "corners X,Y,Z in order").size(3).minCount(3);
  c->option("texture", Type::Text, "image file laid on it").placeholder("FILE").defaultValue("");
  c->option("texture-dir", Type::Text, "directory of that file")
      .placeholder("DIR")
      .defaultValue("");
  c->option("tiles", Type::Integer, "how often the texture repeats")
      .placeholder("N")
      .defaultValue("1");
  colorOption(*c, "white");
  flashingOption(*c);

  c = &registry.add(draw, "text2d", "a text on the screen", &text2d);
  idOption(*c, "text");
  c->argument("text", Type::Text, "the text");
  screenOption(*c, "at", "where it starts on the screen").required();
  colorOption(*c, "white");
  flashingOption(*c);

  c = &registry.add(draw, "text3d", "a text in the scene", &text3d);
  idOption(*c, "text");
  c->argument("text", Type::Text, "the text");
  anchorOption(*c, "attach", "where it hangs").required();
  anchoredLook(*c);

  c = &registry.add(draw, "layer", "a named layer that drawings can be put into", &layer);
  idOption(*c, "layer");
  c->argument("name", Type::Text, "the layer's name");
  c->details("Then: vcctl add-to-layer OBJECT LAYER");

  c = &registry.add(draw, "template", "declare an attribute panel: its name and attributes",
                    &panelTemplate);
  idOption(*c, "template");
  c->option("name", Type::Text, "the panel's title").placeholder("NAME").required();
  c->arguments("attributes", Type::Text,
               "attributes as ID:NAME[:KIND], KIND one of label, number (the default), "
               "bar:MIN:MAX, graph, bitmap")
      .minCount(1);
  c->details(
      "Example: vcctl draw template --id 20 --name Status 1:Speed:number 2:Fuel:bar:0:100\n"
      "Then show it with 'vcctl draw panel' and fill it with 'vcctl value'.");

  c = &registry.add(draw, "panel", "show an attribute panel made from a template", &panel);
  idOption(*c, "panel");
  c->option("template", Type::Integer, "id of the template it shows")
      .placeholder("N")
      .range(0, 4294967295.0)
      .required();
  anchorOption(*c, "attach", "where it hangs").defaultValue("0,0,0");
  anchoredLook(*c);
}

}  // namespace vcctl
