#pragma once

// A run of pixels on its way through the hue/saturation table, stage by stage.

#include <array>
#include <cstddef>
#include <cstdint>

#include "lut2d_tables.h"
#include "packed_nodes.h"

namespace greycard {

struct PixelBlock {
  static constexpr std::size_t kSize = 256;
  using Lanes = std::array<std::int16_t, kSize>;

  /// Of kSize samples each. Those above 1023 count as 1023.
  struct Planes {
    std::uint16_t *r, *g, *b;
  };

  alignas(16) Lanes lightness;  ///< largest plus smallest sample
  alignas(16) Lanes hue, sat;
  alignas(16) Lanes hueChange, satChange;  ///< between the parts of lookUp

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
