#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "greycard/types.h"
#include "svg_colour.h"
#include "svg_elements.h"

namespace greycard::present {

struct PlotAxis {
  std::string title;                ///< with its unit
  std::optional<double> low, high;  ///< the range shown; from the data where not given
};

/// A plot of lines, markers and arrows as one SVG element: 600 pixels wide, no script, nothing
/// fetched from anywhere, no identifiers, so that several fit into one page. Points are in the
/// units of the axes. A point that is not finite is left out and interrupts its line; lines are cut
/// off at the edge of a given range, markers, arrows and texts beyond it are left out.
class SvgPlot {
 public:
  SvgPlot(std::string title, PlotAxis x, PlotAxis y);

  /// A broad line is pale, so that another shows on it.
  enum class Stroke { Solid, Dashed, Dotted, Broad };
  /// An empty name keeps a series out of the legend.
  void addLine(std::string name, std::vector<Point2> points, PlotColour colour,
               Stroke stroke = Stroke::Solid);
  using Marker = svg::Marker;
  static constexpr Marker kDot{}, kRing{Marker::Shape::Circle, 4.0, true},
      kSquare{Marker::Shape::Square, 4.0}, kTriangle{Marker::Shape::Triangle, 4.2},
      kCross{Marker::Shape::Cross, 3.0}, kSpeck{Marker::Shape::Circle, 1.6};
  /// \param rim  colour of the markers' edge; else a dark one
  void addMarkers(std::string name, std::vector<Point2> points, PlotColour colour,
                  Marker marker = kDot, const std::optional<PlotColour>& rim = {});
  void addArrow(Point2 from, Point2 to, PlotColour colour);
  /// Small text beside a point, where it covers no marker and no other text.
  void addText(Point2 at, std::string text);
  /// Small text with its middle at the point, whatever is there.
  void addTextAt(Point2 middle, std::string text);
  /// One unit is as long on the x axis as on the y axis.
  void useEqualScales() { m_equalScales = true; }
  /// A small plot between two corners of this one's area, in its units.
  void setInset(SvgPlot inset, Point2 lowerLeft, Point2 upperRight);

  std::string svg() const;

 private:
  struct Series {
    std::string name;
    PlotColour colour;
    std::vector<Point2> points;
    std::optional<Stroke> line;  // a line, else markers
    Marker marker;
    std::optional<PlotColour> rim;
  };
  struct Arrow {
    Point2 from, to;
    PlotColour colour;
  };
  struct Text {
    Point2 at;
    std::string text;
    bool stays = false;
  };
  struct Inset;
  class Drawing;

  std::string m_title;
  PlotAxis m_x, m_y;
  bool m_equalScales = false;
  std::vector<Series> m_series;
  std::vector<Arrow> m_arrows;
  std::vector<Text> m_texts;
  std::shared_ptr<const Inset> m_inset;
};

}  // namespace greycard::present
