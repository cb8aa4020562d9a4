#pragma once

#include <string_view>

#include "greycard/batch/result.h"
#include "greycard/jobs/evaluate_chart.h"
#include "greycard/jobs/fit_chart.h"
#include "greycard/jobs/locate_chart.h"

namespace greycard::batch {

Figures figuresOf(const ChartSearch& search);
Figures figuresOf(const ChartFit& fit);
Figures figuresOf(const ChartEvaluation& evaluation);

/// Of a result in JSON. \throws std::invalid_argument with a sentence that begins with the field
Figures figuresOf(Job job, std::string_view result);

}  // namespace greycard::batch
