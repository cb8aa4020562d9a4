#pragma once

#include "double_matrix.h"
#include "greycard/gamma_lut.h"

namespace greycard {

/// The builders of greycard/gamma_lut.h into a column for the colour computations.
/// Also false, with nothing written, unless the matrix is 256 x 1.
bool GenerateGammaLUT255(CDoubleMatrix& pLUT, std::span<const std::int32_t> pGammaLUT);
bool GenerateGammaLUT255_14bit(CDoubleMatrix& pLUT, std::span<const std::int32_t> pGammaLUT);
bool GenerateGammaLUTNorm(CDoubleMatrix& pLUT, std::span<const std::int32_t> pGammaLUT);

}  // namespace greycard
