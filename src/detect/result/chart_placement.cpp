#include "result/chart_placement.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include "colour_distance.h"
#include "patch_grid.h"
#include "result/chart_doubts.h"

namespace greycard {
namespace {

// Against the chart's 8-bit sRGB colours, before the picture was brightened.
double colourError(const ChartWindow& window) {
  double sum = 0.0;
  for (std::size_t i = 0; i < kPatchCount; ++i) {
    for (std::size_t c = 0; c < 3; ++c) {
      const double value = window.samples[i].mean[window.grey ? 0 : c] / window.gain;
      const double difference = kChartBgr[i][2 - c] - value;
      sum += difference * difference;
    }
  }
  return sum;
}

}  // namespace

double shortestSide(const PatchQuads& patches) {
  double shortest = HUGE_VAL;
  for (const auto& patch : patches)
    for (std::size_t k = 0; k < 4; ++k)
      shortest = std::min(shortest, distance(patch[k], patch[(k + 1) % 4]));
  return shortest;
}

ChartPlacement placementOf(const ChartWindow& window) {
  ChartPlacement placement;
  const auto& map = window.map;
  for (int patch = 0; patch < kPatchCount; ++patch) {
    const double u = patch % kChartColumns + 0.5, v = patch / kChartColumns + 0.5;
    placement.centres[static_cast<std::size_t>(patch)] = map(u, v);
    placement.patches[static_cast<std::size_t>(patch)] = squareCorners(map, u, v, window.halfSide);
  }
  placement.mapping = {map.homography(), map.radial(), map.lens().centre, map.lens().radius};
  const auto &first = placement.centres[0], &last = placement.centres[kChartColumns - 1];
  const double turn = std::atan2(last.y - first.y, last.x - first.x) * 180.0 / std::numbers::pi;
  placement.orientationDeg = turn < 0.0 ? turn + 360.0 : turn;
  placement.pitch = meanPitch(placement.centres);
  placement.gate = window.gate;
  placement.supportingPatches = window.supporting;
  for (const int patch : window.outliers()) placement.outliers.push_back(patch + 1);
  return placement;
}

ChartDetection detectionOf(const ChartWindow& window, ChartMethod method, double smallestGate) {
  ChartDetection detection;
  detection.stage = ChartStage::Done;
  detection.refusal = ChartRefusal::None;
  detection.method = method;
  detection.placement = placementOf(window);
  detection.quadsUsed = window.supporting;
  detection.size = std::max(1.0, std::floor(0.5 * shortestSide(detection.placement.patches)));
  const double side = 1.5 * detection.size;
  for (std::size_t i = 0; i < kPatchCount; ++i) {
    const auto& centre = detection.placement.centres[i];
    detection.points[i] = {std::nearbyint(centre.x), std::nearbyint(centre.y)};
    detection.regions[i] = {detection.points[i].x - 0.5 * side, detection.points[i].y - 0.5 * side,
                            side, side};
  }
  detection.error = colourError(window);
  detection.doubts = chartDoubts(window, smallestGate, shortestSide(detection.placement.patches));
  return detection;
}

}  // namespace greycard
