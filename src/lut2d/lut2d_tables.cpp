#include "lut2d_tables.h"

#include <algorithm>
#include <cmath>

#include "integer_conversion.h"

namespace greycard {
namespace {

// A number beyond these counts as the nearest of them. Entries so large end at their own limits
// with any shift, and luma restored so much at black or white; nodes and boundaries so far out are
// beyond any use. Weights of the fade stay within 16 bits.
constexpr std::int64_t kLargestEntry = std::int64_t{1} << 34;
constexpr std::int32_t kLargestHueNode = 1 << 27, kLargestSatNode = 1 << 20;
constexpr std::int32_t kLargestLightness = 1 << 14, kLargestBlend = 1 << 15;
constexpr std::int32_t kMostShift = 24;
constexpr std::int64_t kEntryMax = 511, kEntryMin = -512;

template <typename Integer>
Integer truncated(float value, Integer limit) {
  return truncatedWithin<Integer>(double{value}, -limit, limit);
}

std::int32_t cellReciprocal(float one, std::int32_t width) {
  if (width == 0) return 0;  // such a cell changes nothing along its width
  return static_cast<std::int32_t>(std::ceil(one / static_cast<float>(width)));
}

std::int64_t quantised(std::int64_t value, int shift) {
  const std::int64_t half = shift > 0 ? std::int64_t{1} << (shift - 1) : 0;
  std::int64_t entry = (value + half) >> shift;
  if (entry > kEntryMax) entry = kEntryMax;
  // Deliberate: the lower clamp is one tighter than what it tests, so -512 itself stays.
  if (entry < kEntryMin) entry = -kEntryMax;
  return entry * (std::int64_t{1} << shift);
}

void buildNodes(const lut2d_cfg& record, LutTables& tables) {
  for (std::size_t i = 0; i < tables.hueNode.size(); ++i)
    tables.hueNode[i] = truncated(record.node[i][0].h / 60.0F * 2048.0F, kLargestHueNode);
  for (std::size_t i = 0; i < tables.hueRecip.size(); ++i)
    tables.hueRecip[i] = cellReciprocal(16384.0F, tables.hueNode[i + 1] - tables.hueNode[i]);
  for (std::size_t j = 0; j < tables.satNode.size(); ++j)
    tables.satNode[j] = truncated(record.node[0][j].s * 8.0F, kLargestSatNode);
  for (std::size_t j = 0; j < tables.satRecip.size(); ++j)
    tables.satRecip[j] = cellReciprocal(2048.0F, tables.satNode[j + 1] - tables.satNode[j]);
}

void buildEntries(const lut2d_cfg& record, LutTables& tables) {
  const int hShift = std::max(truncated(record.h_shift, kMostShift), 0);
  const int sShift = std::max(truncated(record.s_shift, kMostShift), 0);
  for (std::size_t i = 0; i < kLut2dHueRows; ++i)
    for (std::size_t j = 0; j < kLut2dSatColumns; ++j) {
      const Lut2dPair& delta = record.delta[i][j];
      tables.entry[i][j] = {
          quantised(truncated(delta.h / 60.0F * 2048.0F, kLargestEntry), hShift),
          quantised(truncated(delta.s / 256.0F * 2048.0F, kLargestEntry), sShift)};
    }
  tables.entry[kLut2dHueRows] = tables.entry[0];
}

// Fills values [from, to) of a table, as far as it reaches.
template <typename Table>
void fillRange(Table& table, std::int32_t from, std::int32_t to, std::uint8_t value) {
  const auto end = static_cast<std::int32_t>(table.size());
  from = std::clamp(from, 0, end);
  to = std::clamp(to, 0, end);
  if (from < to) std::fill(table.begin() + from, table.begin() + to, value);
}

// Of several cells that hold a value the first counts: it is filled in last.
void buildIndices(LutTables& tables) {
  tables.rowOfHue.fill(LutTables::kNoRow);
  for (std::size_t i = kLut2dHueRows; i-- > 0;)
    fillRange(tables.rowOfHue, tables.hueNode[i], tables.hueNode[i + 1],
              static_cast<std::uint8_t>(i));
  constexpr std::size_t kLastColumn = kLut2dSatColumns - 2;
  tables.columnOfSat.fill(kLastColumn);
  for (std::size_t j = kLastColumn + 1; j-- > 0;)
    fillRange(tables.columnOfSat, tables.satNode[j], tables.satNode[j + 1],
              static_cast<std::uint8_t>(j));
  fillRange(tables.columnOfSat, 0, tables.satNode[0], LutTables::kUntouchedColumn);
}

void buildFade(const lut2d_cfg& record, LutTables& tables) {
  const auto boundary = [](float share) { return truncated(share * 2047.0F, kLargestLightness); };
  const std::int32_t startA = boundary(record.l_boundary_start_a);
  const std::int32_t startB = boundary(record.l_boundary_start_b);
  const std::int32_t endA = boundary(record.l_boundary_end_a);
  const std::int32_t endB = boundary(record.l_boundary_end_b);
  const std::int32_t fadeIn = cellReciprocal(2048.0F, startB - startA);
  const std::int32_t fadeOut = cellReciprocal(2048.0F, endB - endA);
  for (std::int32_t lightness = 0; lightness <= kLightnessSumMax; ++lightness) {
    std::int32_t weight = 1 << kSatWeightBits;
    if (lightness < startA || lightness >= endB)
      weight = 0;
    else if (lightness < startB)
      weight = (lightness - startA) * fadeIn;
    else if (lightness >= endA)
      weight = (endB - lightness) * fadeOut;
    tables.fade[static_cast<std::size_t>(lightness)] = static_cast<std::int16_t>(weight);
  }
}

}  // namespace

void buildTables(const lut2d_cfg& record, LutTables& tables) {
  buildNodes(record, tables);
  buildEntries(record, tables);
  buildIndices(tables);
  buildFade(record, tables);
  tables.yBlend = truncated(std::round(record.y_blend_factor * 16.0F), kLargestBlend);
}

}  // namespace greycard
