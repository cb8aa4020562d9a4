#pragma once
/// \file
/// \ingroup contract

#include <array>
#include <cstdint>

#include "greycard/export.h"
#include "greycard/gamma_lut.h"
#include "greycard/illum.h"
#include "greycard/macbeth_chart_data.h"
#include "greycard/types.h"

namespace greycard {

/// Adjustments of the target colours, and the patches that white balance looks at.
///
/// All saturation factors within 0.0001 of 1 and all hues within 0.001 of 0 make the fit aim at the
/// chart's own m_RefLab. Anything else makes it aim at the built-in chart of the light, adjusted.
struct ColorCorrectionAdvancedSettings {
  /// Chroma factor of all patches; counts only when equal to the next three.
  double m_fSat_all = 1.0;
  double m_fSat_R = 1.0;         ///< of patches 9, 15, 17
  double m_fSat_G = 1.0;         ///< of patches 4, 6, 11, 14
  double m_fSat_B = 1.0;         ///< of patches 3, 8, 13, 18
  double m_fHue_R = 0.0;         ///< hue rotation in degrees of patches 9, 15, 17
  double m_fHue_G = 0.0;         ///< of patches 4, 11, 14
  double m_fHue_B = 0.0;         ///< of patches 3, 6, 8, 13, 18
  bool m_bWhitePatch19 = false;  ///< patch 19, white, takes part in white balance
  bool m_bWhitePatch20 = true;
  bool m_bWhitePatch21 = true;
  bool m_bWhitePatch22 = true;
};

/// \ingroup own
/// Where the exposure gain comes from. The patch that it is read from is number 20, or in a
/// MatrixFit where that doesn't take part the first of 21, 22 and 19 that does.
enum class FitExposure : std::int32_t {
  stated,    ///< before white balance, whose gain of G adds to it
  balanced,  ///< the same on the balanced patch: the stated gain over that of G
  number,    ///< as given
  /// The fit, for each photograph; of a MatrixFit only. Nine entries hold the first photograph's in
  /// themselves, which is then the balanced one.
  free,
};
inline constexpr std::array kFitExposureNames{"stated", "balanced", "number", "free"};

/// \ingroup contract
/// What to fit, and how. m_nHueAccuracy, m_fWBGain, m_gamma, m_fCCMatrix and m_fBias are carried
/// for the host; the fit doesn't read them.
class GREYCARD_EXPORT ColorCorrectionSettings {
 public:
  /// Defaults for a light, with the built-in reference colours of that light in m_macbethData.
  /// \param headerVersion  not kept
  /// \param transformtype  see m_RGBtoXYZTransform
  ColorCorrectionSettings(std::int32_t headerVersion, Illum illum, std::int32_t transformtype);

  Illum m_illum;
  /// Colour space of the corrected RGB: 0 sRGB; 1 Adobe RGB (1998); 2 sRGB, the fitted
  /// matrix then followed by that from BT.709 to BT.2020 primaries (Rec. ITU-R BT.2087); 3
  /// m_CustRGB2XYZ and m_CustXYZ2sRGB. Others are refused.
  std::int32_t m_RGBtoXYZTransform;
  double m_fNoiseRate = 0.0;  ///< 0..1, weight of noise after correction against the colour error
  /// Chroma to reach, 1.1 for 10 % more than the target's. Below 0.9 there is no saturation search;
  /// -1 at first.
  double m_fSaturation;
  std::int32_t m_nHueAccuracy = 5;
  std::int32_t m_nDeltaEMode = 1;  ///< 0 minimises CIE76, any other value CIE94
  Vector3 m_fWBGain{1.0, 1.0, 1.0};
  GammaLUT m_gamma;
  Matrix3 m_fCCMatrix{{{1.0, 0.0, 0.0}, {0.0, 1.0, 0.0}, {0.0, 0.0, 1.0}}};
  Vector3 m_fBias{};
  ColorCorrectionAdvancedSettings m_advanced;
  MacbethChartData m_macbethData;
  Matrix3 m_CustRGB2XYZ;   ///< linear RGB to XYZ on the 0..1 scale; a wide-gamut space at first
  Matrix3 m_CustXYZ2sRGB;  ///< its inverse, from XYZ to linear RGB
  /// \ingroup own
  FitExposure m_exposure = FitExposure::stated;
  double m_exposureGain = 1.0;  ///< for FitExposure::number, 1e-6 to 1e6
};

/// \ingroup own
/// Refuses what can't be fitted whatever is measured.
/// \throws std::invalid_argument in one sentence that names the setting
GREYCARD_EXPORT void checkFitSettings(const ColorCorrectionSettings& settings);

}  // namespace greycard
