#include "window/patch_side.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <optional>
#include <vector>

#include "greycard/types.h"

namespace greycard {
namespace {

constexpr double kTypical = 0.42, kSmallest = 0.25, kLargest = 0.48;
constexpr double kSideBegin = 0.25,
                 kEnd = 0.5;  // from well inside the patch to the middle of the gap
constexpr int kSideSteps = 20;
constexpr double kFewestLevels = 12.0;  // between patch and gap
constexpr std::size_t kFewestSides = 12;

// The value of a plane between working pixels; empty outside.
std::optional<double> valueAt(const WorkingPicture& picture, int plane, const Point2& at) {
  const double x = std::floor(at.x), y = std::floor(at.y);
  // Written so that NaN is outside: every comparison with it is false.
  if (!(x >= 0.0 && y >= 0.0 && x + 1.0 < picture.width && y + 1.0 < picture.height))
    return std::nullopt;
  const auto* upper = picture.row(plane, static_cast<int>(y)) + static_cast<int>(x);
  const auto* lower = upper + picture.width;
  const double right = at.x - x, down = at.y - y;
  return (1.0 - down) * ((1.0 - right) * upper[0] + right * upper[1]) +
         down * ((1.0 - right) * lower[0] + right * lower[1]);
}

using Profile = std::array<double, kSideSteps + 1>;

// Where a profile is half way between its ends, as a share of its length.
double halfWay(const Profile& profile) {
  const double middle = 0.5 * (profile.front() + profile.back());
  const bool falls = profile.front() > profile.back();
  std::size_t step = 1;
  while (step < kSideSteps && (profile[step] > middle) == falls) ++step;
  const double before = profile[step - 1], after = profile[step];
  const double share =
      after != before ? std::clamp((middle - before) / (after - before), 0.0, 1.0) : 0.5;
  return (static_cast<double>(step) - 1.0 + share) / kSideSteps;
}

// The distance from a patch's centre to its side in the direction (du, dv).
std::optional<double> sideDistance(const WorkingPicture& picture, const PlaneMap& map,
                                   const Point2& centre, double du, double dv) {
  std::optional<double> best;
  double bestContrast = kFewestLevels;
  for (int plane = 0; plane < picture.planes; ++plane) {
    Profile profile{};
    for (std::size_t step = 0; step <= kSideSteps; ++step) {
      const double way = kSideBegin + (kEnd - kSideBegin) * static_cast<double>(step) / kSideSteps;
      const auto value =
          valueAt(picture, plane, picture.toWorking(map(centre.x + way * du, centre.y + way * dv)));
      if (!value) return std::nullopt;
      profile[step] = *value;
    }
    const double contrast = std::fabs(profile.back() - profile.front());
    if (contrast < bestContrast) continue;
    bestContrast = contrast;
    best = kSideBegin + (kEnd - kSideBegin) * halfWay(profile);
  }
  return best;
}

}  // namespace

double halfPatchSide(const WorkingPicture& picture, const PlaneMap& map) {
  constexpr double kDirections[4][2] = {{1.0, 0.0}, {-1.0, 0.0}, {0.0, 1.0}, {0.0, -1.0}};
  std::vector<double> sides;
  for (int patch = 0; patch < kPatchCount; ++patch) {
    const Point2 centre{patch % 6 + 0.5, patch / 6 + 0.5};
    for (const auto& direction : kDirections)
      if (const auto side = sideDistance(picture, map, centre, direction[0], direction[1]))
        sides.push_back(*side);
  }
  if (sides.size() < kFewestSides) return kTypical;
  const auto middle = sides.begin() + static_cast<std::ptrdiff_t>(sides.size() / 2);
  std::nth_element(sides.begin(), middle, sides.end());
  return std::clamp(*middle, kSmallest, kLargest);
}

}  // namespace greycard
