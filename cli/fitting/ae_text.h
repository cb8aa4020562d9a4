#pragma once

#include <string>

#include "greycard/jobs/fit_exposure.h"

namespace greycard::cli {

/// Aligned text for standard output.
std::string aeText(const ExposureJob& job, const ExposureFit& fit);
std::string aeText(const ExposureJob& job, const ExposureTrial& trial);

}  // namespace greycard::cli
