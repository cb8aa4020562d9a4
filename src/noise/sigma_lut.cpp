#include "greycard/sigma_lut.h"

#include <algorithm>
#include <cmath>
#include <stdexcept>

#include "flat_field_statistics.h"
#include "flatness.h"
#include "radial_curve.h"
#include "velmo_utils.h"

namespace greycard {
namespace {

constexpr float kLeastFactor = 1.0F, kTypicalMost = 5.0F;
constexpr const char* kRaised =
    "Some calculated values were below 1.0 and have been clamped to 1.0.";
constexpr const char* kExceeds =
    "Sigma LUT exceeds typical range. The image may have blank pixels at its border. Please check "
    "the image and crop the blank pixels.";

void requirePlane(const char* what, std::uint64_t width, std::uint64_t height, std::size_t size) {
  if (width <= size / height) return;
  throw std::invalid_argument(std::string("a picture of ") + std::to_string(width) + " x " +
                              std::to_string(height) + " pixels needs as many " + what +
                              ", but there are " + std::to_string(size));
}

// The half-diagonal split into as many rings as the table has entries.
float ringWidth(std::uint64_t width, std::uint64_t height) {
  const auto x = static_cast<double>(width / 2), y = static_cast<double>(height / 2);
  return static_cast<float>(std::sqrt(x * x + y * y) / 164.0);
}

void describe(const NoiseEstimate& estimate, SigmaReport& report) {
  report.centreWindowEmpty = estimate.centreWindowEmpty;
  report.centreRingSigma = estimate.ringSigma.front();
  std::ranges::copy_n(ringRatios(estimate.ringSigma).begin(), kSigmaEntries,
                      report.rawRatio.begin());
  std::ranges::copy_n(estimate.ringResidual.begin(), kSigmaEntries, report.residualSigma.begin());
  std::ranges::copy_n(estimate.ringPixels.begin(), kSigmaEntries, report.ringPixels.begin());
}

void copySigma(const NoiseEstimate& estimate, std::span<float> localSigma) {
  const auto variance = estimate.localVariance.View();
  const PlaneView<float> sigma(localSigma, variance.width(), variance.height());
  for (std::size_t y = 0; y < variance.height(); ++y)
    std::ranges::transform(variance.row(y), sigma.row(y).begin(), sigmaOf);
}

}  // namespace

bool SigmaLUT::CalculateSigmaLUT(std::uint64_t width, std::uint64_t height,
                                 std::span<const std::uint16_t> pixels,
                                 std::span<float> localSigma) {
  msg.clear();
  lut.reset();
  report = {};
  if (pixels.empty() || width == 0 || height == 0) return false;
  requirePlane("samples", width, height, pixels.size());
  if (!localSigma.empty())
    requirePlane("places for local sigmas", width, height, localSigma.size());
  requireEstimateMemory(width, height);

  pxcore::TImage<unsigned char> luma(width, height);
  SigmaReport found;
  takeLowBytes(pixels, luma, found);
  measureFallOff(luma, found);
  found.unflatness = unflatness(luma);
  VelmoLib::VelmoUtils::RNRLUT table;
  const NoiseEstimate estimate = VelmoLib::VelmoUtils::EstimateRnrSigmaLutFormYuv(
      true, width, height, ringWidth(width, height), luma, table);
  describe(estimate, found);
  if (!localSigma.empty()) copySigma(estimate, localSigma);

  bool raised = false, exceeds = false;
  for (float& factor : table.lut) {
    raised |= factor < kLeastFactor;
    exceeds |= factor > kTypicalMost;
    factor = std::max(factor, kLeastFactor);
  }
  center_noise_sigma = table.centerSigma;
  lut = table.lut;
  report = found;
  if (raised) msg = kRaised;
  if (exceeds) msg += (msg.empty() ? "" : "  ") + std::string(kExceeds);
  return true;
}

}  // namespace greycard
