#pragma once
/// \file
/// \ingroup own

#include <array>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "greycard/export.h"
#include "greycard/fit_options.h"
#include "greycard/types.h"

namespace greycard {

/// Colour errors of the patches that took part, of one photograph or of all together. All but the
/// first are plain averages over these patches, whatever their weights.
struct FitFigures {
  double objective = 0.0;  ///< what was made small: with the fit's measure, norm and weights
  double mean2000 = 0.0, rms2000 = 0.0;  ///< CIEDE2000
  double percentile95 = 0.0;  ///< of CIEDE2000, on straight lines between the sorted values
  double max2000 = 0.0;
  /// Mean CIEDE2000 after the mean difference of L* was taken off all patches of each photograph:
  /// what is left when the common brightness is right.
  double meanLevelled = 0.0;
  double mean76 = 0.0, mean94 = 0.0, meanCam16 = 0.0;
  double meanL = 0.0, meanC = 0.0, meanH = 0.0;  ///< mean |dL*|, |dC*|, |dH*|
  /// Sensitivity metamerism index after ISO 17321-1, by the matrix: 100 - 5.5 times the mean error
  /// that MatrixFitResult::metamerismBasis names.
  double metamerismIndex = 0.0;
};

/// CIEDE2000 of patches, each predicted by a fit that it took no part in.
struct HeldOutFigures {
  double mean = 0.0, percentile95 = 0.0;
};

/// Standard errors from the measured noise (a pixel's deviation over the root of the pixels).
struct FitUncertainty {
  Matrix3 matrix{};                                     ///< of each entry
  Vector3 gains{};                                      ///< of the white-balance gains
  std::array<double, 2> curve{};                        ///< of the numbers of the tone curve
  std::vector<double> exposure;                         ///< per photograph
  std::vector<double> lightRange;                       ///< per photograph, in per cent
  std::vector<std::array<double, kPatchCount>> dE2000;  ///< per photograph
};

/// What the fit says about one photograph.
struct FittedPhotograph {
  double exposure = 1.0;
  PatchTable lab{};                          ///< corrected, and evened out where light was uneven
  std::array<double, kPatchCount> dE2000{};  ///< also of patches that took no part
  std::array<Vector3, kPatchCount> split{};  ///< dL*, dC*, dH*: result less reference
  /// Light at the patches: the light field, 1 at the chart's centre, times the flat field of G.
  std::array<double, kPatchCount> light{};
  double lightRange = 0.0;  ///< 100 (largest - smallest) / largest of `light`: no colour error
  std::vector<double> lightCoefficients;         ///< c0 .. of FitLight; none for even light
  std::array<std::string, kPatchCount> leftOut;  ///< why a patch took no part; empty if it did
  FitFigures figures;
  std::optional<FitFigures> stated;  ///< of the stated fit to this photograph, by the same measures
  std::string statedRefusal;         ///< why there is no stated fit, when there should be one
};

/// A row of the table of error against noise.
struct FitTradeOff {
  double limit = 0.0;  ///< of all three rows of the matrix
  Vector3 rowNoise{};
  FitFigures figures;
};

/// A fit, and how far to believe it. A measured value x of a channel becomes light u = curve(x) /
/// light at the patch; linear RGB = matrix * (exposure * gains * u).
struct MatrixFitResult {
  Matrix3 matrix{};
  Vector3 gains{};               ///< white balance, R, G, B
  Vector3 rowNoise{};            ///< noise amplification of the rows: root of the sum of squares
  double conditionNumber = 0.0;  ///< of the matrix: largest over smallest singular value

  /// Light for the sRGB-encoded measured values 0, 1/255, .. 1, as FitOptions::givenCurve takes it
  /// (a given curve as it came); empty without a curve.
  std::vector<double> toneCurve;
  std::array<double, 2> curveNumbers{};  ///< g; g and o; b and w: see FitToneCurve
  /// Root mean square of L* by which the greys miss a curve of the family that is common to R, G
  /// and B, before the patches in colour are looked at; of a monotone curve, which goes through
  /// them, by which each grey between the ends misses the curve through the others. Empty unless a
  /// curve was estimated. Above kGreysDisagree the estimate is not to be believed.
  std::optional<double> greyResidual;
  static constexpr double kGreysDisagree = 3.5;

  std::vector<FittedPhotograph> photographs;
  FitFigures figures;  ///< over all photographs
  std::string metamerismBasis;
  /// Leaving out each patch, and six folds: fold k has the patches with (column + row) mod 6 = k,
  /// one of each row of the chart. A patch is left out of all photographs, and of curve, light,
  /// gains and exposure while another patch can give them. Empty when not asked for, or when too
  /// little is left to fit.
  std::optional<HeldOutFigures> leaveOneOut, sixFold;
  /// Empty when not asked for, or when the samples don't determine what is free.
  std::optional<FitUncertainty> uncertainty;
  std::vector<FitTradeOff> tradeOff;  ///< from the noisiest row of the fit down to 0.6

  int starts = 0, bestStart = 0;   ///< searches, and which of them (from 0) gave the result
  std::int64_t evaluations = 0;    ///< of the cost with its derivatives, in all searches
  bool converged = false;          ///< else the search that gave the result was stopped
  std::vector<std::string> notes;  ///< what a reader should know, in sentences
};

/// Light of a linear measured value by a curve as MatrixFitResult::toneCurve has it, of two values
/// or more; beyond its ends the last straight line goes on.
GREYCARD_EXPORT double curveLight(std::span<const double> toneCurve, double measured);

/// Fits a colour-correction matrix, with what else is free, to photographs of the 24-patch chart by
/// the least colour error, and tells how far to believe it: gradient-based searches (Levenberg and
/// Marquardt's damping) from several fixed starts, of which the best counts.
///
/// Equal samples and options give equal results to the bit, on one build. An object may be used by
/// several threads at a time.
class GREYCARD_EXPORT MatrixFit {
 public:
  /// \throws std::invalid_argument with one sentence about the first option that can't be
  explicit MatrixFit(FitOptions options = {});

  /// Takes around a millisecond for one photograph, ten with all that tells how far to believe it.
  ///
  /// \param progress  called before each search and at the end
  /// \return empty when the callback cancelled
  /// \throws std::invalid_argument naming photograph, patch and channel of a value that can't be
  ///         fitted; when too few patches are left; when greys are no base for a curve, gain or
  ///         exposure that was asked for
  std::optional<MatrixFitResult> fit(const MatrixFitSamples& samples,
                                     const ProgressCallback& progress = {}) const;

 private:
  FitOptions options_;
};

}  // namespace greycard
