#include "fit_cost.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "colour_space.h"

namespace greycard {
namespace {

constexpr double kTinySquare = 1e-20;  // of dE, where its powers have no slope

double squareOf(const Vector3& v) {
  return v[0] * v[0] + v[1] * v[1] + v[2] * v[2];
}
double dot(const Vector3& a, const Vector3& b) {
  return a[0] * b[0] + a[1] * b[1] + a[2] * b[2];
}

/// weight * (dE^2 + smoothing^2)^(norm / 2) by linear RGB. The curvature is Gauss and Newton's for
/// dE^2, with the power's own; for norms from 1 on it can't be negative.
struct SampleCost {
  double value = 0.0;
  Vector3 slope{};
  Matrix3 curvature{};
};

SampleCost sampleCost(const DifferenceVector& d, double weight, double norm, double smoothing) {
  const double square = squareOf(d.value) + smoothing * smoothing;
  SampleCost out;
  double first = weight, second = 0.0;  // derivatives by dE^2
  if (norm == 2.0) {
    out.value = weight * square;
  } else {
    const double base = std::max(square, kTinySquare);
    const double power = norm == 1.0 ? std::sqrt(base) : std::pow(base, 0.5 * norm);
    out.value = weight * power;
    first = 0.5 * norm * weight * power / base;
    second = (0.5 * norm - 1.0) * first / base;
  }
  Vector3 half{};  // of the slope of dE^2
  for (std::size_t i = 0; i < 3; ++i)
    for (std::size_t c = 0; c < 3; ++c) half[c] += d.slope[i][c] * d.value[i];
  for (std::size_t c = 0; c < 3; ++c) {
    out.slope[c] = 2.0 * first * half[c];
    for (std::size_t k = 0; k <= c; ++k) {
      const double product = d.slope[0][c] * d.slope[0][k] + d.slope[1][c] * d.slope[1][k] +
                             d.slope[2][c] * d.slope[2][k];
      out.curvature[c][k] = out.curvature[k][c] =
          2.0 * first * product + 4.0 * second * half[c] * half[k];
    }
  }
  return out;
}

}  // namespace

double rowNoise(const Vector3& row) {
  return std::sqrt(squareOf(row));
}

FitCost::FitCost(const PatchDifference& difference, const OutputCurve& output,
                 const FitUnknowns& unknowns, std::span<const FitSample> samples, double norm_)
    : norm(norm_), difference_(difference), output_(output), unknowns_(unknowns) {
  std::copy_if(samples.begin(), samples.end(), std::back_inserter(samples_),
               [](const FitSample& sample) { return sample.weight > 0.0; });
}

DifferenceVector FitCost::differenceOf(std::size_t patch, const Vector3& linear) const {
  std::array<OutputCurve::Point, 3> shown;
  for (std::size_t c = 0; c < 3; ++c) shown[c] = output_.at(c, linear[c]);
  DifferenceVector d =
      difference_.evaluate(patch, {shown[0].value, shown[1].value, shown[2].value});
  for (Vector3& row : d.slope)
    for (std::size_t c = 0; c < 3; ++c) row[c] *= shown[c].slope;
  return d;
}

double FitCost::objective(const FitState& state) const {
  double sum = 0.0;
  for (const FitSample& sample : samples_) {
    const DifferenceVector d = differenceOf(sample.patch, linearRgb(state, sample));
    sum += sample.weight * std::pow(squareOf(d.value), 0.5 * norm);
  }
  const double value = std::pow(sum, 1.0 / norm);
  return std::isfinite(value) ? value : std::numeric_limits<double>::infinity();
}

bool FitCost::evaluate(const FitState& state, LocalModel& out) const {
  const std::size_t n = unknowns();
  out.reset(n);
  ForwardSample sample;
  for (const FitSample& measured : samples_) {
    if (!forward(state, unknowns_, measured, sample)) return false;
    addSample(sample, measured.patch, measured.weight, out);
  }
  if (limits.penalty > 0.0) addRowNoise(state.matrix, out);
  for (std::size_t i = 0; i < n; ++i)
    for (std::size_t j = i + 1; j < n; ++j) out.curvature[i * n + j] = out.curvature[j * n + i];
  return std::isfinite(out.value);
}

// Below the diagonal only. Linear RGB c depends on the entries of row c through `features`.
void FitCost::addSample(const ForwardSample& sample, std::size_t patch, double weight,
                        LocalModel& out) const {
  const SampleCost cost = sampleCost(differenceOf(patch, sample.linear), weight, norm, smoothing);
  out.value += cost.value;
  const std::size_t n = unknowns(), perRow = unknowns_.perRow();
  Vector3 features = sample.balanced;
  if (perRow == 2)
    for (std::size_t j = 0; j < 2; ++j) features[j] -= sample.balanced[2];

  for (std::size_t c = 0; c < 3; ++c)
    for (std::size_t j = 0; j < perRow; ++j) {
      const std::size_t at = perRow * c + j;
      out.gradient[at] += cost.slope[c] * features[j];
      double* const row = &out.curvature[at * n];
      for (std::size_t b = 0; b <= c; ++b) {
        const double bent = cost.curvature[c][b] * features[j];
        for (std::size_t k = 0; k < perRow; ++k) row[perRow * b + k] += bent * features[k];
      }
    }
  for (std::size_t o = 0; o < sample.others; ++o) {
    out.gradient[sample.place[o]] += dot(cost.slope, sample.slope[o]);
    double* const row = &out.curvature[sample.place[o] * n];
    const Vector3 bent = multiply(cost.curvature, sample.slope[o]);
    for (std::size_t c = 0; c < 3; ++c)
      for (std::size_t j = 0; j < perRow; ++j) row[perRow * c + j] += bent[c] * features[j];
    for (std::size_t p = 0; p <= o; ++p) row[sample.place[p]] += dot(bent, sample.slope[p]);
  }
}

void FitCost::addRowNoise(const Matrix3& matrix, LocalModel& out) const {
  const std::size_t n = unknowns(), perRow = unknowns_.perRow();
  for (std::size_t c = 0; c < 3; ++c) {
    const Vector3& row = matrix[c];
    const double length = rowNoise(row), multiplier = limits.multiplier[c];
    const double force = multiplier + limits.penalty * (length - limits.limit[c]);
    if (!(force > 0.0)) {
      out.value -= multiplier * multiplier / (2.0 * limits.penalty);
      continue;
    }
    out.value += (force * force - multiplier * multiplier) / (2.0 * limits.penalty);
    // By the entries of the row; of six, the third falls as either of the others rises.
    const auto direction = [&](std::size_t j) {
      return (row[j] - (perRow == 2 ? row[2] : 0.0)) / length;
    };
    for (std::size_t j = 0; j < perRow; ++j) {
      const std::size_t at = perRow * c + j;
      out.gradient[at] += force * direction(j);
      for (std::size_t k = 0; k <= j; ++k) {
        const double metric = (j == k ? 1.0 : 0.0) + (perRow == 2 ? 1.0 : 0.0);
        const double product = direction(j) * direction(k);
        out.curvature[at * n + perRow * c + k] +=
            limits.penalty * product + force * (metric - product) / length;
      }
    }
  }
}

}  // namespace greycard
