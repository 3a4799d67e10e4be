#include "svgWriter.h"

#include <algorithm>
#include <cmath>
#include <optional>
#include <set>

#include "eyepoint.h"
#include "placement.h"
#include "scene.h"
#include "settings.h"
#include "svgCanvas.h"
#include "textFormat.h"
#include "viewState.h"

namespace vcviewer {

namespace {

constexpr double kPi = 3.14159265358979323846;
constexpr double kWidth = 1260, kHeight = 800;
constexpr int kTraySlots = 6;
constexpr int kMaxGridLines = 64;
// A plan with thousands of glyphs is unreadable and slow to show: those the eyepoint and
// the drawings name come first, then the others in discovery order up to the cap; only
// the first few carry their marking.
constexpr size_t kMaxPlanEntities = 300;
constexpr size_t kMaxPlanLabels = 40;

struct Frame {
  double x, y, w, h;
};

const Frame kOverlay{20, 90, 560, 420};
const Frame kPlan{620, 90, 620, 520};
const Frame kTray{620, 620, 620, 90};

const char* kPanelBackground = "#1b1f24";
const char* kGrid = "#3a414a";
const char* kMuted = "#9aa4ae";

std::string paint(const Rgba& c) {
  return SvgCanvas::color(c.r, c.g, c.b);
}
// A colour that was never set arrives as all zeros, alpha included; drawing it invisible
// would hide the drawing, so no alpha counts as opaque.
double opacity(const Rgba& c) {
  return c.a == 0 ? 1.0 : c.a / 255.0;
}
std::string halo(const Rgba& c) {
  double luminance = (0.299 * c.r + 0.587 * c.g + 0.114 * c.b) / 255.0;
  return luminance < 0.5 ? "#f0f0f0" : "#111418";
}

Pt lerp(Pt a, Pt b, double t) {
  return {a.x + (b.x - a.x) * t, a.y + (b.y - a.y) * t};
}

// The stipple pattern as a dash array, one bit to 1.5 pixels; solid for all ones (and for
// no bits at all, which is a pattern nobody set).
std::string dashes(unsigned int pattern) {
  if (pattern == 0xFFFFFFFFu || pattern == 0) return {};
  int start = 0;  // a set bit whose predecessor is clear begins the first dash
  while (start < 32 && !(((pattern >> start) & 1) && !((pattern >> ((start + 31) % 32)) & 1)))
    ++start;
  std::string text;
  int run = 0;
  bool on = true;
  for (int i = 0; i < 32; ++i) {
    bool bit = (pattern >> ((start + i) % 32)) & 1;
    if (bit != on) {
      text += (text.empty() ? "" : " ") + number(run * 1.5);
      run = 0;
      on = bit;
    }
    ++run;
  }
  return text + " " + number(run * 1.5);
}

std::vector<std::string> wrap(const std::string& text, size_t width) {
  std::vector<std::string> lines;
  std::string current;
  size_t start = 0;
  while (start < text.size()) {
    size_t end = text.find(' ', start);
    if (end == std::string::npos) end = text.size();
    std::string word = text.substr(start, end - start);
    if (!current.empty() && current.size() + 1 + word.size() > width) {
      lines.push_back(current);
      current.clear();
    }
    current += (current.empty() ? "" : " ") + word;
    start = end + 1;
  }
  if (!current.empty()) lines.push_back(current);
  return lines;
}

std::string shorten(const std::string& text, size_t width) {
  return text.size() <= width ? text : text.substr(0, width - 3) + "...";
}

bool usesPrimary(DtViewerCommand mode) {
  return mode != DtVcAbsolute && mode != DtVcGroup && mode != DtVcPivot;
}
bool usesSecondary(DtViewerCommand mode) {
  return mode == DtVcTetherTrack || mode == DtVcMimicTrack;
}

class Picture {
 public:
  Picture(const std::string& id, const ViewState& view, const Settings& settings,
          const Scene& scene, const WorldView& world)
      : id_(id),
        view_(view),
        settings_(settings),
        scene_(scene),
        world_(world),
        canvas_(kWidth, kHeight, "vcviewer " + id + " scene") {}

