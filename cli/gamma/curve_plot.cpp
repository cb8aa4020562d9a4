#include "curve_plot.h"

#include <algorithm>
#include <array>
#include <utility>

#include "command.h"
#include "curve_source.h"
#include "gamma_commands.h"
#include "greycard/files.h"
#include "greycard/gamma_curve_model.h"

namespace greycard::cli {
namespace {

constexpr std::size_t kStandardCurveEntries = 257;

double inputPart(std::size_t index, std::size_t entries) {
  const auto i = static_cast<double>(index);
  if (entries == kStandardCurveEntries) return std::min(16.0 * i, 4095.0) / 4095.0;
  return i / static_cast<double>(entries - 1);
}

double fullScale(std::size_t entries) {
  return entries == kStandardCurveEntries ? 1023.0 : kCurveMax;
}

GammaCurvePtr comparedCurve(const std::string& name) {
  GammaCurveModel model(false);
  if (name == "HDR10") return model.GenerateHDRCurve(10000);
  return name == "HLG" ? model.GenerateHLGCurve() : curveByNameOrFile(name);
}

bool isGenerated(const std::string& name) {
  return name == "HDR10" || name == "HLG";
}

}  // namespace

const char* channelColour(std::size_t channel) {
  constexpr std::array kColours{"#d55e00", "#009e73", "#0072b2"};
  return kColours[channel % kColours.size()];
}

void CurvePlotOptions::addTo(CLI::App& app) {
  app.add_option("--plot", plot, "Plot to write, as SVG")->type_name("FILE");
  app.add_option("--against", against,
                 "A second curve in the plot: of the catalogue, from a curve file, HDR10 or HLG")
      ->type_name("NAME|FILE");
}

void CurvePlotOptions::nameFiles(JobFiles& files) const {
  if (plot.empty() && !against.empty())
    throw UsageError("--against is a second curve in the plot; it needs --plot");
  if (!isGenerated(against)) nameCurveFile(files, "--against", against);
  files.output("--plot", plot);
}

CurvePlot::CurvePlot(const std::string& title, PlotAxis input, PlotAxis output)
    : m_input(std::move(input)), m_output(std::move(output)), m_plot(title, m_input, m_output) {}

CurvePlot::CurvePlot(const std::string& title, std::size_t entries)
    : CurvePlot(title,
                {"Input (table index, 0.." + std::to_string(entries - 1) + ")", 0.0,
                 static_cast<double>(entries) - 1.0},
                {"Output (14-bit code)", 0.0, kCurveMax}) {}

Point2 CurvePlot::onAxes(double input, double output) const {
  return {*m_input.low + input * (*m_input.high - *m_input.low),
          *m_output.low + output * (*m_output.high - *m_output.low)};
}

void CurvePlot::addTable(const std::string& name, std::span<const std::int32_t> table,
                         std::string colour, SvgPlot::Stroke stroke) {
  std::vector<Point2> line;
  for (std::size_t i = 0; i < table.size(); ++i)
    line.push_back(onAxes(inputPart(i, table.size()), table[i] / fullScale(table.size())));
  m_plot.addLine(name, std::move(line), std::move(colour), stroke);
}

void CurvePlot::addControlPoints(const std::string& name, std::span<const ControlPoint> points,
                                 std::string colour) {
  const GammaCurveModel scales(false);
  std::vector<Point2> places;
  for (const ControlPoint& point : points)
    places.push_back(onAxes(1.0 * point.X * scales.XScale() / 1023.0,
                            1.0 * point.Y * scales.YScale() / kCurveMax));
  if (!places.empty()) m_plot.addMarkers(name, std::move(places), std::move(colour));
}

void CurvePlot::addCurve(const std::string& name, const GammaCurve& curve, SvgPlot::Stroke stroke) {
  const std::array tables{curve.Data(), curve.DataG(), curve.DataB()};
  const std::array points{curve.ControlPoints(), curve.ControlPointsG(), curve.ControlPointsB()};
  const bool dashed = stroke == SvgPlot::Stroke::Dashed;
  for (std::size_t c = 0; c < (curve.IsUnified() ? 1 : tables.size()); ++c) {
    const std::string colour =
        curve.IsUnified() ? (dashed ? "#555555" : plotColour(0)) : channelColour(c);
    const std::string label = curve.IsUnified() ? name : name + ", " + kChannelNames[c];
    addTable(label, *tables[c], colour, stroke);
    if (points[c] && !dashed)
      addControlPoints(curve.IsUnified() || c == 0 ? "control points" : "", *points[c],
                       curve.IsUnified() ? plotColour(1) : colour);
  }
}

void CurvePlot::addMarker(std::string name, Point2 at, std::string colour) {
  m_plot.addMarkers(std::move(name), {at}, std::move(colour), SvgPlot::Marker::Square);
}

void CurvePlot::write(const CurvePlotOptions& options) {
  if (options.plot.empty()) return;
  if (!options.against.empty())
    addCurve(std::filesystem::path(options.against).filename().string(),
             *comparedCurve(options.against), SvgPlot::Stroke::Dashed);
  writeWholeFile(options.plot, m_plot.svg());
}

}  // namespace greycard::cli
