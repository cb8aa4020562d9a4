// TwoDLutHelper::Adjust: the drag of a node.

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <limits>
#include <stdexcept>
#include <string>
#include <vector>

#include "greycard/two_d_lut_helper.h"
#include "integer_conversion.h"
#include "text.h"

namespace greycard {
namespace {

constexpr std::int32_t kCircle = 360;

// Offsets from the dragged node, both ends included.
struct Offsets {
  std::int64_t low, high;

  // 1 at the node, falling off to 1 / (n + 1) at n nodes, the end.
  double weight(std::int64_t offset) const {
    const auto distance = static_cast<double>(std::abs(offset));
    return 1.0 - distance / static_cast<double>(offset <= 0 ? 1 - low : high + 1);
  }
};

Offsets satOffsets(const NodeDrag& drag, std::int64_t columns) {
  const double step = 1.0 / static_cast<double>(columns - 1);
  const std::int64_t range = drag.rangeS, hit = drag.hitS;
  Offsets offsets{-range, range};
  if (drag.deltaS < 0)
    offsets.low += saturatingTruncate(drag.deltaS / step - 0.5);
  else
    offsets.high = saturatingTruncate(drag.deltaS / step + 0.5) + range;
  if (hit + offsets.low <= 0) offsets.low = 1 - hit;
  if (hit + offsets.high >= columns - 1) offsets.high = columns - hit - 1;
  return offsets;
}

Offsets hueOffsets(const NodeDrag& drag, std::int64_t rows, std::int32_t hitHue) {
  const auto step = static_cast<double>(kCircle / rows);
  const std::int64_t range = drag.rangeH;
  const bool isAhead = std::int64_t{hitHue} - drag.originalHue < 180;
  Offsets offsets{-range, range};
  if (drag.deltaH < 0) {
    const std::int64_t growth = saturatingTruncate(-drag.deltaH / step + 0.5);
    if (isAhead)
      offsets.low -= growth;
    else
      offsets.high = growth + range;
  } else if (isAhead) {
    // Deliberate: a positive drag shrinks the range where a negative one widens it.
    offsets.high = range - saturatingTruncate(drag.deltaH / step + 0.5);
  } else {
    offsets.low -= saturatingTruncate(-drag.deltaH / step + 0.5);
  }
  return offsets;
}

void checkDrag(const NodeDrag& drag, const TargetTables& tables) {
  const auto refuse = [](const std::string& name, const std::string& value,
                         const std::string& must) {
    throw std::invalid_argument(name + " is " + value + "; it must be " + must);
  };
  if (!std::isfinite(drag.deltaS)) refuse("deltaS", formatGeneral(drag.deltaS), "finite");
  if (!std::isfinite(drag.deltaH)) refuse("deltaH", formatGeneral(drag.deltaH), "finite");
  if (tables.rows < 1 || tables.rows > kCircle)
    refuse("m_nLUT_h (hue rows)", std::to_string(tables.rows), "1 to 360");
  if (tables.columns < 1) refuse("m_nLUT_s (columns)", std::to_string(tables.columns), "1 or more");
  const auto nodes =
      static_cast<std::size_t>(tables.rows) * static_cast<std::size_t>(tables.columns);
  const std::string must = "m_nLUT_h * m_nLUT_s = " + std::to_string(nodes);
  if (tables.sat.size() != nodes)
    refuse("the size of m_LUT_sat", std::to_string(tables.sat.size()), must);
  if (tables.hue.size() != nodes)
    refuse("the size of m_LUT_hue", std::to_string(tables.hue.size()), must);
  const auto checkHit = [](const char* name, std::int32_t hit, std::int32_t count) {
    if (hit < 0 || hit >= count)
      throw std::out_of_range(std::string(name) + " is " + std::to_string(hit) +
                              "; it must be 0 to " + std::to_string(count - 1));
  };
  checkHit("m_nHit_LUT_h", drag.hitH, tables.rows);
  checkHit("m_nHit_LUT_s", drag.hitS, tables.columns);
}

std::int32_t movedHue(std::int32_t hue, double change) {
  std::int64_t moved = std::int64_t{hue} + saturatingTruncate(change);
  if (moved < 0)
    moved += kCircle;
  else if (moved >= kCircle)
    moved -= kCircle;
  constexpr std::int64_t kLow = std::numeric_limits<std::int32_t>::min();
  constexpr std::int64_t kHigh = std::numeric_limits<std::int32_t>::max();
  return static_cast<std::int32_t>(std::clamp(moved, kLow, kHigh));
}

}  // namespace

void TwoDLutHelper::Adjust(const NodeDrag& drag, const TargetTables& tables) {
  checkDrag(drag, tables);
  // New values come from these, so that a row met again on a second turn is not moved twice.
  const std::vector<double> oldSat(tables.sat.begin(), tables.sat.end());
  const std::vector<std::int32_t> oldHue(tables.hue.begin(), tables.hue.end());

  const std::int64_t rows = tables.rows, columns = tables.columns;
  const auto hitNode = static_cast<std::size_t>(drag.hitH * columns + drag.hitS);
  const Offsets satRange = satOffsets(drag, columns);
  const Offsets hueRange = hueOffsets(drag, rows, oldHue[hitNode]);
  // A row keeps what its last offset gives, so only the last turn counts ...
  const std::int64_t firstHue = std::max(hueRange.low, hueRange.high - rows + 1);

  const auto move = [&](std::int64_t dh, std::int64_t column, double satWeight) {
    const double product = hueRange.weight(dh) * satWeight;
    const double weight = product <= 0.0 ? 0.0 : product < 1.0 ? std::sqrt(product) : 1.0;
    const std::int64_t row = ((drag.hitH + dh) % rows + rows) % rows;
    const auto node = static_cast<std::size_t>(row * columns + column);
    tables.hue[node] = movedHue(oldHue[node], weight * drag.deltaH);
    tables.sat[node] = std::clamp(oldSat[node] + weight * drag.deltaS, 0.0, 1.0);
  };
  for (std::int64_t ds = satRange.low; ds <= satRange.high; ++ds) {
    const std::int64_t column = drag.hitS + ds;
    if (column <= 0 || column >= columns) continue;
    const double satWeight = satRange.weight(ds);
    const bool skipsHitNode = ds == 0 && !drag.movesHitNode;
    for (std::int64_t dh = firstHue; dh <= hueRange.high; ++dh)
      if (dh != 0 || !skipsHitNode) move(dh, column, satWeight);
    // ... except for the dragged node, when it is skipped there: the turn before reaches it.
    if (skipsHitNode && firstHue <= 0 && hueRange.high >= 0 && hueRange.low <= -rows)
      move(-rows, column, satWeight);
  }
}

}  // namespace greycard