  std::string render() {
    collectEntities();
    chooseShown();
    fitWorld();
    header();
    overlay();
    plan();
    tray();
    caption();
    return canvas_.finish();
  }

 private:
  // ------------------------------------------------------------------ frame and caption
  void header() {
    canvas_.rect(0, 0, kWidth, kHeight, Style{"none", "#0f1215"});
    canvas_.text({20, 34}, "vcviewer " + id_, TextStyle{"#f0f0f0", 20, true});
    canvas_.text({20, 60}, "eyepoint: " + shorten(view_.describe(), 170), TextStyle{kMuted, 13});
  }

  void panelFrame(const Frame& f, const std::string& label) {
    canvas_.rect(f.x, f.y, f.w, f.h, Style{kGrid, kPanelBackground});
    canvas_.text({f.x, f.y - 8}, label, TextStyle{"#d0d6dc", 13, true});
  }

  void caption() {
    double y = kOverlay.y + kOverlay.h + 36;
    auto line = [&](const std::string& text, const TextStyle& style) {
      canvas_.text({kOverlay.x, y}, text, style);
      y += 17;
    };
    line("Eyepoint", TextStyle{"#d0d6dc", 13, true});
    for (const std::string& l : wrap(view_.describe(), 88)) line(l, TextStyle{"#e8e8e8", 12});
    line("step " + number(settings_.stepsize()) + " m, turn " + number(settings_.turnrate()) +
             " deg per command",
         TextStyle{"#e8e8e8", 12});
    y += 6;
    line("Settings", TextStyle{"#d0d6dc", 13, true});
    std::string options;
    for (const auto& [name, value] : settings_.values())
      options += (options.empty() ? "" : " ") + name + "=" + value;
    std::vector<std::string> lines = wrap(options.empty() ? "none changed" : options, 88);
    if (lines.size() > 4) {
      lines.resize(4);
      lines.back() += " ...";
    }
    for (const std::string& l : lines) line(l, TextStyle{"#e8e8e8", 12});
    y += 6;
    line("Scene", TextStyle{"#d0d6dc", 13, true});
    int total = 0, hidden = 0;
    std::string layers;
    for (const auto& [id, d] : scene_.drawings()) {
      if (d.type == DtVdcLayer) {
        layers += (layers.empty() ? "" : ", ") + quoted(d.text) + (d.hidden ? " hidden" : " shown");
        continue;
      }
      ++total;
      if (!scene_.visible(d)) ++hidden;
    }
    line(std::to_string(total) + " drawing objects, " + std::to_string(hidden) +
             " hidden or in a hidden layer",
         TextStyle{"#e8e8e8", 12});
    for (const std::string& l :
         wrap("layers: " + (layers.empty() ? std::string("none") : layers), 88))
      line(l, TextStyle{"#e8e8e8", 12});
    if (unplaced_ > 0)
      line(std::to_string(unplaced_) +
               " drawings could not be placed (anchor unknown or out of the tray)",
           TextStyle{"#ffb36b", 12});
  }

  // ------------------------------------------------------------------ 2D overlay
  // Screen coordinates run from -1 to 1 in both directions, y up, as the PDUs carry them.
  Pt screen(const DtVector64& p) const {
    return {kOverlay.x + (p.x() + 1) / 2 * kOverlay.w, kOverlay.y + (1 - p.y()) / 2 * kOverlay.h};
  }

  void overlay() {
    panelFrame(kOverlay, "2D overlay (screen -1..1, y up)");
    Style grid{kGrid};
    grid.dash = "4 4";
    canvas_.line(screen(DtVector64(-1, 0, 0)), screen(DtVector64(1, 0, 0)), grid);
    canvas_.line(screen(DtVector64(0, -1, 0)), screen(DtVector64(0, 1, 0)), grid);
    canvas_.beginClip(kOverlay.x, kOverlay.y, kOverlay.w, kOverlay.h);
    for (const auto& [id, d] : scene_.drawings())
      if (d.is2D() && scene_.visible(d)) draw2D(d);
    canvas_.endClip();
  }

