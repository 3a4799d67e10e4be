#include "svgCanvas.h"

#include <cstdio>

#include "textFormat.h"

namespace vcviewer {

namespace {

std::string num(double v) {
  char text[32];
  std::snprintf(text, sizeof text, "%.2f", v);
  return text;
}

std::string points(const std::vector<Pt>& pts) {
  std::string text;
  for (const Pt& p : pts) text += (text.empty() ? "" : " ") + num(p.x) + "," + num(p.y);
  return text;
}

const char kReplacement[] = "\xEF\xBF\xBD";

bool allowedInXml(unsigned int c) {
  if (c < 0x20) return c == 0x9 || c == 0xA || c == 0xD;
  return c != 0xFFFE && c != 0xFFFF;
}

}  // namespace

SvgCanvas::SvgCanvas(double width, double height, const std::string& title) {
  out_ = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n";
  out_ += "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"" + num(width) + "\" height=\"" +
          num(height) + "\" viewBox=\"0 0 " + num(width) + " " + num(height) +
          "\" font-family=\"sans-serif\">\n";
  out_ += "<title>" + escape(title) + "</title>\n";
}

std::string SvgCanvas::escape(const std::string& text) {
  std::string out;
  const auto* s = reinterpret_cast<const unsigned char*>(text.data());
  size_t i = 0;
  while (i < text.size()) {
    unsigned int c = 0;
    size_t n = utf8Sequence(s + i, text.size() - i, c);
    if (n == 0 || !allowedInXml(c)) {
      out += kReplacement;
      i += n ? n : 1;
      continue;
    }
    switch (c) {
      case '&':
        out += "&amp;";
        break;
      case '<':
        out += "&lt;";
        break;
      case '>':
        out += "&gt;";
        break;
      case '"':
        out += "&quot;";
        break;
      case '\'':
        out += "&apos;";
        break;
      default:
        out.append(text, i, n);
    }
    i += n;
  }
  return out;
}

std::string SvgCanvas::color(unsigned char r, unsigned char g, unsigned char b) {
  char text[8];
  std::snprintf(text, sizeof text, "#%02x%02x%02x", r, g, b);
  return text;
}

std::string SvgCanvas::styleAttributes(const Style& style) const {
  std::string a = " stroke=\"" + escape(style.stroke) + "\" fill=\"" + escape(style.fill) + "\"";
  if (style.stroke != "none") a += " stroke-width=\"" + num(style.strokeWidth) + "\"";
  if (style.opacity < 1) a += " opacity=\"" + num(style.opacity) + "\"";
  if (!style.dash.empty()) a += " stroke-dasharray=\"" + escape(style.dash) + "\"";
  return a;
}

void SvgCanvas::rect(double x, double y, double w, double h, const Style& style) {
  out_ += "<rect x=\"" + num(x) + "\" y=\"" + num(y) + "\" width=\"" + num(w) + "\" height=\"" +
          num(h) + "\"" + styleAttributes(style) + "/>\n";
}

void SvgCanvas::line(Pt a, Pt b, const Style& style) {
  out_ += "<line x1=\"" + num(a.x) + "\" y1=\"" + num(a.y) + "\" x2=\"" + num(b.x) + "\" y2=\"" +
          num(b.y) + "\"" + styleAttributes(style) + "/>\n";
}

void SvgCanvas::polyline(const std::vector<Pt>& pts, const Style& style) {
  out_ += "<polyline points=\"" + points(pts) + "\"" + styleAttributes(style) + "/>\n";
}

void SvgCanvas::polygon(const std::vector<Pt>& pts, const Style& style) {
  out_ += "<polygon points=\"" + points(pts) + "\"" + styleAttributes(style) + "/>\n";
}

void SvgCanvas::ellipse(Pt c, double rx, double ry, double degrees, const Style& style) {
  out_ += "<ellipse cx=\"" + num(c.x) + "\" cy=\"" + num(c.y) + "\" rx=\"" + num(rx) + "\" ry=\"" +
          num(ry) + "\"";
  if (degrees != 0)
    out_ += " transform=\"rotate(" + num(degrees) + " " + num(c.x) + " " + num(c.y) + ")\"";
  out_ += styleAttributes(style) + "/>\n";
}

void SvgCanvas::box(Pt c, double w, double h, double degrees, const Style& style) {
  out_ += "<rect x=\"" + num(c.x - w / 2) + "\" y=\"" + num(c.y - h / 2) + "\" width=\"" + num(w) +
          "\" height=\"" + num(h) + "\"";
  if (degrees != 0)
    out_ += " transform=\"rotate(" + num(degrees) + " " + num(c.x) + " " + num(c.y) + ")\"";
  out_ += styleAttributes(style) + "/>\n";
}

void SvgCanvas::text(Pt at, const std::string& content, const TextStyle& style) {
  out_ += "<text x=\"" + num(at.x) + "\" y=\"" + num(at.y) + "\" font-size=\"" + num(style.size) +
          "\" fill=\"" + escape(style.fill) + "\"";
  if (style.bold) out_ += " font-weight=\"bold\"";
  if (style.anchor != "start") out_ += " text-anchor=\"" + escape(style.anchor) + "\"";
  if (!style.halo.empty())
    out_ += " stroke=\"" + escape(style.halo) + "\" stroke-width=\"3\" paint-order=\"stroke\"";
  out_ += " xml:space=\"preserve\">" + escape(content) + "</text>\n";
}

void SvgCanvas::beginGroup(const std::string& id, const std::string& tooltip, bool flashing) {
  out_ += "<g id=\"" + escape(id) + "\">";
  if (!tooltip.empty()) out_ += "<title>" + escape(tooltip) + "</title>";
  if (flashing)
    out_ +=
        "<animate attributeName=\"opacity\" values=\"1;0.2;1\" dur=\"1s\" "
        "repeatCount=\"indefinite\"/>";
  out_ += "\n";
  ++open_;
}

void SvgCanvas::endGroup() {
  if (open_ == 0) return;
  out_ += "</g>\n";
  --open_;
}

void SvgCanvas::beginClip(double x, double y, double w, double h) {
  std::string id = "clip" + std::to_string(++clips_);
  out_ += "<clipPath id=\"" + id + "\"><rect x=\"" + num(x) + "\" y=\"" + num(y) + "\" width=\"" +
          num(w) + "\" height=\"" + num(h) + "\"/></clipPath>\n<g clip-path=\"url(#" + id +
          ")\">\n";
  ++open_;
}

void SvgCanvas::endClip() {
  endGroup();
}

std::string SvgCanvas::finish() {
  while (open_ > 0) endGroup();
  out_ += "</svg>\n";
  return out_;
}

}  // namespace vcviewer
