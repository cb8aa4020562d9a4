#pragma once

#include <string>

#include "greycard/jobs/fit_chart.h"

namespace greycard::cli {

/// A fit as aligned text for people, without its warnings.
std::string ccmText(const ChartFit& fit, bool wide);

}  // namespace greycard::cli
