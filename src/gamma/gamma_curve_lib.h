#pragma once

#include <cstdint>
#include <vector>

namespace greycard {

/// 0, 1 and 3 are the identity: the output is the input code. Other values leave the curve at zero.
enum class CurveType : std::int32_t {
  Linear = 0,
  Points = 1,
  Power = 2,
  Copy = 3,
  HLG = 4,
  HDR10 = 5
};

/// Standard transfer curves over a grid of integer input codes.
///
/// The grid is 0, 1, ... size - 1 times xScale; when size - 1 is a power of two its last code is
/// one less, so that it stays at full scale (255, 4095) and not one past it. Outputs are codes from
/// 0 to last * yScale / xScale, `last` being that last input. An entry that its formula doesn't
/// give (0/0 on a grid that ends at 0, the logarithm of a negative number) is 0.
class GammaCurveLib {
 public:
  /// Generates at once, except HDR10.
  GammaCurveLib(std::uint32_t size, CurveType type);

  /// Rescales the grid. The curve is left to the next generate...().
  /// \return false, with nothing changed, when s is not a power of two up to 2^30
  bool set_xScale(const unsigned& s);
  /// Rescales the curve. \return as set_xScale
  bool set_yScale(const unsigned& s);
  /// \param n  peak luminance of HDR10 in cd/m2
  /// \return false, with nothing changed, outside 1..10000
  bool set_maxNits(const unsigned long& n);

  /// The inverse EOTF of SMPTE ST 2084 (BT.2100 table 4) of input / last * maxNits cd/m2. Always
  /// true.
  bool generateByHDR10();
  /// The HLG OETF of BT.2100 table 5 (ARIB STD-B67) of input / last. Always true.
  bool generateByHLG();

  const std::vector<std::int32_t>& get_curve() const { return m_curve; }
  CurveType get_type() const { return m_type; }

 private:
  void generateByPower();
  template <typename Formula>
  void generate(const Formula& codeOf);
  bool lastIsLowered() const;

  std::vector<std::int64_t> m_grid;  // 64 bits, as 2^30 times an input code needs
  std::vector<std::int32_t> m_curve;
  std::uint32_t m_xScale = 1, m_yScale = 1;
  std::uint32_t m_maxNits = 10000;
  CurveType m_type;
};

}  // namespace greycard
