#pragma once

#include <array>
#include <cstdint>

#include "greycard/sigma_lut.h"
#include "noise_estimate.h"

namespace greycard::VelmoLib {

/// Estimates the radial noise table of a noise-reduction block from a flat field's luma.
class VelmoUtils {
 public:
  /// What a noise-reduction block takes, in this order.
  struct RNRLUT {
    float centerSigma = 0.0F;
    std::array<float, kSigmaEntries> lut{};
  };

  /// \param bTraining       whether the ratios are smoothed
  /// \param fScalingFactor  pixels from one ring to the next, above 0
  /// \param pData           w * h bytes, row by row; they are copied
  /// \throws pxcore::ExceptionCheck for sizes or a factor that can't be used;
  ///         pxcore::ExceptionRuntime when the padded image exceeds memory
  static void EstimateRnrSigmaLutFormYuv(bool bTraining, std::uint64_t w, std::uint64_t h,
                                         float fScalingFactor, const unsigned char* pData,
                                         RNRLUT& lutData);
  /// The same of an image of w x h pixels.
  /// \return what was measured on the way
  static NoiseEstimate EstimateRnrSigmaLutFormYuv(bool bTraining, std::uint64_t w, std::uint64_t h,
                                                  float fScalingFactor,
                                                  const pxcore::TImageRoi<unsigned char>& imgY,
                                                  RNRLUT& lutData);
};

}  // namespace greycard::VelmoLib
