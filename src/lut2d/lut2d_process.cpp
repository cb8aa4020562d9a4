#include "lut2d_process.h"

#include <algorithm>
#include <array>

#include "pixel_block.h"

namespace greycard {

int processimage(std::uint16_t* r, std::uint16_t* g, std::uint16_t* b, std::uint16_t width,
                 std::uint16_t height, const lut2d_cfg& cfg) {
  const std::size_t pixels = std::size_t{width} * height;
  if (pixels == 0) return 1;
  LutTables tables;
  buildTables(cfg, tables);
  PackedNodes nodes;
  const bool isPacked = nodes.build(tables);

  PixelBlock block;
  const auto process = [&](const PixelBlock::Planes& samples) {
    block.toHueSat(samples);
    if (isPacked)
      block.lookUp(nodes);
    else
      block.lookUpPlainly(tables);
    block.toRgb(samples, tables.yBlend);
  };
  const std::size_t rest = pixels % PixelBlock::kSize, whole = pixels - rest;
  for (std::size_t k = 0; k < whole; k += PixelBlock::kSize) process({r + k, g + k, b + k});
  if (rest != 0) {
    const std::array<std::uint16_t*, 3> planes{r, g, b};
    std::array<std::array<std::uint16_t, PixelBlock::kSize>, 3> last{};
    for (std::size_t c = 0; c < 3; ++c) std::copy_n(planes[c] + whole, rest, last[c].begin());
    process({last[0].data(), last[1].data(), last[2].data()});
    for (std::size_t c = 0; c < 3; ++c) std::copy_n(last[c].begin(), rest, planes[c] + whole);
  }
  return 1;
}

}  // namespace greycard
