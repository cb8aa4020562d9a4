#pragma once
/// \file
/// \ingroup own

#include <cstdint>

#include "greycard/export.h"
#include "greycard/picture.h"
#include "greycard/types.h"

namespace greycard {

/// A simulated flat field: an even surface with vignetting and noise. rho is the distance from
/// pixel (width / 2, height / 2) over that pixel's distance from the corner (0, 0).
struct FlatFieldSettings {
  int width = 1600, height = 1200;  ///< pixels, 2..20000 each and 100 million together
  double level = 128.0;             ///< mean at the centre, in code values; 0..255
  double fallOff = 0.0;             ///< the mean falls by this share at rho = 1, as rho^2; 0..1
  /// Standard deviation of the samples at the centre, in code values and with the error of rounding
  /// them in it: 0 for none (then only rounding), or 0.6..60. True to 0.7 % at 0.6 and to 0.1 %
  /// from 0.7 on, but for samples that are cut off at 0 and 255.
  double centreSigma = 3.0;
  double cornerGain = 2.0;  ///< times as much at rho = 1, growing as rho^2; 1..20
  std::uint64_t seed = 1;   ///< of the noise
  int bits = 8;             ///< 8, or 16 for the same values in a 16-bit file
};

/// Renders flat fields whose noise is known. Fill m_settings, call Simulate, read m_picture.
///
/// A sample is level (1 - fallOff rho^2) + n rounded and cut to 0..255, n normally distributed with
/// variance (centreSigma gainAt(rho))^2 - 1/12: rounding adds the rest.
class GREYCARD_EXPORT FlatFieldSimulator {
 public:
  FlatFieldSettings m_settings;
  Picture m_picture;  ///< one channel

  /// Equal settings give equal pictures to the bit, on one build of the library.
  /// \return false when the progress callback cancelled it; the picture is left as it was
  /// \throws std::invalid_argument with one sentence about the first setting that is out of range;
  ///         the picture is left as it was
  bool Simulate(const ProgressCallback& progress = {});

  /// 1 + (cornerGain - 1) rho^2.
  double gainAt(double rho) const { return 1.0 + (m_settings.cornerGain - 1.0) * rho * rho; }
};

}  // namespace greycard
