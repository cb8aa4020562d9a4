#include "window/patch_edges.h"

#include <algorithm>
#include <array>

#include "greycard/types.h"

namespace greycard {
namespace {

constexpr int kSteps = 8, kLines = 3;  // points along the way, and lines beside each other
constexpr double kBegin = 0.25, kLength = 0.5, kBeside = 0.12;  // of the way from centre to centre
constexpr double kEdge = 8.0;                                   // levels

// Whether the picture changes between two places of the plane that are 1 apart; true outside it.
bool changesBetween(const WorkingPicture& picture, const PlaneMap& map, const Point2& a,
                    const Point2& b) {
  std::array<double, 3> lowest{}, highest{};
  lowest.fill(255.0 * kLines);
  for (int step = 0; step <= kSteps; ++step) {
    const double along = kBegin + kLength * step / kSteps;
    std::array<double, 3> sums{};
    for (int line = -1; line <= 1; ++line) {
      const Point2 plane{a.x + along * (b.x - a.x) - line * kBeside * (b.y - a.y),
                         a.y + along * (b.y - a.y) + line * kBeside * (b.x - a.x)};
      const auto at = picture.toWorking(map(plane));
      const double x = at.x + 0.5, y = at.y + 0.5;
      // Written so that NaN is outside: every comparison with it is false.
      if (!(x >= 0.0 && y >= 0.0 && x < picture.width && y < picture.height)) return true;
      for (int c = 0; c < picture.planes; ++c)
        sums[static_cast<std::size_t>(c)] +=
            picture.row(c, static_cast<int>(y))[static_cast<int>(x)];
    }
    for (std::size_t c = 0; c < 3; ++c) {
      lowest[c] = std::min(lowest[c], sums[c]);
      highest[c] = std::max(highest[c], sums[c]);
    }
  }
  for (std::size_t c = 0; c < 3; ++c)
    if (highest[c] - lowest[c] >= kEdge * kLines) return true;
  return false;
}

}  // namespace

int missingEdges(const WorkingPicture& picture, const PlaneMap& map) {
  int missing = 0;
  for (int row = 0; row < 4; ++row) {
    for (int column = 0; column < 6; ++column) {
      const Point2 here{column + 0.5, row + 0.5};
      if (column < 5) missing += !changesBetween(picture, map, here, {here.x + 1.0, here.y});
      if (row < 3) missing += !changesBetween(picture, map, here, {here.x, here.y + 1.0});
    }
  }
  return missing;
}

}  // namespace greycard
