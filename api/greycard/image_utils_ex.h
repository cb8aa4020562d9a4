#pragma once
/// \file
/// \ingroup contract own

#include "greycard/export.h"
#include "greycard/types.h"

namespace greycard {

/// \ingroup contract
/// Colour helpers for a host.
class GREYCARD_EXPORT ImageUtilsEx {
 public:
  /// Encoded sRGB (nominally 0..1, not clamped) of a colour in L*a*b* (D65, L* 0..100).
  static void CIELabTosRGB(Vector3& pRGB, const Vector3& pLab);

  /// \ingroup own
  /// L*a*b* (D65) of an encoded sRGB colour, nominally 0..1.
  static void sRGBToCIELab(Vector3& pLab, const Vector3& pRGB);

  /// Pseudo-inverse in single precision: singular values up to 1e-20, and those that are nothing
  /// but rounding, are not inverted.
  /// \return false, outM untouched, when an entry of inM or of the result does not fit a float
  static bool compute_pseudo_inverse(const Matrix3& inM, Matrix3& outM);
};

}  // namespace greycard
