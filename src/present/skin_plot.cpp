#include <algorithm>
#include <array>
#include <cmath>
#include <set>
#include <utility>

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

constexpr const char* kLegendColour = "#a0603c";  // a mean skin

struct Kind {
  const char* name;
  SvgPlot::Marker marker;
};
constexpr std::array kKinds{Kind{"in both sets", SvgPlot::Marker::Speck},
                            Kind{"lower set only", SvgPlot::Marker::Cross},
                            Kind{"upper set only", SvgPlot::Marker::Square}};

// What is drawn of a result, and how far the axes reach for it.
struct Selection {
  std::array<std::vector<std::size_t>, kKinds.size()> drawn;
  std::array<int, kKinds.size()> counts{};  // drawn or not
  int beyond = 0;
  double low = kInnerLow, high = kInnerHigh, top = kRoundS;

  explicit Selection(const SkinCalibration& result);
};

Point2 pointOf(const SkinCalibration& result, std::size_t i) {
  const SkinSet& set = result.upper.holds(i) ? result.upper : result.lower;
  return {set.points[i].h, set.points[i].s};
}

Selection::Selection(const SkinCalibration& result) {
  std::set<std::pair<long, long>> taken;
  const std::size_t count =
      std::min({result.colours.size(), result.upper.points.size(), result.lower.points.size()});
  for (std::size_t i = 0; i < count; ++i) {
    const bool inUpper = result.upper.holds(i), inLower = result.lower.holds(i);
    if (!inUpper && !inLower) continue;
    const std::size_t kind = inUpper && inLower ? 0 : (inLower ? 1 : 2);
    ++counts[kind];
    const Point2 at = pointOf(result, i);
    if (!(at.x >= kOuterLow && at.x <= kOuterHigh)) {
      ++beyond;
      continue;
    }
    low = std::min(low, at.x);
    high = std::max(high, at.x);
    top = std::max(top, std::ceil(at.y / kRoundS) * kRoundS);
    if (taken.emplace(std::lround(at.x / kGridH), std::lround(at.y / kGridS)).second)
      drawn[kind].push_back(i);
  }
}

}  // namespace

std::string skinPlot(const SkinCalibration& result) {
  const Selection chosen(result);
  std::string xTitle = "Hue ratio h = Cb / Cr (no unit)";
  if (chosen.beyond > 0) xTitle += "; " + std::to_string(chosen.beyond) + " points lie beyond";
  SvgPlot plot("Skin colours of the camera", {xTitle, chosen.low, chosen.high},
               {"Saturation s = (|Cr| + |Cb|) / 2Y (no unit)", 0.0, chosen.top});
  for (std::size_t kind = 0; kind < kKinds.size(); ++kind) {
    if (chosen.counts[kind] == 0) continue;
    plot.addMarkers(
        kKinds[kind].name + std::string(" (") + std::to_string(chosen.counts[kind]) + ")", {},
        kLegendColour, kKinds[kind].marker);
    for (const std::size_t i : chosen.drawn[kind]) {
      const auto& [r, g, b] = result.colours[i];
      plot.addMarkers("", {pointOf(result, i)}, hexColour({r, g, b}), kKinds[kind].marker);
    }
  }
  for (const double bound : {kUpperLow, kUpperHigh})
    plot.addLine(bound == kUpperLow ? "bounds of the upper set" : "",
                 {{bound, 0.0}, {bound, chosen.top}}, "#555555", SvgPlot::Stroke::Dashed);
  return plot.svg();
}

}  // namespace greycard::present
