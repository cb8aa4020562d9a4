#include "gamma_curve_lib.h"

#include <gtest/gtest.h>

#include <cmath>
#include <vector>

#include "greycard/gamma_curve_model.h"

namespace greycard {
namespace {

// Published: 100 and 203 cd/m2 are 51 % and 58 % of the PQ signal (ITU-R BT.2408, table 1).
TEST(GammaCurveLib, PqAtKnownLuminances) {
  GammaCurveLib lib(10001, CurveType::HDR10);  // a point each cd/m2
  lib.generateByHDR10();
  EXPECT_NEAR(lib.get_curve()[100] / 1e4, 0.51, 0.005);
  EXPECT_NEAR(lib.get_curve()[203] / 1e4, 0.58, 0.005);
}

// At 21 of 257 points E is 336/4095 < 1/12, and the logarithm is taken all the same: on this scale
// the two formulas are codes apart.
TEST(GammaCurveLib, HlgChoosesItsSegmentByPoint) {
  GammaCurveLib lib(257, CurveType::HLG);
  lib.set_yScale(1 << 20);
  lib.set_xScale(16);
  lib.generateByHLG();
  const double scale = (1 << 16) * 4095.0, e20 = 320 / 4095.0, e21 = 336 / 4095.0;
  const double log21 = 0.17883277 * std::log(12 * e21 - 0.28466892) + 0.55991073;
  EXPECT_EQ(lib.get_curve()[20], std::lround(1.73205081 * std::sqrt(e20) * scale));
  EXPECT_EQ(lib.get_curve()[21], std::lround(log21 * scale));
  EXPECT_GT(std::abs(log21 - std::sqrt(3 * e21)) * scale, 100);
}

TEST(GammaCurveLib, EntriesWithoutAValueAreZero) {
  for (std::uint32_t size = 0; size < 3; ++size)
    for (const CurveType type : {CurveType::Power, CurveType::HLG, CurveType::HDR10}) {
      GammaCurveLib lib(size, type);
      lib.generateByHDR10();
      EXPECT_EQ(lib.get_curve(), std::vector<std::int32_t>(size));
      lib.generateByHLG();
      EXPECT_EQ(lib.get_curve(), std::vector<std::int32_t>(size));
    }
  EXPECT_EQ(GammaCurveLib(11, CurveType::HLG).get_curve()[0], 0);  // logarithm of a negative number
}

}  // namespace
}  // namespace greycard
