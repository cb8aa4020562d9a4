#pragma once

#include <cstdint>
#include <span>

#include "normal_source.h"

namespace greycard {

/// Normally distributed noise whose variance grows with the light, as that of counted photons does:
/// sigma(x)^2 = shot^2 x + read^2, all as shares of full scale.
class SensorNoise {
 public:
  SensorNoise(double shot, double read, std::uint64_t seed);

  double sigma(double value) const;
  /// Adds noise to each value; none at all when both parts are 0.
  void addTo(std::span<double> values);

 private:
  double m_shot2, m_read2;
  NormalSource m_normal;
};

}  // namespace greycard
