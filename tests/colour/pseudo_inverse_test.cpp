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
      // Name, matrix, pseudo-inverse; k is 1 / 36.
      // Determinant 1, so the inverse has whole entries.
      {"regular", {{{2, 3, 1}, {1, 2, 1}, {1, 1, 1}}}, {{{1, -2, 1}, {0, 1, -1}, {-1, 1, 1}}}},
      {"cycle", {{{0, 2, 0}, {0, 0, 4}, {8, 0, 0}}}, {{{0, 0, 0.125}, {0.5, 0, 0}, {0, 0.25, 0}}}},
      {"zero", {}, {}},
      {"all ones",
       {{{1, 1, 1}, {1, 1, 1}, {1, 1, 1}}},
       {{{4 * k, 4 * k, 4 * k}, {4 * k, 4 * k, 4 * k}, {4 * k, 4 * k, 4 * k}}}},
      // Rank 2; exact rational pseudo-inverse.
      {"counting",
       {{{1, 2, 3}, {4, 5, 6}, {7, 8, 9}}},
       {{{-23 * k, -6 * k, 11 * k}, {-2 * k, 0, 2 * k}, {19 * k, 6 * k, -7 * k}}}},
      // The same with entries that single precision has to round.
      {"tenths",
       {{{0.1, 0.2, 0.3}, {0.4, 0.5, 0.6}, {0.7, 0.8, 0.9}}},
       {{{-230 * k, -60 * k, 110 * k}, {-20 * k, 0, 20 * k}, {190 * k, 60 * k, -70 * k}}}},
      {"scales",
       {{{1, 0, 0}, {0, 1e-10, 0}, {0, 0, 1e-19}}},
       {{{1, 0, 0}, {0, 1e10, 0}, {0, 0, 1e19}}}},
      {"below the threshold",
       {{{1, 0, 0}, {0, 0.9e-20, 0}, {0, 0, 2}}},
       {{{1, 0, 0}, {0, 0, 0}, {0, 0, 0.5}}}},
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
