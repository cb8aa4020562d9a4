#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "greycard/patch_sampler.h"

namespace greycard {

/// Turns linear values into the samples of a picture: black + encoded value * (white - black),
/// rounded half up. The sensor clips above 1; below 0 the result ends at sample 0.
class PictureEncoder {
 public:
  explicit PictureEncoder(const SampleLevels& levels);

  void encode(std::span<const double> values, std::span<std::uint16_t> samples) const;

 private:
  std::uint16_t linearSample(double value) const;
  std::uint16_t encodedSample(double value) const;

  SampleLevels m_levels;
  // Of an encoded picture: the least linear value of each sample, and the samples that equal steps
  // of 0..1 begin with, between a first entry for all below 0 and a last one for 1. A power per
  // value would take longer than all else together.
  std::vector<double> m_leastValue;
  std::vector<std::uint16_t> m_firstSample;
};

}  // namespace greycard
