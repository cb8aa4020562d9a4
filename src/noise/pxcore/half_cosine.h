#pragma once

#include <cstdint>

namespace greycard::pxcore {

/// The half-cosine of n taps that add up to 1, in double precision.
class HalfCosine {
 public:
  explicit HalfCosine(std::uint64_t taps);

  std::uint64_t taps() const { return m_taps; }
  /// Angle from one tap to the next. The kernel is defined with a single-precision pi.
  double step() const { return m_step; }
  /// The value at tap i; at -1 and at `taps` it is the cosine's next sample, all but 0.
  double at(std::int64_t i) const;

 private:
  std::uint64_t m_taps;
  double m_step, m_scale = 1.0;
};

}  // namespace greycard::pxcore
