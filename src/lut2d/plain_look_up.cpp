// The table look-up in 64 bits, for tables whose numbers do not fit the packed one.

#include <algorithm>

#include "pixel_block.h"

namespace greycard {
namespace {

// Weights and changes saturate far beyond any that matters, so that each product below fits 64
// bits: differences of entries are below 2^34, weights of the fade below 2^15.
constexpr std::int64_t kMostHueWeight = std::int64_t{1} << 29;
constexpr std::int64_t kMostSatWeight = std::int64_t{1} << 26;
constexpr std::int64_t kMostMidway = std::int64_t{1} << 36, kMostChange = std::int64_t{1} << 47;

std::int64_t saturated(std::int64_t value, std::int64_t most) {
  return std::clamp(value, -most, most);
}

struct HueSat {
  std::int64_t h, s;
};

// Interpolates one of the tables; fh and fs are the weights.
std::int64_t interpolated(const LutTables& tables, std::size_t i, std::size_t j, std::int64_t fh,
                          std::int64_t fs, std::int64_t LutTables::Entry::*component) {
  const auto acrossHue = [&](std::size_t column) {
    const std::int64_t from = tables.entry[i][column].*component;
    const std::int64_t to = tables.entry[i + 1][column].*component;
    return saturated(from + (((to - from) * fh + 8192) >> kHueWeightBits), kMostMidway);
  };
  const std::int64_t a = acrossHue(j), b = acrossHue(j + 1);
  return saturated(a + (((b - a) * fs + 1024) >> kSatWeightBits), kMostChange);
}

HueSat changeAt(const LutTables& tables, std::size_t i, std::size_t j, std::int64_t hue,
                std::int64_t sat, std::int64_t fade) {
  const std::int64_t fh = saturated((hue - tables.hueNode[i]) * tables.hueRecip[i], kMostHueWeight);
  const std::int64_t fs = saturated((sat - tables.satNode[j]) * tables.satRecip[j], kMostSatWeight);
  const auto faded = [&](std::int64_t LutTables::Entry::*component) {
    const std::int64_t value = interpolated(tables, i, j, fh, fs, component);
    return (value * fade + 1024) >> kSatWeightBits;
  };
  return {faded(&LutTables::Entry::h), faded(&LutTables::Entry::s)};
}

HueLane wrapped(std::int64_t hue) {
  if (hue >= 2 * kHueCircle) hue -= 2 * kHueCircle;
  if (hue >= kHueCircle) hue -= kHueCircle;
  if (hue < -kHueCircle) hue += 2 * kHueCircle;
  if (hue < 0) hue += kHueCircle;
  // More turns than that count as red, at the same distance from the nearest primary.
  if (hue < 0 || hue >= kHueCircle) {
    hue -= ((hue + kSextant) >> 12) * kThirdOfCircle;
    if (hue < 0) hue += kHueCircle;
  }
  return lane<HueLane>(static_cast<int>(hue));
}

}  // namespace

void PixelBlock::lookUpPlainly(const LutTables& tables) {
  for (std::size_t k = 0; k < kSize; ++k) {
    const std::size_t column = tables.columnOfSat[static_cast<std::size_t>(sat[k])];
    if (column == LutTables::kUntouchedColumn) continue;
    std::size_t row = tables.rowOfHue[static_cast<std::size_t>(hue[k])];
    if (row == LutTables::kNoRow) {
      hue[k] = HueLane{};
      row = 0;
    }
    const HueSat change = changeAt(tables, row, column, raw(hue[k]), raw(sat[k]),
                                   tables.fade[static_cast<std::size_t>(lightness[k])]);
    hue[k] = wrapped(raw(hue[k]) + change.h);
    sat[k] = lane<ShareLane>(
        static_cast<int>(std::clamp<std::int64_t>(raw(sat[k]) + change.s, 0, kSatMax)));
  }
}

}  // namespace greycard
