#include "greycard/exposure_histogram.h"

#include <algorithm>
#include <cstdint>
#include <stdexcept>
#include <string>

#include "code_values.h"
#include "greycard/luma.h"

namespace greycard {
namespace {

using Counts = std::array<std::array<std::uint64_t, kHistogramBins>, 3>;

Counts countSamples(const Picture& picture, int whiteLevel) {
  const auto white = static_cast<std::uint32_t>(whiteLevel);
  Counts counts{};
  const auto channels = static_cast<std::size_t>(picture.channels);
  for (std::size_t i = 0; i < picture.samples.size(); i += channels)
    for (std::size_t c = 0; c < channels; ++c) {
      const auto sample = std::min<std::uint32_t>(picture.samples[i + c], white);
      ++counts[c][sample * kHistogramBins / (white + 1)];
    }
  if (channels == 1) counts[1] = counts[2] = counts[0];
  return counts;
}

}  // namespace

ExposureHistograms exposureHistograms(const Picture& picture, int whiteLevel) {
  checkPicture(picture);
  if (whiteLevel < 1 || whiteLevel > 65535)
    throw std::invalid_argument("the white level is " + std::to_string(whiteLevel) +
                                "; it must be from 1 to 65535");

  const Counts counts = countSamples(picture, whiteLevel);
  const auto total =
      static_cast<double>(picture.samples.size() / static_cast<std::size_t>(picture.channels));
  ExposureHistograms result;
  for (std::size_t c = 0; c < 3; ++c) {
    std::uint64_t pixelsSoFar = 0, binSum = 0;  // whole numbers, so that the end is exactly 1
    for (std::size_t bin = 0; bin < kHistogramBins; ++bin) {
      pixelsSoFar += counts[c][bin];
      binSum += bin * counts[c][bin];
      result.hist_CDF[c][bin] = static_cast<double>(pixelsSoFar) / total;
      result.hist_RGB[c][bin] = static_cast<double>(binSum) / total;
    }
  }
  const auto& [red, green, blue] = result.hist_RGB;
  result.luma = luma601({red.back(), green.back(), blue.back()});
  return result;
}

}  // namespace greycard
