#include "window/refine_window.h"

#include <algorithm>
#include <cmath>
#include <optional>

namespace greycard {
namespace {

constexpr std::size_t kFewestRefined = 7;
constexpr double kWithinAgain = 0.2;     // pitches from the place once it is known better
constexpr double kOffRefinedMap = 0.12;  // pitches: a patch further off the new map is left out
constexpr double kSmallestShare = 0.25, kLargestCellShare = 1.1;  // area of the cell
constexpr double kTypicalHalf = 0.43;                             // half side of a patch in pitches
constexpr double kRefineMargin = 0.6;  // pitches looked at round the outer patches

Point2 centreOf(std::size_t patch) {
  return {static_cast<double>(patch % 6) + 0.5, static_cast<double>(patch / 6) + 0.5};
}

// Centroid of the area of a quadrilateral.
Point2 centroid(const std::array<Point2, 4>& corners) {
  double area = 0.0, x = 0.0, y = 0.0;
  for (std::size_t k = 0; k < 4; ++k) {
    // From the first corner, so that the products keep their digits.
    const Point2 a{corners[k].x - corners[0].x, corners[k].y - corners[0].y};
    const auto& next = corners[(k + 1) % 4];
    const Point2 b{next.x - corners[0].x, next.y - corners[0].y};
    const double cross = a.x * b.y - a.y * b.x;
    area += cross;
    x += cross * (a.x + b.x) / 3.0;
    y += cross * (a.y + b.y) / 3.0;
  }
  return {corners[0].x + x / area, corners[0].y + y / area};
}

// How far perspective moves a patch's centroid off the image of its centre.
Point2 perspectiveShift(const PlaneMap& map, const Point2& plane) {
  const auto middle = centroid(squareCorners(map, plane.x, plane.y, kTypicalHalf));
  const auto centre = map(plane);
  return {middle.x - centre.x, middle.y - centre.y};
}

double cellArea(const PlaneMap& map, const Point2& p) {
  const auto left = map(p.x - 0.5, p.y), right = map(p.x + 0.5, p.y);
  const auto top = map(p.x, p.y - 0.5), bottom = map(p.x, p.y + 0.5);
  return std::fabs((right.x - left.x) * (bottom.y - top.y) -
                   (right.y - left.y) * (bottom.x - top.x));
}

// The chart and its surroundings in working pixels; empty when it is not all finite.
std::optional<PixelWindow> surroundings(const WorkingPicture& picture, const PlaneMap& map) {
  double left = picture.width, top = picture.height, right = 0.0, bottom = 0.0;
  for (int step = 0; step <= 4; ++step) {
    const double share = step / 4.0, u = share * (6.0 + 2.0 * kRefineMargin) - kRefineMargin,
                 v = share * (4.0 + 2.0 * kRefineMargin) - kRefineMargin;
    for (const Point2 p : {Point2{u, -kRefineMargin},
                           {u, 4.0 + kRefineMargin},
                           {-kRefineMargin, v},
                           {6.0 + kRefineMargin, v}}) {
      const auto at = picture.toWorking(map(p));
      if (!std::isfinite(at.x + at.y)) return std::nullopt;
      left = std::min(left, at.x), right = std::max(right, at.x);
      top = std::min(top, at.y), bottom = std::max(bottom, at.y);
    }
  }
  const auto pixel = [](double x, int end) {
    return static_cast<int>(std::clamp(x, 0.0, double(end)));
  };
  PixelWindow part{pixel(left, picture.width), pixel(top, picture.height), 0, 0};
  part.width = pixel(right + 1.0, picture.width) - part.left;
  part.height = pixel(bottom + 1.0, picture.height) - part.top;
  if (part.width <= 0 || part.height <= 0) return std::nullopt;
  return part;
}

// Where each patch is seen: mean of its regions.
struct SeenPatches {
  std::array<Point2, kPatchCount> sums{};
  std::array<int, kPatchCount> counts{};

  void add(std::size_t patch, const Point2& at) {
    sums[patch] = {sums[patch].x + at.x, sums[patch].y + at.y};
    ++counts[patch];
  }
  Point2 at(std::size_t patch) const {
    return {sums[patch].x / counts[patch], sums[patch].y / counts[patch]};
  }
};

// The nearest region of one threshold to each place counts once.
void addNearest(SeenPatches& seen, const std::vector<FlatRegion>& regions, const PlaneMap& map,
                double within) {
  for (std::size_t patch = 0; patch < kPatchCount; ++patch) {
    const auto plane = centreOf(patch), centre = map(plane);
    const double cell = cellArea(map, plane), reach = within * map.pitchAt(plane.x, plane.y);
    double best = reach * reach;
    const FlatRegion* nearest = nullptr;
    for (const auto& region : regions) {
      const double dx = region.centre.x - centre.x, dy = region.centre.y - centre.y;
      const double distance = dx * dx + dy * dy;
      if (!(distance < best)) continue;
      if (!(region.area >= kSmallestShare * cell && region.area <= kLargestCellShare * cell))
        continue;
      best = distance;
      nearest = &region;
    }
    if (nearest != nullptr) seen.add(patch, nearest->centre);
  }
}

// A map through the patches seen, without those that are off it; empty when too few are left.
std::optional<PlaneMap> mapThrough(SeenPatches& seen, const PlaneMap& before) {
  while (true) {
    std::vector<PlanePoint> points;
    std::vector<std::size_t> patches;
    for (std::size_t patch = 0; patch < kPatchCount; ++patch) {
      if (seen.counts[patch] == 0) continue;
      const auto plane = centreOf(patch), at = seen.at(patch),
                 shift = perspectiveShift(before, plane);
      points.push_back({plane, {at.x - shift.x, at.y - shift.y}});
      patches.push_back(patch);
    }
    if (points.size() < kFewestRefined) return std::nullopt;
    const auto map = fitPlane(points, before.lens(), true);
    if (!map) return std::nullopt;
    const auto worst = worstPoint(points, *map);
    if (worst.pitchesOff <= kOffRefinedMap) return map;
    seen.counts[patches[worst.number]] = 0;
  }
}

}  // namespace

ChartWindow refineWindow(const WorkingPicture& picture, const ContrastMap& contrast,
                         std::span<const int> thresholds, const ChartWindow& window,
                         double within) {
  const auto part = surroundings(picture, window.map);
  if (!part) return window;
  std::vector<std::vector<FlatRegion>> regions;
  for (const int threshold : thresholds)
    regions.push_back(flatRegions(contrast, threshold, picture, *part));

  auto map = window.map;
  SeenPatches seen;
  for (const double reach : {within, kWithinAgain}) {
    seen = {};
    for (const auto& atThreshold : regions) addNearest(seen, atThreshold, map, reach);
    const auto next = mapThrough(seen, map);
    if (!next) return window;
    map = *next;
  }
  std::array<bool, kPatchCount> supported{};
  for (std::size_t patch = 0; patch < kPatchCount; ++patch)
    supported[patch] = seen.counts[patch] > 0;
  return judgeWindow(picture, map, supported);
}

}  // namespace greycard
