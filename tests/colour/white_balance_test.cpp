#include "white_balance.h"

#include <limits>
#include <stdexcept>

#include "greycard/errors.h"
#include "gtest/gtest.h"
#include "matrix_functions.h"

namespace greycard {
namespace {

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

struct GainsCase {
  const char* name;
  double r, g, b;  // measured in patch 20; patch 21 is the same, so are the sums
  double gainR, gainG, gainB;
};

// Worked by hand from (G/R, 1, G/B) and the division by the smallest.
TEST(WhiteBalance, GainsOfGreyPatches) {
  const GainsCase cases[] = {
      {"both above 1", 0.25, 0.5, 0.4, 2, 1, 1.25},
      {"R 0.8, B 0.9", 1 / 0.8, 1, 1 / 0.9, 1, 1.25, 1.125},
      {"R 0.9, B 0.8", 1 / 0.9, 1, 1 / 0.8, 1.125, 1.25, 1},
      {"only B below 1", 0.5, 1, 2, 4, 2, 1},
      {"equal below 1", 2, 1, 2, 1, 2, 1},
      {"R is 0", 0, 0.5, 0.4, 1, 1, 1},
      {"B is 0", 0.3, 0.5, 0, 1, 1, 1},
  };
  for (const GainsCase& c : cases) {
    SCOPED_TRACE(c.name);
    CDoubleMatrix rgb = MatrixMultiply(mones(24, 3), kNaN);  // other patches aren't looked at
    for (const std::int32_t patch : {19, 20}) {
      rgb[patch][0] = c.r;
      rgb[patch][1] = c.g;
      rgb[patch][2] = c.b;
    }
    const CDoubleMatrix gains = M_white_balance(rgb, {19, 20});
    EXPECT_DOUBLE_EQ(gains[0][0], c.gainR);
    EXPECT_DOUBLE_EQ(gains[1][1], c.gainG);
    EXPECT_DOUBLE_EQ(gains[2][2], c.gainB);
    EXPECT_EQ(gains[0][1], 0.0);
  }
}

TEST(WhiteBalance, NoPatchesGiveUnitGains) {
  EXPECT_EQ(M_white_balance(mones(24, 3), {}), meye(3));
}

TEST(WhiteBalance, RefusesWhatIsNoPatch) {
  for (const std::int32_t patch : {-1, 24}) {
    try {
      M_white_balance(mones(24, 3), {19, patch});
      FAIL() << patch;
    } catch (const std::out_of_range& error) {
      EXPECT_NE(std::string(error.what()).find(std::to_string(patch)), std::string::npos);
    }
  }
  EXPECT_THROW(M_white_balance(mones(23, 3), {19}), ShapeError);
}

}  // namespace
}  // namespace greycard
