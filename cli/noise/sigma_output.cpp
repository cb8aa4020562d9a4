#include "sigma_output.h"

#include <algorithm>
#include <optional>

#include "greycard/number_text.h"
#include "text_table.h"
#include "transition.h"

namespace greycard::cli {
namespace {

constexpr double kClippedAbove = 0.001, kDarkCorners = 0.3, kFaintNoise = 0.5;

std::string percent(double share, int decimals) {
  return fixed(100.0 * share, decimals) + " %";
}

double radiusOf(std::size_t ring) {
  return static_cast<double>(ring) / kSigmaEntries;
}

}  // namespace

std::vector<std::string> sigmaAdvice(const SigmaLUT& sigma, const LumaPlane& plane) {
  const SigmaReport& report = sigma.report;
  std::vector<std::string> advice;
  if (!sigma.msg.empty()) advice.push_back(sigma.msg);
  if (plane.isJpeg)
    advice.push_back(
        "a JPEG file's compression changes the noise: give a picture that was never one");
  if (report.highByteDropped != 0)
    advice.push_back(std::to_string(report.highByteDropped) + " of " +
                     std::to_string(plane.samples.size()) +
                     " samples are above 255 and only their low byte counts: scale the picture to "
                     "8-bit values first");
  if (report.ceilingShare > kClippedAbove)
    advice.push_back(percent(report.ceilingShare, 1) +
                     " of the samples are at 255, where noise is cut off: expose less");
  if (report.floorShare > kClippedAbove)
    advice.push_back(percent(report.floorShare, 1) +
                     " of the samples are at 0, where noise is cut off: expose more, or crop blank "
                     "borders");
  if (report.centreWindowEmpty)
    advice.push_back(
        "the picture is narrower or lower than 600 pixels, so there is no centre sigma; the local "
        "sigma of ring 0 is " +
        fixed(report.centreRingSigma, 3));
  if (report.fallOff() > kDarkCorners)
    advice.push_back("the corners are " + percent(report.fallOff(), 0) +
                     " darker than the centre: part of what changes along the radius is the light");
  if (report.centreRingSigma < kFaintNoise)
    advice.push_back(
        "the noise at the centre is below half a code value: rounding to 8 bits hides "
        "it; raise the gain or the exposure");
  return advice;
}

std::string sigmaText(const SigmaLUT& sigma) {
  constexpr std::size_t kPerLine = 10;
  TextTable table(std::vector<TextTable::Column>(kPerLine + 1));
  for (std::size_t i = 0; i < kSigmaEntries; i += kPerLine) {
    std::vector<std::string> cells{std::to_string(i) + ":"};
    for (std::size_t k = i; k < std::min(i + kPerLine, kSigmaEntries); ++k)
      cells.push_back(fixed((*sigma.lut)[k], 4));
    table.addRow(std::move(cells));
  }
  const SigmaReport& report = sigma.report;
  return "Centre sigma " + fixed(sigma.center_noise_sigma, 3) + " (local sigma of ring 0 " +
         fixed(report.centreRingSigma, 3) + "), in 8-bit code values\n" + "Mean " +
         fixed(report.centreMean, 1) + " at the centre, " + fixed(report.cornerMean, 1) +
         " in the corners; " + percent(report.ceilingShare, 2) + " of the samples at 255, " +
         percent(report.floorShare, 2) + " at 0\n\n" + "Factors from the centre to the corners:\n" +
         table.text();
}

Json sigmaJson(const SigmaLUT& sigma, const std::vector<std::string>& advice) {
  const SigmaReport& report = sigma.report;
  return {{"center_noise_sigma", sigma.center_noise_sigma},
          {"lut", *sigma.lut},
          {"msg", sigma.msg},
          {"advice", advice},
          {"center_ring_sigma", report.centreRingSigma},
          {"center_window_empty", report.centreWindowEmpty},
          {"ceiling_share", report.ceilingShare},
          {"floor_share", report.floorShare},
          {"high_byte_dropped", report.highByteDropped},
          {"center_mean", report.centreMean},
          {"corner_mean", report.cornerMean},
          {"fall_off", report.fallOff()},
          {"raw_ratio", report.rawRatio},
          {"residual_sigma", report.residualSigma},
          {"ring_pixels", report.ringPixels}};
}

std::string sigmaCsv(const SigmaLUT& sigma) {
  constexpr int kDecimals = 6;
  std::string csv = "ring,radius,factor,raw_ratio,residual_sigma,pixels\n";
  for (std::size_t i = 0; i < kSigmaEntries; ++i)
    csv += std::to_string(i) + "," + fixed(radiusOf(i), kDecimals) + "," +
           fixed((*sigma.lut)[i], kDecimals) + "," + fixed(sigma.report.rawRatio[i], kDecimals) +
           "," + fixed(sigma.report.residualSigma[i], kDecimals) + "," +
           std::to_string(sigma.report.ringPixels[i]) + "\n";
  return csv;
}

std::string sigmaPlot(const SigmaLUT& sigma, const std::string& title) {
  // Room above the line of the typical most; the axis finds its own end beyond.
  constexpr double kTypicalMost = 5.0, kAxisEnd = 6.0;
  std::vector<Point2> raw, table;
  for (std::size_t i = 0; i < kSigmaEntries; ++i) {
    raw.push_back({radiusOf(i), sigma.report.rawRatio[i]});
    table.push_back({radiusOf(i), (*sigma.lut)[i]});
  }
  const bool fits = std::ranges::max(sigma.report.rawRatio) <= kAxisEnd &&
                    std::ranges::max(*sigma.lut) <= kAxisEnd;
  SvgPlot plot(title, {"Distance from the centre / half-diagonal", 0.0, 1.0},
               {"Noise / noise at the centre", 0.0, fits ? std::optional(kAxisEnd) : std::nullopt});
  plot.addLine("1.0", {{0.0, 1.0}, {1.0, 1.0}}, "#888", SvgPlot::Stroke::Dashed);
  plot.addLine("5.0, the typical most", {{0.0, kTypicalMost}, {1.0, kTypicalMost}}, plotColour(3),
               SvgPlot::Stroke::Dashed);
  // The table is smooth, so that the raw ratios still show where they lie on it.
  plot.addLine("table", std::move(table), plotColour(0));
  plot.addLine("raw ratio", std::move(raw), plotColour(1), SvgPlot::Stroke::Dashed);
  return plot.svg();
}

}  // namespace greycard::cli
