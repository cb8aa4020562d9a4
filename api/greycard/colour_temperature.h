#pragma once
/// \file
/// \ingroup own

#include <optional>

#include "greycard/export.h"
#include "greycard/illum.h"
#include "greycard/types.h"

namespace greycard {

/// Where a light stands beside the Planckian radiators.
struct ColourTemperature {
  double kelvin = 0.0;  ///< correlated colour temperature
  /// Distance from the Planckian locus in CIE 1960 u, v; above 0 on the side of green.
  double duv = 0.0;
};

/// The correlated colour temperature of a light: that of the Planckian radiator whose CIE 1960
/// chromaticity is nearest. The locus is worked out from Planck's law (c2 = 1.4388e-2 m K) and the
/// CIE 1931 2 degree observer over 360 to 830 nm by 5 nm.
///
/// \param xyz  tristimulus values at any scale; (x, y, 1 - x - y) of a chromaticity does
/// \return empty for what is no light (a value not finite, a sum not above 0), for 1000 K and below
///         or 25000 K and above, and more than 0.05 from the locus, where the notion has no meaning
/// Source: CIE 15:2004, section 9.5.
GREYCARD_EXPORT std::optional<ColourTemperature> correlatedColourTemperature(const Vector3& xyz);

/// The same of a light's spectrum, or of the one that stands for it (referenceLight), by sums over
/// 380 to 780 nm by 5 nm.
GREYCARD_EXPORT ColourTemperature lightTemperature(Illum light);

}  // namespace greycard
