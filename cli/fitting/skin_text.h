#pragma once

#include <string>

#include "greycard/jobs/calibrate_skin.h"

namespace greycard::cli {

/// Aligned text for standard output, without the warnings.
std::string skinText(const SkinCalibration& result);

}  // namespace greycard::cli
