#pragma once
/// \file
/// \ingroup own

#include "greycard/export.h"
#include "greycard/types.h"

namespace greycard {

// Colour differences between two colours in L*a*b* (L* 0..100). Not-a-number in, not-a-number out.

/// CIE 1976: the Euclidean distance. Source: ISO/CIE 11664-4.
GREYCARD_EXPORT double deltaE76(const Vector3& labA, const Vector3& labB);

/// CIE 1994 with the graphic-arts weights kL = kC = kH = 1, K1 = 0.045, K2 = 0.015. Not symmetric:
/// the weights follow the chroma of the reference. Source: CIE 116-1995.
GREYCARD_EXPORT double deltaE94(const Vector3& referenceLab, const Vector3& sampleLab);

/// dL*, dC* and dH* of a colour to its reference, signed: above 0 where it is lighter, more
/// chromatic and turned towards larger hue angles. Their squares sum to that of deltaE76. Source:
/// ISO/CIE 11664-4.
GREYCARD_EXPORT Vector3 differenceSplit(const Vector3& referenceLab, const Vector3& lab);

/// CIEDE2000 with kL = kC = kH = 1. Source: ISO/CIE 11664-6; Sharma, Wu, Dalal, Color Res. Appl. 30
/// (2005) 21, whose 33 unambiguous test pairs it meets to the four printed decimals.
GREYCARD_EXPORT double deltaE2000(const Vector3& labA, const Vector3& labB);

/// What CIEDE2000 is made of: dE^2 = lightness^2 + chroma^2 + hue^2 + rotation, the weighted
/// differences b - a and the interaction of chroma and hue, which may be negative (blue colours).
struct DeltaE2000Terms {
  double lightness = 0.0, chroma = 0.0, hue = 0.0, rotation = 0.0;
};
GREYCARD_EXPORT DeltaE2000Terms deltaE2000Terms(const Vector3& labA, const Vector3& labB);

}  // namespace greycard
