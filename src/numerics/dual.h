#pragma once

#include <array>
#include <cmath>
#include <cstddef>

namespace greycard {

/// A number with its derivatives by N variables: forward-mode differentiation, without allocation.
template <std::size_t N>
struct Dual {
  double v = 0.0;
  std::array<double, N> d{};

  /// Variable number `index` at a value.
  static Dual variable(double value, std::size_t index) {
    Dual x{value, {}};
    x.d[index] = 1.0;
    return x;
  }
};

/// f(x) from the value and the slope of f at x.v.
template <std::size_t N>
Dual<N> chain(const Dual<N>& x, double value, double slope) {
  Dual<N> y{value, {}};
  for (std::size_t k = 0; k < N; ++k) y.d[k] = slope * x.d[k];
  return y;
}

template <std::size_t N>
Dual<N> operator+(const Dual<N>& x, const Dual<N>& y) {
  Dual<N> z{x.v + y.v, {}};
  for (std::size_t k = 0; k < N; ++k) z.d[k] = x.d[k] + y.d[k];
  return z;
}
template <std::size_t N>
Dual<N> operator-(const Dual<N>& x, const Dual<N>& y) {
  Dual<N> z{x.v - y.v, {}};
  for (std::size_t k = 0; k < N; ++k) z.d[k] = x.d[k] - y.d[k];
  return z;
}
template <std::size_t N>
Dual<N> operator*(const Dual<N>& x, const Dual<N>& y) {
  Dual<N> z{x.v * y.v, {}};
  for (std::size_t k = 0; k < N; ++k) z.d[k] = x.d[k] * y.v + x.v * y.d[k];
  return z;
}
template <std::size_t N>
Dual<N> operator/(const Dual<N>& x, const Dual<N>& y) {
  const double inverse = 1.0 / y.v;
  Dual<N> z{x.v * inverse, {}};
  for (std::size_t k = 0; k < N; ++k) z.d[k] = (x.d[k] - z.v * y.d[k]) * inverse;
  return z;
}
template <std::size_t N>
Dual<N> operator+(const Dual<N>& x, double y) {
  Dual<N> z = x;
  z.v += y;
  return z;
}
template <std::size_t N>
Dual<N> operator-(const Dual<N>& x, double y) {
  return x + (-y);
}
template <std::size_t N>
Dual<N> operator*(double y, const Dual<N>& x) {
  return chain(x, y * x.v, y);
}

/// The root, with the slope 0 where it has none.
template <std::size_t N>
Dual<N> sqrt(const Dual<N>& x) {
  const double root = std::sqrt(x.v);
  return chain(x, root, root > 0.0 ? 0.5 / root : 0.0);
}

}  // namespace greycard
