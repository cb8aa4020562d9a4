#include "noise_estimate.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <span>

#include "cosine_pass.h"
#include "ip_filter_1d.h"
#include "ip_filter_sep.h"
#include "ring_map.h"

namespace greycard {
namespace {

using pxcore::TImage;
using pxcore::TImageRoi;

constexpr std::uint64_t kMeanTaps = 25, kSigmaTaps = 205;
constexpr std::uint64_t kCentreReach = 300;  // pixels
constexpr float kLeastRingSigma = 0.001F;
constexpr std::uint64_t kBytesPerPixel = sizeof(float) + 1;

// E = (M - I)^2. The local mean M exists for a few pixels at a time only.
void residualEnergy(const TImageRoi<unsigned char>& imgY, TImage<float>& energy) {
  const pxcore::HalfCosine kernel(kMeanTaps);
  cosineRows(kernel, imgY, energy);
  cosineColumns(kernel, energy, [&](std::uint64_t x, std::uint64_t y, std::span<const float> mean) {
    const auto pixels = imgY.View().run(y, x, x + mean.size());
    const auto out = energy.View().run(y, x, x + mean.size());
    for (std::size_t i = 0; i < mean.size(); ++i) {
      const float residual = mean[i] - static_cast<float>(pixels[i]);
      out[i] = residual * residual;
    }
  });
}

// Four at a time, so that one comparison or addition need not wait for the last.
constexpr std::size_t kAtOnce = 4;

float largest(std::span<const float> values, float start) {
  std::array<float, kAtOnce> most;
  most.fill(start);
  std::size_t i = 0;
  for (; i + kAtOnce <= values.size(); i += kAtOnce)
    for (std::size_t k = 0; k < kAtOnce; ++k) most[k] = std::max(most[k], values[i + k]);
  for (const float value : values.subspan(i)) most[0] = std::max(most[0], value);
  return *std::ranges::max_element(most);
}

double sumOf(std::span<const float> values) {
  std::array<double, kAtOnce> sums{};
  std::size_t i = 0;
  for (; i + kAtOnce <= values.size(); i += kAtOnce)
    for (std::size_t k = 0; k < kAtOnce; ++k) sums[k] += static_cast<double>(values[i + k]);
  for (const float value : values.subspan(i)) sums[0] += static_cast<double>(value);
  return (sums[0] + sums[1]) + (sums[2] + sums[3]);
}

void measureResidual(const RingMap& rings, const TImageRoi<float>& energy,
                     NoiseEstimate& estimate) {
  std::vector<double>& residual = estimate.ringResidual;
  residual.assign(rings.count(), 0.0);
  estimate.ringPixels.assign(rings.count(), 0);
  rings.forEachRun([&](std::uint64_t ring, std::uint64_t y, std::uint64_t from, std::uint64_t to) {
    residual[ring] += sumOf(energy.View().run(y, from, to));
    estimate.ringPixels[ring] += to - from;
  });
  for (std::size_t i = 0; i < residual.size(); ++i)
    if (estimate.ringPixels[i] != 0)
      residual[i] = std::sqrt(residual[i] / static_cast<double>(estimate.ringPixels[i]));
}

// The root never falls when its argument rises, so that the largest sigma is the root of the
// largest variance, to the bit: one root for a ring instead of one for a pixel.
void measureRings(const RingMap& rings, NoiseEstimate& estimate) {
  const TImageRoi<float>& variance = estimate.localVariance;
  std::vector<float>& ringSigma = estimate.ringSigma;
  ringSigma.assign(rings.count(), 0.0F);
  rings.forEachRun([&](std::uint64_t ring, std::uint64_t y, std::uint64_t from, std::uint64_t to) {
    ringSigma[ring] = largest(variance.View().run(y, from, to), ringSigma[ring]);
  });
  for (float& sigma : ringSigma) sigma = std::max(kLeastRingSigma, sigmaOf(sigma));
}

void measureCentre(NoiseEstimate& estimate) {
  const TImageRoi<float>& variance = estimate.localVariance;
  const std::uint64_t cx = variance.Width() / 2, cy = variance.Height() / 2;
  // Deliberate: of a window that would begin outside the image, nothing is taken.
  estimate.centreWindowEmpty = cx < kCentreReach || cy < kCentreReach;
  if (estimate.centreWindowEmpty) return;
  float most = 0.0F;
  for (std::uint64_t y = cy - kCentreReach; y < cy + kCentreReach; ++y)
    most = largest(variance.View().run(y, cx - kCentreReach, cx + kCentreReach), most);
  estimate.centreSigma = sigmaOf(most);
}

}  // namespace

void requireEstimateMemory(std::uint64_t w, std::uint64_t h) {
  pxcore::requireMemory(w, h, kSigmaTaps / 2, kBytesPerPixel);
}

float sigmaOf(float variance) {
  return std::sqrt(std::max(variance, 0.0F));
}

NoiseEstimate estimateNoise(const TImageRoi<unsigned char>& imgY, float fScalingFactor) {
  PXCORE_CHECK(imgY.IsValid());
  requireEstimateMemory(imgY.Width(), imgY.Height());
  const RingMap rings(imgY.Width(), imgY.Height(), fScalingFactor);

  NoiseEstimate estimate;
  TImage<float> plane(imgY.Width(), imgY.Height());
  residualEnergy(imgY, plane);
  measureResidual(rings, plane, estimate);
  pxcore::IpFilter1D kernel;
  kernel.CosineKernel(kSigmaTaps);
  pxcore::IpFilterSep(kernel.Kernel()).FilterImage(plane, plane);
  estimate.localVariance = plane;
  measureCentre(estimate);
  measureRings(rings, estimate);
  return estimate;
}

}  // namespace greycard
