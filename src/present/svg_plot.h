#pragma once

#include <optional>
#include <string>
#include <vector>

#include "greycard/types.h"

namespace greycard::present {

struct PlotAxis {
  std::string title;                ///< with its unit
  std::optional<double> low, high;  ///< the range shown; from the data where not given
};

/// Colours that also differ for colour-blind eyes (Okabe and Ito, 2008), repeating after six.
const char* plotColour(std::size_t index);

/// "#rrggbb" of an encoded colour of 0..1; what lies beyond is clipped, not-a-number counts as 0.
std::string hexColour(const Vector3& rgb);

/// A plot of lines, markers and arrows as one SVG element: 600 pixels wide, no script, nothing
/// fetched from anywhere, no identifiers, so that several fit into one page. Points are in the
/// units of the axes. A point that is not finite is left out and interrupts its line; lines are cut
/// off at the edge of a given range, markers, arrows and texts beyond it are left out.
class SvgPlot {
 public:
  SvgPlot(std::string title, PlotAxis x, PlotAxis y);

  enum class Stroke { Solid, Dashed };
  /// An empty name keeps a series out of the legend.
  void addLine(std::string name, std::vector<Point2> points, std::string colour,
               Stroke stroke = Stroke::Solid);
  /// Specks and crosses are small, for thousands of points.
  enum class Marker { Dot, Ring, Square, Speck, Cross };
  void addMarkers(std::string name, std::vector<Point2> points, std::string colour,
                  Marker marker = Marker::Dot);
  void addArrow(Point2 from, Point2 to, std::string colour);
  /// Small text to the upper right of a point.
  void addText(Point2 at, std::string text);
  /// One unit is as long on the x axis as on the y axis.
  void useEqualScales() { m_equalScales = true; }

  std::string svg() const;

 private:
  struct Series {
    std::string name, colour;
    std::vector<Point2> points;
    std::optional<Stroke> line;  // a line, else markers
    Marker marker;
  };
  struct Arrow {
    Point2 from, to;
    std::string colour;
  };
  struct Text {
    Point2 at;
    std::string text;
  };
  class Drawing;

  std::string m_title;
  PlotAxis m_x, m_y;
  bool m_equalScales = false;
  std::vector<Series> m_series;
  std::vector<Arrow> m_arrows;
  std::vector<Text> m_texts;
};

}  // namespace greycard::present
