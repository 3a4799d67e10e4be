#pragma once
// The viewer's scene: the drawing objects that draw-control PDUs create, change, show,
// hide, layer and remove, kept by object id, and the attribute panels with their values.
// Everything a PDU says is copied out of it, so the scene outlives the PDUs.
#include <map>
#include <set>
#include <string>
#include <vector>

#include "vistrelControl.h"

namespace vcviewer {

struct Rgba {
  unsigned char r = 255, g = 255, b = 255, a = 255;
};

/// Where one end of a drawing is anchored.
struct Anchor {
  enum Kind { None, Position, Entity, Object };
  Kind kind = None;
  DtVector64 position;  // screen -1..1 for 2D drawings, world metres for 3D ones
  std::string entity;
  unsigned int objectId = 0;
  int percent = 0;  // how far along the other drawing object
};

struct Segment {
  Rgba color;
  unsigned int thickness = 1;
  unsigned int pattern = 0xFFFFFFFFu;
  int arrow = 0;  // 1 at the end, 2 at the start, 3 both
  bool lightning = false;
  int percent = 100;
};

/// One drawing object, or one attribute of a group template, or a layer: what its
/// latest PDU said, plus what commands did to it.
struct Drawing {
  unsigned int id = 0;
  int type = 0;  // the draw type: DtVdc2DLine, DtVdcLayer, ...
  bool hidden = false;
  std::set<unsigned int> layers;
  bool layout0 = false;  // came in the version-0 layout

  Rgba color;
  bool flashing = false;
  Anchor anchors[2];
  DtVector64 offset;

  std::vector<Segment> segments;  // lines
  bool fill = false;              // shapes and triangles
  DtVector64 scale;
  DtTaitBryan rotation;
  std::vector<DtVector64> points;  // triangle corners, area points
  std::string texture;
  std::string text;                 // text drawings; the name of attributes, templates and layers
  unsigned int attributeGroup = 0;  // attributes: their group template; groups: theirs
  bool hasRange = false;
  double rangeMin = 0, rangeMax = 0;
  std::set<unsigned int> hiddenAttributes;  // groups and group templates

  bool is2D() const;
  bool isLine() const;
};

/// The current value of one attribute of one attribute group.
struct AttributeValue {
  bool set = false;
  double x = 0, y = 0;
  std::string text;
};

class Scene;

/// An attribute's value as a panel shows it: "-" when none was set, nothing for an
/// attribute without a value, "(x, y)" for a list value, the text of a bitmap.
std::string panelText(const Drawing& attribute, const AttributeValue* value);
/// A panel's title: the name of its group template, else "panel ID".
std::string panelTitle(const Scene& scene, const Drawing& group);

class Scene {
 public:
  /// Most drawings, attributes and attribute values each that the scene holds: ids come
  /// from the network, and a sender that invents new ones must not grow us without end.
  static constexpr size_t kMaxEntries = 100000;

  /// Applies a draw-control PDU of either layout and returns the line saying what it did
  /// ("draw add 7 DtVdc3DLine layer=-", "draw hide 7").
  std::string apply(const DtVistrelDrawControlPdu& pdu);

  const std::map<unsigned int, Drawing>& drawings() const { return drawings_; }
  const Drawing* find(unsigned int id) const;
  /// The attributes of a group template, in the order they first arrived.
  const std::vector<Drawing>& attributes(unsigned int groupTemplate) const;
  /// The value of an attribute in a group, or null when none was set.
  const AttributeValue* value(unsigned int group, unsigned int attribute) const;
  /// Neither hidden itself nor in a hidden layer.
  bool visible(const Drawing& d) const;
  /// Whether an attribute of a group is shown: hidden neither in the group nor in its
  /// template.
  bool attributeVisible(const Drawing& group, unsigned int attribute) const;

 private:
  std::string applyCommand(const DtVdcCommandPduBase& pdu);
  std::string applyValue(const DtVdcAttributeUpdatePduBase& pdu);
  std::string store(Drawing drawing);
  std::string storeAttribute(Drawing attribute);
  std::string layerList(const Drawing& d) const;
  /// The value slot of an attribute in a group, or null when it is new and the scene is
  /// full.
  AttributeValue* valueSlot(unsigned int group, unsigned int attribute);

  std::map<unsigned int, Drawing> drawings_;
  std::map<unsigned int, std::vector<Drawing>> attributes_;                // by group template id
  std::map<unsigned int, std::map<unsigned int, AttributeValue>> values_;  // by group id
  size_t attributeCount_ = 0;
  size_t valueCount_ = 0;
};

}  // namespace vcviewer
