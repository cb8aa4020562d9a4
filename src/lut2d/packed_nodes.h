#pragma once

// The table's nodes arranged so that one 64-bit product interpolates hue and saturation together.

#include <array>
#include <cstdint>

#include "lanes.h"
#include "lut2d_tables.h"

namespace greycard {

/// The value in both halves of a word.
constexpr std::uint64_t both(std::uint64_t value) {
  return value | value << 32;
}

/// A change of hue in the lower and of saturation in the upper 32 bits of a word. Both are kept
/// above zero by a bias while they are worked on, so that no borrow crosses over.
class PackedNodes {
 public:
  /// \return false when the tables hold numbers for which 32 bits, or 16 for the resulting change,
  ///         do not suffice, or hues that no row holds: use the plain interpolation then
  bool build(const LutTables& tables);

  /// The changes for `hue`, `sat` and lightness sum: of saturation in the highest 16 bits, of hue
  /// in bits 16 to 31, there plus kHueOffset.
  std::uint64_t change(HueLane hue, ShareLane sat, SampleLane lightness) const {
    const SatCell& cell = m_satCell[static_cast<std::uint16_t>(sat)];
    const std::size_t row = m_rowOfHue[static_cast<std::uint16_t>(hue)];
    const std::uint64_t* node = m_node.data() + (row + cell.place);
    const auto h = static_cast<std::uint64_t>(static_cast<std::uint16_t>(hue));
    // Both without their fractions.
    const std::uint64_t a = (node[0] + node[1] * h) & kWhole;
    const std::uint64_t b = (node[2] + node[3] * h) & kWhole;
    const auto step =
        static_cast<std::uint64_t>(static_cast<std::int64_t>(b - a) >> kSatWeightBits);
    const std::uint64_t value = a + step * cell.weight + both(1 << (kHueWeightBits - 1));
    const auto fade = static_cast<std::uint64_t>(m_fade[static_cast<std::uint16_t>(lightness)]);
    return ((value >> (kHueWeightBits - kUp) & kFields) - both(kBias << kUp)) * fade +
           (both(1 << (kSatWeightBits - 1 + kUp)) + (std::uint64_t{kHueOffset} << 16));
  }
  static constexpr std::int32_t kHueOffset = 1 << 15;  // no borrow crosses into the upper half

 private:
  static constexpr int kUp = 16 - kSatWeightBits;  // brings a faded value to bit 16
  static constexpr std::uint64_t kBias = 1 << 17;
  static constexpr std::uint64_t kWhole = ~both((1 << kHueWeightBits) - 1);
  static constexpr std::uint64_t kFields = both(((1 << 18) - 1) << kUp);

  struct SatCell {
    std::uint16_t place, weight;  // of the left node in its row, of the right node
  };
  static std::uint64_t pack(std::int64_t hue, std::int64_t sat) {
    return static_cast<std::uint64_t>(hue) + (static_cast<std::uint64_t>(sat) << 32);
  }
  bool buildSatCells(const LutTables& tables);
  void buildNodes(const LutTables& tables);

  // Two words a node: across hue the value is start + slope * hue. Columns 16 and 17 are zeros, for
  // saturations below the first node. All that a look-up needs is in one place, which leaves the
  // compiler registers.
  static constexpr std::size_t kRowLength = 2 * (kLut2dSatColumns + 2);
  std::array<std::uint64_t, kLut2dHueRows * kRowLength> m_node;
  std::array<std::uint16_t, kHueCircle> m_rowOfHue;  // place of its first node
  decltype(LutTables::fade) m_fade;
  std::array<SatCell, kSatMax + 1> m_satCell;
};

}  // namespace greycard
