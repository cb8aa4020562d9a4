#include <algorithm>
#include <cmath>
#include <numbers>
#include <utility>
#include <vector>

#include "greycard/present/lut2d.h"
#include "greycard/two_d_lut_helper.h"
#include "svg_plot.h"

namespace greycard::present {
namespace {

Point2 onWheel(double hueDeg, double sat) {
  const double angle = hueDeg * std::numbers::pi / 180.0;
  return {sat * std::cos(angle), sat * std::sin(angle)};
}

std::string colourOf(double hueDeg, double sat) {
  const double hue = std::fmod(std::fmod(hueDeg, 360.0) + 360.0, 360.0);
  return hexColour(TwoDLutHelper::HLStoRGB(hue, std::clamp(sat, 0.0, 1.0), 0.5));
}

}  // namespace

std::string lut2dWheel(const Lut2DConfig& table, const std::string& name) {
  SvgPlot plot("Hue/saturation table" + (name.empty() ? "" : " " + name),
               {"Saturation * cos(hue)", -1.25, 1.25}, {"Saturation * sin(hue)", -1.25, 1.25});
  plot.useEqualScales();
  std::vector<Point2> rim;
  for (int degree = 0; degree <= 360; degree += 3) rim.push_back(onWheel(degree, 1.0));
  plot.addLine("", rim, quietColour(), SvgPlot::Stroke::Dashed);
  for (std::size_t row = 0; row < kLut2dHueRows; ++row)
    for (std::size_t column = 0; column < kLut2dSatColumns; ++column) {
      const double hue = table.lut_1d_h[row], sat = table.lut_1d_s[column];
      const std::size_t entry = row * kLut2dSatColumns + column;
      // Column 0 never changes saturation.
      const double satChange = column == 0 ? 0.0 : table.lut_2d_s[entry];
      const Point2 node = onWheel(hue, sat);
      const Point2 target =
          onWheel(hue + table.lut_2d_h[entry], std::clamp(sat + satChange, 0.0, 1.0));
      const std::string colour = colourOf(hue, sat);
      plot.addMarkers("", {node}, colour);
      if (target != node) plot.addArrow(node, target, colour);
    }
  for (const auto& [degree, label] : {std::pair{0, "0 red"},
                                      {60, "60"},
                                      {120, "120 green"},
                                      {180, "180"},
                                      {240, "240 blue"},
                                      {300, "300"}})
    plot.addTextAt(onWheel(degree, 1.13), label);
  return plot.svg();
}

}  // namespace greycard::present
