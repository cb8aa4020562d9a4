#include "sensor_noise.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace greycard {

SensorNoise::SensorNoise(double shot, double read, std::uint64_t seed)
    : m_shot2(shot * shot), m_read2(read * read), m_random(seed) {}

double SensorNoise::sigma(double value) const {
  return std::sqrt(m_shot2 * std::max(value, 0.0) + m_read2);
}

void SensorNoise::addTo(std::span<double> values) {
  if (m_shot2 == 0.0 && m_read2 == 0.0) return;
  for (double& value : values) value += sigma(value) * nextNormal();
}

// Box and Muller, Ann. Math. Statist. 29 (1958) 610. The standard library's own distribution may
// differ from one library to the next.
double SensorNoise::nextNormal() {
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
