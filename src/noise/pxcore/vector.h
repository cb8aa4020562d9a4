#pragma once

#include <cstddef>
#include <span>
#include <vector>

namespace greycard::pxcore {

/// A vector of numbers.
template <typename T>
class TVector {
 public:
  TVector() = default;
  explicit TVector(std::size_t size, T value = T{}) : m_values(size, value) {}

  std::size_t Length() const { return m_values.size(); }
  /// New elements get the value; those that stay keep theirs.
  void Resize(std::size_t size, T value = T{}) { m_values.resize(size, value); }
  T& operator[](std::size_t i) { return m_values[i]; }
  const T& operator[](std::size_t i) const { return m_values[i]; }
  operator std::span<const T>() const { return m_values; }
  bool operator==(const TVector&) const = default;

 private:
  std::vector<T> m_values;
};

}  // namespace greycard::pxcore