  void draw2D(const Drawing& d) {
    if (d.anchors[0].kind != Anchor::Position) {
      ++unplaced_;
      return;
    }
    begin(d);
    Pt at = screen(d.anchors[0].position);
    Style shape = shapeStyle(d);
    double halfW = kOverlay.w / 2, halfH = kOverlay.h / 2;
    switch (d.type) {
      case DtVdc2DLine:
      case DtVdc2DSegmentedLine:
        if (d.anchors[1].kind == Anchor::Position) segments(at, screen(d.anchors[1].position), d);
        break;
      case DtVdc2DText:
        label(at, d.text, d.color, 14);
        break;
      case DtVdc2DTriangle: {
        // Corners are relative to the anchor, scaled, then turned by the third angle,
        // which 2D drawings carry in degrees.
        double sx = d.scale.x(), sy = d.scale.y();
        if (sx == 0 && sy == 0) sx = sy = 1;
        double a = d.rotation.phi() * kPi / 180;
        std::vector<Pt> corners;
        for (const DtVector64& c : d.points) {
          double x = c.x() * sx, y = c.y() * sy;
          corners.push_back(
              screen(DtVector64(d.anchors[0].position.x() + x * std::cos(a) - y * std::sin(a),
                                d.anchors[0].position.y() + x * std::sin(a) + y * std::cos(a), 0)));
        }
        canvas_.polygon(corners, shape);
        break;
      }
      case DtVdcCircle:
        canvas_.ellipse(at, std::max(2.0, std::fabs(d.scale.x()) / 2 * halfW),
                        std::max(2.0, std::fabs(d.scale.y()) / 2 * halfH), -d.rotation.phi(),
                        shape);
        break;
      case DtVdcSquare:
        canvas_.box(at, std::max(3.0, std::fabs(d.scale.x()) * halfW),
                    std::max(3.0, std::fabs(d.scale.y()) * halfH), -d.rotation.phi(), shape);
        break;
      default:
        break;
    }
    canvas_.endGroup();
  }

  // ------------------------------------------------------------------ plan view
  void fitWorld() {
    std::vector<vcgeo::Vec3> points;  // geocentric
    for (const auto& [id, d] : scene_.drawings()) {
      if (d.is2D() || !scene_.visible(d) || !inPlan(d)) continue;
      for (int end = 0; end < 2; ++end) {
        const Placed p = placeEnd(scene_, world_.entities, d, end, world_.now);
        if (p.placed) points.push_back(p.world);
      }
      for (const DtVector64& p : d.points) points.push_back(v3(p));
    }
    for (const Entity* e : shown_) points.push_back(e->at(world_.now).position);
    // An eye far from everything (still at the earth's centre, where a viewer starts) would
    // shrink the scene to a dot: it is left off the edge of the plan instead.
    if (world_.eye.placed &&
        vcgeo::norm(world_.frame.local(world_.eye.position)) < 2 * FrameKeeper::kFrameReach)
      points.push_back(world_.eye.position);
    if (view_.mode() == DtVcPivot) points.push_back(v3(view_.params().pivotPoint));
    double minX = -50, maxX = 50, minY = -50, maxY = 50;
    if (!points.empty()) {
      const vcgeo::Vec3 first = world_.frame.local(points[0]);
      minX = maxX = first.x;
      minY = maxY = first.y;
      for (const vcgeo::Vec3& world : points) {
        const vcgeo::Vec3 p = world_.frame.local(world);
        minX = std::min(minX, p.x);
        maxX = std::max(maxX, p.x);
        minY = std::min(minY, p.y);
        maxY = std::max(maxY, p.y);
      }
    }
    centre_ = {(minX + maxX) / 2, (minY + maxY) / 2};
    double spanX = std::max((maxX - minX) * 1.2, 10.0), spanY = std::max((maxY - minY) * 1.2, 10.0);
    scale_ = std::min(kPlan.w / spanX, kPlan.h / spanY);
  }

  static vcgeo::Vec3 v3(const DtVector64& v) { return {v.x(), v.y(), v.z()}; }

