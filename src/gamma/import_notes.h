#pragma once

#include "curve_file.h"
#include "greycard/gamma_import.h"

namespace greycard {

/// Fills everything of an import but its curve, which has been made of `file` or is absent, and the
/// settings by which the model made it.
void describeImport(const CurveFileContents& file, bool rgbGamma, std::int32_t gammaBitSize,
                    GammaImport& import);

}  // namespace greycard
