#pragma once
/// \file
/// \ingroup own

#include <array>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <optional>
#include <string_view>
#include <vector>

#include "greycard/color_correction_settings.h"
#include "greycard/export.h"
#include "greycard/macbeth_chart_data.h"
#include "greycard/patch_sampler.h"
#include "greycard/types.h"

namespace greycard {

/// Colour difference that a fit makes small, with all weighting factors 1.
enum class FitDifference : std::int32_t {
  ciede2000,  ///< ISO/CIE 11664-6
  cie94,      ///< CIE 116-1995, graphic arts
  cie76,      ///< Euclidean in L*a*b*
  /// Euclidean in CAM16-UCS: average surround, background 20, adapting luminance 4.07 cd/m2 (64 lx
  /// on a grey of 20 %, IEC 61966-2-1), adapted to the white in full.
  cam16Ucs,
};
inline constexpr std::array kFitDifferenceNames{"ciede2000", "cie94", "cie76", "cam16"};

/// Free entries of the matrix.
enum class FitEntries : std::int32_t {
  six = 6,   ///< each row sums to 1, so balanced greys stay grey
  nine = 9,  ///< all
};

/// Where the white-balance gains come from.
enum class FitWhiteBalance : std::int32_t {
  stated,  ///< FitOptions::whitePatches, as in ColorCorrectionUtils
  /// The fit. Nine entries are then written as gains, exposure and a matrix whose rows sum to 1,
  /// whatever the exposure was asked to be.
  fitted,
};
inline constexpr std::array kFitWhiteBalanceNames{"stated", "fitted"};

/// The curve from measured values to light. All but `monotone` are found from the greys first, then
/// together with the matrix.
enum class FitToneCurve : std::int32_t {
  none,         ///< measured values are proportional to light
  given,        ///< FitOptions::givenCurve
  power,        ///< x^g
  powerOffset,  ///< ((x + o) / (1 + o))^g
  /// decoded((e - b) / (w - b)), of the sRGB-encoded value e: the sRGB transfer between a black
  /// point b and a white point w. w comes from the greys alone.
  blackWhite,
  /// Through the greys: a monotone cubic in sRGB-encoded values (F. N. Fritsch, J. Butland, SIAM J.
  /// Sci. Stat. Comput. 5 (1984) 300). Not to be had together with a light field, since either
  /// explains the grey row. Of several photographs, the brightest gives it.
  monotone,
};
inline constexpr std::array kFitToneCurveNames{"none",         "given",       "power",
                                               "power-offset", "black-white", "monotone"};

/// The light over the chart's surface: x from -1 at the first column of patches to 1 at the last, y
/// downward in the same unit, both from the centre, where the light is 1. Found from all patches,
/// of which the neutral ones count most. A tone curve that the fit isn't told of looks like uneven
/// light: for pictures that a camera rendered choose a tone curve as well.
enum class FitLight : std::int32_t {
  even,
  plane,      ///< 1 + c0 x + c1 y
  quadratic,  ///< 1 + c0 x + c1 y + c2 x^2 + c3 x y + c4 y^2
};
inline constexpr std::array kFitLightNames{"even", "plane", "quadratic"};

enum class PatchWeightPreset : std::int32_t {
  even,           ///< 1 for every patch, as for the patches that the others don't name
  neutrals,       ///< 4 for patches 19 to 24
  skin,           ///< 6 for patches 1 and 2
  foliageAndSky,  ///< 6 for patches 3 and 4, 3 for patches 11, 13 and 14
};
GREYCARD_EXPORT std::array<double, kPatchCount> patchWeights(PatchWeightPreset preset);
/// "even", "neutrals", "skin" or "foliage-sky"; empty for any other text.
GREYCARD_EXPORT std::optional<PatchWeightPreset> patchWeightPresetFromName(std::string_view name);

/// What a fit is to find, and how. Everything has a default; MatrixFit refuses what can't be.
struct GREYCARD_EXPORT FitOptions {
  static constexpr double kMean = 1.0, kRootMeanSquare = 2.0, kSoftMaximum = 8.0;
  static constexpr double kUnlimited = std::numeric_limits<double>::infinity();

