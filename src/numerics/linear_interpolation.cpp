#include "linear_interpolation.h"

#include <cmath>
#include <limits>
#include <stdexcept>

namespace greycard {

template <typename T>
int nearestNeighbourIndex(std::span<const T> x, T value) {
  T best = std::numeric_limits<T>::max();
  std::size_t idx = 0;
  for (std::size_t i = 0; i < x.size(); ++i) {
    const T distance = std::abs(value - x[i]);
    if (distance <= best) {
      best = distance;
      idx = i;
    }
  }
  return static_cast<int>(idx);
}

template <typename T>
std::vector<T> interp1(std::span<const T> x, std::span<const T> y, std::span<const T> x_new) {
  if (x.size() < 2 || y.size() != x.size())
    throw std::invalid_argument("interp1 needs at least two points, each with an x and a y");
  const std::size_t last = x.size() - 1;
  std::vector<T> result;
  result.reserve(x_new.size());
  for (const T v : x_new) {
    const auto idx = static_cast<std::size_t>(nearestNeighbourIndex(x, v));
    const std::size_t left = x[idx] > v ? (idx > 0 ? idx - 1 : idx) : (idx < last ? idx : idx - 1);
    const T m = (y[left + 1] - y[left]) / (x[left + 1] - x[left]);
    const T b = y[idx] - x[idx] * m;
    result.push_back(v * m + b);
  }
  return result;
}

template int nearestNeighbourIndex<double>(std::span<const double>, double);
template std::vector<double> interp1<double>(std::span<const double>, std::span<const double>,
                                             std::span<const double>);

}  // namespace greycard