  // A point of the plan from metres east and north of the local origin.
  Pt at(double east, double north) const {
    return {kPlan.x + kPlan.w / 2 + (east - centre_.x) * scale_,
            kPlan.y + kPlan.h / 2 - (north - centre_.y) * scale_};
  }
  // A point of the plan from geocentric metres.
  Pt plan(const vcgeo::Vec3& world) const {
    const vcgeo::Vec3 p = world_.frame.local(world);
    return at(p.x, p.y);
  }
  // The direction a body's nose points on the plan, in radians clockwise from up.
  double bearing(const vcgeo::Euler& orientation) const {
    const vcgeo::Vec3 f = world_.frame.axes * vcgeo::forwardOf(orientation);
    return std::atan2(f.x, f.y);
  }

  // Where end `i` of `d` is on the plan: its place, or for an entity not known here its
  // designator's slot in the tray.
  std::optional<Pt> end(const Drawing& d, int i) const {
    const Placed p = placeEnd(scene_, world_.entities, d, i, world_.now);
    if (p.placed) return plan(p.world);
    const Anchor& a = d.anchors[i];
    if (a.kind != Anchor::Entity) return std::nullopt;
    auto it = std::find(entities_.begin(), entities_.end(), a.entity);
    if (it == entities_.end() || it - entities_.begin() >= kTraySlots) return std::nullopt;
    return traySlot(static_cast<int>(it - entities_.begin()));
  }

  void plan() {
    panelFrame(kPlan, world_.frame.geographic ? "Plan view (x east, y north, metres)"
                                              : "Plan view (geocentric x, y, metres)");
    canvas_.beginClip(kPlan.x, kPlan.y, kPlan.w, kPlan.h);
    grid();
    for (const auto& [id, d] : scene_.drawings())
      if (!d.is2D() && d.type != DtVdcAttributeGroup && scene_.visible(d)) draw3D(d);
    // Panels last, so that they stay readable over the drawings.
    for (const auto& [id, d] : scene_.drawings())
      if (d.type == DtVdcAttributeGroup && scene_.visible(d)) {
        if (auto place = end(d, 0)) {
          panel(d, *place);
        } else {
          ++unplaced_;
        }
      }
    entities();
    eye();
    canvas_.endClip();
    scaleBar();
  }

  void grid() {
    double step = niceStep(kPlan.w / scale_ / 6);
    Style line{kGrid};
    line.strokeWidth = 0.5;
    double left = centre_.x - kPlan.w / 2 / scale_, right = centre_.x + kPlan.w / 2 / scale_;
    double bottom = centre_.y - kPlan.h / 2 / scale_, top = centre_.y + kPlan.h / 2 / scale_;
    // Counted, not stepped: far from the origin a step can be too small to change a
    // double, and a drawing sent there must not hang the viewer.
    auto each = [step](double from, double to, auto draw) {
      double first = std::ceil(from / step) * step;
      for (int i = 0; i < kMaxGridLines && first + i * step <= to; ++i) draw(first + i * step);
    };
    each(left, right, [&](double x) { canvas_.line(at(x, bottom), at(x, top), line); });
    each(bottom, top, [&](double y) { canvas_.line(at(left, y), at(right, y), line); });
  }

  static double niceStep(double raw) {
    double power = std::pow(10.0, std::floor(std::log10(raw)));
    for (double m : {1.0, 2.0, 5.0, 10.0})
      if (m * power >= raw) return m * power;
    return 10 * power;
  }

  void scaleBar() {
    double metres = niceStep(kPlan.w / scale_ / 5);
    double y = kPlan.y + kPlan.h - 14, x = kPlan.x + 14;
    Style bar{"#e8e8e8"};
    bar.strokeWidth = 2;
    canvas_.line({x, y}, {x + metres * scale_, y}, bar);
    canvas_.text({x, y - 6}, number(metres) + " m", TextStyle{"#e8e8e8", 11});
    std::string where =
        "centre (" + number(std::round(centre_.x)) + ", " + number(std::round(centre_.y)) + ")";
    if (world_.frame.geographic) {
      const vcgeo::Geodetic g = vcgeo::toGeodetic(world_.frame.origin);
      where += " m from " + number(std::round(g.lat * 180 / kPi * 1e5) / 1e5) + ", " +
               number(std::round(g.lon * 180 / kPi * 1e5) / 1e5);
    }
    canvas_.text({kPlan.x + kPlan.w, kPlan.y - 8}, where, TextStyle{kMuted, 11, false, "end"});
  }

