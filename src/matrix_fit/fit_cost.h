#pragma once

#include <span>
#include <vector>

#include "damped_search.h"
#include "fit_model.h"
#include "output_curve.h"
#include "patch_difference.h"

namespace greycard {

/// What rows of the matrix that are noisier than allowed cost, by augmented Lagrange multipliers:
/// R. T. Rockafellar, The multiplier method of Hestenes and Powell applied to convex programming,
/// J. Optim. Theory Appl. 12 (1973) 555. Sum over the rows of (max(0, m + p (|row| - limit))^2 -
/// m^2) / (2 p).
struct RowLimits {
  Vector3 limit{FitOptions::kUnlimited, FitOptions::kUnlimited, FitOptions::kUnlimited};
  Vector3 multiplier{};
  double penalty = 0.0;  ///< 0 for no limits
};

/// Root of the sum of the squares of a row: how much a matrix amplifies noise that is equal in all
/// channels.
double rowNoise(const Vector3& row);

/// The cost of a fit: sum over the samples of weight * (dE^2 + smoothing^2)^(norm / 2), and the
/// cost of noise. An evaluation allocates nothing once the model has its size.
class FitCost {
 public:
  using State = FitState;

  /// Refers to its arguments. Samples without weight take no part.
  FitCost(const PatchDifference& difference, const OutputCurve& output, const FitUnknowns& unknowns,
          std::span<const FitSample> samples, double norm);

  std::size_t unknowns() const { return unknowns_.count(); }
  FitState moved(const FitState& state, std::span<const double> step) const {
    return unknowns_.moved(state, step);
  }
  /// \return whether the state has a finite cost and light at every patch
  bool evaluate(const FitState& state, LocalModel& out) const;
  /// (sum of weight * dE^norm)^(1 / norm): neither smoothed nor with the cost of noise. Infinite
  /// where there is none.
  double objective(const FitState& state) const;

  double norm, smoothing = 0.0;
  RowLimits limits;

 private:
  void addSample(const ForwardSample& sample, std::size_t patch, double weight,
                 LocalModel& out) const;
  void addRowNoise(const Matrix3& matrix, LocalModel& out) const;
  DifferenceVector differenceOf(std::size_t patch, const Vector3& linear) const;

  const PatchDifference& difference_;
  const OutputCurve& output_;
  const FitUnknowns& unknowns_;
  std::vector<FitSample> samples_;
};

}  // namespace greycard
