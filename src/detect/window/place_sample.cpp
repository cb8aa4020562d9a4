#include "window/place_sample.h"

#include <algorithm>
#include <cmath>

namespace greycard {
namespace {

constexpr int kPoints = 6, kCells = 3, kPerCell = kPoints / kCells;
constexpr double kReach = 0.24;

}  // namespace

PlaceSample samplePlace(const WorkingPicture& picture, const PlaneMap& map, double u, double v) {
  if (!map.sees(u, v)) return {};
  // Within a patch the map is as good as linear.
  const auto centre = picture.toWorking(map(u, v));
  const auto right = picture.toWorking(map(u + kReach, v)),
             below = picture.toWorking(map(u, v + kReach));
  std::array<std::array<int, kCells * kCells>, 3> cells{};
  for (int row = 0; row < kPoints; ++row) {
    for (int column = 0; column < kPoints; ++column) {
      const double du = 2.0 * column / (kPoints - 1) - 1.0, dv = 2.0 * row / (kPoints - 1) - 1.0;
      const double x = centre.x + du * (right.x - centre.x) + dv * (below.x - centre.x) + 0.5;
      const double y = centre.y + du * (right.y - centre.y) + dv * (below.y - centre.y) + 0.5;
      // Written so that NaN is outside: every comparison with it is false.
      if (!(x >= 0.0 && y >= 0.0 && x < picture.width && y < picture.height)) return {};
      const auto cell = static_cast<std::size_t>(row / kPerCell * kCells + column / kPerCell);
      for (int plane = 0; plane < picture.planes; ++plane)
        cells[static_cast<std::size_t>(plane)][cell] +=
            picture.row(plane, static_cast<int>(y))[static_cast<int>(x)];
    }
  }
  PlaceSample sample;
  sample.inside = true;
  for (std::size_t plane = 0; plane < static_cast<std::size_t>(picture.planes); ++plane) {
    int sum = 0;
    for (const int cell : cells[plane]) sum += cell;
    sample.mean[plane] = sum / static_cast<double>(kPoints * kPoints);
    for (const int cell : cells[plane])
      sample.scatter =
          std::max(sample.scatter,
                   std::fabs(cell / static_cast<double>(kPerCell * kPerCell) - sample.mean[plane]));
  }
  return sample;
}

}  // namespace greycard
