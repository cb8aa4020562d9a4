#pragma once

#include <array>
#include <span>
#include <string_view>

#include "tuned_curve.h"

namespace greycard {

/// A preset of every catalogue; entry i of its table is the 14-bit output for input i / 511.
struct BuiltinCurve {
  std::string_view name;
  std::span<const std::int32_t, kBuiltinEntries> table;
};

/// The presets in the order of GammaCurveID. The tables are computed at the first call.
const std::array<BuiltinCurve, 11>& builtinCurves();

}  // namespace greycard
