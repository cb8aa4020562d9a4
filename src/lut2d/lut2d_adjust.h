#pragma once

#include <cstdint>
#include <span>

namespace greycard {

/// One drag of a node; the parameters of TwoDLutHelper::Adjust.
struct NodeDrag {
  std::int32_t originalHue;
  double deltaS, deltaH;
  std::int32_t rangeS, rangeH;
  std::int32_t hitH, hitS;
  bool movesHitNode;
};

/// Target tables of `rows` hue rows by `columns` saturation columns, row by row.
struct TargetTables {
  std::span<double> sat;
  std::span<std::int32_t> hue;
  std::int32_t rows, columns;
};

/// \throws std::invalid_argument, std::out_of_range as TwoDLutHelper::Adjust does
void adjustTargets(const NodeDrag& drag, const TargetTables& tables);

}  // namespace greycard
