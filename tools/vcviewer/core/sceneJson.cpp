#include "sceneJson.h"

#include <cmath>
#include <cstdio>

#include "entities.h"
#include "eyepoint.h"
#include "placement.h"
#include "scene.h"
#include "settings.h"
#include "textFormat.h"
#include "viewState.h"
#include "viewer.h"

namespace vcviewer {

namespace {

// JSON has no NaN or infinity, and a PDU may carry them: they go out as null.
std::string num(double v) {
  return std::isfinite(v) ? number(v) : "null";
}

// Arrival times keep their milliseconds, which the page needs to order and time commands.
std::string seconds(double t) {
  char text[40];
  std::snprintf(text, sizeof text, "%.3f", std::isfinite(t) ? t : 0.0);
  return text;
}

std::string vec(const DtVector64& v) {
  return "[" + num(v.x()) + "," + num(v.y()) + "," + num(v.z()) + "]";
}

std::string color(const Rgba& c) {
  return "[" + std::to_string(c.r) + "," + std::to_string(c.g) + "," + std::to_string(c.b) + "," +
         std::to_string(c.a) + "]";
}

// Builds one object member by member, commas included.
class Obj {
 public:
  Obj& raw(const char* name, const std::string& json) {
    text_ += (text_.size() > 1 ? ",\"" : "\"") + std::string(name) + "\":" + json;
    return *this;
  }
  Obj& str(const char* name, const std::string& value) { return raw(name, jsonString(value)); }
  Obj& number(const char* name, double value) { return raw(name, num(value)); }
  Obj& flag(const char* name, bool value) { return raw(name, value ? "true" : "false"); }
  std::string done() { return text_ + "}"; }

