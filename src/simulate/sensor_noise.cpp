#include "sensor_noise.h"

#include <algorithm>
#include <cmath>

namespace greycard {

SensorNoise::SensorNoise(double shot, double read, std::uint64_t seed)
    : m_shot2(shot * shot), m_read2(read * read), m_normal(seed) {}

double SensorNoise::sigma(double value) const {
  return std::sqrt(m_shot2 * std::max(value, 0.0) + m_read2);
}

void SensorNoise::addTo(std::span<double> values) {
  if (m_shot2 == 0.0 && m_read2 == 0.0) return;
  for (double& value : values) value += sigma(value) * m_normal.next();
}

}  // namespace greycard
