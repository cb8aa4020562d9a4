#include "half_cosine.h"

#include <cmath>
#include <numbers>

namespace greycard::pxcore {

HalfCosine::HalfCosine(std::uint64_t taps)
    : m_taps(taps),
      m_step(static_cast<double>(std::numbers::pi_v<float>) / (static_cast<double>(taps) + 1.0)) {
  double sum = 0.0;
  for (std::int64_t i = 0; i < static_cast<std::int64_t>(taps); ++i) sum += at(i);
  m_scale = 1.0 / sum;
}

double HalfCosine::at(std::int64_t i) const {
  const double middle = 0.5 * (static_cast<double>(m_taps) - 1.0);
  return m_scale * std::cos((static_cast<double>(i) - middle) * m_step);
}

}  // namespace greycard::pxcore
