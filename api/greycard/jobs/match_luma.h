#pragma once
/// \file
/// \ingroup own

#include "greycard/export.h"
#include "greycard/nlopt_helper.h"
#include "greycard/types.h"

namespace greycard {

struct LumaMatchOptions {
  Vector3 test{}, target{};  ///< encoded sRGB, 0..255
  SearchOptions search;
};

/// The factor on an encoded sRGB colour that gives it the L* of another colour.
struct GREYCARD_EXPORT LumaMatch {
  double factor = 1.0;                               ///< 0..10
  double testL = 0.0, scaledL = 0.0, targetL = 0.0;  ///< L* of the colours, and of factor * test

  /// Whether the target's L* is met to 0.01; else no factor from 0 to 10 meets it.
  bool reached() const;
};

/// \throws std::invalid_argument as NLoptHelper::findMinSearch
GREYCARD_EXPORT LumaMatch matchLuma(const LumaMatchOptions& options);

}  // namespace greycard
