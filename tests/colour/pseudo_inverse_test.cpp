#include <gtest/gtest.h>

#include <cmath>

#include "greycard/image_utils_ex.h"

namespace greycard {
namespace {

TEST(PseudoInverse, KnownMatrices) {
  const double k = 1.0 / 36.0;
  const struct {
    const char* name;
    Matrix3 in, out;
  } cases[] = {
#include "pseudo_inverses.inc"
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name);
    Matrix3 found;
    ASSERT_TRUE(ImageUtilsEx::compute_pseudo_inverse(c.in, found));
    for (std::size_t i = 0; i < 3; ++i)
      for (std::size_t j = 0; j < 3; ++j)
        // A few units of single precision, relative to what the singular case can amplify.
        EXPECT_NEAR(found[i][j], c.out[i][j], 1e-6 * (1.0 + 4.0 * std::fabs(c.out[i][j])));
  }
}

TEST(PseudoInverse, WhatIsNoFloatIsRefused) {
  for (const double bad : {std::nan(""), HUGE_VAL, 1e39, -1e300}) {
    Matrix3 out{{{5, 5, 5}}};
    EXPECT_FALSE(ImageUtilsEx::compute_pseudo_inverse({{{1, 0, 0}, {0, bad, 0}, {0, 0, 1}}}, out));
    EXPECT_EQ(out[0][0], 5.0);
  }
}

}  // namespace
}  // namespace greycard
