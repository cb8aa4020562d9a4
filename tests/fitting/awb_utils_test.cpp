#include "greycard/awb_utils.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <random>

namespace greycard {
namespace {

using Points = AWBUtils::ReferencePoints;

WhiteBalancePoint mapped(const Points& s, const Points& t, const WhiteBalancePoint& p) {
  return AWBUtils().GetTranformPtbyAffineTransform(s[0].rg, s[0].bg, s[1].rg, s[1].bg, s[2].rg,
                                                   s[2].bg, t[0].rg, t[0].bg, t[1].rg, t[1].bg,
                                                   t[2].rg, t[2].bg, p.rg, p.bg);
}

void expectNear(const WhiteBalancePoint& found, const WhiteBalancePoint& wanted) {
  EXPECT_NEAR(found.rg, wanted.rg, 1e-12);
  EXPECT_NEAR(found.bg, wanted.bg, 1e-12);
}

const Points kSource{{{0.45, 0.71}, {0.62, 0.55}, {0.88, 0.38}}};

TEST(AWBUtils, IdentityAndShift) {
  Points shifted = kSource;
  for (auto& [rg, bg] : shifted) {
    rg += 0.1;
    bg -= 0.05;
  }
  for (const WhiteBalancePoint p : {WhiteBalancePoint{0.5, 0.6}, {0.0, 0.0}, {-3.0, 7.0}}) {
    expectNear(mapped(kSource, kSource, p), p);
    expectNear(mapped(kSource, shifted, p), {p.rg + 0.1, p.bg - 0.05});
  }
}

// p = l1 s1 + l2 s2 + l3 s3 with areas of triangles as l (Moebius) is l1 t1 + l2 t2 + l3 t3.
TEST(AWBUtils, AgreesWithBarycentricCoordinates) {
  std::mt19937 random(7);
  std::uniform_real_distribution<double> ratio(0.2, 2.0);
  const auto area = [](const WhiteBalancePoint& a, const WhiteBalancePoint& b,
                       const WhiteBalancePoint& c) {
    return (b.rg - a.rg) * (c.bg - a.bg) - (c.rg - a.rg) * (b.bg - a.bg);
  };
  for (int round = 0; round < 200; ++round) {
    Points s, t;
    for (Points* points : {&s, &t})
      for (auto& [rg, bg] : *points) rg = ratio(random), bg = ratio(random);
    const WhiteBalancePoint p{ratio(random), ratio(random)};
    const double whole = area(s[0], s[1], s[2]);
    if (std::abs(whole) < 1e-2) continue;
    ASSERT_TRUE(AWBUtils::SpansPlane(s));
    const double l1 = area(p, s[1], s[2]) / whole, l2 = area(s[0], p, s[2]) / whole;
    const double l3 = area(s[0], s[1], p) / whole;
    const WhiteBalancePoint found = mapped(s, t, p);
    EXPECT_NEAR(found.rg, l1 * t[0].rg + l2 * t[1].rg + l3 * t[2].rg, 1e-9);
    EXPECT_NEAR(found.bg, l1 * t[0].bg + l2 * t[1].bg + l3 * t[2].bg, 1e-9);
    for (std::size_t k = 0; k < 3; ++k) EXPECT_NEAR(mapped(s, t, s[k]).rg, t[k].rg, 1e-9);
  }
}

TEST(AWBUtils, SourcePointsWithoutAPlaneAreToldAndHarmless) {
  const double nan = std::nan(""), inf = std::numeric_limits<double>::infinity();
  for (const Points& s : {Points{{{0.1, 0.1}, {0.2, 0.2}, {0.3, 0.3}}},
                          {{{0.5, 0.6}, {0.6, 0.7}, {0.9, 1.0}}},
                          {{{0.5, 0.6}, {0.5, 0.6}, {0.9, 0.3}}},
                          {{{0.0, 0.0}, {0.0, 0.0}, {0.0, 0.0}}},
                          {{{nan, 0.6}, {0.5, 0.3}, {0.9, 0.3}}},
                          {{{inf, 0.6}, {0.5, 0.3}, {0.9, 0.3}}}}) {
    EXPECT_FALSE(AWBUtils::SpansPlane(s));
    EXPECT_NO_THROW(mapped(s, kSource, {0.5, 0.5}));
  }
  EXPECT_TRUE(AWBUtils::SpansPlane({{{0.5, 0.6}, {0.6, 0.7}, {0.9, 1.0 + 1e-12}}}));
}

}  // namespace
}  // namespace greycard
