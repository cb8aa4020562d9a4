#pragma once

// A run of pixels on its way through the hue/saturation table, stage by stage.

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

#include "lanes.h"
#include "lut2d_tables.h"
#include "packed_nodes.h"

namespace greycard {

struct PixelBlock {
  static constexpr std::size_t kSize = 256;
  template <Lane T>
  using Lanes = std::array<T, kSize>;

  /// Samples above 1023 count as 1023.
  struct Planes {
    std::span<std::uint16_t, kSize> r, g, b;
  };

  alignas(16) Lanes<SampleLane> lightness;  ///< largest plus smallest sample
  alignas(16) Lanes<HueLane> hue;
  alignas(16) Lanes<ShareLane> sat;
  // Between the parts of lookUp.
  alignas(16) Lanes<HueLane> hueChange;
  alignas(16) Lanes<ShareLane> satChange;

  /// Samples -> lightness, hue, sat
  void toHueSat(const Planes& samples);
  /// hue and sat moved by the table. The two give the same results where both can be used.
  void lookUp(const PackedNodes& nodes);
  void lookUpPlainly(const LutTables& tables);
  /// hue, sat, lightness -> samples, with a share of the old ones' luma
  void toRgb(const Planes& samples, std::int32_t yBlend);

 private:
  template <typename OffsetOf>
  void rebuild(const Planes& samples, OffsetOf offsetOf);
};

}  // namespace greycard
