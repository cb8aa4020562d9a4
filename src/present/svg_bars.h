#pragma once

#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "svg_colour.h"

namespace greycard::present {

/// Rows of stacked bars as one SVG element, 600 pixels wide, in the manner of SvgPlot.
class BarChart {
 public:
  /// \param part  names of the parts of a bar, from the left; one without a name for plain bars
  BarChart(std::string title, std::string axisTitle, std::vector<std::string> parts);

  struct Bar {
    std::string name;
    std::optional<PlotColour> chip;  ///< a small square before the name
    std::vector<double> parts;       ///< not negative; what is not finite is left out
    std::string value;               ///< behind the bar
    std::optional<double> mark;      ///< for comparison, on the same axis
  };
  void addBar(Bar bar) { m_bars.push_back(std::move(bar)); }
  /// What the marks are, for the legend.
  void nameMarks(std::string name) { m_markName = std::move(name); }
  /// The axis goes on to there even if no bar does.
  void reachTo(double value) { m_least = value; }
  /// A line across all bars. \param text  stands above it
  void addLimit(double value, std::string text) { m_limits.emplace_back(value, std::move(text)); }

  std::string svg() const;

 private:
  double end() const;
  std::string legend() const;
  std::string axis(double end, double bottom) const;
  std::string row(const Bar& bar, double end, double top) const;

  std::string m_title, m_axisTitle, m_markName;
  std::vector<std::string> m_parts;
  double m_least = 0.0;
  std::vector<Bar> m_bars;
  std::vector<std::pair<double, std::string>> m_limits;
};

}  // namespace greycard::present
