#pragma once

#include <cstdint>
#include <vector>

#include "image.h"

namespace greycard {

/// What is measured of a flat field before any smoothing. Sigmas are in code values.
struct NoiseEstimate {
  float centreSigma = 0.0F;        ///< largest local sigma of the centre window
  bool centreWindowEmpty = false;  ///< the image is narrower or lower than 600 pixels
  std::vector<float> ringSigma;    ///< largest local sigma of each ring, at least 0.001
  /// Root mean square of the residual over each ring, 0 for one without pixels; their number.
  std::vector<double> ringResidual;
  std::vector<std::uint64_t> ringPixels;
  /// Square of the local sigma of every pixel; may be a rounding error below 0.
  pxcore::TImageRoi<float> localVariance;
};

/// Local mean M by a half-cosine of 25 taps, residual energy E = (M - I)^2, local variance by a
/// half-cosine of 205 taps over E; then the largest of the centre and of each ring.
/// Works in one byte and one float for each pixel.
/// \throws pxcore::ExceptionRuntime, before anything is allocated, when the image padded for the
///         longer kernel exceeds memory; pxcore::ExceptionCheck
NoiseEstimate estimateNoise(const pxcore::TImageRoi<unsigned char>& imgY, float fScalingFactor);

/// The memory check of estimateNoise on its own. \throws pxcore::ExceptionRuntime
void requireEstimateMemory(std::uint64_t w, std::uint64_t h);

/// Square root of a variance that may be a rounding error below 0.
float sigmaOf(float variance);

}  // namespace greycard