  FitDifference difference = FitDifference::ciede2000;
  /// The exponent p of what is made small, (sum of w dE^p / sum of w)^(1/p): 1 to 16.
  double norm = kRootMeanSquare;
  /// Per patch, 0 to 1e6; a patch of weight 0 takes no part.
  std::array<double, kPatchCount> patchWeights = greycard::patchWeights(PatchWeightPreset::even);

  FitEntries entries = FitEntries::nine;
  FitExposure exposure = FitExposure::balanced;
  double exposureGain = 1.0;  ///< for FitExposure::number, 1e-6 to 1e6
  FitWhiteBalance whiteBalance = FitWhiteBalance::stated;
  /// 0-based rows of greys, 18 to 21; clipped ones don't count. None stands for gains of 1.
  std::vector<int> whitePatches{19, 20, 21};

  /// The largest noise amplification of each row of the matrix, the root of the sum of its squares:
  /// 0.6 or more. (Rows that sum to 1 can't be quieter than 0.58.)
  Vector3 rowNoiseLimits{kUnlimited, kUnlimited, kUnlimited};
  int tradeOffSteps = 0;  ///< rows of the table of error against noise, up to 100

  FitToneCurve toneCurve = FitToneCurve::none;
  /// Light for sRGB-encoded measured values at equal steps over 0..1, two or more, rising: when
  /// there are 256, what each 8-bit code stands for. Straight lines between them.
  std::vector<double> givenCurve;
  FitLight light = FitLight::even;

  /// Linear RGB of the result to XYZ on the 0..1 scale; sRGB at first. Its white is that of the
  /// reference colours.
  Matrix3 rgbToXyz{{{0.4124, 0.3576, 0.1805}, {0.2126, 0.7152, 0.0722}, {0.0193, 0.1192, 0.9505}}};
  /// The camera's gamma tables of R, G and B as for ColorCorrectionUtils::SetGammaTable, through
  /// which the result is looked at, clipped to 0..1, on an sRGB screen. Three empty ones stand for
  /// the sRGB transfer: linear RGB is looked at as it is, and nothing is clipped.
  std::array<std::vector<std::int32_t>, 3> cameraGamma;

  bool uncertainty = true;    ///< standard errors from the measured noise
  bool heldOut = true;        ///< errors of patches that took no part
  bool compareStated = true;  ///< the stated fit on the same samples
  /// How; its chart is not looked at. Empty stands for the defaults under D65 in the space of
  /// rgbToXyz, with whitePatches.
  std::optional<ColorCorrectionSettings> statedSettings;

  /// Takes over what the stated fit is told: the space of its RGB, the patches for white balance,
  /// the camera's gamma tables as for SetGammaTable, and the settings for the comparison.
  /// \throws std::invalid_argument for m_RGBtoXYZTransform 2, whose matrix is no longer the fit's
  void follow(const ColorCorrectionSettings& settings,
              const std::array<std::vector<std::int32_t>, 3>& gamma);
};

/// One photograph of the chart.
struct GREYCARD_EXPORT FitPhotograph {
  PatchTable rgb{};    ///< measured R, G, B, 0..1: linear, or what a tone curve made of it
  PatchTable noise{};  ///< standard deviation of a pixel's R, G, B
  std::array<std::size_t, kPatchCount> pixels{};  ///< averaged per patch; 0 counts as 1
  std::array<bool, kPatchCount> clipped{};        ///< patches that take no part
  double weight = 1.0;                            ///< of the photograph, above 0
  /// R, G, B of an even surface in the same light at the patches, linear and above 0. Each channel
  /// counts by its share of its mean over the patches.
  std::optional<PatchTable> flatField;

  FitPhotograph() = default;
  /// A chart as it was sampled. Patches count as clipped as the report says.
  FitPhotograph(const MacbethChartData& chart, const SamplingReport& report);
};

/// What is fitted: up to 64 photographs under one light, and the colours that the chart should
/// have.
struct MatrixFitSamples {
  std::vector<FitPhotograph> photographs;
  PatchTable referenceLab{};  ///< relative to the white of FitOptions::rgbToXyz
};

}  // namespace greycard
