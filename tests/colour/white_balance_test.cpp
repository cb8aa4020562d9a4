#include "white_balance.h"

#include <limits>
#include <stdexcept>

#include "greycard/errors.h"
#include "greycard/types.h"
#include "gtest/gtest.h"
#include "matrix_functions.h"

namespace greycard {
namespace {

struct GainsCase {
  const char* name;
  Vector3 measured;  // in both patches
  Vector3 gains;
};

// Worked by hand from (G/R, 1, G/B) and the division by the smallest.
TEST(WhiteBalance, GainsOfGreyPatches) {
  const GainsCase cases[] = {
      {"both above 1", {0.25, 0.5, 0.4}, {2, 1, 1.25}},
      {"R 0.8, B 0.9", {1 / 0.8, 1, 1 / 0.9}, {1, 1.25, 1.125}},
      {"R 0.9, B 0.8", {1 / 0.9, 1, 1 / 0.8}, {1.125, 1.25, 1}},
      {"only B below 1", {0.5, 1, 2}, {4, 2, 1}},
      {"equal below 1", {2, 1, 2}, {1, 2, 1}},
      {"R is 0", {0, 0.5, 0.4}, {1, 1, 1}},
      {"B is 0", {0.3, 0.5, 0}, {1, 1, 1}},
  };
  for (const GainsCase& c : cases) {
    SCOPED_TRACE(c.name);
    // Other patches aren't looked at.
    CDoubleMatrix rgb = MatrixMultiply(mones(24, 3), std::numeric_limits<double>::quiet_NaN());
    for (std::int32_t i = 0; i < 3; ++i)
      rgb[19][i] = rgb[20][i] = c.measured[static_cast<std::size_t>(i)];
    const CDoubleMatrix gains = M_white_balance(rgb, {19, 20});
    for (std::int32_t i = 0; i < 3; ++i)
      EXPECT_DOUBLE_EQ(gains[i][i], c.gains[static_cast<std::size_t>(i)]);
  }
  EXPECT_EQ(M_white_balance(mones(24, 3), {}), meye(3));
  EXPECT_THROW(M_white_balance(mones(24, 3), {19, 24}), std::out_of_range);
  EXPECT_THROW(M_white_balance(mones(24, 3), {-1}), std::out_of_range);
  EXPECT_THROW(M_white_balance(mones(23, 3), {19}), ShapeError);
  EXPECT_THROW(M_white_balance(mones(24, 2), {19}), ShapeError);
}

}  // namespace
}  // namespace greycard
