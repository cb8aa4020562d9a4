#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

namespace greycard {

inline constexpr std::size_t kBuiltinEntries = 512;
using BuiltinTable = std::array<std::int32_t, kBuiltinEntries>;

/// What is fixed of a tuned curve; levels in 14-bit units, slopes in those per entry.
struct TunedCurve {
  std::array<std::int32_t, 6> first;  ///< entries 0..5
  std::int32_t middle;                ///< entry 256
  std::array<std::int32_t, 3> last;   ///< entries 509..511
  double startSlope;                  ///< of the body at entry 5
  double endSlope;                    ///< of the body at entry 509
};

/// The table of 512 entries with these ends and middle.
///
/// Its body, entries 5 to 509, rises from entry to entry by exp(p(w)), p a cubic polynomial in the
/// warped index w = ln(1 + i / 40) scaled to 0..1 over the body. So it is monotone and has no
/// kinks, and has the freedom of a toe and a shoulder. The two end slopes fix p at w = 0 and w = 1;
/// the other two coefficients are those with which the body meets the middle and the last entries.
/// \throws std::invalid_argument for slopes and levels that no such body joins
BuiltinTable tunedTable(const TunedCurve& curve);

}  // namespace greycard
