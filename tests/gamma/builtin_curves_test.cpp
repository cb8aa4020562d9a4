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
    // Entries 0 to 5, 256 and 509 to 511 of each preset.
    {"VNormal", {0, 32, 64, 96, 161, 193, 12159, 16335, 16351, 16383}},
    {"VLowlight", {0, 96, 161, 289, 353, 450, 12111, 16335, 16351, 16383}},
    {"VOutdoor", {128, 193, 289, 385, 482, 578, 12335, 16335, 16351, 16383}},
    {"VOutdoorHighContrast", {0, 32, 96, 128, 193, 225, 12303, 16335, 16351, 16383}},
    {"VOutdoorDetail", {0, 64, 161, 225, 321, 385, 12785, 16335, 16351, 16383}},
    {"VBacklight", {0, 225, 450, 707, 932, 1189, 9926, 16319, 16351, 16383}},
    {"VNormalMediumDetail", {0, 64, 161, 225, 321, 385, 12785, 16335, 16351, 16383}},
    {"VOutdoorMediumDetail", {0, 96, 225, 289, 418, 482, 12625, 16335, 16351, 16383}},
    {"VGammaSRGB", {0, 414, 815, 1131, 1390, 1613, 12058, 16355, 16369, 16383}},
    {"VNexus5", {128, 217, 305, 394, 482, 570, 13492, 16359, 16367, 16375}},
    {"VHDR", {0, 497, 691, 840, 983, 1096, 12058, 16338, 16353, 16368}}};

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
