#include <algorithm>
#include <utility>

#include "greycard/number_text.h"
#include "greycard/present/noise.h"
#include "svg_plot.h"

namespace greycard::present {
namespace {

double radiusOf(std::size_t ring) {
  return static_cast<double>(ring) / kSigmaEntries;
}

}  // namespace

std::string sigmaCsv(const SigmaEstimate& estimate) {
  constexpr int kDecimals = 6;
  const SigmaReport& report = estimate.report;
  std::string csv = "ring,radius,factor,raw_ratio,residual_sigma,pixels\n";
  for (std::size_t i = 0; i < kSigmaEntries; ++i)
    csv += std::to_string(i) + "," + fixed(radiusOf(i), kDecimals) + "," +
           fixed(estimate.lut[i], kDecimals) + "," + fixed(report.rawRatio[i], kDecimals) + "," +
           fixed(report.residualSigma[i], kDecimals) + "," + std::to_string(report.ringPixels[i]) +
           "\n";
  return csv;
}

std::string sigmaPlot(const SigmaEstimate& estimate) {
  constexpr double kTypicalMost = 5.0;
  // The axis fits the data; the typical most is drawn once they come near it.
  constexpr double kNearTypicalMost = 4.0;
  std::vector<Point2> raw, table;
  for (std::size_t i = 0; i < kSigmaEntries; ++i) {
    raw.push_back({radiusOf(i), estimate.report.rawRatio[i]});
    table.push_back({radiusOf(i), estimate.lut[i]});
  }
  SvgPlot plot("Noise of " + estimate.file.filename().string(),
               {"Distance from the centre / half-diagonal", 0.0, 1.0},
               {"Noise / noise at the centre", {}, {}});
  plot.addLine("as at the centre", {{0.0, 1.0}, {1.0, 1.0}}, quietColour(),
               SvgPlot::Stroke::Dotted);
  if (std::max(std::ranges::max(estimate.report.rawRatio), std::ranges::max(estimate.lut)) >
      kNearTypicalMost)
    plot.addLine("5.0, the typical most", {{0.0, kTypicalMost}, {1.0, kTypicalMost}}, plotColour(3),
                 SvgPlot::Stroke::Dashed);
  plot.addLine("raw ratio of each ring", std::move(raw), plotColour(1), SvgPlot::Stroke::Broad);
  plot.addLine("table (smoothed, 1 or more)", std::move(table), plotColour(0));
  return plot.svg();
}

}  // namespace greycard::present
