#pragma once
/// \file
/// \ingroup contract own

#include <array>

#include "greycard/export.h"

namespace greycard {

/// \ingroup contract
/// A white-balance point: the ratios R/G and B/G of a sensor's response to a grey.
struct WhiteBalancePoint {
  double rg = 0.0, bg = 0.0;
  bool operator==(const WhiteBalancePoint&) const = default;
};

/// \ingroup own
/// X' = a X + b Y + e and Y' = c X + d Y + f, where X is an R/G and Y a B/G value.
struct AffineTransform {
  double a = 1.0, b = 0.0, c = 0.0, d = 1.0, e = 0.0, f = 0.0;

  WhiteBalancePoint operator()(const WhiteBalancePoint& point) const {
    return {a * point.rg + b * point.bg + e, c * point.rg + d * point.bg + f};
  }
};

/// \ingroup contract
/// Maps white-balance points from one sensor's chromaticity plane to another's by the affine
/// transform that carries three reference points onto their counterparts. Has no state.
class GREYCARD_EXPORT AWBUtils {
 public:
  using ReferencePoints = std::array<WhiteBalancePoint, 3>;

  /// \ingroup own
  /// A point of the source plane in the target plane.
  ///
  /// \param source  the reference points as the source sensor sees them
  /// \param target  the same as the target sensor sees them
  ///
  /// Nothing is checked. Source points on one line, or two in one place, leave the transform open:
  /// the result is then what a zero pivot of the elimination makes of it, often huge
  /// (SpansPlane tells). A value that is not finite gives one that isn't.
  WhiteBalancePoint GetTranformPtbyAffineTransform(const ReferencePoints& source,
                                                   const ReferencePoints& target,
                                                   const WhiteBalancePoint& point) const {
    return GetAffineTransform(source, target)(point);
  }
  /// \ingroup contract
  /// The same one by one, for the point (px, py).
  WhiteBalancePoint GetTranformPtbyAffineTransform(double srcRG1, double srcBG1, double srcRG2,
                                                   double srcBG2, double srcRG3, double srcBG3,
                                                   double targetRG1, double targetBG1,
                                                   double targetRG2, double targetBG2,
                                                   double targetRG3, double targetBG3, double px,
                                                   double py) const {
    return GetTranformPtbyAffineTransform(
        {{{srcRG1, srcBG1}, {srcRG2, srcBG2}, {srcRG3, srcBG3}}},
        {{{targetRG1, targetBG1}, {targetRG2, targetBG2}, {targetRG3, targetBG3}}}, {px, py});
  }

  /// \ingroup own
  /// The transform itself, for several points. Not checked either.
  AffineTransform GetAffineTransform(const ReferencePoints& source,
                                     const ReferencePoints& target) const;

  /// \ingroup own
  /// Whether three points span a triangle, so that a transform from them is defined: false when
  /// they lie on one line or in one place to within the rounding of their coordinates, or when one
  /// is not finite.
  static bool SpansPlane(const ReferencePoints& points);
};

}  // namespace greycard
