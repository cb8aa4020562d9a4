#pragma once

// Tables and pictures for the tests and the benchmarks.

#include <cstdint>
#include <random>
#include <vector>

#include "greycard/lut2d_config.h"

namespace greycard {

/// Evenly spaced nodes, no changes, full strength at every lightness.
inline Lut2DConfig identityTable() {
  Lut2DConfig config;
  for (std::size_t i = 0; i < config.lut_1d_h.size(); ++i)
    config.lut_1d_h[i] = 15.0 * static_cast<double>(i);
  for (std::size_t j = 0; j < config.lut_1d_s.size(); ++j)
    config.lut_1d_s[j] = static_cast<double>(j) / 15.0;
  config.h_shift = config.s_shift = 2.0F;
  config.l_boundary_end_a = config.l_boundary_end_b = 1.0F;
  return config;
}

/// Changes of up to `hue` degrees and `sat` at every node, with fades and half the luma kept.
inline Lut2DConfig randomTable(std::uint32_t seed, double hue, double sat) {
  Lut2DConfig config = identityTable();
  std::mt19937 random(seed);
  const auto within = [&](double limit) {
    return limit * (static_cast<double>(random()) / 2147483648.0 - 1.0);
  };
  for (double& change : config.lut_2d_h) change = within(hue);
  for (double& change : config.lut_2d_s) change = within(sat);
  config.l_boundary_start_a = 0.1F;
  config.l_boundary_start_b = 0.3F;
  config.l_boundary_end_a = 0.8F;
  config.l_boundary_end_b = 0.95F;
  config.y_blend_factor = 0.5F;
  return config;
}

/// Three planes of equal size.
struct Planes {
  std::vector<std::uint16_t> r, g, b;
  bool operator==(const Planes&) const = default;
};

/// Independent samples of 10 bits.
inline Planes noisePlanes(std::uint32_t seed, std::size_t pixels) {
  std::mt19937 random(seed);
  Planes planes{std::vector<std::uint16_t>(pixels), std::vector<std::uint16_t>(pixels),
                std::vector<std::uint16_t>(pixels)};
  for (std::size_t k = 0; k < pixels; ++k) {
    const auto bits = static_cast<std::uint32_t>(random());
    planes.r[k] = bits & 1023U;
    planes.g[k] = bits >> 10 & 1023U;
    planes.b[k] = bits >> 20 & 1023U;
  }
  return planes;
}

/// Slow gradients in every direction, as in a photograph without detail.
inline Planes smoothPlanes(std::size_t width, std::size_t height) {
  Planes planes = noisePlanes(0, 0);
  for (std::size_t y = 0; y < height; ++y)
    for (std::size_t x = 0; x < width; ++x) {
      planes.r.push_back(static_cast<std::uint16_t>(1023 * x / width));
      planes.g.push_back(static_cast<std::uint16_t>(1023 * y / height));
      planes.b.push_back(static_cast<std::uint16_t>(511 * (x + height - y) / (width + height)));
    }
  return planes;
}

}  // namespace greycard
