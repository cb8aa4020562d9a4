#pragma once

#include <string>

#include "greycard/jobs/fit_chart_best.h"

namespace greycard::cli {

/// Both fits as aligned text for people, without warnings.
std::string bestText(const BestChartFit& fit, bool wide);

}  // namespace greycard::cli
