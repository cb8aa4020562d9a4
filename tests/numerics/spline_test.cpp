#include "spline.h"

#include <gmock/gmock.h>

#include <cmath>
#include <limits>
#include <vector>

#include "greycard/errors.h"

namespace greycard {
namespace {

double cubic(double x) {
  return ((2.0 * x - 3.0) * x + 0.5) * x + 4.0;
}
double cubicSlope(double x) {
  return (6.0 * x - 6.0) * x + 0.5;
}

// A clamped spline with the right end slopes is the cubic itself, also where it extrapolates.
TEST(Spline, ClampedReproducesACubic) {
  const std::vector<double> x = {-1.0, -0.5, 0.25, 1.0, 3.0};
  std::vector<double> y, y2(x.size());
  for (const double v : x) y.push_back(cubic(v));
  spline(x, y, cubicSlope(x.front()), cubicSlope(x.back()), y2);
  for (std::size_t i = 0; i < x.size(); ++i) EXPECT_NEAR(y2[i], 12.0 * x[i] - 6.0, 1e-12);
  for (double v = -2.0; v <= 4.0; v += 0.1) EXPECT_NEAR(splint(x, y, y2, v), cubic(v), 1e-11) << v;
}

// Natural spline through (0,0), (1,1), (2,0), (3,1), (4,0), worked by hand: with h = 1 the inner
// second derivatives solve 4 m1 + m2 = -12, m1 + 4 m2 + m3 = 12, m2 + 4 m3 = -12.
TEST(Spline, NaturalSolvesTheTextbookSystem) {
  const std::vector<double> x = {0, 1, 2, 3, 4}, y = {0, 1, 0, 1, 0};
  std::vector<double> y2(5);
  spline(x, y, kNaturalEnd, kNaturalEnd, y2);
  const double expected[] = {0.0, -30.0 / 7.0, 36.0 / 7.0, -30.0 / 7.0, 0.0};
  for (std::size_t i = 0; i < 5; ++i) EXPECT_NEAR(y2[i], expected[i], 1e-13);
}

TEST(Spline, SegmentIsTheLastThatStartsNotAboveX) {
  const std::vector<double> x = {0, 1, 1, 2, 5};
  const struct {
    double at;
    std::size_t segment;
  } cases[] = {{-3.0, 0}, {0.0, 0}, {0.99, 0}, {1.0, 2},          {1.5, 2},
               {2.0, 3},  {5.0, 3}, {9.0, 3},  {std::nan(""), 3}, {-HUGE_VAL, 0}};
  for (const auto& c : cases) EXPECT_EQ(splineSegment(x, c.at), c.segment) << c.at;
}

TEST(Spline, RefusesTooFewPoints) {
  const std::vector<double> one = {1.0}, two = {1.0, 2.0};
  std::vector<double> y2(2);
  EXPECT_THROW(spline(one, one, kNaturalEnd, kNaturalEnd, y2), ShapeError);
  EXPECT_THROW(spline(two, one, kNaturalEnd, kNaturalEnd, y2), ShapeError);
  for (const std::vector<double>& few : {one, std::vector<double>()})
    EXPECT_THAT([&] { splint(few, few, few, 0.5); },
                testing::ThrowsMessage<NumericError>("Bad xa input to routine splint"));
}

}  // namespace
}  // namespace greycard