  // Layers and panel templates have no place of their own, whatever their PDU says.
  static bool inPlan(const Drawing& d) {
    return d.type != DtVdcLayer && d.type != DtVdcAttributeGroupTemplate;
  }

  void draw3D(const Drawing& d) {
    if (!inPlan(d)) return;
    Style shape = shapeStyle(d);
    if (d.isLine()) {
      auto a = end(d, 0), b = end(d, 1);
      if (!a || !b) return void(++unplaced_);
      begin(d);
      segments(*a, *b, d);
      return canvas_.endGroup();
    }
    if (d.type == DtVdc3DTriangle || d.type == DtVdcTriangle || d.type == DtVdc3DArea ||
        d.type == DtVdcArea) {
      std::vector<Pt> corners;
      for (const DtVector64& p : d.points) corners.push_back(plan(v3(p)));
      if (corners.size() < 2) return void(++unplaced_);
      begin(d);
      bool area = d.type == DtVdc3DArea || d.type == DtVdcArea;
      if (area) shape.fill = paint(d.color);
      Style drawn = shape;
      if (area) drawn.opacity *= 0.45;
      canvas_.polygon(corners, drawn);
      if (area) canvas_.polygon(corners, Style{paint(d.color), "none", 1.5, opacity(d.color)});
      return canvas_.endGroup();
    }
    auto place = end(d, 0);
    if (!place) return void(++unplaced_);
    const Pt* at = &*place;
    begin(d);
    double heading = d.rotation.psi() * 180 / kPi;  // clockwise from north, as the page turns
    double sx = std::fabs(d.scale.x()) * scale_, sy = std::fabs(d.scale.y()) * scale_;
    switch (d.type) {
      case DtVdc3DText:
      case DtVdcText:
        canvas_.ellipse(*at, 2.5, 2.5, 0, Style{"none", paint(d.color), 1, opacity(d.color)});
        label({at->x + 6, at->y - 4}, d.text, d.color, 13);
        break;
      case DtVdcCube:
        canvas_.box(*at, std::max(4.0, sx), std::max(4.0, sy), heading, shape);
        break;
      case DtVdcCylinder: {
        auto other = d.anchors[1].kind == Anchor::None ? std::nullopt : end(d, 1);
        if (other) {
          Style tube{paint(d.color), "none", std::max(2.0, sy), opacity(d.color)};
          canvas_.line(*at, *other, tube);
        } else {
          canvas_.box(*at, std::max(4.0, sx), std::max(4.0, sy), heading, shape);
        }
        break;
      }
      default:  // spheres and any other poly-object
        canvas_.ellipse(*at, std::max(2.0, sx / 2), std::max(2.0, sy / 2), heading, shape);
        break;
    }
    canvas_.endGroup();
  }

