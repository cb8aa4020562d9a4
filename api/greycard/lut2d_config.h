#pragma once
/// \file
/// \ingroup contract

#include <array>
#include <cstddef>
#include <cstdint>

namespace greycard {

/// Hue rows and saturation columns of a hue/saturation table. The coordinates and the processing
/// record have one more row: it repeats row 0 one turn later, so that interpolation runs across
/// 360 degrees.
inline constexpr std::size_t kLut2dHueRows = 24, kLut2dSatColumns = 16;
inline constexpr std::size_t kLut2dNodes = kLut2dHueRows * kLut2dSatColumns;

/// A hue/saturation table as a host edits it. Everything starts at zero, which is not a usable
/// table: rows and columns need coordinates that increase.
struct Lut2DConfig {
  std::uint8_t enabled = 0;          ///< carried for the host; the library does not look at it
  std::int32_t hs_lut_bank_sel = 0;  ///< carried for the host

  /// Hue of each row in degrees; row 0 is 0 and row 24 is 360.
  std::array<double, kLut2dHueRows + 1> lut_1d_h{};
  /// Saturation of each column, 0..1.
  std::array<double, kLut2dSatColumns> lut_1d_s{};
  /// Hue change at each node in degrees, entry 16 * row + column. Colours move by the change.
  std::array<double, kLut2dNodes> lut_2d_h{};
  /// Saturation change at each node, 1 = full saturation; same order.
  std::array<double, kLut2dNodes> lut_2d_s{};

  /// Bits by which the 10-bit entries are coarser than 1/2048 of 60 degrees, 0..24: with shift n
  /// a change reaches up to about 15 * 2^n degrees.
  float h_shift = 0.0F;
  /// The same for saturation: up to about 0.25 * 2^n.
  float s_shift = 0.0F;

  // Lightness (mean of the largest and the smallest component, 0..1) limits the effect.
  float l_boundary_start_a = 0.0F;  ///< where it begins to fade in
  float l_boundary_start_b = 0.0F;  ///< where it reaches full strength
  float l_boundary_end_a = 0.0F;    ///< where it begins to fade out
  float l_boundary_end_b = 0.0F;    ///< where and above which it is gone

  float y_blend_factor = 0.0F;  ///< how much of the input's luma is restored, 0..1 (1 = luma kept)

  float K_b_integer = 0.0F;           ///< carried for the host
  float K_r_integer = 0.0F;           ///< carried for the host
  float l_boundary_start_inv = 0.0F;  ///< carried for the host
  float l_boundary_end_inv = 0.0F;    ///< carried for the host

  /// Non-zero: CalInverseLut2dCfg replaces the changes by their inverse.
  float inverse_flag = 0.0F;

  bool operator==(const Lut2DConfig&) const = default;
};

}  // namespace greycard