 private:
  std::string text_ = "{";
};

template <typename Range, typename Fn>
std::string array(const Range& range, Fn each) {
  std::string out = "[";
  for (const auto& item : range) {
    std::string one = each(item);
    if (one.empty()) continue;
    out += (out.size() > 1 ? "," : "") + one;
  }
  return out + "]";
}

std::string vec(const vcgeo::Vec3& v) {
  return "[" + num(v.x) + "," + num(v.y) + "," + num(v.z) + "]";
}

// `placed` is where a 3D drawing's end is now, or null for a 2D drawing's.
std::string anchor(const Anchor& a, bool onScreen, const Placed* placed) {
  static const char* const kinds[] = {"none", "position", "entity", "object"};
  Obj o;
  o.str("kind", kinds[a.kind]);
  if (a.kind == Anchor::Position) o.raw("position", vec(a.position));
  // A 2D drawing's position is the PDU's, -1..1 with the screen's centre at 0; the
  // application placed it in fractions 0..1 of the screen (y up), which a reader of the
  // snapshot compares with: both are given.
  if (a.kind == Anchor::Position && onScreen)
    o.raw("screen",
          "[" + num((a.position.x() + 1) / 2) + "," + num((a.position.y() + 1) / 2) + "]");
  if (a.kind == Anchor::Entity) o.str("entity", a.entity);
  if (a.kind == Anchor::Object) o.number("object", a.objectId).number("percent", a.percent);
  if (placed && a.kind != Anchor::None) {
    // Where the end is now in geocentric metres, offset included; for an entity's, which
    // entity it hangs on, so that a page can move it along between snapshots.
    o.raw("at", placed->placed ? vec(placed->world) : "null");
    if (a.kind == Anchor::Entity) o.str("on", placed->entity).number("matches", placed->matches);
    if (!placed->problem.empty()) o.str("problem", placed->problem);
  }
  return o.done();
}

std::string drawing(const Scene& scene, const WorldView& w, const Drawing& d) {
  std::string anchors;
  if (d.is2D()) {
    anchors =
        "[" + anchor(d.anchors[0], true, nullptr) + "," + anchor(d.anchors[1], true, nullptr) + "]";
  } else {
    const Placed a = placeEnd(scene, w.entities, d, 0, w.now);
    const Placed b = placeEnd(scene, w.entities, d, 1, w.now);
    anchors = "[" + anchor(d.anchors[0], false, &a) + "," + anchor(d.anchors[1], false, &b) + "]";
  }
  Obj o;
  o.number("id", d.id)
      .str("type", DtVistrelDrawControlPdu::typeString(d.type))
      .flag("is2D", d.is2D())
      .flag("line", d.isLine())
      .flag("visible", scene.visible(d))
      .flag("hidden", d.hidden)
      .raw("layers", array(d.layers, [](unsigned int id) { return std::to_string(id); }))
      .raw("color", color(d.color))
      .flag("flashing", d.flashing)
      .raw("anchors", anchors)
      .raw("offset", vec(d.offset))
      .raw("segments", array(d.segments,
                             [](const Segment& s) {
                               return Obj()
                                   .raw("color", color(s.color))
                                   .number("thickness", s.thickness)
                                   .number("pattern", s.pattern)
                                   .number("arrow", s.arrow)
                                   .flag("lightning", s.lightning)
                                   .number("percent", s.percent)
                                   .done();
                             }))
      .flag("fill", d.fill)
      .raw("scale", vec(d.scale))
      .raw("rotation", "[" + num(d.rotation.psi()) + "," + num(d.rotation.theta()) + "," +
                           num(d.rotation.phi()) + "]")
      .raw("points", array(d.points, [](const DtVector64& p) { return vec(p); }))
      .str("text", d.text)
      .str("texture", d.texture);
  return o.done();
}

std::string panel(const Scene& scene, const Drawing& group) {
  std::string rows = array(scene.attributes(group.attributeGroup), [&](const Drawing& a) {
    if (!scene.attributeVisible(group, a.id)) return std::string();
    const AttributeValue* v = scene.value(group.id, a.id);
    Obj o;
    o.number("id", a.id)
        .str("name", a.text)
        .str("type", DtVistrelDrawControlPdu::typeString(a.type))
        .str("value", panelText(a, v));
    if (a.type == DtVdcAttributeGraphicSingleValue) {
      double lo = 0, hi = 100;
      if (a.hasRange && a.rangeMax > a.rangeMin) lo = a.rangeMin, hi = a.rangeMax;
      double fraction = v && hi > lo ? (v->x - lo) / (hi - lo) : 0.0;
      o.number("fraction", std::fmax(0.0, std::fmin(1.0, fraction)));
    }
    return o.done();
  });
  return Obj()
      .number("id", group.id)
      .str("title", panelTitle(scene, group))
      .flag("visible", scene.visible(group))
      .raw("color", color(group.color))
      .raw("rows", rows)
      .done();
}

std::string eye(const ViewState& view) {
  const EyeParams& e = view.params();
  return Obj()
      .str("mode", view.modeName())
      .str("describe", view.describe())
      .raw("location", vec(e.location))
      .number("heading", e.heading)
      .number("pitch", e.pitch)
      .number("roll", e.roll)
      .raw("pivot", vec(e.pivotPoint))
      .raw("offset", vec(e.offset))
      .number("radius", e.radius)
      .str("primary", e.primary.id)
      .str("secondary", e.secondary.id)
      .raw("group", array(view.group(), [](const std::string& id) { return jsonString(id); }))
      .done();
}

// Velocity is the dead-reckoned path's, over a tenth of a second around now: a page moves
// the entity along it until the next snapshot.
constexpr double kVelocitySpan = 0.1;

std::string entityList(const Entities& entities, double now) {
  std::string list = array(entities.all(), [now](const auto& entry) {
    const Entity& e = entry.second;
    Obj o;
    o.number("object", static_cast<double>(e.object))
        .str("id", e.hasId ? e.id.text() : std::string())
        .str("instance", e.instanceName)
        .str("class", e.className.substr(e.className.rfind('.') + 1))
        .str("marking", e.marking);
    if (e.hasSpatial) {
      const vcdr::State s = e.at(now);
      const vcgeo::Vec3 velocity =
          (e.at(now + kVelocitySpan / 2).position - e.at(now - kVelocitySpan / 2).position) *
          (1.0 / kVelocitySpan);
      o.str("algorithm", vcrpr::algorithmName(e.spatial.algorithm))
          .raw("position", vec(s.position))
          .raw("velocity", vec(velocity))
          .raw("orientation",
               vec(DtVector64(s.orientation.psi, s.orientation.theta, s.orientation.phi)));
    } else {
      o.raw("position", "null");
    }
    return o.done();
  });
  return Obj()
      .number("count", static_cast<double>(entities.size()))
      .number("faults", static_cast<double>(entities.faultCount()))
      .str("lastFault", entities.lastFault())
      .raw("list", list)
      .done();
}

std::string eyepointJson(const Eyepoint& e) {
  Obj o;
  o.flag("placed", e.placed);
  if (e.placed) {
    o.raw("position", vec(e.position))
        .raw("orientation",
             vec(DtVector64(e.orientation.psi, e.orientation.theta, e.orientation.phi)))
        .number("heading", e.local.psi)
        .number("pitch", e.local.theta)
        .number("roll", e.local.phi);
  }
  return o.str("entity", e.entity).str("problem", e.problem).done();
}

}  // namespace

std::string jsonString(const std::string& text) {
  std::string out = "\"";
  const auto* s = reinterpret_cast<const unsigned char*>(text.data());
  size_t i = 0;
  while (i < text.size()) {
    unsigned int c = 0;
    size_t n = utf8Sequence(s + i, text.size() - i, c);
    if (n == 0) {
      out += "\xEF\xBF\xBD";
      ++i;
      continue;
    }
    if (c == '"' || c == '\\') {
      out += '\\';
      out += static_cast<char>(c);
    } else if (c < 0x20 || c == 0x7F) {
      char hex[8];
      std::snprintf(hex, sizeof hex, "\\u%04x", c);
      out += hex;
    } else if (c == 0x2028 || c == 0x2029) {
      // Valid JSON, but not inside a script; escaped so the document is safe everywhere.
      out += c == 0x2028 ? "\\u2028" : "\\u2029";
    } else {
      out.append(text, i, n);
    }
    i += n;
  }
  return out + "\"";
}

std::string frameJson(const LocalFrame& f) {
  return Obj()
      .raw("origin", vec(f.origin))
      .raw("axes",
           "[" + vec(f.axes.row(0)) + "," + vec(f.axes.row(1)) + "," + vec(f.axes.row(2)) + "]")
      .flag("geographic", f.geographic)
      // Local height of the ellipsoid under the origin: where a page draws the ground.
      .number("ground", f.geographic ? -vcgeo::toGeodetic(f.origin).height : 0.0)
      .number("serial", static_cast<double>(f.serial))
      .done();
}

std::string renderJson(const std::string& viewerId, const ViewState& view, const Settings& settings,
                       const Scene& scene, const WorldView& world,
                       const std::deque<CommandRecord>& recent, std::uint64_t revision,
                       const std::string& svg) {
  std::string settingValues = "{";
  for (const auto& [name, value] : settings.values())
    settingValues +=
        (settingValues.size() > 1 ? "," : "") + jsonString(name) + ":" + jsonString(value);
  settingValues += "}";

  const auto& all = scene.drawings();
  std::string layers = array(all, [](const auto& entry) {
    const Drawing& d = entry.second;
    if (d.type != DtVdcLayer) return std::string();
    return Obj().number("id", d.id).str("name", d.text).flag("hidden", d.hidden).done();
  });
  std::string drawings = array(all, [&](const auto& entry) {
    const Drawing& d = entry.second;
    if (d.type == DtVdcLayer || d.type == DtVdcAttributeGroupTemplate) return std::string();
    return drawing(scene, world, d);
  });
  std::string panels = array(all, [&](const auto& entry) {
    return entry.second.type == DtVdcAttributeGroup ? panel(scene, entry.second) : std::string();
  });
  std::string commands = array(recent, [](const CommandRecord& r) {
    return Obj()
        .raw("time", seconds(r.time))
        .str("sender", r.sender)
        .str("pdu", r.pdu)
        .str("summary", r.summary)
        .done();
  });
  return Obj()
      .str("viewer", viewerId)
      .number("revision", static_cast<double>(revision))
      .raw("time", seconds(world.now))
      .raw("eye", eye(view))
      .raw("frame", frameJson(world.frame))
      .raw("entities", entityList(world.entities, world.now))
      .raw("eyepoint", eyepointJson(world.eye))
      .raw("settings", settingValues)
      .number("stepsize", settings.stepsize())
      .number("turnrate", settings.turnrate())
      .raw("layers", layers)
      .raw("drawings", drawings)
      .raw("panels", panels)
      .raw("commands", commands)
      .str("svg", svg)
      .done();
}

}  // namespace vcviewer
