#pragma once
/// \file
/// \ingroup own

#include <array>
#include <cstddef>
#include <vector>

#include "greycard/export.h"
#include "greycard/types.h"

namespace greycard {

/// What the code values of a picture mean: (code - blackLevel) / (whiteLevel - blackLevel), decoded
/// if it is encoded, times scale.
enum class SampleEncoding {
  linear,  ///< proportional to light
  sRGB,    ///< IEC 61966-2-1 transfer
};

struct SampleLevels {
  double blackLevel = 0.0;    ///< code value without light
  double whiteLevel = 255.0;  ///< code value of full scale, above blackLevel
  double scale = 1.0;         ///< factor on the linear value, above 0
  SampleEncoding encoding = SampleEncoding::linear;

  /// Full scale of 8-, 12- and 16-bit pictures.
  static constexpr SampleLevels eightBit(SampleEncoding encoding) { return {0, 255, 1, encoding}; }
  static constexpr SampleLevels twelveBit(SampleEncoding encoding) {
    return {0, 4095, 1, encoding};
  }
  static constexpr SampleLevels sixteenBit(SampleEncoding encoding) {
    return {0, 65535, 1, encoding};
  }
};

/// \throws std::invalid_argument unless the levels are finite, white above black, scale above 0
GREYCARD_EXPORT void checkLevels(const SampleLevels& levels);

/// Shares (0..1) of a patch's pixels in one channel.
struct ChannelClipping {
  double ceiling = 0.0;  ///< at or above the white level
  double floor = 0.0;    ///< at or below the black level
};

/// Which patches of a sampled chart ran into the ends of the scale.
struct GREYCARD_EXPORT SamplingReport {
  /// A patch counts as clipped when more than this share of a channel's pixels does. Up to it the
  /// mean of a normally distributed patch is off by at most 0.4 % of its standard deviation.
  static constexpr double kClippedAbove = 0.01;

  std::array<std::array<ChannelClipping, 3>, kPatchCount> clipping{};  ///< per patch: R, G, B
  std::array<std::size_t, kPatchCount> pixels{};                       ///< sampled per patch

  bool clips(int patch) const;
  std::vector<int> clippedPatches() const;  ///< 0-based rows, ascending
};

}  // namespace greycard
