#include "lut2d_process.h"

#include <algorithm>

#include "pixel_block.h"

namespace greycard {
namespace {

void load(PixelBlock::Lanes& lanes, const std::uint16_t* samples, std::size_t count) {
  for (std::size_t k = 0; k < count; ++k)
    lanes[k] = static_cast<std::int16_t>(std::min<std::uint16_t>(samples[k], kSampleMax));
}

}  // namespace

int processimage(std::uint16_t* r, std::uint16_t* g, std::uint16_t* b, std::uint16_t width,
                 std::uint16_t height, const lut2d_cfg& cfg) {
  const std::size_t pixels = std::size_t{width} * height;
  if (pixels == 0) return 1;
  LutTables tables;
  buildTables(cfg, tables);
  PackedNodes nodes;
  const bool isPacked = nodes.build(tables);

  PixelBlock block{};  // the last one may be partly filled
  for (std::size_t start = 0; start < pixels; start += PixelBlock::kSize) {
    const std::size_t count = std::min(PixelBlock::kSize, pixels - start);
    load(block.r, r + start, count);
    load(block.g, g + start, count);
    load(block.b, b + start, count);
    block.toHueSat();
    if (isPacked)
      block.lookUp(nodes);
    else
      block.lookUpPlainly(tables);
    block.toRgb(tables.yBlend);
    std::copy_n(block.r.begin(), count, r + start);
    std::copy_n(block.g.begin(), count, g + start);
    std::copy_n(block.b.begin(), count, b + start);
  }
  return 1;
}

}  // namespace greycard
