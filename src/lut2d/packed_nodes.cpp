#include "packed_nodes.h"

#include <algorithm>
#include <cstdlib>
#include <limits>

namespace greycard {
namespace {

constexpr std::int64_t kLargestChange = kHueCircle;  // hues stay within a turn, and 16 bits
constexpr std::int64_t kLargestMidway = 1 << 16;     // half the bias

// Bilinear interpolation is largest at the ends of its weights; rounding adds less than `slack`.
struct CellBounds {
  std::array<std::int64_t, 2> hueWeight;
  std::int64_t satWeight, change;

  bool hold(std::int64_t t00, std::int64_t t10, std::int64_t t01, std::int64_t t11) const {
    constexpr std::int64_t kSlack = 4;
    for (const std::int64_t weight : hueWeight) {
      const std::int64_t a = t00 + (((t10 - t00) * weight) >> kHueWeightBits);
      const std::int64_t b = t01 + (((t11 - t01) * weight) >> kHueWeightBits);
      if (std::max(std::abs(a), std::abs(b)) + kSlack > kLargestMidway) return false;
      const std::int64_t end = a + (((b - a) * satWeight) >> kSatWeightBits);
      if (std::max(std::abs(a), std::abs(end)) + kSlack > change) return false;
    }
    return true;
  }
};

bool allHuesHaveRows(const LutTables& tables) {
  return std::ranges::find(tables.rowOfHue, LutTables::kNoRow) == tables.rowOfHue.end();
}

// A row between nodes that no hue lies between is never looked up.
bool holdsHues(const LutTables& tables, std::size_t i) {
  return std::max(tables.hueNode[i], 0) < std::min(tables.hueNode[i + 1], kHueCircle);
}

// The largest weight across saturation that any saturation has in the column.
std::int64_t largestWeight(const LutTables& tables, std::size_t column) {
  const std::int64_t last =
      column + 2 < kLut2dSatColumns ? std::min(tables.satNode[column + 1] - 1, kSatMax) : kSatMax;
  return std::max<std::int64_t>(last - tables.satNode[column], 0) * tables.satRecip[column];
}

bool rowFits(const LutTables& tables, std::size_t i, std::int64_t change) {
  if (!holdsHues(tables, i)) return true;
  const std::int64_t first = std::max(tables.hueNode[i], 0);
  const std::int64_t last = std::min(tables.hueNode[i + 1], kHueCircle) - 1;
  const auto weight = [&](std::int64_t hue) {
    return (hue - tables.hueNode[i]) * tables.hueRecip[i];
  };
  for (std::size_t j = 0; j + 1 < kLut2dSatColumns; ++j) {
    const CellBounds bounds{{weight(first), weight(last)}, largestWeight(tables, j), change};
    const auto &t00 = tables.entry[i][j], &t10 = tables.entry[i + 1][j];
    const auto &t01 = tables.entry[i][j + 1], &t11 = tables.entry[i + 1][j + 1];
    if (!bounds.hold(t00.h, t10.h, t01.h, t11.h) || !bounds.hold(t00.s, t10.s, t01.s, t11.s))
      return false;
  }
  return true;
}

}  // namespace

bool PackedNodes::build(const LutTables& tables) {
  if (!allHuesHaveRows(tables) || !buildSatCells(tables)) return false;
  const std::int64_t full = 1 << kSatWeightBits;
  const std::int64_t strongest = std::max<std::int64_t>(std::ranges::max(tables.fade), full);
  for (std::size_t i = 0; i < kLut2dHueRows; ++i)
    if (!rowFits(tables, i, kLargestChange * full / strongest)) return false;
  buildNodes(tables);
  std::ranges::transform(tables.rowOfHue, m_rowOfHue.begin(), [](std::uint8_t row) {
    return static_cast<std::uint16_t>(row * kRowLength);
  });
  m_fade = tables.fade;
  return true;
}

bool PackedNodes::buildSatCells(const LutTables& tables) {
  for (std::int32_t sat = 0; sat <= kSatMax; ++sat) {
    const std::uint8_t column = tables.columnOfSat[static_cast<std::size_t>(sat)];
    std::int64_t weight = 0;
    if (column != LutTables::kUntouchedColumn) {
      if (tables.satRecip[column] < 0) return false;  // a last column that runs backwards
      weight = std::int64_t{sat - tables.satNode[column]} * tables.satRecip[column];
    }
    if (weight < 0 || weight > std::numeric_limits<std::uint16_t>::max()) return false;
    m_satCell[static_cast<std::size_t>(sat)] = {static_cast<std::uint16_t>(2 * column),
                                                static_cast<std::uint16_t>(weight)};
  }
  return true;
}

void PackedNodes::buildNodes(const LutTables& tables) {
  constexpr std::int64_t kHalf = 1 << (kHueWeightBits - 1);
  constexpr std::int64_t kStart = (std::int64_t{kBias} << kHueWeightBits) + kHalf;
  for (std::size_t i = 0; i < kLut2dHueRows; ++i) {
    if (!holdsHues(tables, i)) continue;
    std::uint64_t* word = m_node.data() + i * kRowLength;
    for (std::size_t j = 0; j < kLut2dSatColumns; ++j) {
      const auto &from = tables.entry[i][j], &to = tables.entry[i + 1][j];
      const std::int64_t slopeH = (to.h - from.h) * tables.hueRecip[i];
      const std::int64_t slopeS = (to.s - from.s) * tables.hueRecip[i];
      const std::int64_t one = std::int64_t{1} << kHueWeightBits, node = tables.hueNode[i];
      *word++ = pack(from.h * one + kStart - slopeH * node, from.s * one + kStart - slopeS * node);
      *word++ = pack(slopeH, slopeS);
    }
    for (int zeros = 0; zeros < 2; ++zeros) {
      *word++ = pack(kStart, kStart);
      *word++ = 0;
    }
  }
}

}  // namespace greycard