  // An attribute panel: a box beside its anchor with one row per shown attribute.
  void panel(const Drawing& group, Pt at) {
    std::string title = panelTitle(scene_, group);
    std::vector<const Drawing*> rows;
    for (const Drawing& a : scene_.attributes(group.attributeGroup))
      if (scene_.attributeVisible(group, a.id)) rows.push_back(&a);
    const double w = 230, rowH = 18, h = 24 + rowH * static_cast<double>(rows.size());
    double x = std::clamp(at.x + 16, kPlan.x + 4, kPlan.x + kPlan.w - w - 4);
    double y = std::clamp(at.y - 16 - h, kPlan.y + 4, kPlan.y + kPlan.h - h - 4);
    begin(group);
    std::string edge = paint(group.color);
    canvas_.line(at, {x, y + h}, Style{edge, "none", 1, 0.8});
    canvas_.ellipse(at, 3, 3, 0, Style{"none", edge});
    canvas_.rect(x, y, w, h, Style{edge, "#101418", 1.5, 0.92});
    canvas_.text({x + 8, y + 16}, shorten(title, 30), TextStyle{"#f0f0f0", 12, true});
    double rowY = y + 24;
    for (const Drawing* a : rows) {
      const AttributeValue* v = scene_.value(group.id, a->id);
      canvas_.text({x + 8, rowY + 13}, shorten(a->text, 16), TextStyle{"#d0d6dc", 11});
      std::string shown = panelText(*a, v);
      if (a->type == DtVdcAttributeGraphicSingleValue)
        bar(*a, v, x + 112, rowY + 4, 66, group.color);
      canvas_.text({x + w - 8, rowY + 13},
                   shorten(shown, a->type == DtVdcAttributeGraphicSingleValue ? 7 : 18),
                   TextStyle{"#ffffff", 11, false, "end"});
      rowY += rowH;
    }
    canvas_.endGroup();
  }

  void bar(const Drawing& a, const AttributeValue* v, double x, double y, double w,
           const Rgba& color) {
    double lo = 0, hi = 100;
    if (a.hasRange && a.rangeMax > a.rangeMin) {
      lo = a.rangeMin;
      hi = a.rangeMax;
    }
    double fraction = v ? std::clamp((v->x - lo) / (hi - lo), 0.0, 1.0) : 0.0;
    canvas_.rect(x, y, w, 10, Style{"#6b7480", "#23282e"});
    if (fraction > 0)
      canvas_.rect(x, y, w * fraction, 10, Style{"none", paint(color), 1, opacity(color)});
  }

  // A dart at `c` pointing along `angle` (clockwise from up), `r` pixels long.
  void dart(Pt c, double angle, double r, const Style& style) {
    auto tip = [&](double a, double len) {
      return Pt{c.x + len * std::sin(a), c.y - len * std::cos(a)};
    };
    canvas_.polygon({tip(angle, r), tip(angle + 2.5, r * 0.6), tip(angle - 2.5, r * 0.6)}, style);
  }

  void eye() {
    const EyeParams& e = view_.params();
    Style mark{"#ffd84d", "#ffd84d"};
    if (world_.eye.placed) {
      Pt place = plan(world_.eye.position);
      canvas_.beginGroup("eyepoint", "eyepoint: " + view_.modeName(), false);
      Style sight{"#ffd84d", "none", 1, 0.7};
      sight.dash = "3 3";
      const double h = bearing(world_.eye.orientation);
      canvas_.line(place, {place.x + 40 * std::sin(h), place.y - 40 * std::cos(h)}, sight);
      dart(place, h, 14, mark);
      canvas_.text({place.x + 10, place.y + 16}, "eye", TextStyle{"#ffd84d", 11, true});
      canvas_.endGroup();
    }
    if (view_.mode() == DtVcPivot) {
      Pt at = plan(v3(e.pivotPoint));
      Style cross{"#ffd84d"};
      cross.strokeWidth = 2;
      canvas_.line({at.x - 7, at.y - 7}, {at.x + 7, at.y + 7}, cross);
      canvas_.line({at.x - 7, at.y + 7}, {at.x + 7, at.y - 7}, cross);
      canvas_.text({at.x + 10, at.y + 16}, "pivot r=" + number(e.radius),
                   TextStyle{"#ffd84d", 11, true});
    }
  }

  // ------------------------------------------------------------------ entities
  // The entities the plan shows: those the eyepoint and the drawings name, then the rest.
  void chooseShown() {
    std::set<DtObjectId> taken;
    auto take = [&](const Entity* e) {
      if (e && e->hasSpatial && shown_.size() < kMaxPlanEntities && taken.insert(e->object).second)
        shown_.push_back(e);
    };
    for (const std::string& name : named_) take(world_.entities.find(name, name).entity);
    for (const auto& kv : world_.entities.all()) take(&kv.second);
    total_ = 0;
    for (const auto& kv : world_.entities.all()) total_ += kv.second.hasSpatial;
  }

