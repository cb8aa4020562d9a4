#include "belief/colour_scatter.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <numbers>
#include <random>

#include "greycard/delta_e.h"

namespace greycard {
namespace {

constexpr std::size_t kPairs = 128;

// L with L L' = C for a covariance, which may be singular.
Matrix3 rootOf(const Matrix3& c) {
  Matrix3 l{};
  for (std::size_t j = 0; j < 3; ++j) {
    double pivot = c[j][j];
    for (std::size_t k = 0; k < j; ++k) pivot -= l[j][k] * l[j][k];
    if (!(pivot > 1e-12 * c[j][j])) continue;
    l[j][j] = std::sqrt(pivot);
    for (std::size_t i = j + 1; i < 3; ++i) {
      double rest = c[i][j];
      for (std::size_t k = 0; k < j; ++k) rest -= l[i][k] * l[j][k];
      l[i][j] = rest / l[j][j];
    }
  }
  return l;
}

}  // namespace

// Pairs z, -z whose second moments are exactly those of the normal distribution, so that where dE
// is straight its deviation is exact.
ColourScatter::ColourScatter() : normal_(kPairs) {
  std::mt19937_64 engine(1);
  const auto uniform = [&engine] {
    return (static_cast<double>(engine() >> 11) + 0.5) * 0x1.0p-53;
  };
  Matrix3 moment{};
  for (Vector3& z : normal_) {
    for (double& value : z) {
      const double radius = std::sqrt(-2.0 * std::log(uniform()));
      value = radius * std::cos(2.0 * std::numbers::pi * uniform());
    }
    for (std::size_t i = 0; i < 3; ++i)
      for (std::size_t k = 0; k < 3; ++k) moment[i][k] += z[i] * z[k] / kPairs;
  }
  const Matrix3 root = rootOf(moment);
  for (Vector3& z : normal_)
    for (std::size_t i = 0; i < 3; ++i) {
      for (std::size_t k = 0; k < i; ++k) z[i] -= root[i][k] * z[k];
      z[i] /= root[i][i];
    }
}

double ColourScatter::deviation(const Vector3& referenceLab, const Vector3& lab,
                                const Matrix3& covariance) const {
  const Matrix3 root = rootOf(covariance);
  double sum = 0.0, squares = 0.0;
  for (const Vector3& z : normal_)
    for (const double sign : {1.0, -1.0}) {
      Vector3 drawn = lab;
      for (std::size_t i = 0; i < 3; ++i)
        for (std::size_t k = 0; k <= i; ++k) drawn[i] += sign * root[i][k] * z[k];
      const double dE = deltaE2000(referenceLab, drawn);
      sum += dE;
      squares += dE * dE;
    }
  const double mean = sum / (2.0 * kPairs);
  return std::sqrt(std::max(0.0, squares / (2.0 * kPairs) - mean * mean));
}

}  // namespace greycard
