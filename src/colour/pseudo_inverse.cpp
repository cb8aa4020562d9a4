#include "pseudo_inverse.h"

#include <cmath>
#include <limits>
#include <optional>

// One-sided Jacobi: rotations V from the right make the columns of A V = U diag(w) orthogonal, so
//   A = U diag(w) V',   A+ = V diag(1/w) U' = sum over k of v_k (A V)_k' / w_k^2.
// It keeps the relative accuracy of small singular values of badly scaled matrices (Demmel,
// Veselic, SIAM J. Matrix Anal. Appl. 13 (1992) 1204), so only what cancelled away need count as
// zero.
namespace greycard {
namespace {

constexpr double kSmallestInverted = 1e-20;
constexpr double kFloatRounding = 0.5 * std::numeric_limits<float>::epsilon();
constexpr double kOrthogonal = 4.0 * std::numeric_limits<double>::epsilon();
constexpr int kMaxSweeps = 40;  // five or six are usual

double dot(const Vector3& a, const Vector3& b) {
  return a[0] * b[0] + a[1] * b[1] + a[2] * b[2];
}
double length(const Vector3& a) {
  return std::sqrt(dot(a, a));
}

// Rounded to single precision; empty unless every entry fits.
std::optional<Matrix3> toSinglePrecision(const Matrix3& m) {
  Matrix3 rounded;
  for (std::size_t i = 0; i < 3; ++i)
    for (std::size_t j = 0; j < 3; ++j) {
      if (!(std::fabs(m[i][j]) <= static_cast<double>(std::numeric_limits<float>::max())))
        return std::nullopt;
      rounded[i][j] = static_cast<double>(static_cast<float>(m[i][j]));
    }
  return rounded;
}

struct JacobiColumns {
  Matrix3 av;         // [k] is column k of A V
  Matrix3 v;          // [k] is column k of V
  Vector3 magnitude;  // of the terms that were added up to column k of A V

  // Makes columns p and q orthogonal. False when they were.
  bool rotate(std::size_t p, std::size_t q) {
    const double gamma = dot(av[p], av[q]);
    if (std::fabs(gamma) <= kOrthogonal * length(av[p]) * length(av[q])) return false;
    const double zeta = (dot(av[q], av[q]) - dot(av[p], av[p])) / (2.0 * gamma);
    const double t = std::copysign(1.0, zeta) / (std::fabs(zeta) + std::hypot(1.0, zeta));
    const double c = 1.0 / std::hypot(1.0, t), s = c * t;
    for (std::size_t i = 0; i < 3; ++i) {
      turn(av[p][i], av[q][i], c, s);
      turn(v[p][i], v[q][i], c, s);
    }
    const double ofP = magnitude[p], ofQ = magnitude[q];
    magnitude[p] = c * ofP + std::fabs(s) * ofQ;
    magnitude[q] = std::fabs(s) * ofP + c * ofQ;
    for (const std::size_t k : {p, q})
      if (length(av[k]) <= kFloatRounding * magnitude[k]) av[k] = {};
    return true;
  }

 private:
  static void turn(double& x, double& y, double c, double s) {
    const double old = x;
    x = c * old - s * y;
    y = s * old + c * y;
  }
};

Matrix3 transposed(const Matrix3& m) {
  return {{{m[0][0], m[1][0], m[2][0]}, {m[0][1], m[1][1], m[2][1]}, {m[0][2], m[1][2], m[2][2]}}};
}

}  // namespace

bool compute_pseudo_inverse(const Matrix3& inM, Matrix3& outM) {
  const auto a = toSinglePrecision(inM);
  if (!a) return false;

  JacobiColumns columns{transposed(*a), {{{1, 0, 0}, {0, 1, 0}, {0, 0, 1}}}, {}};
  for (std::size_t k = 0; k < 3; ++k) columns.magnitude[k] = length(columns.av[k]);
  bool rotated = true;
  for (int sweep = 0; rotated && sweep < kMaxSweeps; ++sweep) {
    rotated = columns.rotate(0, 1);
    rotated |= columns.rotate(0, 2);
    rotated |= columns.rotate(1, 2);
  }

  Matrix3 inverse{};
  for (std::size_t k = 0; k < 3; ++k) {
    const double w = length(columns.av[k]);
    if (!(w > kSmallestInverted)) continue;
    for (std::size_t i = 0; i < 3; ++i)
      for (std::size_t j = 0; j < 3; ++j)
        inverse[i][j] += columns.v[k][i] * (columns.av[k][j] / w) / w;
  }
  const auto rounded = toSinglePrecision(inverse);
  if (!rounded) return false;
  outM = *rounded;
  return true;
}

}  // namespace greycard
