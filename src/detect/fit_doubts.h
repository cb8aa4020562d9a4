#pragma once

#include <opencv2/core.hpp>
#include <string>
#include <vector>

#include "colorchecker.h"

namespace greycard {

/// Signs that the grid is not on the chart, each one sentence: points outside the picture, a
/// neutral row that does not darken from white to black, patches that are not uniform.
std::vector<std::string> fitDoubts(const ColorChecker& checker, const cv::Mat& image);

}  // namespace greycard
