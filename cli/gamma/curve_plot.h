#pragma once

#include <CLI/CLI.hpp>
#include <array>
#include <cstdint>
#include <filesystem>
#include <span>
#include <string>

#include "greycard/gamma_curve.h"
#include "job_files.h"
#include "transition.h"

namespace greycard::cli {

/// Options of every sub-command that can draw its curve.
struct CurvePlotOptions {
  std::filesystem::path plot;
  std::string against;

  void addTo(CLI::App& app);
  /// Names the plot and a curve file to compare with. \throws UsageError for --against alone
  void nameFiles(JobFiles& files) const;
};

/// A plot of tone curves on the axes of the one it is about: each curve's input and output are
/// drawn as parts of full scale, whatever its entries and bits.
class CurvePlot {
 public:
  /// Both axes need a low and a high end.
  CurvePlot(const std::string& title, PlotAxis input, PlotAxis output);
  /// On the axes of a 14-bit table of that many entries.
  CurvePlot(const std::string& title, std::size_t entries);

  /// 257 entries are 10-bit codes, any other table is of 14 bits.
  void addTable(const std::string& name, std::span<const std::int32_t> table, std::string colour,
                SvgPlot::Stroke stroke = SvgPlot::Stroke::Solid);
  /// Its one table, or three of a per-channel curve, each with its control points.
  void addCurve(const std::string& name, const GammaCurve& curve,
                SvgPlot::Stroke stroke = SvgPlot::Stroke::Solid);
  void addControlPoints(const std::string& name, std::span<const ControlPoint> points,
                        std::string colour);
  /// A square, in the units of the axes.
  void addMarker(std::string name, Point2 at, std::string colour);

  /// Adds the curve to compare with and writes the file, if there is one to write.
  void write(const CurvePlotOptions& options);

 private:
  Point2 onAxes(double input, double output) const;

  PlotAxis m_input, m_output;
  SvgPlot m_plot;
};

inline constexpr std::array kChannelNames{"red", "green", "blue"};
/// Their distinct colours.
const char* channelColour(std::size_t channel);

}  // namespace greycard::cli
