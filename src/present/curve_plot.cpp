#include "curve_plot.h"

#include <algorithm>
#include <array>
#include <utility>
#include <vector>

#include "greycard/gamma_curve_model.h"

namespace greycard::present {
namespace {

constexpr std::size_t kStandardCurveEntries = 257;

// At least 1, so that there is an axis.
std::size_t lastIndex(std::size_t entries) {
  return std::max<std::size_t>(entries, 2) - 1;
}

double inputPart(std::size_t index, std::size_t entries) {
  const auto i = static_cast<double>(index);
  if (entries == kStandardCurveEntries) return std::min(16.0 * i, 4095.0) / 4095.0;
  return i / static_cast<double>(lastIndex(entries));
}

double fullScale(std::size_t entries) {
  return entries == kStandardCurveEntries ? 1023.0 : kCurveMax;
}

}  // namespace

PlotColour channelColour(std::size_t channel) {
  constexpr std::array<std::size_t, 3> kPlaces{1, 2, 0};
  return plotColour(kPlaces[channel % kPlaces.size()]);
}

CurvePlot::CurvePlot(const std::string& title, PlotAxis input, PlotAxis output)
    : m_input(std::move(input)), m_output(std::move(output)), m_plot(title, m_input, m_output) {}

CurvePlot::CurvePlot(const std::string& title, std::size_t entries)
    : CurvePlot(title,
                {"Input (table index, 0.." + std::to_string(lastIndex(entries)) + ")", 0.0,
                 static_cast<double>(lastIndex(entries))},
                {"Output (14-bit code)", 0.0, kCurveMax}) {}

Point2 CurvePlot::onAxes(double input, double output) const {
  return {*m_input.low + input * (*m_input.high - *m_input.low),
          *m_output.low + output * (*m_output.high - *m_output.low)};
}

void CurvePlot::addTable(const std::string& name, std::span<const std::int32_t> table,
                         PlotColour colour, SvgPlot::Stroke stroke) {
  std::vector<Point2> line;
  for (std::size_t i = 0; i < table.size(); ++i)
    line.push_back(onAxes(inputPart(i, table.size()), table[i] / fullScale(table.size())));
  m_plot.addLine(name, std::move(line), std::move(colour), stroke);
}

void CurvePlot::addControlPoints(const std::string& name, std::span<const ControlPoint> points,
                                 PlotColour colour) {
  const GammaCurveModel scales(false);
  std::vector<Point2> places;
  for (const ControlPoint& point : points)
    places.push_back(onAxes(1.0 * point.X * scales.XScale() / 1023.0,
                            1.0 * point.Y * scales.YScale() / kCurveMax));
  if (!places.empty()) m_plot.addMarkers(name, std::move(places), std::move(colour));
}

void CurvePlot::addTables(const CurveTables& curve, bool dashed) {
  const auto stroke = dashed ? SvgPlot::Stroke::Dashed : SvgPlot::Stroke::Solid;
  for (std::size_t c = 0; c < (curve.unified ? 1 : curve.channels.size()); ++c) {
    const PlotColour colour =
        curve.unified ? (dashed ? quietColour() : plotColour(0)) : channelColour(c);
    const std::string label =
        curve.unified ? curve.name : curve.name + ", " + kCurveChannelNames[c + 1];
    addTable(label, curve.channels[c].table, colour, stroke);
    if (!dashed)
      addControlPoints(curve.unified || c == 0 ? "control points" : "", curve.channels[c].points,
                       curve.unified ? plotColour(1) : colour);
  }
}

void CurvePlot::addCurve(const CurveTables& curve) {
  addTables(curve, false);
}

void CurvePlot::addMarker(std::string name, Point2 at, PlotColour colour) {
  m_plot.addMarkers(std::move(name), {at}, std::move(colour), SvgPlot::kSquare);
}

std::string CurvePlot::svg(const std::optional<CurveTables>& against) {
  if (against) addTables(*against, true);
  return m_plot.svg();
}

}  // namespace greycard::present
