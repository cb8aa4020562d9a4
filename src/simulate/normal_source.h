#pragma once

#include <cstdint>
#include <random>

namespace greycard {

/// Normally distributed numbers of mean 0 and variance 1, the same for a seed with every standard
/// library.
class NormalSource {
 public:
  explicit NormalSource(std::uint64_t seed) : m_random(seed) {}
  double next();

 private:
  std::mt19937_64 m_random;
  double m_spare = 0.0;
  bool m_hasSpare = false;
};

}  // namespace greycard
