#pragma once

#include <array>

#include "dual.h"
#include "greycard/types.h"

namespace greycard {

/// Colours as CAM16 sees them, and in its uniform space CAM16-UCS: J' (lightness), a', b', in which
/// equal distances look alike. Source: C. Li and others, Comprehensive color solutions: CAM16,
/// CAT16, and CAM16-UCS, Color Res. Appl. 42 (2017) 703. The surround is average.
class Cam16 {
 public:
  /// \param white            XYZ of the white, Y = 100
  /// \param adaptingCdPerM2  luminance of the adapting field; at first that of IEC 61966-2-1,
  ///                         64 lx on a grey of 20 %
  /// \param background       Y of the background
  /// \param fullAdaptation   the white looks neutral, D = 1; else D follows from the luminance
  explicit Cam16(const Vector3& white, double adaptingCdPerM2 = 4.07, double background = 20.0,
                 bool fullAdaptation = true);

  /// J, C, h (degrees, 0..360) and M of an XYZ colour.
  struct Correlates {
    double lightness, chroma, hueDeg, colourfulness;
  };
  Correlates correlates(const Vector3& xyz) const;

  /// J', a', b' of an XYZ colour, with their derivatives when X, Y, Z come with theirs. Black and
  /// what lies below it have J' = 0, greys a' = b' = 0; slopes are 0 there, where they don't exist.
  /// For N = 0 and 3.
  template <std::size_t N>
  std::array<Dual<N>, 3> ucs(const std::array<Dual<N>, 3>& xyz) const;
  Vector3 ucs(const Vector3& xyz) const;

 private:
  template <std::size_t N>
  struct Appearance;
  template <std::size_t N>
  Appearance<N> appearance(const std::array<Dual<N>, 3>& xyz) const;

  Vector3 adaptation_{};  // factors on the sharpened cones
  double luminanceLevel_ = 0.0, induction_ = 0.0, exponent_ = 0.0, chromaFactor_ = 0.0;
  double whiteResponse_ = 1.0;
};

}  // namespace greycard
