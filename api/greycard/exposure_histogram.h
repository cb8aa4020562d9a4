#pragma once
/// \file
/// \ingroup contract own

#include <array>
#include <cstddef>

#include "greycard/export.h"
#include "greycard/picture.h"

namespace greycard {

inline constexpr std::size_t kHistogramBins = 256;

/// \ingroup contract
/// One table of 256 bins per channel R, G, B.
using ChannelHistograms = std::array<std::array<double, kHistogramBins>, 3>;

/// \ingroup contract
/// The two cumulative histograms that the luma-target rule reads. With p[j] the share of a
/// channel's pixels in bin j:
///   hist_CDF[k] = p[0] + ... + p[k],  1 at the end;
///   hist_RGB[k] = 0 p[0] + 1 p[1] + ... + k p[k],  the channel's mean bin at the end.
/// A difference of hist_RGB divided by the difference of hist_CDF is therefore the mean bin of the
/// pixels between the two percentiles.
struct ExposureHistograms {
  ChannelHistograms hist_CDF{}, hist_RGB{};
  /// Mean of luma601 over the pixels, in bins.
  double luma = 0.0;
};

/// \ingroup own
/// The histograms of a picture. Bin k holds the samples from k to below k + 1 when full scale is
/// 256; those above the white level are counted with it. A grey picture has three equal channels.
///
/// \param whiteLevel  sample of full scale: 255 makes bins of the codes of an 8-bit picture
/// \throws std::invalid_argument for a picture that is not well-formed, or a white level outside
///         1..65535
GREYCARD_EXPORT ExposureHistograms exposureHistograms(const Picture& picture, int whiteLevel);

}  // namespace greycard
