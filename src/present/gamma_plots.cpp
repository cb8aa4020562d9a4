#include <string>
#include <utility>

#include "curve_plot.h"
#include "greycard/number_text.h"
#include "greycard/present/gamma.h"

namespace greycard::present {

std::string curvePlot(const ShownCurve& curve, const std::optional<CurveTables>& against) {
  const GammaTable proportional{0, kCurveMax};
  CurvePlot plot("Tone curve " + curve.name, curve.table.size());
  plot.addTable("proportional", proportional, quietColour(), SvgPlot::Stroke::Dashed);
  plot.addTable(curve.name, curve.table, plotColour(0));
  plot.addControlPoints(curve.pointsAreSamples ? "samples" : "control points", curve.points,
                        plotColour(1));
  return plot.svg(against);
}

std::string curvePlot(const CurveTables& curve, const std::optional<CurveTables>& against) {
  CurvePlot plot("Tone curve " + curve.name, curve.channels[0].table.size());
  plot.addCurve(curve);
  return plot.svg(against);
}

std::string curvePlot(const GammaCurve& curve, const ShownCurve& shown,
                      const std::optional<CurveTables>& against) {
  const bool threeAtOnce = !shown.unified && shown.channel == CurveChannel::All;
  return threeAtOnce ? curvePlot(curveTables(curve), against) : curvePlot(shown, against);
}

std::string curvePlot(const CurveImportReport& report, const std::optional<CurveTables>& against) {
  if (report.curves.size() == 1) return curvePlot(report.curves.front().curve, against);
  constexpr std::size_t kEntries = 1024;
  CurvePlot plot("Imported tone curves", kEntries);
  for (std::size_t i = 0; i < report.curves.size(); ++i) {
    const CurveTables& curve = report.curves[i].curve;
    if (!curve.unified)
      plot.addCurve(curve);
    else
      plot.addTable(curve.name, curve.channels[0].table, plotColour(i));
  }
  return plot.svg(against);
}

std::string curvePlot(const ControlPointReduction& reduction,
                      const std::optional<CurveTables>& against) {
  CurvePlot plot("Control points of " + reduction.name, reduction.table.size());
  plot.addTable(reduction.name, reduction.table, plotColour(0));
  plot.addTable("through the points", reduction.tableThroughPoints, plotColour(2),
                SvgPlot::Stroke::Dashed);
  plot.addControlPoints("control points", reduction.points, plotColour(1));
  return plot.svg(against);
}

std::string curvePlot(const StandardCurve& curve, const std::optional<CurveTables>& against) {
  constexpr double kOutputMax = (1 << StandardCurve::kOutputBits) - 1;
  const bool inNits = curve.kind == StandardCurveKind::HDR10;
  const std::string title = inNits ? "HDR10 (PQ) up to " + general(curve.peak, 5) + " cd/m\u00b2"
                                   : "Hybrid log-gamma (HLG)";
  CurvePlot plot(
      title,
      {inNits ? "Linear light (cd/m\u00b2)" : "Scene linear light E (0..1, without a unit)", 0.0,
       curve.peak},
      {inNits ? "PQ signal (10-bit code)" : "HLG signal E' (10-bit code)", 0.0, kOutputMax});
  plot.addTable(kStandardCurveNames[inNits ? 0 : 1], curve.table, plotColour(0));
  return plot.svg(against);
}

std::string curvePlot(const DeGammaResult& result, const CurveTables& curve,
                      const std::optional<CurveTables>& against) {
  CurvePlot plot("Inputs behind a colour, by " + curve.name,
                 {"Input (entry of the table, 1..256)", 1.0, 256.0},
                 {"Output (10-bit code, 4 per 8-bit level)", 0.0, 1023.0});
  plot.addCurve(curve);
  for (std::size_t c = 0; c < result.positions.size(); ++c)
    plot.addMarker(kCurveChannelNames[c + 1],
                   {result.positions[c], DeGammaResult::kTableUnitsPerLevel * result.colour[c]},
                   channelColour(c));
  return plot.svg(against);
}

}  // namespace greycard::present
