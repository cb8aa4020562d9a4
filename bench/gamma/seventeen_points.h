#pragma once

#include <array>
#include <cmath>
#include <cstddef>

#include "greycard/control_point.h"

namespace greycard::bench {

/// A tone curve as an editor holds it: 17 points of a 2.2 power law, X and Y in 0..255.
inline std::array<ControlPoint, 17> seventeenPoints() {
  std::array<ControlPoint, 17> points;
  for (std::size_t i = 0; i < points.size(); ++i) {
    const double x = static_cast<double>(i) / 16.0;
    points[i] = {static_cast<std::int32_t>(std::lround(255.0 * x)),
                 static_cast<std::int32_t>(std::lround(255.0 * std::pow(x, 1.0 / 2.2)))};
  }
  return points;
}

}  // namespace greycard::bench
