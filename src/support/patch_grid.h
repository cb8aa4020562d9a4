#pragma once

// Distances between the places of the chart's patches.

#include <array>
#include <cmath>

#include "greycard/types.h"

namespace greycard {

inline double distance(const Point2& a, const Point2& b) {
  return std::hypot(a.x - b.x, a.y - b.y);
}

/// Mean distance of neighbours, along the rows and along the columns.
inline double meanPitch(const std::array<Point2, kPatchCount>& centres) {
  double sum = 0.0;
  int count = 0;
  for (std::size_t i = 0; i < kPatchCount; ++i) {
    if (i % kChartColumns != 0) sum += distance(centres[i], centres[i - 1]), ++count;
    if (i >= kChartColumns) sum += distance(centres[i], centres[i - kChartColumns]), ++count;
  }
  return sum / count;
}

}  // namespace greycard
