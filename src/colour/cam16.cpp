#include "cam16.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace greycard {
namespace {

// XYZ to the sharpened cones R, G, B.
constexpr Matrix3 kCones{{{0.401288, 0.650173, -0.051461},
                          {-0.250268, 1.204414, 0.045854},
                          {-0.002079, 0.048952, 0.953127}}};
constexpr double kImpact = 0.69, kInduction = 1.0;  // c and Nc of an average surround

// 400 x^0.42 / (x^0.42 + 27.13), odd-symmetric. The constant 0.1 that the model adds cancels in a
// and b and is taken off again in the achromatic response; where it counts it is added there.
constexpr double kLinearBelow = 1e-9;  // a straight line, since the power has no slope at 0
template <std::size_t N>
Dual<N> compressed(const Dual<N>& x) {
  const double size = std::max(std::fabs(x.v), kLinearBelow);
  const double power = std::pow(size, 0.42);
  const double response = 400.0 * power / (power + 27.13);
  if (size == kLinearBelow) return (response / size) * x;
  const double slope = 0.42 * response * 27.13 / ((power + 27.13) * size);
  return chain(x, std::copysign(response, x.v), slope);
}

template <std::size_t N>
Dual<N> power(const Dual<N>& x, double exponent) {
  if (!(x.v > 0.0)) return {};
  const double value = std::pow(x.v, exponent);
  return chain(x, value, exponent * value / x.v);
}

}  // namespace

/// J, M and the direction of the hue.
template <std::size_t N>
struct Cam16::Appearance {
  Dual<N> lightness, colourfulness, cosHue, sinHue;
};

Cam16::Cam16(const Vector3& white, double adaptingCdPerM2, double background, bool fullAdaptation) {
  const double degree =
      fullAdaptation ? 1.0
                     : std::clamp(1.0 - std::exp((-adaptingCdPerM2 - 42.0) / 92.0) / 3.6, 0.0, 1.0);
  for (std::size_t c = 0; c < 3; ++c) {
    double cone = 0.0;
    for (std::size_t k = 0; k < 3; ++k) cone += kCones[c][k] * white[k];
    adaptation_[c] = degree * white[1] / cone + 1.0 - degree;
  }
  const double five = 5.0 * adaptingCdPerM2, k = 1.0 / (five + 1.0), k4 = k * k * k * k;
  luminanceLevel_ = 0.2 * k4 * five + 0.1 * (1.0 - k4) * (1.0 - k4) * std::cbrt(five);
  const double n = background / white[1];
  induction_ = 0.725 * std::pow(1.0 / n, 0.2);
  exponent_ = kImpact * (1.48 + std::sqrt(n));
  chromaFactor_ = std::pow(1.64 - std::pow(0.29, n), 0.73);
  // J of the white with a response of 1 is 100 times the response to the exponent.
  const std::array<Dual<0>, 3> xyz{{{white[0], {}}, {white[1], {}}, {white[2], {}}}};
  whiteResponse_ = std::pow(appearance(xyz).lightness.v / 100.0, 1.0 / exponent_);
}

template <std::size_t N>
Cam16::Appearance<N> Cam16::appearance(const std::array<Dual<N>, 3>& xyz) const {
  std::array<Dual<N>, 3> cone;
  for (std::size_t c = 0; c < 3; ++c) {
    const Dual<N> sharpened = kCones[c][0] * xyz[0] + kCones[c][1] * xyz[1] + kCones[c][2] * xyz[2];
    cone[c] = compressed((luminanceLevel_ * adaptation_[c] / 100.0) * sharpened);
  }
  const Dual<N> a = cone[0] - (12.0 / 11.0) * cone[1] + (1.0 / 11.0) * cone[2];
  const Dual<N> b = (1.0 / 9.0) * (cone[0] + cone[1] - 2.0 * cone[2]);
  const Dual<N> achromatic = induction_ * (2.0 * cone[0] + cone[1] + 0.05 * cone[2]);
  Appearance<N> result;
  const Dual<N> j = power((1.0 / whiteResponse_) * achromatic, exponent_);
  result.lightness = 100.0 * j;

  const Dual<N> rho = sqrt(a * a + b * b);
  const Dual<N> sum = cone[0] + cone[1] + 1.05 * cone[2] + 0.305;
  if (!(rho.v > 0.0 && sum.v > 0.0 && j.v > 0.0)) return result;
  result.cosHue = a / rho;
  result.sinHue = b / rho;
  // (cos(h + 2) + 3.8) / 4, the angle in radians
  const Dual<N> eccentricity =
      (0.25 * std::cos(2.0)) * result.cosHue - (0.25 * std::sin(2.0)) * result.sinHue + 0.95;
  const Dual<N> t = (50000.0 / 13.0 * kInduction * induction_) * (eccentricity * rho / sum);
  result.colourfulness =
      (chromaFactor_ * std::pow(luminanceLevel_, 0.25)) * (power(t, 0.9) * sqrt(j));
  return result;
}

Cam16::Correlates Cam16::correlates(const Vector3& xyz) const {
  const Appearance<0> seen =
      appearance(std::array<Dual<0>, 3>{{{xyz[0], {}}, {xyz[1], {}}, {xyz[2], {}}}});
  const double hue = std::atan2(seen.sinHue.v, seen.cosHue.v) * 180.0 / std::numbers::pi;
  return {seen.lightness.v, seen.colourfulness.v / std::pow(luminanceLevel_, 0.25),
          hue < 0.0 ? hue + 360.0 : hue, seen.colourfulness.v};
}

template <std::size_t N>
std::array<Dual<N>, 3> Cam16::ucs(const std::array<Dual<N>, 3>& xyz) const {
  const Appearance<N> seen = appearance(xyz);
  const Dual<N> lightness = (1.7 * seen.lightness) / (0.007 * seen.lightness + 1.0);
  const double m = seen.colourfulness.v;
  const Dual<N> colourfulness =
      chain(seen.colourfulness, std::log1p(0.0228 * m) / 0.0228, 1.0 / (1.0 + 0.0228 * m));
  return {lightness, colourfulness * seen.cosHue, colourfulness * seen.sinHue};
}

Vector3 Cam16::ucs(const Vector3& xyz) const {
  const auto found = ucs(std::array<Dual<0>, 3>{{{xyz[0], {}}, {xyz[1], {}}, {xyz[2], {}}}});
  return {found[0].v, found[1].v, found[2].v};
}

template std::array<Dual<0>, 3> Cam16::ucs(const std::array<Dual<0>, 3>&) const;
template std::array<Dual<3>, 3> Cam16::ucs(const std::array<Dual<3>, 3>&) const;

}  // namespace greycard