  void entities() {
    const std::string& followed = world_.eye.entity;
    Style trail{"#8fd3ff", "none", 1, 0.45};
    for (size_t i = 0; i < shown_.size(); ++i) {
      const Entity& e = *shown_[i];
      const vcdr::State s = e.at(world_.now);
      const Pt place = plan(s.position);
      const bool watched = !followed.empty() && e.label() == followed;
      const std::string color = watched ? "#ffd84d" : "#8fd3ff";
      canvas_.beginGroup("entity-" + std::to_string(e.object),
                         e.label() + (e.marking.empty() ? "" : " " + quoted(e.marking)), false);
      if (const auto* points = world_.trails.of(e.object)) {
        std::vector<Pt> path;
        for (const vcgeo::Vec3& p : *points) path.push_back(plan(p));
        path.push_back(place);
        if (path.size() > 1) canvas_.polyline(path, trail);
      }
      dart(place, bearing(s.orientation), 9, Style{color, color});
      if (i < kMaxPlanLabels)
        canvas_.text({place.x + 8, place.y - 6}, e.marking.empty() ? e.label() : e.marking,
                     TextStyle{color, 11});
      canvas_.endGroup();
    }
    if (total_ > 0)
      canvas_.text(
          {kPlan.x + kPlan.w - 8, kPlan.y + kPlan.h - 10},
          "entities: " + std::to_string(shown_.size()) + " of " + std::to_string(total_) + " shown",
          TextStyle{kMuted, 11, false, "end"});
  }

  // Designators the eyepoint and the drawings name; those not known here go to the tray.
  void collectEntities() {
    auto note = [&](const std::string& id) {
      if (std::find(named_.begin(), named_.end(), id) == named_.end()) named_.push_back(id);
      if (world_.entities.find(id, id).entity) return;
      if (std::find(entities_.begin(), entities_.end(), id) == entities_.end())
        entities_.push_back(id);
    };
    DtViewerCommand mode = view_.mode();
    if (usesPrimary(mode)) note(view_.params().primary.id);
    if (usesSecondary(mode)) note(view_.params().secondary.id);
    if (mode == DtVcGroup)
      for (const std::string& id : view_.group()) note(id);
    for (const auto& [id, d] : scene_.drawings())
      if (!d.is2D() && scene_.visible(d))
        for (const Anchor& a : d.anchors)
          if (a.kind == Anchor::Entity) note(a.entity);
  }

  Pt traySlot(int i) const {
    double slot = kTray.w / kTraySlots;
    return {kTray.x + slot * (i + 0.5), kTray.y + 34};
  }

  void tray() {
    panelFrame(kTray, "Entities named but not known here (what hangs on them waits)");
    const EyeParams& e = view_.params();
    for (size_t i = 0; i < entities_.size() && i < kTraySlots; ++i) {
      Pt at = traySlot(static_cast<int>(i));
      const std::string& id = entities_[i];
      bool watched =
          (usesPrimary(view_.mode()) && id == e.primary.id) ||
          (usesSecondary(view_.mode()) && id == e.secondary.id) ||
          (view_.mode() == DtVcGroup &&
           std::find(view_.group().begin(), view_.group().end(), id) != view_.group().end());
      std::string color = watched ? "#ffd84d" : "#8fd3ff";
      canvas_.polygon({{at.x, at.y - 8}, {at.x + 8, at.y}, {at.x, at.y + 8}, {at.x - 8, at.y}},
                      Style{color, "none", 2});
      canvas_.text({at.x, at.y + 24}, shorten(id.empty() ? "(no id)" : id, 16),
                   TextStyle{"#e8e8e8", 11, false, "middle"});
      if (watched)
        canvas_.text({at.x, at.y + 38}, "eye: " + view_.modeName(),
                     TextStyle{"#ffd84d", 10, false, "middle"});
    }
    if (entities_.size() > kTraySlots)
      canvas_.text({kTray.x + kTray.w - 8, kTray.y + kTray.h - 8},
                   "+" + std::to_string(entities_.size() - kTraySlots) + " more",
                   TextStyle{kMuted, 11, false, "end"});
  }

