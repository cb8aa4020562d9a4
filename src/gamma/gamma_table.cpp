#include "gamma_table.h"

#include <bit>
#include <cmath>

#include "integer_conversion.h"
#include "interpolator.h"

namespace greycard {

std::int32_t inferredDepth(std::int32_t lastEntry) {
  if (lastEntry < 256) return 8;
  if (lastEntry < 1024) return 10;
  return lastEntry < 4096 ? 12 : 14;
}

bool makeGammaTable(std::int32_t gammaBitSize, std::span<std::int32_t> src,
                    std::span<std::int32_t> dest) {
  if (!isCurveLength(src.size()) || dest.size() != kCurveEntries) return false;
  if (gammaBitSize < 0 || gammaBitSize > 31) return false;

  const std::int32_t shift = gammaBitSize - inferredDepth(src.back());
  if (shift != 0)
    for (std::int32_t& entry : src) entry = shift > 0 ? entry << shift : entry >> -shift;

  expandTable(src, gammaBitSize, dest);
  return true;
}

void expandTable(std::span<const std::int32_t> src, std::int32_t gammaBitSize,
                 std::span<std::int32_t> dest) {
  const std::size_t step = kCurveEntries / src.size();
  const int halvings = std::countr_zero(step);
  const std::int64_t fullScale = (std::int64_t{1} << gammaBitSize) - 1;
  for (std::size_t i = 0; i < src.size(); ++i) {
    const std::int64_t from = src[i];
    const std::int64_t next = i + 1 < src.size() ? src[i + 1] : fullScale;
    const std::int64_t rise = next - from;
    // rise / step towards zero, without a division
    const std::int64_t inc =
        (rise + (rise < 0 ? static_cast<std::int64_t>(step) - 1 : 0)) >> halvings;
    for (std::size_t k = 0; k < step; ++k)
      dest[i * step + k] = static_cast<std::int32_t>(from + static_cast<std::int64_t>(k) * inc);
  }
}

void fillReferenceCurve(double denominator, std::span<std::int32_t> dest, std::int32_t maxY) {
  const double last = dest.size() > 1 ? static_cast<double>(dest.size() - 1) : 1.0;
  for (std::size_t i = 0; i < dest.size(); ++i)
    dest[i] = saturatingTruncate(std::pow(static_cast<double>(i) / last, 1.0 / denominator) * maxY);
}

}  // namespace greycard
