#include "builtin_curves.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <stdexcept>
#include <vector>

namespace greycard {
namespace {

// The levels that the presets are known by: entries 0..5, 256 and 509..511.
struct Known {
  std::string_view name;
  std::array<std::int32_t, 10> levels;
};
constexpr Known kKnown[]{
#include "known_levels.inc"
};

// A slope changes from entry to entry by the rounding (at most 2 units) and a tenth of itself; a
// kink that shows in a plot is several times that.
TEST(BuiltinCurves, HaveTheirKnownLevelsNeverFallAndHaveNoKinks) {
  for (std::size_t c = 0; c < std::size(kKnown); ++c) {
    const auto& [name, t] = builtinCurves()[c];
    EXPECT_EQ(name, kKnown[c].name);
    EXPECT_EQ(kKnown[c].levels,
              (std::array{t[0], t[1], t[2], t[3], t[4], t[5], t[256], t[509], t[510], t[511]}));
    EXPECT_TRUE(std::is_sorted(t.begin(), t.end())) << name;
    for (std::size_t i = 6; i < 508; ++i) {
      const int before = t[i] - t[i - 1], after = t[i + 1] - t[i];
      EXPECT_NEAR(after, before, 2.0 + 0.1 * before) << name << " entry " << i;
    }
  }
  const auto &detail = builtinCurves()[4].table, &normalDetail = builtinCurves()[6].table;
  EXPECT_TRUE(std::equal(detail.begin(), detail.end(), normalDetail.begin()));
}

TEST(TunedCurve, RefusesEndsThatNoBodyJoins) {
  const TunedCurve falling{{0, 1, 2, 3, 4, 5000}, 4000, {6000, 6001, 6002}, 10.0, 10.0};
  EXPECT_THROW(tunedTable(falling), std::invalid_argument);
}

}  // namespace
}  // namespace greycard
