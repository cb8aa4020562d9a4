#pragma once

#include <cstdint>

#include "interpolator.h"

namespace greycard {

/// What a model shares with its curves, and what lives as long as any of them.
struct GammaModelState {
  std::int32_t GammaBitSize = 14;
  bool RGBGamma = true;
  std::int32_t YScale = 64;
  std::int32_t XScale = 4;
  std::int32_t MaxY = 16383;
  Interpolator m_interp{
      16383};  // keeps the ceiling it is made with, whatever MaxY becomes (deliberate)
};

}  // namespace greycard
