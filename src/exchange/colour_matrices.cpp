#include "colour_matrices.h"

#include <algorithm>
#include <cmath>
#include <stdexcept>

namespace greycard::exchange {
namespace {

// Cone responses (ICC.1:2022, E.2).
constexpr Matrix3 kBradford{
    {{0.8951, 0.2664, -0.1614}, {-0.7502, 1.7135, 0.0367}, {0.0389, -0.0685, 1.0296}}};

Matrix3 diagonal(const Vector3& v) {
  return {{{v[0], 0.0, 0.0}, {0.0, v[1], 0.0}, {0.0, 0.0, v[2]}}};
}

}  // namespace

Vector3 multiply(const Matrix3& m, const Vector3& v) {
  Vector3 result{};
  for (std::size_t i = 0; i < 3; ++i) result[i] = m[i][0] * v[0] + m[i][1] * v[1] + m[i][2] * v[2];
  return result;
}

Matrix3 multiply(const Matrix3& a, const Matrix3& b) {
  Matrix3 result{};
  for (std::size_t i = 0; i < 3; ++i)
    for (std::size_t j = 0; j < 3; ++j)
      result[i][j] = a[i][0] * b[0][j] + a[i][1] * b[1][j] + a[i][2] * b[2][j];
  return result;
}

Matrix3 inverted(const Matrix3& m) {
  Matrix3 cofactors{};  // transposed
  for (std::size_t i = 0; i < 3; ++i)
    for (std::size_t j = 0; j < 3; ++j) {
      const std::size_t a = (i + 1) % 3, b = (i + 2) % 3, c = (j + 1) % 3, d = (j + 2) % 3;
      cofactors[j][i] = m[a][c] * m[b][d] - m[a][d] * m[b][c];
    }
  const double determinant =
      m[0][0] * cofactors[0][0] + m[0][1] * cofactors[1][0] + m[0][2] * cofactors[2][0];
  for (Vector3& row : cofactors)
    for (double& entry : row) {
      entry /= determinant;
      if (!std::isfinite(entry))
        throw std::invalid_argument("the colour matrix with its gains can't be inverted");
    }
  return cofactors;
}

Matrix3 srgbToXyz() {
  const auto column = [](double x, double y) { return Vector3{x / y, 1.0, (1.0 - x - y) / y}; };
  const Vector3 red = column(0.64, 0.33), green = column(0.30, 0.60), blue = column(0.15, 0.06);
  Matrix3 primaries{};
  for (std::size_t i = 0; i < 3; ++i) primaries[i] = {red[i], green[i], blue[i]};
  return multiply(primaries, diagonal(multiply(inverted(primaries), kD65White)));
}

Matrix3 adaptation(const Vector3& fromWhite, const Vector3& toWhite) {
  Vector3 ratio = multiply(kBradford, toWhite);
  const Vector3 from = multiply(kBradford, fromWhite);
  for (std::size_t i = 0; i < 3; ++i) ratio[i] /= from[i];
  return multiply(inverted(kBradford), multiply(diagonal(ratio), kBradford));
}

WholeMatrix wholeRows(const Matrix3& m, double scale, const std::array<std::int32_t, 3>& sums) {
  WholeMatrix whole{};
  for (std::size_t i = 0; i < 3; ++i) {
    std::int32_t left = sums[i];
    for (std::size_t j = 0; j < 3; ++j) {
      const double value = m[i][j] * scale;
      if (!(std::fabs(value) < 5e8))
        throw std::invalid_argument("an entry of the colour matrix is too large for this format");
      whole[i][j] = static_cast<std::int32_t>(std::lround(value));
      left -= whole[i][j];
    }
    *std::ranges::max_element(whole[i], {}, [](std::int32_t v) { return std::abs(v); }) += left;
  }
  return whole;
}

}  // namespace greycard::exchange
