#include "radial_curve.h"

#include "ip_filter_1d.h"

namespace greycard {
namespace {

constexpr float kDeepestDip = -0.1F;
constexpr std::uint64_t kTaps = 11;

}  // namespace

std::vector<float> ringRatios(std::span<const float> ringSigma) {
  std::vector<float> ratios(ringSigma.size(), 1.0F);
  for (std::size_t i = 1; i < ringSigma.size(); ++i) ratios[i] = ringSigma[i] / ringSigma[0];
  return ratios;
}

std::vector<float> smoothedRatios(std::span<const float> ratios) {
  std::vector<float> increments(ratios.size(), 0.0F);
  for (std::size_t i = 1; i < ratios.size(); ++i) {
    const float increment = ratios[i] - ratios[i - 1];
    increments[i] = increment < kDeepestDip ? 0.0F : increment;
  }
  // Beyond the last ring the increments count as 0: the curve flattens at its end, on purpose.
  pxcore::IpFilter1D smoothing;
  smoothing.CosineKernel(kTaps);
  const auto smooth = smoothing.ConvSignal(increments.size(), increments.data());
  std::vector<float> curve(ratios.size(), 1.0F);
  for (std::size_t i = 1; i < curve.size(); ++i) curve[i] = curve[i - 1] + smooth[i + kTaps / 2];
  return curve;
}

}  // namespace greycard
