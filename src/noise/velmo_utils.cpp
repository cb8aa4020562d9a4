#include "velmo_utils.h"

#include <algorithm>
#include <vector>

#include "radial_curve.h"

namespace greycard::VelmoLib {

void VelmoUtils::EstimateRnrSigmaLutFormYuv(bool bTraining, std::uint64_t w, std::uint64_t h,
                                            float fScalingFactor, const unsigned char* pData,
                                            RNRLUT& lutData) {
  PXCORE_CHECK(pData);
  requireEstimateMemory(w, h);
  pxcore::TImage<unsigned char> imgY;
  imgY.Create(w, h, w);
  std::copy_n(pData, w * h, imgY.RowPtr(0));
  EstimateRnrSigmaLutFormYuv(bTraining, w, h, fScalingFactor, imgY, lutData);
}

NoiseEstimate VelmoUtils::EstimateRnrSigmaLutFormYuv(bool bTraining, std::uint64_t w,
                                                     std::uint64_t h, float fScalingFactor,
                                                     const pxcore::TImageRoi<unsigned char>& imgY,
                                                     RNRLUT& lutData) {
  PXCORE_CHECK(imgY.IsValid() && imgY.Width() == w && imgY.Height() == h);
  NoiseEstimate estimate = estimateNoise(imgY, fScalingFactor);
  lutData.centerSigma = estimate.centreSigma;
  const std::vector<float> ratios = ringRatios(estimate.ringSigma);
  const std::vector<float> table = bTraining ? smoothedRatios(ratios) : ratios;
  std::copy_n(table.begin(), lutData.lut.size(), lutData.lut.begin());
  return estimate;
}

}  // namespace greycard::VelmoLib
