#include "lattice/contrast_map.h"

#include <algorithm>

namespace greycard {
namespace {

std::uint8_t difference(std::uint8_t a, std::uint8_t b) {
  return static_cast<std::uint8_t>(std::max(a, b) - std::min(a, b));
}

// Of the pixels 1..width - 2 of a row; its neighbours above and below lie `stride` away.
void takeLargest(std::uint8_t* largest, const std::uint8_t* row, int width, std::ptrdiff_t stride) {
  for (int x = 1; x < width - 1; ++x) {
    const auto across = difference(row[x + 1], row[x - 1]);
    const auto down = difference(row[x + stride], row[x - stride]);
    largest[x] = std::max(largest[x], std::max(across, down));
  }
}

}  // namespace

void contrastMap(const WorkingPicture& picture, ContrastMap& map) {
  constexpr std::uint8_t kBorder = 255;
  map.width = picture.width;
  map.height = picture.height;
  map.values.resize(picture.planeSize());
  const int width = picture.width;
  for (int y = 0; y < picture.height; ++y) {
    auto* values =
        map.values.data() + static_cast<std::size_t>(y) * static_cast<std::size_t>(width);
    if (y == 0 || y == picture.height - 1) {
      std::fill(values, values + width, kBorder);
      continue;
    }
    std::fill(values, values + width, std::uint8_t{0});
    values[0] = values[width - 1] = kBorder;
    for (int plane = 0; plane < picture.planes; ++plane)
      takeLargest(values, picture.row(plane, y), width, width);
  }
}

double calmShare(const ContrastMap& map, int threshold) {
  const auto calm = std::count_if(map.values.begin(), map.values.end(),
                                  [threshold](std::uint8_t value) { return value < threshold; });
  return static_cast<double>(calm) /
         static_cast<double>(std::max<std::size_t>(1, map.values.size()));
}

ContrastMap contrastMap(const WorkingPicture& picture) {
  ContrastMap map;
  contrastMap(picture, map);
  return map;
}

}  // namespace greycard
