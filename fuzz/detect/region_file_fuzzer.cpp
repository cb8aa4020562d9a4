// Any bytes may be refused, with a sentence; none may crash or read out of bounds. What is accepted
// is finite with an area, and whole numbers survive a write and a second read; corners survive to
// the hundredth.

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "greycard/chart_regions.h"
#include "greycard/errors.h"

namespace {

greycard::PatchRegions rounded(greycard::PatchRegions regions) {
  for (auto& region : regions)
    region = {std::nearbyint(region.left), std::nearbyint(region.top), std::nearbyint(region.width),
              std::nearbyint(region.height)};
  return regions;
}

void readWriteRead(std::string_view text) {
  const auto quads = greycard::parseRegionFile(text, "bytes").quads;
  try {
    const auto again = greycard::parseRegionFile(greycard::formatQuads(quads), "again");
    if (again.upright) std::abort();
    for (std::size_t i = 0; i < quads.size(); ++i)
      for (std::size_t k = 0; k < 4; ++k)
        if (!(std::fabs(again.quads[i][k].x - quads[i][k].x) < 0.006)) std::abort();
  } catch (const greycard::FileError&) {  // rounded to no area, or a rectangle beyond the limit
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size > 16 * 1024) return 0;  // a region file is a few hundred bytes
  const std::string_view text(reinterpret_cast<const char*>(data), size);
  try {
    readWriteRead(text);
    const auto regions = greycard::parseRegions(text, "bytes");
    for (const auto& region : regions) {
      if (!std::isfinite(region.left + region.top)) std::abort();
      if (!(region.width > 0.0 && region.height > 0.0)) std::abort();
      if (region.width <= 0.5 || region.height <= 0.5) return 0;  // rounds to no area
    }
    if (greycard::parseRegions(greycard::formatRegions(regions), "again") != rounded(regions))
      std::abort();
  } catch (const greycard::FileError&) {
  }
  return 0;
}
