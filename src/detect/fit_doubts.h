#pragma once

#include <opencv2/core.hpp>
#include <string>
#include <vector>

#include "colorchecker.h"

namespace greycard {

/// Signs that the grid is not on the chart, each one sentence and in this order: points outside the
/// picture, a neutral row that does not darken from white to black, patches that are not uniform,
/// colours that do not follow the chart's, patches too tiny to judge.
std::vector<std::string> fitDoubts(const ColorChecker& checker, const cv::Mat& image);

}  // namespace greycard
