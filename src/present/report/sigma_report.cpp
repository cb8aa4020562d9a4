#include <algorithm>

#include "greycard/number_text.h"
#include "greycard/present/noise.h"
#include "html_page.h"
#include "report_page.h"
#include "svg_plot.h"

namespace greycard::present {
namespace {

std::string residualPlot(const SigmaReport& report) {
  SvgPlot plot("Noise in code values", {"Distance from the centre / half-diagonal", 0.0, 1.0},
               {"standard deviation, 8-bit codes", {}, {}});
  std::vector<Point2> points;
  for (std::size_t i = 0; i < kSigmaEntries; ++i)
    if (report.ringPixels[i] > 0)
      points.push_back({static_cast<double>(i) / kSigmaEntries, report.residualSigma[i]});
  plot.addLine("root mean square of each ring", points, plotColour(0));
  plot.addLine("largest of ring 0", {{0.0, report.centreRingSigma}, {1.0, report.centreRingSigma}},
               quietColour(), SvgPlot::Stroke::Dashed);
  return plot.svg();
}

std::string factorTable(const SigmaEstimate& estimate) {
  constexpr std::size_t kPerRow = 10;
  std::vector<std::vector<std::string>> rows = {{"entry"}};
  for (std::size_t k = 0; k < kPerRow; ++k) rows[0].push_back("+" + std::to_string(k));
  for (std::size_t i = 0; i < kSigmaEntries; ++i) {
    if (i % kPerRow == 0) rows.push_back({std::to_string(i)});
    rows.back().push_back(fixed(estimate.lut[i], 4));
  }
  return htmlTable(rows);
}

std::string fieldTable(const SigmaEstimate& estimate) {
  const SigmaReport& report = estimate.report;
  const auto percent = [](double share) { return fixed(100.0 * share, 2) + " %"; };
  return htmlTable({{"the field", ""},
                    {"mean at the centre, 8-bit codes", fixed(report.centreMean, 1)},
                    {"mean in the corners", fixed(report.cornerMean, 1)},
                    {"fall-off", percent(report.fallOff())},
                    {"samples at 255", percent(report.ceilingShare)},
                    {"samples at 0", percent(report.floorShare)},
                    {"unflatness", report.unflatness ? percent(*report.unflatness) : "-"},
                    {"codes of the file in one of 8 bits", general(estimate.fileCodes, 6)},
                    {"local sigma of ring 0", fixed(report.centreRingSigma, 3)}});
}

// Doubts that a user forced are among the advice already.
std::vector<std::string> warningsOf(const SigmaEstimate& estimate) {
  std::vector<std::string> warnings = estimate.advice;
  for (const std::string& doubt : estimate.doubts)
    if (std::ranges::find(warnings, doubt) == warnings.end()) warnings.push_back(doubt);
  return warnings;
}

}  // namespace

std::string sigmaReport(const SigmaEstimate& estimate,
                        const std::optional<Provenance>& provenance) {
  std::string map;
  if (!estimate.localSigma.empty())
    map = htmlFigure(htmlPhotograph(sigmaMap(estimate), "Local sigma"),
                     "Local sigma of every pixel, in code values");
  const std::string body =
      htmlKeyFigure("Centre sigma", fixed(estimate.centreNoiseSigma, 3),
                    "Standard deviation of noise at the centre, in 8-bit code values. In the "
                    "corners the table says " +
                        fixed(estimate.lut.back(), 2) + " times as much.") +
      htmlSection("From the centre to the corners",
                  htmlSideBySide({sigmaPlot(estimate), residualPlot(estimate.report)})) +
      htmlSection("The flat field", htmlSideBySide({fieldTable(estimate), map})) +
      htmlSection("Factors of the table", factorTable(estimate));
  return reportPage({"Noise of " + estimate.file.filename().string(),
                     {estimate.file.string(), std::to_string(estimate.width) + " x " +
                                                  std::to_string(estimate.height) + " pixels"},
                     warningsOf(estimate)},
                    body, provenance);
}

}  // namespace greycard::present
