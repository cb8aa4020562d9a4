#include "normal_source.h"

#include <cmath>
#include <numbers>

namespace greycard {

// Box and Muller, Ann. Math. Statist. 29 (1958) 610. The standard library's own distribution may
// differ from one library to the next.
double NormalSource::next() {
  if (m_hasSpare) {
    m_hasSpare = false;
    return m_spare;
  }
  constexpr double kUnit = 0x1p-53;
  const double first = static_cast<double>((m_random() >> 11) + 1) * kUnit;  // above 0, up to 1
  const double angle = 2.0 * std::numbers::pi * static_cast<double>(m_random() >> 11) * kUnit;
  const double radius = std::sqrt(-2.0 * std::log(first));
  m_spare = radius * std::sin(angle);
  m_hasSpare = true;
  return radius * std::cos(angle);
}

}  // namespace greycard
