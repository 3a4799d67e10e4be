#include "scene.h"

#include <algorithm>

#include "textFormat.h"

namespace vcviewer {

namespace {

const std::vector<Drawing> kNoAttributes;

// Which anchor each attachment kind uses for its two ends.
const Anchor::Kind kAnchorKinds[12][2] = {
    {Anchor::Position, Anchor::None},   {Anchor::Position, Anchor::Position},
    {Anchor::Entity, Anchor::None},     {Anchor::Object, Anchor::None},
    {Anchor::Entity, Anchor::Position}, {Anchor::Object, Anchor::Position},
    {Anchor::Position, Anchor::Entity}, {Anchor::Position, Anchor::Object},
    {Anchor::Entity, Anchor::Object},   {Anchor::Object, Anchor::Entity},
    {Anchor::Entity, Anchor::Entity},   {Anchor::Object, Anchor::Object},
};

// Segment counts travel in 32 bits but a line never has more than 255 segments; the cap
// keeps a corrupt count from costing time.
constexpr unsigned int kMaxSegments = 255;
constexpr int kMaxAreaPoints = 16;

Rgba rgba(const unsigned char* bytes) {
  Rgba c;
  if (bytes) {
    c.r = bytes[0];
    c.g = bytes[1];
    c.b = bytes[2];
    c.a = bytes[3];
  }
  return c;
}

Drawing header(const DtVistrelDrawControlPdu& pdu) {
  Drawing d;
  d.id = pdu.objectId();
  d.type = static_cast<int>(pdu.type().value());
  d.layout0 = pdu.paramVersion() != 1;
  return d;
}

Drawing attachable(const DtVdcAttachablePdu& pdu) {
  Drawing d = header(pdu);
  d.color = rgba(pdu.color());
  d.flashing = pdu.flashing();
  int kind = pdu.attachmentType();
  if (kind < 0 || kind > 11) kind = 0;
  for (int i = 0; i < 2; ++i) {
    Anchor& a = d.anchors[i];
    a.kind = kAnchorKinds[kind][i];
    if (a.kind == Anchor::Position) a.position = pdu.position(i);
    if (a.kind == Anchor::Entity) a.entity = pdu.attachEntityId(i).stdString();
    if (a.kind == Anchor::Object) {
      a.objectId = pdu.attachObjectId(i);
      a.percent = pdu.relativeLocation(i);
    }
  }
  d.offset = pdu.offset();
  return d;
}

Drawing line(const DtVdcLinePdu& pdu) {
  Drawing d = attachable(pdu);
  unsigned int count = std::min(pdu.numSegments(), kMaxSegments);
  for (unsigned int i = 0; i < count; ++i) {
    Segment s;
    const unsigned char* color = pdu.color(i);
    s.color = color ? rgba(color) : d.color;
    s.thickness = pdu.thickness(i);
    s.pattern = pdu.pattern(i);
    s.arrow = pdu.arrowStyle(i);
    s.lightning = pdu.appearance(i) == DtVdcLinePdu::DtVdcLineAppearanceLightning;
    s.percent = pdu.percentage(i);
    d.segments.push_back(s);
  }
  if (!d.segments.empty()) d.color = d.segments.front().color;
  return d;
}

Drawing polyObject(const DtVdcPolyObjectPduBase& pdu) {
  Drawing d = attachable(pdu);
  d.fill = pdu.fill();
  d.scale = pdu.scale();
  d.rotation = pdu.rotation();
  return d;
}

Drawing triangle(const DtVdcTrianglePduBase& pdu) {
  Drawing d = polyObject(pdu);
  for (int i = 0; i < 3; ++i) d.points.push_back(pdu.point(i));
  return d;
}

Drawing area(const DtVdcAreaPduBase& pdu) {
  Drawing d = polyObject(pdu);
  int count = std::clamp(pdu.numPoints(), 0, kMaxAreaPoints);
  if (d.layout0) {
    // The older layout has no room for a point count: the points run up to the last one
    // that is not at the origin.
    count = 0;
    for (int i = 0; i < kMaxAreaPoints; ++i)
      if (pdu.point(i) != DtVector64()) count = i + 1;
  }
  for (int i = 0; i < count; ++i) d.points.push_back(pdu.point(i));
  std::string dir = pdu.textureDirectory().stdString(), file = pdu.textureFilename().stdString();
  d.texture = dir.empty() || file.empty() ? dir + file : dir + "/" + file;
  return d;
}

Drawing text(const DtVdcTextPduBase& pdu) {
  Drawing d = attachable(pdu);
  d.text = pdu.text().stdString();
  return d;
}

Drawing attribute(const DtVdcAttributePduBase& pdu) {
  Drawing d = attachable(pdu);
  d.text = pdu.name().stdString();
  d.attributeGroup = pdu.attributeGroupId();
  d.hasRange = pdu.hasRange();
  d.rangeMin = pdu.rangeMin();
  d.rangeMax = pdu.rangeMax();
  return d;
}

Drawing layer(const DtVdcLayerPduBase& pdu) {
  Drawing d = header(pdu);
  d.text = pdu.name().stdString();
  return d;
}

const char* typeName(int type) {
  return DtVistrelDrawControlPdu::typeString(type);
}

std::string idPair(unsigned int group, unsigned int attribute) {
  return std::to_string(group) + "/" + std::to_string(attribute);
}

}  // namespace

bool Drawing::is2D() const {
  switch (type) {
    case DtVdc2DLine:
    case DtVdc2DSegmentedLine:
    case DtVdcCircle:
    case DtVdcSquare:
    case DtVdc2DTriangle:
    case DtVdc2DText:
      return true;
    default:
      return false;
  }
}

bool Drawing::isLine() const {
  return (type >= DtVdcLine && type <= DtVdc3DLine) ||
         (type >= DtVdcSegmentedLine && type <= DtVdc3DSegmentedLine);
}

std::string Scene::apply(const DtVistrelDrawControlPdu& pdu) {
  // Most derived first: areas and triangles are poly-objects too.
  if (auto* p = dynamic_cast<const DtVdcCommandPduBase*>(&pdu)) return applyCommand(*p);
  if (auto* p = dynamic_cast<const DtVdcAttributeUpdatePduBase*>(&pdu)) return applyValue(*p);
  if (auto* p = dynamic_cast<const DtVdcLayerPduBase*>(&pdu)) return store(layer(*p));
  if (auto* p = dynamic_cast<const DtVdcLinePdu*>(&pdu)) return store(line(*p));
  if (auto* p = dynamic_cast<const DtVdcAreaPduBase*>(&pdu)) return store(area(*p));
  if (auto* p = dynamic_cast<const DtVdcTrianglePduBase*>(&pdu)) return store(triangle(*p));
  if (auto* p = dynamic_cast<const DtVdcPolyObjectPduBase*>(&pdu)) return store(polyObject(*p));
  if (auto* p = dynamic_cast<const DtVdcTextPduBase*>(&pdu)) return store(text(*p));
  if (auto* p = dynamic_cast<const DtVdcAttributePduBase*>(&pdu)) {
    Drawing d = attribute(*p);
    // Panels and their templates are drawing objects; the attributes of a template are
    // numbered within it and would clash with the drawing objects' ids.
    if (d.type == DtVdcAttributeGroup || d.type == DtVdcAttributeGroupTemplate)
      return store(std::move(d));
    return storeAttribute(std::move(d));
  }
  return "draw ignored " + std::to_string(pdu.objectId()) +
         " command=" + std::to_string(static_cast<int>(pdu.viewerCommand()));
}

std::string Scene::store(Drawing d) {
  auto it = drawings_.find(d.id);
  std::string verb = "add";
  if (it == drawings_.end() && drawings_.size() >= kMaxEntries)
    return "draw refused " + std::to_string(d.id) + ": the scene is full";
  if (it != drawings_.end()) {
    // What commands did to the object outlives a new description of it.
    d.hidden = it->second.hidden;
    d.layers = it->second.layers;
    d.hiddenAttributes = it->second.hiddenAttributes;
    verb = "update";
  }
  std::string line = "draw " + verb + " " + std::to_string(d.id) + " " + typeName(d.type) +
                     " layer=" + layerList(d);
  if (d.type == DtVdcAttributeGroup) line += " template=" + std::to_string(d.attributeGroup);
  if (d.type == DtVdc2DText || d.type == DtVdc3DText || d.type == DtVdcText) {
    line += " text=" + quoted(d.text);
  } else if (!d.text.empty()) {
    line += " name=" + quoted(d.text);
  }
  drawings_[d.id] = std::move(d);
  return line;
}

std::string Scene::storeAttribute(Drawing d) {
  std::vector<Drawing>& list = attributes_[d.attributeGroup];
  auto it = std::find_if(list.begin(), list.end(), [&](const Drawing& a) { return a.id == d.id; });
  std::string line = std::string("draw ") + (it == list.end() ? "add " : "update ") +
                     idPair(d.attributeGroup, d.id) + " " + typeName(d.type) +
                     " name=" + quoted(d.text);
  if (d.type == DtVdcAttributeGraphicSingleValue && d.hasRange)
    line += " range=" + number(d.rangeMin) + ".." + number(d.rangeMax);
  if (it == list.end() && attributeCount_ >= kMaxEntries)
    return "draw refused " + idPair(d.attributeGroup, d.id) + ": the scene is full";
  if (it == list.end()) {
    list.push_back(std::move(d));
    ++attributeCount_;
  } else {
    *it = std::move(d);
  }
  return line;
}

std::string Scene::applyCommand(const DtVdcCommandPduBase& pdu) {
  unsigned int id = pdu.objectId(), layerId = pdu.layerId();
  int type = static_cast<int>(pdu.type().value());
  auto it = drawings_.find(id);
  bool known = it != drawings_.end();
  std::string unknown = known ? "" : " unknown";
  switch (type) {
    case DtVdcCommandRemove:
      if (known) {
        if (it->second.type == DtVdcLayer)
          for (auto& entry : drawings_) entry.second.layers.erase(id);
        auto values = values_.find(id);
        if (values != values_.end()) {
          valueCount_ -= values->second.size();
          values_.erase(values);
        }
        if (it->second.type == DtVdcAttributeGroupTemplate) {
          auto attributes = attributes_.find(id);
          if (attributes != attributes_.end()) {
            attributeCount_ -= attributes->second.size();
            attributes_.erase(attributes);
          }
        }
        drawings_.erase(id);
      }
      return "draw remove " + std::to_string(id) + unknown;
    case DtVdcCommandHide:
    case DtVdcCommandShow:
      if (known) it->second.hidden = type == DtVdcCommandHide;
      return std::string("draw ") + (type == DtVdcCommandHide ? "hide " : "show ") +
             std::to_string(id) + unknown;
    case DtVdcCommandAddToLayer:
    case DtVdcCommandRemoveFromLayer:
      if (known) {
        if (type == DtVdcCommandAddToLayer) {
          it->second.layers.insert(layerId);
        } else {
          it->second.layers.erase(layerId);
        }
      }
      return std::string("draw ") +
             (type == DtVdcCommandAddToLayer ? "addtolayer " : "removefromlayer ") +
             std::to_string(id) + " layer=" + std::to_string(layerId) + unknown;
    case DtVdcCommandShowAttribute:
    case DtVdcCommandHideAttribute:
    case DtVdcCommandShowTemplateAttribute:
    case DtVdcCommandHideTemplateAttribute: {
      // The attribute is the object id; its group (or template) travels as the layer id.
      bool hide = type == DtVdcCommandHideAttribute || type == DtVdcCommandHideTemplateAttribute;
      bool ofTemplate =
          type == DtVdcCommandShowTemplateAttribute || type == DtVdcCommandHideTemplateAttribute;
      auto owner = drawings_.find(layerId);
      if (owner != drawings_.end()) {
        if (hide) {
          owner->second.hiddenAttributes.insert(id);
        } else {
          owner->second.hiddenAttributes.erase(id);
        }
      }
      return std::string("draw ") + (hide ? "hide" : "show") +
             (ofTemplate ? "templateattribute " : "attribute ") + idPair(layerId, id) +
             (owner == drawings_.end() ? " unknown" : "");
    }
    default:
      return "draw command " + std::to_string(id) + " type=" + std::to_string(type) + " ignored";
  }
}

AttributeValue* Scene::valueSlot(unsigned int group, unsigned int attribute) {
  auto g = values_.find(group);
  if (g != values_.end()) {
    auto a = g->second.find(attribute);
    if (a != g->second.end()) return &a->second;
  }
  if (valueCount_ >= kMaxEntries) return nullptr;
  ++valueCount_;
  return &values_[group][attribute];
}

std::string Scene::applyValue(const DtVdcAttributeUpdatePduBase& pdu) {
  unsigned int group = pdu.groupId(), attribute = pdu.objectId();
  int type = static_cast<int>(pdu.type().value());
  std::string line = "draw value " + idPair(group, attribute);
  switch (type) {
    case DtVdcAttributeValueSet: {
      AttributeValue* slot = valueSlot(group, attribute);
      if (!slot) return line + " refused: the scene is full";
      AttributeValue& v = *slot;
      v.set = true;
      v.x = pdu.valueX();
      v.y = pdu.valueY();
      return line + " x=" + number(v.x) + " y=" + number(v.y);
    }
    case DtVdcAttributeValueSetText: {
      AttributeValue* slot = valueSlot(group, attribute);
      if (!slot) return line + " refused: the scene is full";
      AttributeValue& v = *slot;
      v.set = true;
      v.text = pdu.text().stdString();
      return line + " text=" + quoted(v.text);
    }
    case DtVdcAttributeValueReset: {
      AttributeValue* slot = valueSlot(group, attribute);
      if (!slot) return line + " refused: the scene is full";
      *slot = AttributeValue();
      return line + " reset";
    }
    default:
      return line + " type=" + std::to_string(type) + " ignored";
  }
}

std::string Scene::layerList(const Drawing& d) const {
  if (d.layers.empty()) return "-";
  std::string text;
  for (unsigned int id : d.layers) text += (text.empty() ? "" : ",") + std::to_string(id);
  return text;
}

const Drawing* Scene::find(unsigned int id) const {
  auto it = drawings_.find(id);
  return it == drawings_.end() ? nullptr : &it->second;
}

const std::vector<Drawing>& Scene::attributes(unsigned int groupTemplate) const {
  auto it = attributes_.find(groupTemplate);
  return it == attributes_.end() ? kNoAttributes : it->second;
}

const AttributeValue* Scene::value(unsigned int group, unsigned int attribute) const {
  auto g = values_.find(group);
  if (g == values_.end()) return nullptr;
  auto v = g->second.find(attribute);
  return v == g->second.end() || !v->second.set ? nullptr : &v->second;
}

bool Scene::visible(const Drawing& d) const {
  if (d.hidden) return false;
  for (unsigned int id : d.layers) {
    const Drawing* layerDrawing = find(id);
    if (layerDrawing && layerDrawing->hidden) return false;
  }
  return true;
}

bool Scene::attributeVisible(const Drawing& group, unsigned int attribute) const {
  if (group.hiddenAttributes.count(attribute)) return false;
  const Drawing* groupTemplate = find(group.attributeGroup);
  return !groupTemplate || !groupTemplate->hiddenAttributes.count(attribute);
}

std::string panelText(const Drawing& attribute, const AttributeValue* value) {
  if (attribute.type == DtVdcAttributeNoValue) return "";
  if (!value) return "-";
  switch (attribute.type) {
    case DtVdcAttributeGraphicListValue:
      return "(" + number(value->x) + ", " + number(value->y) + ")";
    case DtVdcAttributeBitmap:
      return value->text;
    default:
      return number(value->x);
  }
}

std::string panelTitle(const Scene& scene, const Drawing& group) {
  const Drawing* groupTemplate = scene.find(group.attributeGroup);
  return groupTemplate && !groupTemplate->text.empty() ? groupTemplate->text
                                                       : "panel " + std::to_string(group.id);
}

}  // namespace vcviewer
