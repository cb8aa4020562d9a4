#include "cam16.h"

#include <gtest/gtest.h>

#include <cmath>
#include <numbers>

namespace greycard {
namespace {

// C. Li and others, Color Res. Appl. 42 (2017) 703, worked example, as printed to four decimals.
TEST(Cam16, MeetsThePublishedExample) {
  const Cam16 model({95.05, 100.0, 108.88}, 318.31, 20.0, false);
  const Cam16::Correlates found = model.correlates({19.01, 20.0, 21.78});
  EXPECT_NEAR(found.lightness, 41.7312, 0.6e-4);
  EXPECT_NEAR(found.chroma, 0.1034, 0.6e-4);
  EXPECT_NEAR(found.hueDeg, 217.0680, 0.6e-4);
  EXPECT_NEAR(found.colourfulness, 0.1074, 0.6e-4);
}

// The model step by step with its constants as printed, for full adaptation.
Vector3 slowUcs(const Vector3& xyz, const Vector3& white, double la, double background) {
  const auto cones = [](const Vector3& v) {
    return Vector3{0.401288 * v[0] + 0.650173 * v[1] - 0.051461 * v[2],
                   -0.250268 * v[0] + 1.204414 * v[1] + 0.045854 * v[2],
                   -0.002079 * v[0] + 0.048952 * v[1] + 0.953127 * v[2]};
  };
  const double k = 1.0 / (5.0 * la + 1.0), k4 = std::pow(k, 4);
  const double fl = 0.2 * k4 * 5.0 * la + 0.1 * std::pow(1.0 - k4, 2) * std::pow(5.0 * la, 1.0 / 3);
  const double n = background / white[1], nbb = 0.725 * std::pow(1.0 / n, 0.2);
  const Vector3 whiteCones = cones(white);
  const auto adapted = [&](const Vector3& v) {
    Vector3 a = cones(v);
    for (std::size_t c = 0; c < 3; ++c) {
      const double x = fl * a[c] * white[1] / whiteCones[c] / 100.0;
      const double p = std::pow(std::fabs(x), 0.42);
      a[c] = std::copysign(400.0 * p / (p + 27.13), x) + 0.1;
    }
    return a;
  };
  const auto achromatic = [nbb](const Vector3& a) {
    return (2.0 * a[0] + a[1] + a[2] / 20.0 - 0.305) * nbb;
  };
  const Vector3 r = adapted(xyz);
  const double a = r[0] - 12.0 * r[1] / 11.0 + r[2] / 11.0, b = (r[0] + r[1] - 2.0 * r[2]) / 9.0;
  const double h = std::atan2(b, a);
  const double j =
      100.0 * std::pow(achromatic(r) / achromatic(adapted(white)), 0.69 * (1.48 + std::sqrt(n)));
  const double e = 0.25 * (std::cos(h + 2.0) + 3.8);
  const double t = 50000.0 / 13.0 * nbb * e * std::hypot(a, b) / (r[0] + r[1] + 21.0 * r[2] / 20.0);
  const double m = std::pow(t, 0.9) * std::sqrt(j / 100.0) *
                   std::pow(1.64 - std::pow(0.29, n), 0.73) * std::pow(fl, 0.25);
  const double mm = std::log(1.0 + 0.0228 * m) / 0.0228;
  return {1.7 * j / (1.0 + 0.007 * j), mm * std::cos(h), mm * std::sin(h)};
}

TEST(Cam16, IsTheModelStepByStep) {
  const Vector3 white{95.05, 100.0, 108.9};
  const Cam16 model(white);
  for (const double x : {2.0, 20.0, 60.0})
    for (const double y : {5.0, 30.0, 70.0})
      for (const double z : {3.0, 40.0, 100.0}) {
        const Vector3 found = model.ucs(Vector3{x, y, z});
        const Vector3 slow = slowUcs({x, y, z}, white, 4.07, 20.0);
        for (std::size_t i = 0; i < 3; ++i) EXPECT_NEAR(found[i], slow[i], 1e-9);
      }
}

}  // namespace
}  // namespace greycard
