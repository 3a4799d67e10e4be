#pragma once
// A small SVG document builder: shapes with their style, text, groups, and the escaping
// that keeps any text (names and labels come from the network) well-formed XML.
#include <string>
#include <utility>
#include <vector>

namespace vcviewer {

struct Pt {
  double x = 0, y = 0;
};

struct Style {
  Style(std::string strokeColor = "none", std::string fillColor = "none", double width = 1,
        double alpha = 1, std::string dashArray = std::string())
      : stroke(std::move(strokeColor)),
        fill(std::move(fillColor)),
        strokeWidth(width),
        opacity(alpha),
        dash(std::move(dashArray)) {}
  std::string stroke;
  std::string fill;
  double strokeWidth;
  double opacity;
  std::string dash;  // stroke-dasharray, empty for solid
};

struct TextStyle {
  TextStyle(std::string color = "#e8e8e8", double points = 12, bool heavy = false,
            std::string align = "start")
      : fill(std::move(color)), size(points), bold(heavy), anchor(std::move(align)) {}
  std::string fill;
  double size;
  bool bold;
  std::string anchor;  // start, middle, end
  std::string halo;    // an outline behind the letters, for contrast
};

class SvgCanvas {
 public:
  SvgCanvas(double width, double height, const std::string& title);

  /// The text as XML character data or attribute value: markup characters escaped, and
  /// bytes that are not valid UTF-8 or not allowed in XML replaced by U+FFFD.
  static std::string escape(const std::string& text);
  /// "#rrggbb".
  static std::string color(unsigned char r, unsigned char g, unsigned char b);

  void rect(double x, double y, double w, double h, const Style& style);
  void line(Pt a, Pt b, const Style& style);
  void polyline(const std::vector<Pt>& points, const Style& style);
  void polygon(const std::vector<Pt>& points, const Style& style);
  /// An ellipse centred at `c`, turned by `degrees` (clockwise on the page).
  void ellipse(Pt c, double rx, double ry, double degrees, const Style& style);
  /// A rectangle centred at `c`, turned by `degrees`.
  void box(Pt c, double w, double h, double degrees, const Style& style);
  void text(Pt at, const std::string& text, const TextStyle& style);

  /// Groups what follows until endGroup(); `tooltip` becomes its title, and a flashing
  /// group blinks.
  void beginGroup(const std::string& id, const std::string& tooltip, bool flashing);
  void endGroup();
  /// Keeps what follows inside the rectangle.
  void beginClip(double x, double y, double w, double h);
  void endClip();

  /// The finished document.
  std::string finish();

 private:
  std::string styleAttributes(const Style& style) const;

  std::string out_;
  int clips_ = 0;
  int open_ = 0;
};

}  // namespace vcviewer
