#pragma once
/// \file
/// \ingroup own

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "greycard/camera_gamma.h"
#include "greycard/color_correction_utils.h"
#include "greycard/colour_errors.h"
#include "greycard/export.h"
#include "greycard/illum.h"
#include "greycard/jobs/locate_chart.h"
#include "greycard/picture.h"
#include "greycard/types.h"

namespace greycard {

/// The colour difference that a fit minimises.
enum class FitFormula { CIE76, CIE94 };
/// "CIE76" or "CIE94".
GREYCARD_EXPORT const char* formulaName(FitFormula formula);

struct GREYCARD_EXPORT ChartFitOptions {
  LocateOptions locate;
  Illum light = illum_D65;
  std::string gamma = "VGammaSRGB";  ///< the camera's tone curve: see cameraGamma
  FitFormula formula = FitFormula::CIE94;
  int transform = 0;  ///< ColorCorrectionSettings::m_RGBtoXYZTransform, 0..3
  /// The space of transform 3, which needs both: linear RGB to XYZ on the 0..1 scale, and back.
  std::optional<Matrix3> rgbToXyz, xyzToRgb;
  FitExposure exposure = FitExposure::stated;  ///< stated, balanced or number
  double exposureGain = 1.0;                   ///< for FitExposure::number, 1e-6 to 1e6
  double noiseRate = 0.0;                      ///< 0..1, weight of noise against colour error
  /// Chroma wanted over the target's, 1.1 for 10 % more; 0.9 and up, for a longer search.
  std::optional<double> saturation;
  /// Chroma factors of the target: all, red, green, blue patches; all counts when the four are
  /// equal.
  std::array<double, 4> targetSaturation{1.0, 1.0, 1.0, 1.0};
  /// Hue rotations of the target in degrees: red, green, blue patches.
  std::array<double, 3> targetHue{};
  std::vector<int> whitePatches{20, 21, 22};  ///< chart numbers, 19..22, that white balance uses
  /// A file of 24 lines L* a* b*, or of 8-bit sRGB, as reference colours; at most one of the two.
  std::filesystem::path referenceLab, referenceSRgb;

  /// \throws FileError; std::invalid_argument for two references, a patch outside 19..22, and
  ///         transform 3 without its two matrices, matrices without it, and such as don't undo each
  ///         other
  ColorCorrectionSettings settings() const;
};

/// Refuses what nothing could be fitted with, before there is a photograph.
/// \throws std::invalid_argument, FileError and UnknownName as fitChart
GREYCARD_EXPORT void checkOptions(const ChartFitOptions& options);

/// Gains and matrix fitted to a photographed chart, with all that tells how good they are.
///
/// *Measured* is what the camera gave, *balanced* that with exposure and white-balance gains,
/// *corrected* with the matrix too, *reference* what the fit aimed at.
struct GREYCARD_EXPORT ChartFit {
  std::filesystem::path photo;
  Illum light = illum_D65;
  FitFormula formula = FitFormula::CIE94;
  CameraGamma gamma;

  Matrix3 matrix{};        ///< rows sum to 1; matrix * (R, G, B) of balanced RGB
  Vector3 whiteBalance{};  ///< R, G, B
  double exposure = 1.0;   ///< exposure gain
  ColorFitReport fit;      ///< the balanced chart, the reference, and how the search went

  LocatedChart chart;
  std::optional<SampleLevels> levels;  ///< what the samples were taken to mean
  PatchTable measuredRgb{};            ///< linear, 0..1
  PatchTable measuredNoise{};          ///< standard deviation of a pixel
  PatchTable measuredMedian{};         ///< of its pixels
  PatchTable unevenness{};             ///< of the patch: see QuadSampling
  SamplingReport sampling;
  PatchTable correctedLab{};
  ColourErrors before, after;          ///< of balanced and corrected colours to the reference
  std::vector<std::string> warnings;   ///< a sentence each
  std::optional<CaptureInfo> capture;  ///< of a raw photograph

  /// Gains, matrix and tone curve, for correctPicture.
  ColorPipeline pipeline() const;
  /// Balanced RGB through a matrix and this fit's tone curve: ColorCorrectionUtils::ShownLab.
  PatchTable shownLab(const PatchTable& balancedRgb, const Matrix3& by) const;
};

/// Finds the chart, samples it, and fits gains and matrix.
///
/// \param photo  names the picture in messages and in the result; may be empty
/// \return empty when the callback cancelled
/// \throws JobError for a grey picture, and as locateChart and cameraGamma; std::invalid_argument
///         and NumericError as ColorCorrectionUtils::Optimize
GREYCARD_EXPORT std::optional<ChartFit> fitChart(const Picture& picture,
                                                 const ChartFitOptions& options = {},
                                                 const std::filesystem::path& photo = {},
                                                 const ProgressCallback& progress = {});

/// Likewise; the photograph tells what its samples mean.
GREYCARD_EXPORT std::optional<ChartFit> fitChart(const Photograph& photograph,
                                                 ChartFitOptions options = {},
                                                 const ProgressCallback& progress = {});

/// The photograph through the fitted gains, matrix and tone curve.
GREYCARD_EXPORT Picture correctedPhotograph(const Picture& picture, const ChartFit& fit,
                                            const SampleMeaning& samples = {});

}  // namespace greycard
