#pragma once
/// \file
/// \ingroup own

#include <array>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "greycard/export.h"
#include "greycard/exposure_histogram.h"
#include "greycard/nlopt_helper.h"

namespace greycard {

// A fit of the luma-target rule (NLoptHelper::GA), under the names of GA's arguments. Lumas and
// targets are in bins, 0..255.

/// What each parameter of the rule does, in a few words.
inline constexpr std::array<const char*, kGaParameters> kExposureParameterNames{
    "target A: numerator",
    "target B: numerator",
    "upper dark target: numerator",
    "lower dark target: numerator",
    "push-up range: 1 - start",
    "push-down range: 1 - start",
    "ceiling factor",
    "floor factor",
    "push-up range: 1 - end",
    "push-down range: 1 - end",
    "dark range: start",
    "dark range: end"};

/// One image that the rule is to meet a target for: a picture, or its histograms.
struct ExposureImage {
  std::optional<std::string> name;  ///< in results; else the picture's file name, or "image 3"
  std::optional<std::filesystem::path> picture;  ///< of which the histograms are made
  /// Sample of the picture's full scale, 1..65535, which is divided into 256 bins; else 255 or
  /// 65535.
  std::optional<int> whiteLevel;
  std::optional<ChannelHistograms> hist_CDF, hist_RGB;  ///< instead of a picture, both

  double Weight = 1.0;               ///< of the squared error, 0 or above
  std::optional<double> newTarget;   ///< luma target wanted, 0..255; must be there
  std::optional<double> curr_luma;   ///< measured now; else the mean luma of the histograms
  std::optional<double> cur_target;  ///< set now; else curr_luma: exposure has settled
  double max_pushup_mean = 0.0, max_pushdown_mean = 0.0, max_dark_mean = 0.0;  ///< kept, not used
};

struct GREYCARD_EXPORT ExposureJob {
  GaParameters lowerBound{90, 120, 40, 0, 0.01, 0.01, 1, 0.2, 0, 0, 0, 0.08};
  GaParameters upperBound{300, 400, 150, 30, 0.3, 0.3, 8, 1.5, 0.1, 0.1, 0.2, 0.5};
  GaParameters initialBound = kGaReferenceParameters;  ///< where the search starts
  /// Values of the parameters that are not fitted, or evaluated without a search; else
  /// initialBound.
  std::optional<GaParameters> initial_parameter;
  std::array<double, kGaEnableFlags> parameters_enable{1, 1, 1, 1, 1, 1, 1, 1, 1};
  double max_drc_gain = 4.0, ADRC_Enable = 0.0;
  std::vector<ExposureImage> images;  ///< at most kGaMaxImages

  /// Whether the parameter is fitted; whether any is.
  bool fits(std::size_t parameter) const;
  bool fitsAny() const;
  /// initial_parameter, or else initialBound.
  const GaParameters& fixedParameters() const;
  /// The values that the rule works with at x: those of x where they are fitted.
  GaParameters inUse(const GaParameters& x) const;

  /// Looks at the images as they are given; no picture is read.
  /// \throws std::invalid_argument with a sentence that begins with the field, as in
  ///         images[2].newTarget is missing
  void check() const;
};

/// An image as the rule worked with it.
struct ExposureFigures {
  std::string name;
  double Weight = 1.0, curr_luma = 0.0, cur_target = 0.0, newTarget = 0.0;
};

/// What the rule makes of the images with some parameters. A list has an entry for each image.
struct ExposureEvaluation {
  GaParameters parameters{};  ///< in use: those not fitted with their fixed value
  std::vector<double> target;
  /// Larger and smaller of the targets A and B, then the upper and the lower dark target.
  std::vector<std::array<double, 4>> fourTargets;
  std::vector<double> pushUp, pushDown, dark;  ///< statistics
  double error = 0.0;                          ///< weighted mean square of target - newTarget
  double meanError = 0.0;                      ///< mean |target - newTarget|
};

struct GREYCARD_EXPORT ExposureFit {
  int resultCode = 0;  ///< NLopt's: see stopReason
  double least = 0.0;  ///< the least error that the search found; infinite when it found none
  int evaluations = 0;
  double seconds = 0.0;
  std::uint32_t seed = 0;
  bool bestKeepsConstraints = true;  ///< see GaReport
  std::vector<ExposureFigures> images;
  ExposureEvaluation start, best;
  /// With the parameters that GA gives back: after the time limit those of the last evaluation.
  ExposureEvaluation returned;

  bool returnsBest() const { return returned.parameters == best.parameters; }
  double evaluationsPerSecond() const;
};

/// The rule evaluated as it stands.
struct ExposureTrial {
  std::vector<ExposureFigures> images;
  ExposureEvaluation manual;
};

/// A search that ends after half a million evaluations, about as many as GA's 15 seconds give, and
/// by no clock: its result depends on the job alone.
GREYCARD_EXPORT SearchOptions exposureSearch();

/// Reads the pictures and searches.
/// \throws std::invalid_argument as ExposureJob::check and NLoptHelper::GA; FileError for a picture
GREYCARD_EXPORT ExposureFit fitExposure(const ExposureJob& job,
                                        const SearchOptions& options = exposureSearch());

/// Reads the pictures and evaluates fixedParameters().
/// \throws as fitExposure
GREYCARD_EXPORT ExposureTrial evaluateExposure(const ExposureJob& job);

}  // namespace greycard
