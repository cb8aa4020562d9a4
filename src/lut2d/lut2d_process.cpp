#include "lut2d_process.h"

#include <algorithm>
#include <array>
#include <span>

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
  constexpr std::size_t kSize = PixelBlock::kSize;
  const std::array planes{std::span(r, pixels), std::span(g, pixels), std::span(b, pixels)};
  const auto at = [&](std::size_t c, std::size_t k) { return planes[c].subspan(k).first<kSize>(); };
  std::size_t k = 0;
  for (; k + kSize <= pixels; k += kSize) process({at(0, k), at(1, k), at(2, k)});
  if (k < pixels) {
    std::array<std::array<std::uint16_t, kSize>, 3> last{};
    for (std::size_t c = 0; c < 3; ++c) std::ranges::copy(planes[c].subspan(k), last[c].begin());
    process({last[0], last[1], last[2]});
    for (std::size_t c = 0; c < 3; ++c)
      std::ranges::copy_n(last[c].begin(), static_cast<std::ptrdiff_t>(pixels - k),
                          planes[c].subspan(k).begin());
  }
  return 1;
}

}  // namespace greycard
