#include "greycard/awb_utils.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <random>

namespace greycard {
namespace {

using References = AWBUtils::ReferencePoints;

WhiteBalancePoint mapped(const References& s, const References& t, const WhiteBalancePoint& p) {
  return AWBUtils().GetTranformPtbyAffineTransform(s[0].rg, s[0].bg, s[1].rg, s[1].bg, s[2].rg,
                                                   s[2].bg, t[0].rg, t[0].bg, t[1].rg, t[1].bg,
                                                   t[2].rg, t[2].bg, p.rg, p.bg);
}

void expectMapped(const References& s, const References& t, const WhiteBalancePoint& p,
                  const WhiteBalancePoint& wanted) {
  const WhiteBalancePoint found = mapped(s, t, p);
  EXPECT_NEAR(found.rg, wanted.rg, 1e-9);
  EXPECT_NEAR(found.bg, wanted.bg, 1e-9);
  EXPECT_EQ(AWBUtils().GetTranformPtbyAffineTransform(s, t, p), found);
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
    References s, t;
    for (References* points : {&s, &t})
      for (auto& [rg, bg] : *points) rg = ratio(random), bg = ratio(random);
    const WhiteBalancePoint p{ratio(random), ratio(random)};
    const double whole = area(s[0], s[1], s[2]);
    if (std::abs(whole) < 1e-2) continue;
    ASSERT_TRUE(AWBUtils::SpansPlane(s));
    const double l1 = area(p, s[1], s[2]) / whole, l2 = area(s[0], p, s[2]) / whole;
    const double l3 = area(s[0], s[1], p) / whole;
    expectMapped(
        s, t, p,
        {l1 * t[0].rg + l2 * t[1].rg + l3 * t[2].rg, l1 * t[0].bg + l2 * t[1].bg + l3 * t[2].bg});
    for (std::size_t k = 0; k < 3; ++k) expectMapped(s, t, s[k], t[k]);
    expectMapped(s, s, p, p);
    for (std::size_t k = 0; k < 3; ++k) t[k] = {s[k].rg + 0.1, s[k].bg - 0.05};
    expectMapped(s, t, p, {p.rg + 0.1, p.bg - 0.05});
  }
}

TEST(AWBUtils, SourcePointsWithoutAPlaneAreToldAndHarmless) {
  const double nan = std::nan(""), inf = std::numeric_limits<double>::infinity();
  for (const References& s : {References{{{0.1, 0.1}, {0.2, 0.2}, {0.3, 0.3}}},
                              {{{0.5, 0.6}, {0.6, 0.7}, {0.9, 1.0}}},
                              {{{0.5, 0.6}, {0.5, 0.6}, {0.9, 0.3}}},
                              {{{0.0, 0.0}, {0.0, 0.0}, {0.0, 0.0}}},
                              {{{nan, 0.6}, {0.5, 0.3}, {0.9, 0.3}}},
                              {{{inf, 0.6}, {0.5, 0.3}, {0.9, 0.3}}}}) {
    EXPECT_FALSE(AWBUtils::SpansPlane(s));
    EXPECT_NO_THROW(mapped(s, {{{0.5, 1.0}, {0.6, 0.9}, {0.9, 0.2}}}, {0.5, 0.5}));
  }
  EXPECT_TRUE(AWBUtils::SpansPlane({{{0.5, 0.6}, {0.6, 0.7}, {0.9, 1.0 + 1e-12}}}));
  for (const double unit : {1e-300, 1e300})
    EXPECT_TRUE(AWBUtils::SpansPlane({{{unit, 0.0}, {0.0, unit}, {unit, unit}}}));
}

}  // namespace
}  // namespace greycard