  // ------------------------------------------------------------------ shared drawing
  void begin(const Drawing& d) {
    std::string tooltip =
        std::string(DtVistrelDrawControlPdu::typeString(d.type)) + " " + std::to_string(d.id);
    if (!d.text.empty()) tooltip += " " + quoted(d.text);
    if (!d.texture.empty()) tooltip += " texture " + d.texture;
    canvas_.beginGroup("object-" + std::to_string(d.id), tooltip, d.flashing);
  }

  Style shapeStyle(const Drawing& d) const {
    Style s{paint(d.color), d.fill ? paint(d.color) : "none", 1.5, opacity(d.color)};
    return s;
  }

  void label(Pt at, const std::string& text, const Rgba& color, double size) {
    TextStyle style{paint(color), size};
    style.halo = halo(color);
    canvas_.text(at, text, style);
  }

  // A line from a to b cut into its segments, each with its share of the length, its
  // colour, thickness, stipple, appearance and arrows.
  void segments(Pt a, Pt b, const Drawing& d) {
    std::vector<Segment> parts = d.segments;
    if (parts.empty()) {
      Segment only;
      only.color = d.color;
      parts.push_back(only);
    }
    double total = 0;
    for (const Segment& s : parts) total += s.percent;
    double t = 0;
    for (const Segment& s : parts) {
      double share = total > 0 ? s.percent / total : 1.0 / static_cast<double>(parts.size());
      Pt from = lerp(a, b, t), to = lerp(a, b, t + share);
      t += share;
      Style stroke{paint(s.color), "none", std::clamp(static_cast<double>(s.thickness), 1.0, 20.0),
                   opacity(s.color), dashes(s.pattern)};
      if (s.lightning) {
        canvas_.polyline(zigzag(from, to), stroke);
      } else {
        canvas_.line(from, to, stroke);
      }
      if (s.arrow & 1) arrowHead(from, to, stroke);
      if (s.arrow & 2) arrowHead(to, from, stroke);
    }
  }

  static std::vector<Pt> zigzag(Pt a, Pt b) {
    double dx = b.x - a.x, dy = b.y - a.y, length = std::hypot(dx, dy);
    // A line reaching far off the page still gets a bounded number of teeth.
    double wanted = length / 12;  // NaN too ends up at two
    int teeth = wanted >= 2 ? (wanted < 400 ? static_cast<int>(wanted) : 400) : 2;
    double nx = length > 0 ? -dy / length : 0, ny = length > 0 ? dx / length : 0;
    std::vector<Pt> pts{a};
    for (int i = 1; i < teeth; ++i) {
      Pt p = lerp(a, b, static_cast<double>(i) / teeth);
      double side = (i % 2 ? 5.0 : -5.0);
      pts.push_back({p.x + nx * side, p.y + ny * side});
    }
    pts.push_back(b);
    return pts;
  }

  void arrowHead(Pt from, Pt to, const Style& stroke) {
    double angle = std::atan2(to.y - from.y, to.x - from.x), size = 8 + stroke.strokeWidth;
    Pt left{to.x - size * std::cos(angle - 0.4), to.y - size * std::sin(angle - 0.4)};
    Pt right{to.x - size * std::cos(angle + 0.4), to.y - size * std::sin(angle + 0.4)};
    canvas_.polygon({to, left, right}, Style{"none", stroke.stroke, 1, stroke.opacity});
  }

  const std::string& id_;
  const ViewState& view_;
  const Settings& settings_;
  const Scene& scene_;
  const WorldView& world_;
  SvgCanvas canvas_;
  std::vector<std::string> entities_;  // named, not known: the tray
  std::vector<std::string> named_;     // every designator named
  std::vector<const Entity*> shown_;
  size_t total_ = 0;
  Pt centre_;
  double scale_ = 1;
  int unplaced_ = 0;
};

}  // namespace

std::string renderSvg(const std::string& viewerId, const ViewState& view, const Settings& settings,
                      const Scene& scene, const WorldView& world) {
  return Picture(viewerId, view, settings, scene, world).render();
}

}  // namespace vcviewer
