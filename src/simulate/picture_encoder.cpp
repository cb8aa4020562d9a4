#include "picture_encoder.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "srgb_transfer.h"

namespace greycard {
namespace {

constexpr int kSteps = 4096;

}  // namespace

PictureEncoder::PictureEncoder(const SampleLevels& levels) : m_levels(levels) {
  if (levels.encoding == SampleEncoding::linear) return;
  const double scale = levels.whiteLevel - levels.blackLevel;
  const int white = static_cast<int>(std::floor(levels.whiteLevel + 0.5));
  m_leastValue.push_back(-std::numeric_limits<double>::infinity());
  for (int sample = 1; sample <= white; ++sample)
    m_leastValue.push_back(sRGBDecode((sample - 0.5 - levels.blackLevel) / scale));
  m_firstSample.push_back(0);
  for (int step = 0; step <= kSteps; ++step) {
    const auto above = std::ranges::upper_bound(m_leastValue, static_cast<double>(step) / kSteps);
    m_firstSample.push_back(static_cast<std::uint16_t>(above - m_leastValue.begin() - 1));
  }
  m_firstSample.push_back(static_cast<std::uint16_t>(white));
}

std::uint16_t PictureEncoder::linearSample(double value) const {
  const double sample =
      m_levels.blackLevel + std::min(value, 1.0) * (m_levels.whiteLevel - m_levels.blackLevel);
  return static_cast<std::uint16_t>(std::max(sample, 0.0) + 0.5);
}

std::uint16_t PictureEncoder::encodedSample(double value) const {
  const double clipped = std::min(value, 1.0);
  const double step = std::max(clipped, -1.0) * kSteps;
  // Noise below the black level lies before the first step.
  const auto index = step < 0.0 ? 0 : static_cast<std::size_t>(step) + 1;
  const auto begin = m_leastValue.begin();
  const auto above =
      std::upper_bound(begin + m_firstSample[index], begin + m_firstSample[index + 1] + 1, clipped);
  return static_cast<std::uint16_t>(above - begin - 1);
}

void PictureEncoder::encode(std::span<const double> values,
                            std::span<std::uint16_t> samples) const {
  if (m_levels.encoding == SampleEncoding::linear)
    std::ranges::transform(values, samples.begin(), [this](double v) { return linearSample(v); });
  else
    std::ranges::transform(values, samples.begin(), [this](double v) { return encodedSample(v); });
}

}  // namespace greycard
