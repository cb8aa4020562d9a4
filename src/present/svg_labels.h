#pragma once

#include <vector>

#include "greycard/types.h"

namespace greycard::present {

/// A text that names a point of a drawing; all in pixels, y downward.
struct Label {
  Point2 point;
  double width = 0.0, height = 0.0;
};

/// Where a label's upper left corner goes.
struct LabelPlace {
  Point2 corner;
  bool away = false;  ///< so far from its point that a line should lead there
};

/// Places for labels beside their points so that they cover neither each other nor the obstacles,
/// as far as there is room, and stay within the area. The first labels choose first.
std::vector<LabelPlace> placeLabels(const std::vector<Label>& labels,
                                    const std::vector<Point2>& obstacles, const PatchRegion& area);

}  // namespace greycard::present
