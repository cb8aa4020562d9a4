#include "svg_labels.h"

#include <algorithm>
#include <array>
#include <limits>

namespace greycard::present {
namespace {

// Gaps in pixels between a point and its label; beyond the second a line leads to it.
constexpr std::array kGaps{5.0, 9.0, 16.0, 26.0, 40.0, 60.0};
constexpr std::size_t kNear = 2;
constexpr double kObstacleRadius = 4.5;
// Costs: a square pixel of another label, an obstacle, and a pixel away from the point.
constexpr double kPerOverlap = 4.0, kPerObstacle = 60.0, kPerPixel = 0.8, kPerOutside = 1e4;

double overlap(const PatchRegion& a, const PatchRegion& b) {
  const double width = std::min(a.left + a.width, b.left + b.width) - std::max(a.left, b.left);
  const double height = std::min(a.top + a.height, b.top + b.height) - std::max(a.top, b.top);
  return width > 0.0 && height > 0.0 ? width * height : 0.0;
}

PatchRegion around(const Point2& point) {
  return {point.x - kObstacleRadius, point.y - kObstacleRadius, 2.0 * kObstacleRadius,
          2.0 * kObstacleRadius};
}

}  // namespace

std::vector<LabelPlace> placeLabels(const std::vector<Label>& labels,
                                    const std::vector<Point2>& obstacles, const PatchRegion& area) {
  // Upper right first, as one reads plots; then round.
  constexpr std::array<std::array<int, 2>, 8> kSides{
      {{1, -1}, {-1, -1}, {1, 1}, {-1, 1}, {1, 0}, {-1, 0}, {0, -1}, {0, 1}}};
  std::vector<PatchRegion> taken;
  std::vector<LabelPlace> places;
  const auto costOf = [&](const PatchRegion& box, double gap) {
    double cost = kPerPixel * gap;
    for (const PatchRegion& other : taken) cost += kPerOverlap * overlap(box, other);
    for (const Point2& obstacle : obstacles)
      if (overlap(box, around(obstacle)) > 0.0) cost += kPerObstacle;
    if (overlap(box, area) < 0.999 * box.width * box.height) cost += kPerOutside;
    return cost;
  };
  for (const Label& label : labels) {
    double least = std::numeric_limits<double>::infinity();
    PatchRegion best;
    LabelPlace place;
    for (std::size_t g = 0; g < kGaps.size(); ++g)
      for (const auto& [right, down] : kSides) {
        const PatchRegion box{label.point.x + 0.5 * (right - 1) * label.width + right * kGaps[g],
                              label.point.y + 0.5 * (down - 1) * label.height + down * kGaps[g],
                              label.width, label.height};
        const double cost = costOf(box, kGaps[g]);
        if (cost >= least) continue;
        least = cost;
        best = box;
        place = {{box.left, box.top}, g >= kNear};
      }
    taken.push_back(best);
    places.push_back(place);
  }
  return places;
}

}  // namespace greycard::present
