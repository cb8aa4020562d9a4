#include "builtin_curves.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <stdexcept>
#include <string>
#include <vector>

namespace greycard {
namespace {

// The levels that the presets are known by: entries 0..5, entry 256, entries 509..511.
struct Known {
  std::string_view name;
  std::vector<std::int32_t> first;
  std::int32_t middle;
  std::vector<std::int32_t> last;
};
const std::vector<Known> kKnown{
    {"VNormal", {0, 32, 64, 96, 161, 193}, 12159, {16335, 16351, 16383}},
    {"VLowlight", {0, 96, 161, 289, 353, 450}, 12111, {16335, 16351, 16383}},
    {"VOutdoor", {128, 193, 289, 385, 482, 578}, 12335, {16335, 16351, 16383}},
    {"VOutdoorHighContrast", {0, 32, 96, 128, 193, 225}, 12303, {16335, 16351, 16383}},
    {"VOutdoorDetail", {0, 64, 161, 225, 321, 385}, 12785, {16335, 16351, 16383}},
    {"VBacklight", {0, 225, 450, 707, 932, 1189}, 9926, {16319, 16351, 16383}},
    {"VNormalMediumDetail", {0, 64, 161, 225, 321, 385}, 12785, {16335, 16351, 16383}},
    {"VOutdoorMediumDetail", {0, 96, 225, 289, 418, 482}, 12625, {16335, 16351, 16383}},
    {"VGammaSRGB", {0, 414, 815, 1131, 1390, 1613}, 12058, {16355, 16369, 16383}},
    {"VNexus5", {128, 217, 305, 394, 482, 570}, 13492, {16359, 16367, 16375}},
    {"VHDR", {0, 497, 691, 840, 983, 1096}, 12058, {16338, 16353, 16368}}};

TEST(BuiltinCurves, HaveTheirKnownLevelsAndNeverFall) {
  const auto& curves = builtinCurves();
  ASSERT_EQ(curves.size(), kKnown.size());
  for (std::size_t c = 0; c < curves.size(); ++c) {
    const auto& table = curves[c].table;
    SCOPED_TRACE(std::string(kKnown[c].name));
    EXPECT_EQ(curves[c].name, kKnown[c].name);
    EXPECT_TRUE(std::equal(kKnown[c].first.begin(), kKnown[c].first.end(), table.begin()));
    EXPECT_EQ(table[256], kKnown[c].middle);
    EXPECT_TRUE(std::equal(kKnown[c].last.begin(), kKnown[c].last.end(), table.end() - 3));
    EXPECT_TRUE(std::is_sorted(table.begin(), table.end()));
    EXPECT_LE(table.back(), 16383);
  }
  EXPECT_TRUE(std::equal(curves[4].table.begin(), curves[4].table.end(), curves[6].table.begin()));
}

// Between the given ends the slope changes from entry to entry by the rounding (at most 2 units)
// and a tenth of itself; a kink of an eye's notice is several times that.
TEST(BuiltinCurves, HaveNoKinks) {
  for (const BuiltinCurve& curve : builtinCurves())
    for (std::size_t i = 6; i < 508; ++i) {
      const int before = curve.table[i] - curve.table[i - 1];
      const int after = curve.table[i + 1] - curve.table[i];
      EXPECT_LE(std::abs(after - before), 2.0 + 0.1 * before) << curve.name << " entry " << i;
    }
}

// IEC 61966-2-1 inverted: decoding an entry gives its input to half a unit.
TEST(BuiltinCurves, SrgbDecodesToItsInput) {
  const auto& table = builtinCurves()[8].table;
  const auto decoded = [](double v) {
    return v <= 0.04045 ? v / 12.92 : std::pow((v + 0.055) / 1.055, 2.4);
  };
  for (std::size_t i = 0; i < table.size(); ++i) {
    const double input = static_cast<double>(i) / 511.0, entry = table[i];
    EXPECT_LE(decoded((entry - 0.501) / 16383.0), input) << i;
    EXPECT_GE(decoded((entry + 0.501) / 16383.0), input) << i;
  }
}

TEST(TunedCurve, RefusesEndsThatNoBodyJoins) {
  const TunedCurve falling{{0, 1, 2, 3, 4, 5000}, 4000, {6000, 6001, 6002}, 10.0, 10.0};
  EXPECT_THROW(tunedTable(falling), std::invalid_argument);
}

}  // namespace
}  // namespace greycard
