#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "greycard/color_correction_settings.h"

namespace greycard {

/// The rows of the grey patches that white balance uses.
std::vector<std::int32_t> whitePatches(const ColorCorrectionAdvancedSettings& advanced);

/// Refuses what can't be fitted, before anything is computed from it.
/// \throws std::invalid_argument in one sentence that names the setting, or the patch and channel
void checkFitInput(const ColorCorrectionSettings& settings, std::span<const std::int32_t> gammaR,
                   std::span<const std::int32_t> gammaG, std::span<const std::int32_t> gammaB);

}  // namespace greycard
