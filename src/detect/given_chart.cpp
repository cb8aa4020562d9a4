#include <algorithm>
#include <array>
#include <cmath>
#include <optional>
#include <stdexcept>
#include <string>
#include <utility>

#include "convex_quad.h"
#include "detect_options.h"
#include "greycard/chart_location.h"
#include "lattice/contrast_map.h"
#include "picture_mat.h"
#include "result/chart_doubts.h"
#include "result/chart_placement.h"
#include "result/local_picture.h"
#include "text.h"
#include "window/chart_window.h"
#include "window/patch_side.h"
#include "window/refine_window.h"

namespace greycard {
namespace {

constexpr std::array kGivenThresholds{12, 24, 6, 40};
constexpr double kHalfSide = 0.43;  // of a patch in pitches, to start from
constexpr int kFewestSeen = 9;
// Pitches that refinement may move a centre, and within which it looks.
constexpr double kNear = 0.35, kFar = 0.48, kFarthestShift = 0.8;
constexpr int kMostSmoothings = 4;
constexpr double kWorse = 0.02;          // gate that refinement may lose
constexpr double kClearlyBetter = 0.15;  // likeness of another order of the corners

void checkPicture(const Picture& picture) {
  if (!isWellFormed(picture))
    throw std::invalid_argument(
        "the picture to look for the patches in is empty or its size and samples disagree");
}

// Plane points of the corners: clockwise from patch 1.
std::array<Point2, 4> planeCorners(CornerKind kind) {
  const double inset = kind == CornerKind::PatchCentres ? 0.5 : 0.5 - kHalfSide;
  return {{{inset, inset}, {6.0 - inset, inset}, {6.0 - inset, 4.0 - inset}, {inset, 4.0 - inset}}};
}

// The plane through the corners when the one at `first` is patch 1's.
std::optional<PlaneMap> planeThrough(const Picture& picture, const ChartCorners& corners,
                                     std::size_t first) {
  const auto plane = planeCorners(corners.kind);
  std::array<PlanePoint, 4> points;
  for (std::size_t k = 0; k < 4; ++k) points[k] = {plane[k], corners.points[(first + k) % 4]};
  return fitPlane(points, lensOf(picture), false);
}

double largestShift(const PlaneMap& a, const PlaneMap& b) {
  double largest = 0.0;
  for (int patch = 0; patch < kPatchCount; ++patch) {
    const double u = patch % 6 + 0.5, v = patch / 6 + 0.5;
    const auto p = a(u, v), q = b(u, v);
    largest = std::max(largest, std::hypot(p.x - q.x, p.y - q.y) / a.pitchAt(u, v));
  }
  return largest;
}

// The window as given, or moved to the patches seen: farther where these have the chart's colours.
ChartWindow refinedOrGiven(const WorkingPicture& local, const ChartWindow& given,
                           double smallestGate) {
  const auto contrast = contrastMap(local);
  for (const double within : {kFar, kNear}) {
    const auto refined = refineWindow(local, contrast, kGivenThresholds, given, within);
    const double shift = largestShift(given.map, refined.map);
    const bool seen = refined.supporting >= kFewestSeen;
    const bool chart = refined.gate >= smallestGate && shift <= kFarthestShift;
    const bool better = refined.gate >= given.gate - kWorse && shift <= kNear;
    if (seen && (chart || better)) return refined;
  }
  return given;
}

// A doubt where the colours fit much better when another corner is patch 1's.
std::optional<std::string> otherOrder(const Picture& picture, const ChartCorners& corners,
                                      const WorkingPicture& local, const ChartWindow& window,
                                      double smallestGate) {
  constexpr std::array kPlaces{"first", "second", "third", "fourth"};
  std::size_t best = 0;
  double likeness = std::max(window.colour.score + kClearlyBetter, smallestGate);
  for (std::size_t first = 1; first < 4; ++first) {
    const auto map = planeThrough(picture, corners, first);
    if (!map) continue;
    const auto other = judgeWindow(local, *map, window.supported);
    if (other.colour.score < likeness) continue;
    best = first;
    likeness = other.colour.score;
  }
  if (best == 0) return std::nullopt;
  return "the corners seem to be listed from another patch: the colours fit when the " +
         std::string(kPlaces[best]) + " of them is patch 1's (dark skin)";
}

// A window at the given patches, each seen by its own plane.
ChartWindow windowAt(const WorkingPicture& local, const PatchQuads& patches,
                     const LensFrame& lens) {
  std::array<PlaceSample, kPatchCount> samples;
  for (std::size_t i = 0; i < patches.size(); ++i) {
    // The square from -0.5 to 0.5: samples reach over the middle half of the patch.
    const auto& q = patches[i];
    const std::array<PlanePoint, 4> points{
        {{{-0.5, -0.5}, q[0]}, {{0.5, -0.5}, q[1]}, {{0.5, 0.5}, q[2]}, {{-0.5, 0.5}, q[3]}}};
    if (const auto map = fitPlane(points, lens, false))
      samples[i] = samplePlace(local, *map, 0.0, 0.0);
  }
  return judgeSamples(local, samples);
}

// What `judge` makes of the picture, or of it smoothed where that is better: noise is no
// unevenness.
template <typename Judge>
ChartWindow judgedThroughNoise(WorkingPicture local, Judge judge) {
  ChartWindow window = judge(local);
  for (int i = 0; i < kMostSmoothings && window.inside - window.flat > kMostUneven; ++i) {
    smooth(local);
    ChartWindow smoother = judge(local);
    if (smoother.gate > window.gate) window = smoother;
  }
  return window;
}

double meanSide(const PatchQuads& patches) {
  double sum = 0.0;
  for (const auto& q : patches)
    for (std::size_t k = 0; k < 4; ++k)
      sum += std::hypot(q[(k + 1) % 4].x - q[k].x, q[(k + 1) % 4].y - q[k].y);
  return sum / (4 * kPatchCount);
}

}  // namespace

void checkCorners(const std::array<Point2, 4>& points) {
  double area = 0.0;
  for (std::size_t k = 0; k < 4; ++k) {
    const auto &a = points[k], &b = points[(k + 1) % 4];
    area += a.x * b.y - a.y * b.x;
  }
  // With y downward a clockwise round has a positive area.
  if (isConvex(points) && area > 0.0) return;
  std::string list;
  for (const auto& p : points)
    list += (list.empty() ? "" : " ") + formatGeneral(p.x) + "," + formatGeneral(p.y);
  throw std::invalid_argument(
      "the corners " + list +
      (isConvex(points)
           ? " go round anticlockwise; list them at patches 1, 6, 24 and 19, or flip the "
             "picture if it is mirrored"
           : " are not those of a convex quadrilateral; list them round the chart at "
             "patches 1, 6, 24 and 19"));
}

ChartDetection placeChart(const Picture& picture, const ChartCorners& corners,
                          const DetectOptions& options) {
  checkPicture(picture);
  checkedWindow(picture, options);
  checkCorners(corners.points);
  const auto map = planeThrough(picture, corners, 0);
  if (!map) throw std::invalid_argument("no plane goes through the corners; they lie too close");
  const auto local = localPicture(picture, options.levels, corners.points, map->pitchAt(3.0, 2.0));
  if (!local) throw std::invalid_argument("the chart between the corners lies outside the picture");

  auto window = judgedThroughNoise(*local, [&](const WorkingPicture& seen) {
    const auto given = judgeWindow(seen, *map, {});
    return corners.refine ? refinedOrGiven(seen, given, options.smallestGate) : given;
  });
  window.halfSide = halfPatchSide(*local, window.map);
  auto detection = detectionOf(window, ChartMethod::Corners, options.smallestGate);
  if (auto doubt = otherOrder(picture, corners, *local, window, options.smallestGate))
    detection.doubts.push_back(std::move(*doubt));
  return detection;
}

PatchCheck checkPatches(const Picture& picture, const PatchQuads& patches,
                        const DetectOptions& options) {
  checkPicture(picture);
  checkedWindow(picture, options);
  requireConvex(patches);
  std::vector<Point2> corners;
  for (const auto& patch : patches) corners.insert(corners.end(), patch.begin(), patch.end());
  PatchCheck check;
  const auto local = localPicture(picture, options.levels, corners, meanSide(patches));
  if (!local) {
    check.doubts.push_back("24 of the 24 patch centres lie outside the picture");
    return check;
  }
  const auto window = judgedThroughNoise(
      *local, [&](const WorkingPicture& seen) { return windowAt(seen, patches, lensOf(picture)); });
  check.likeness = window.colour.score;
  for (const int patch : window.outliers()) check.outliers.push_back(patch + 1);
  check.doubts = chartDoubts(window, options.smallestGate, shortestSide(patches));
  return check;
}

}  // namespace greycard
