#pragma once
/// \file
/// \ingroup contract own

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>

#include "greycard/export.h"

namespace greycard {

/// \ingroup contract
/// Entries of a radial noise table: rings from the centre (0) to the corners.
inline constexpr std::size_t kSigmaEntries = 164;

/// \ingroup own
/// What a table can't tell about the flat field behind it. Values of an image's samples are their
/// low bytes, as they enter the estimation; ring i lies i/164 of the half-diagonal from the centre.
struct SigmaReport {
  double ceilingShare = 0.0;          ///< share of samples at 255, 0..1: clipped samples hide noise
  double floorShare = 0.0;            ///< share of samples at 0
  std::uint64_t highByteDropped = 0;  ///< samples above 255, of which only the low byte was taken
  double centreMean = 0.0;            ///< over a square of a tenth of the shorter side
  double cornerMean = 0.0;            ///< over four such squares in the corners
  bool allEqual = false;              ///< every sample the same: no noise at all
  /// What a 12 x 9 grid of block means leaves over the best radial fall-off a + b r^2 + c r^4, root
  /// mean square, as a share of their mean; empty where the picture is too small or black.
  std::optional<double> unflatness;
  bool centreWindowEmpty = false;  ///< narrower or lower than 600 pixels: center_noise_sigma is 0

  /// Largest local sigma of ring 0, in code values: the centre's noise, whatever the picture's size
  /// and the growth of noise within the centre window.
  float centreRingSigma = 0.0F;
  std::array<float, kSigmaEntries> rawRatio{};  ///< table before smoothing and clamping
  /// Root mean square of the residual over each ring, in code values; 0 for a ring without pixels.
  /// The table takes the largest local sigma instead, which lies above this.
  std::array<double, kSigmaEntries> residualSigma{};
  std::array<std::uint64_t, kSigmaEntries> ringPixels{};

  /// Share of the centre's mean that is missing in the corners; 0 for a black centre.
  double fallOff() const { return centreMean == 0.0 ? 0.0 : 1.0 - cornerMean / centreMean; }
};

/// \ingroup contract
/// The radial noise table of a noise-reduction block, estimated from a flat field: an evenly lit,
/// featureless picture.
///
/// The residual of a local mean (half-cosine of 25 x 25 pixels) is squared and averaged (205 x 205)
/// to the local sigma. The centre's sigma is the largest local sigma among 600 x 600 pixels, a
/// table entry the largest of its ring over that of ring 0, smoothed along the radius.
///
/// A largest value lies above the true one. Measured on simulated fields (mean over seeds; noise of
/// 1 to 10 code values that grows as the squared distance to `gain` times as much in the corners):
///
/// | pixels      | gain | center_noise_sigma | table up to 0.9 of the half-diagonal |
/// |-------------|------|--------------------|--------------------------------------|
/// | 4000 x 3000 | 1    | +0.8 %             | 0 to +1.3 %                          |
/// | 4000 x 3000 | 1.5  | +1.8 %             | 0 to +1.4 %                          |
/// | 4000 x 3000 | 2    | +3.1 %             | 0 to +1.6 %                          |
/// | 4000 x 3000 | 3    | +6.1 %             | 0 to +1.7 %                          |
/// | 1600 x 1200 | 1    | +0.9 %             | 0 to +1.1 %                          |
/// | 1600 x 1200 | 2    | +19 %              | 0 to +1.3 %                          |
/// | 800 x 640   | 1    | +1.0 %             | 0 to +1.2 %                          |
/// | 800 x 640   | 2    | +66 %              | -2.8 to +0.9 %                       |
///
/// The centre's excess is that of the window's corners, where noise has already grown, and 1 %:
/// report.centreRingSigma does without either.
///
/// Each call uses five bytes of working memory for each pixel.
class GREYCARD_EXPORT SigmaLUT {
 public:
  /// Noise standard deviation at the centre, in code values of 8 bits; 0 for a picture narrower or
  /// lower than 600 pixels, by definition.
  float center_noise_sigma = 0.0F;
  /// How much stronger the noise is than at the centre; every entry at least 1. Absent before the
  /// first calculation and after a failed one.
  std::optional<std::array<float, kSigmaEntries>> lut;
  /// Advice to the user about the last calculation; mostly empty.
  std::string msg;
  /// \ingroup own
  SigmaReport report;  ///< on the last calculation; blank after a failed one

  /// \param width,height  in pixels
  /// \param pixels      luma row by row, 8-bit values; of larger ones the low byte counts
  /// \param localSigma  takes the local sigma of every pixel, in code values, unless empty
  /// \return false without pixels or with a width or height of 0; msg is then empty, lut absent
  /// \throws std::invalid_argument when there are fewer pixels, or fewer places in a localSigma
  ///         that is not empty, than width * height;
  ///         std::exception, before anything is allocated, when the picture with 102 more pixels on
  ///         every side takes more memory than there is. msg is then empty and lut absent, too
  bool CalculateSigmaLUT(std::uint64_t width, std::uint64_t height,
                         std::span<const std::uint16_t> pixels, std::span<float> localSigma = {});
};

}  // namespace greycard
