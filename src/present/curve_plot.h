#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>

#include "greycard/curve_tables.h"
#include "svg_plot.h"

namespace greycard::present {

/// A plot of tone curves on the axes of the one it is about: each curve's input and output are
/// drawn as parts of full scale, whatever its entries and bits.
class CurvePlot {
 public:
  /// Both axes need a low and a high end.
  CurvePlot(const std::string& title, PlotAxis input, PlotAxis output);
  /// On the axes of a 14-bit table of that many entries.
  CurvePlot(const std::string& title, std::size_t entries);

  /// 257 entries are 10-bit codes, any other table is of 14 bits.
  void addTable(const std::string& name, std::span<const std::int32_t> table, PlotColour colour,
                SvgPlot::Stroke stroke = SvgPlot::Stroke::Solid);
  /// Its one table, or three of a per-channel curve, each with its control points.
  void addCurve(const CurveTables& curve);
  void addControlPoints(const std::string& name, std::span<const ControlPoint> points,
                        PlotColour colour);
  /// A square, in the units of the axes.
  void addMarker(std::string name, Point2 at, PlotColour colour);

  /// \param against  a curve to compare with, in dashes
  std::string svg(const std::optional<CurveTables>& against);

 private:
  void addTables(const CurveTables& curve, bool dashed);
  Point2 onAxes(double input, double output) const;

  PlotAxis m_input, m_output;
  SvgPlot m_plot;
};

/// Distinct colours of red, green and blue.
PlotColour channelColour(std::size_t channel);

}  // namespace greycard::present
