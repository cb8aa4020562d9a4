#include <algorithm>
#include <array>
#include <cmath>
#include <set>
#include <tuple>
#include <vector>

#include "greycard/present/fitting.h"
#include "svg_plot.h"

namespace greycard::present {
namespace {

constexpr double kUpperLow = -2.0, kUpperHigh = 0.0;
// The axis of h: at least the upper set's bounds, at most some room beside them for what only the
// lower set holds.
constexpr double kInnerLow = -2.25, kInnerHigh = 0.25, kOuterLow = -3.0, kOuterHigh = 1.0;
constexpr double kRoundS = 0.05;
// Half a pixel or so: of points this close only the first is drawn.
constexpr double kGridH = 0.004, kGridS = 0.001;

constexpr double kMarkerRadius = 2.2;

// Lights by shape and rim, sets by what is inside.
using Shape = SvgPlot::Marker::Shape;
constexpr std::array kShapes{Shape::Circle, Shape::Square, Shape::Triangle};
static_assert(kShapes.size() == kSkinLights.size());
enum Set : std::size_t { kBoth, kLowerOnly, kUpperOnly, kSets };
constexpr std::array<const char*, kSets> kSetNames{"", ", lower set only (hollow)",
                                                   ", upper set only (hollow)"};

SvgPlot::Marker markerOf(std::size_t light, std::size_t set) {
  return {kShapes[light], kMarkerRadius, set != kBoth};
}

// What is drawn of a result, and how far the axes reach for it.
struct Selection {
  using BySet = std::array<std::array<std::vector<std::size_t>, kSets>, kSkinLights.size()>;
  BySet drawn;
  std::array<std::array<int, kSets>, kSkinLights.size()> counts{};  // drawn or not
  int beyond = 0;
  double low = kInnerLow, high = kInnerHigh, top = kRoundS;

  explicit Selection(const SkinCalibration& result);
};

Point2 pointOf(const SkinCalibration& result, std::size_t i) {
  const SkinSet& set = result.upper.holds(i) ? result.upper : result.lower;
  return {set.points[i].h, set.points[i].s};
}

Selection::Selection(const SkinCalibration& result) {
  std::set<std::tuple<std::size_t, long, long>> taken;
  const std::size_t count =
      std::min({result.colours.size(), result.upper.points.size(), result.lower.points.size()});
  for (std::size_t i = 0; i < count; ++i) {
    const bool inUpper = result.upper.holds(i), inLower = result.lower.holds(i);
    if (!inUpper && !inLower) continue;
    const std::size_t light = i * kSkinLights.size() / SkinColorHelper::kPoints;
    const std::size_t set = inUpper && inLower ? kBoth : (inLower ? kLowerOnly : kUpperOnly);
    ++counts[light][set];
    const Point2 at = pointOf(result, i);
    if (!(at.x >= kOuterLow && at.x <= kOuterHigh)) {
      ++beyond;
      continue;
    }
    low = std::min(low, at.x);
    high = std::max(high, at.x);
    top = std::max(top, std::ceil(at.y / kRoundS) * kRoundS);
    if (taken.emplace(light, std::lround(at.x / kGridH), std::lround(at.y / kGridS)).second)
      drawn[light][set].push_back(i);
  }
}

}  // namespace

std::string skinPlot(const SkinCalibration& result) {
  const Selection chosen(result);
  std::string xTitle = "Hue ratio h = Cb / Cr (no unit)";
  if (chosen.beyond > 0) xTitle += "; " + std::to_string(chosen.beyond) + " points lie beyond";
  SvgPlot plot("Skin colours of the camera", {xTitle, chosen.low, chosen.high},
               {"Saturation s = (|Cr| + |Cb|) / 2Y (no unit)", 0.0, chosen.top});
  for (std::size_t light = 0; light < kSkinLights.size(); ++light)
    for (std::size_t set = 0; set < kSets; ++set) {
      if (chosen.counts[light][set] == 0) continue;
      const SvgPlot::Marker marker = markerOf(light, set);
      const PlotColour ofLight = plotColour(light);
      plot.addMarkers(kSkinLights[light] + std::string(kSetNames[set]) + " (" +
                          std::to_string(chosen.counts[light][set]) + ")",
                      {}, ofLight, marker, ofLight);
      for (const std::size_t i : chosen.drawn[light][set]) {
        const auto& [r, g, b] = result.colours[i];
        const PlotColour colour = marker.hollow ? ofLight : PlotColour(hexColour({r, g, b}));
        plot.addMarkers("", {pointOf(result, i)}, colour, marker, ofLight);
      }
    }
  for (const double bound : {kUpperLow, kUpperHigh})
    plot.addLine(bound == kUpperLow ? "bounds of the upper set" : "",
                 {{bound, 0.0}, {bound, chosen.top}}, quietColour(), SvgPlot::Stroke::Dashed);
  return plot.svg();
}

}  // namespace greycard::present
