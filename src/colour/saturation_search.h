#pragma once

#include <cstdint>
#include <optional>

#include "greycard/types.h"
#include "matrix_cost.h"
#include "powell.h"

namespace greycard {

/// Accuracy and scale of every minimisation over matrix entries.
/// Trial steps shrink slowly and stay wide, since the cost has small steps and kinks that a short
/// one gets caught in: chosen on simulated runs, figures in docs/matrix_fit.md.
inline constexpr PowellOptions kMatrixPowell{.tolerance = 1e-6,
                                             .maxIterations = 200,
                                             .initialStep = 0.2,
                                             .lineTolerance = 0.01,
                                             .maxStepShrink = 0.7,
                                             .smallestStep = 0.1};

/// Where a search for a matrix ended and what it took.
struct MatrixSearchResult {
  MatrixParameters parameters{};
  double hueWeight = 1.0;                   ///< kH that they were found with
  double saturationPressure = 0.0;          ///< g that they were found with
  PowellStop stop = PowellStop::Converged;  ///< of the minimisation that gave them
  int powellRuns = 0;
  std::int64_t evaluations = 0;  ///< of the cost
};

/// Looks for the matrix whose chroma change comes nearest to a wanted one: sweeps the saturation
/// pressure of the cost in small steps, each a warm-started minimisation, and then repeats finer
/// sweeps for up to eleven hue weights. Runs of the search don't meet.
class SaturationSearch {
 public:
  /// \param cost      its pressure and hue weight are changed by the search
  /// \param wanted    chroma change aimed at; the search ends within 0.05 of it
  /// \param progress  asked before each minimisation; may be empty
  SaturationSearch(MatrixCost& cost, double wanted, const ProgressCallback& progress)
      : cost_(cost), wanted_(wanted), progress_(progress) {}

  /// Up to 250 + 11 * 75 minimisations. Empty when the progress callback cancelled.
  /// \throws NumericError from the minimisation
  std::optional<MatrixSearchResult> run(const MatrixParameters& start);

 private:
  // A point of the search with what led to it.
  struct Candidate {
    MatrixParameters parameters{};
    double chromaChange = 0.0;
    double hueWeight = 1.0, saturationPressure = 0.0;
    PowellStop stop = PowellStop::Converged;
  };

  bool coarseSweep();
  bool hueWeightLoop();
  bool fineSweep(double lo, double hi, int steps);
  bool minimise();
  double distance(const Candidate& candidate) const;

  MatrixCost& cost_;
  double wanted_;
  const ProgressCallback& progress_;
  Candidate current_;
  std::optional<Candidate> chosen_;
  int stepsDone_ = 0;  // of the largest possible number of minimisations
  int powellRuns_ = 0;
  std::int64_t evaluations_ = 0;
};

}  // namespace greycard
