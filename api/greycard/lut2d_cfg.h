#pragma once
/// \file
/// \ingroup contract

#include <array>
#include <cstdint>

#include "greycard/lut2d_config.h"

namespace greycard {

/// A hue in degrees and a saturation times 256, or a change of both.
struct Lut2dPair {
  float h, s;
};

/// 25 hue rows of 16 saturation columns; row 24 belongs to 360 degrees.
using Lut2dGrid = std::array<std::array<Lut2dPair, kLut2dSatColumns>, kLut2dHueRows + 1>;

/// The record that the picture path and the inverse work on. Its layout is fixed: 32-bit words in
/// this order, without padding.
struct lut2d_cfg {
  std::uint32_t reserved;  ///< nothing reads it
  Lut2dGrid node;          ///< coordinates
  Lut2dGrid delta;         ///< changes: the picture path adds them to a colour's hue and saturation
  Lut2dGrid target;        ///< node - delta; the inverse looks for its triangles here
  float l_boundary_start_a, l_boundary_start_b, l_boundary_end_a, l_boundary_end_b;
  float y_blend_factor, h_shift, s_shift, inverse_flag;
};
static_assert(sizeof(lut2d_cfg) == 4 + 3 * 25 * 16 * 8 + 8 * 4);

}  // namespace greycard
