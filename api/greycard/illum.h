#pragma once
/// \file
/// \ingroup contract own

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "greycard/export.h"
#include "greycard/text_view.h"
#include "greycard/types.h"

namespace greycard {

/// \ingroup contract
/// Test lights. Three names are aliases that share their value with the light after them. What
/// stands for a light is said of its reference colours; a fit's own set takes D65 for Lowlight and
/// F11 for CoolWhite.
enum Illum : std::int32_t {
  illum_unknown = -1,  ///< D65 stands for it, as for any value without a name
  illum_A = 0,         ///< CIE standard illuminant A
  illum_D65 = 1,       ///< CIE standard illuminant D65
  illum_TL84 = 2,      ///< narrow-band fluorescent, CIE F11
  illum_Outdoor = 3,   ///< D65 stands for it
  illum_Lowlight = 4,  ///< CIE F11 stands for it
  illum_LED = 5,       ///< D65 stands for it
  illum_Strobe = 6,    ///< D65 stands for it
  illum_Max = 7,
  illum_D50 = 7,  ///< CIE standard illuminant D50
  illum_Max304 = 8,
  illum_Horizon = 8,  ///< Planckian radiator at 2300 K
  illum_Max306 = 9,
  illum_CoolWhite = 9,  ///< D65 stands for it, as for all that follow
  illum_D75 = 10,
  illum_LED1 = 11,
  illum_LED2 = 12,
};

/// \ingroup own
/// The light of that name, letter case ignored: "A", "D65", "TL84", "Outdoor", "Lowlight", "LED",
/// "Strobe", "D50", "Horizon", "CoolWhite", "D75", "LED1", "LED2". Empty for any other text.
GREYCARD_EXPORT std::optional<Illum> illumFromName(TextView name);

/// \ingroup own
/// The name above; "unknown" for any value without one.
GREYCARD_EXPORT const char* illumName(Illum light);

/// \ingroup own
/// The light whose spectrum and reference colours stand for this one: itself, or as said above.
GREYCARD_EXPORT Illum referenceLight(Illum light);

/// \ingroup own
/// The light's name, and which light stands for it where that is another: "LED (reference colours
/// of D65)".
GREYCARD_EXPORT std::string illumTitle(Illum light);

/// \ingroup own
/// XYZ of a perfect reflector under the light, Y = 100: CIE 1931 2 degree observer, sums of
/// products over 400 to 700 nm by 5 nm (X and Z up to 0.25 from the usual sums over 380 to 780 nm).
GREYCARD_EXPORT Vector3 whitePoint(Illum light);

/// \ingroup own
/// Relative spectral power at some wavelengths.
struct LightSpectrum {
  std::vector<double> wavelengthNm, power;
};

/// \ingroup own
/// The spectrum that the light's colours are computed with: 400 to 700 nm by 5 nm.
GREYCARD_EXPORT LightSpectrum lightSpectrum(Illum light);

}  // namespace greycard
