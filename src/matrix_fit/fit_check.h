#pragma once

#include "greycard/fit_options.h"

namespace greycard {

/// Refuses options and samples that can't be fitted, before anything is computed from them.
/// \throws std::invalid_argument in one sentence that names the option, or photograph, patch and
///         channel
void checkFitOptions(const FitOptions& options);
void checkFitSamples(const MatrixFitSamples& samples, const FitOptions& options);

}  // namespace greycard
