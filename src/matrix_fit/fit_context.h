#pragma once

#include <array>
#include <optional>
#include <span>
#include <vector>

#include "fit_cost.h"
#include "gamma_stage.h"
#include "greycard/matrix_fit.h"

namespace greycard {

using PatchMask = std::array<bool, kPatchCount>;

inline constexpr std::size_t kFirstGrey = 18;

/// Samples that are ready for a search, and where it starts.
struct FitSetup {
  std::vector<FitSample> samples;  ///< 24 of each photograph, in order
  FitState start;                  ///< the matrix is that of a linear least-squares fit
  std::vector<double> table;       ///< a given or monotone curve; it is in the samples already
  std::optional<double> greyResidual;
};

/// What stays the same in all searches of one fit. Its arguments must outlive it; they have been
/// checked.
class FitContext {
 public:
  FitContext(const MatrixFitSamples& samples, const FitOptions& options);

  /// Estimates curve, light field, gains and exposures as the options ask, from patches that are
  /// neither clipped nor left out.
  /// \param before  null, or the state of an earlier search: its matrix and the numbers of its
  /// curve
  ///                are kept, and its gains and exposures where no patch is left that gives them
  /// \throws std::invalid_argument when a curve, gain or exposure can't be had
  FitSetup setup(std::span<const FitPhotograph> photographs, const PatchMask& leftOut,
                 const FitState* before) const;
  /// Least squares in linear RGB with the state's gains, exposures, curve and light.
  /// \param perceptual  weights the patches as L*a*b* does, else even
  Matrix3 leastSquares(const FitState& state, std::span<const FitSample> samples,
                       bool perceptual) const {
    return leastSquares(state, samples, perceptual, unknowns.perRow());
  }

  FitCost cost(const FitSetup& setup) const;
  /// The setup's start with the light field (and the curve beside it) found: by a search of its own
  /// over nine entries, curve and light for the least mean colour error. Neutral patches weigh
  /// twice as much, since any matrix gets them right and what is wrong with them is the light; the
  /// mean, smoothed below half a unit, lets patches be wrong for the camera's own reasons.
  FitState evenedOut(const FitSetup& setup) const;

  /// L*a*b* of a linear RGB as it is shown.
  Vector3 shownLab(const Vector3& linear) const;
  /// dE between two colours in L*a*b*, in the fit's measure and in CAM16-UCS.
  double measureBetween(const Vector3& referenceLab, const Vector3& lab) const;
  double cam16Between(const Vector3& referenceLab, const Vector3& lab) const;
  /// Weight of a patch of a photograph, not normalised.
  double weightOf(std::size_t photograph, std::size_t patch) const {
    return input.photographs[photograph].weight * options.patchWeights[patch];
  }

  const MatrixFitSamples& input;
  const FitOptions& options;
  FitUnknowns unknowns;

 private:
  Matrix3 leastSquares(const FitState& state, std::span<const FitSample> samples, bool perceptual,
                       std::size_t perRow) const;
  void balance(std::span<const FitPhotograph> photographs, const PatchMask& leftOut,
               const FitState* before, FitSetup& setup) const;
  void estimateCurve(std::span<const FitPhotograph> photographs, const PatchMask& leftOut,
                     const FitState* before, FitSetup& setup) const;
  void addSamples(std::span<const FitPhotograph> photographs, const PatchMask& leftOut,
                  FitSetup& setup) const;
  void setGains(std::span<const FitPhotograph> photographs, const PatchMask& leftOut,
                const FitState* before, FitSetup& setup) const;
  double exposureOf(const FitPhotograph& photograph, std::size_t number, const PatchMask& leftOut,
                    const FitState* before, const FitSetup& setup) const;

  FitUnknowns lightUnknowns_;  // of evenedOut
  PatchDifference difference_;
  OutputCurve output_;
  Vector3 white_{};
  Cam16 cam16_;
  CameraCurve greenGamma_{};
  PatchTable target_{};  // linear RGB of the references, before the camera's gamma
};

/// Whether the samples with a weight are enough to fit the unknowns: six patches, and more numbers
/// than unknowns.
bool isEnough(const FitUnknowns& unknowns, std::span<const FitSample> samples);

/// Whether a patch of a photograph gives its colour to a fit.
bool takesPart(const FitPhotograph& photograph, std::size_t patch, const PatchMask& leftOut);

}  // namespace greycard
