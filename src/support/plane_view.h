#pragma once

// Rows of samples in memory that somebody else owns, checked by asserts: what is outside the plane
// stops a debug build and costs a release build nothing.

#include <cassert>
#include <cstddef>
#include <span>

namespace greycard {

/// A plane of `width` x `height` elements, each row `stride` elements behind the one before.
template <typename T>
class PlaneView {
 public:
  PlaneView() = default;
  PlaneView(T* first, std::size_t width, std::size_t height, std::size_t stride)
      : m_first(first), m_width(width), m_height(height), m_stride(stride) {
    assert(stride >= width);
  }
  /// Rows without gaps.
  PlaneView(std::span<T> elements, std::size_t width, std::size_t height)
      : PlaneView(elements.data(), width, height, width) {
    assert(height == 0 || width <= elements.size() / height);
  }

  std::size_t width() const { return m_width; }
  std::size_t height() const { return m_height; }
  std::size_t stride() const { return m_stride; }

  std::span<T> row(std::size_t y) const {
    assert(y < m_height);
    return {m_first + y * m_stride, m_width};
  }
  /// The elements from `begin` to before `end` of a row.
  std::span<T> run(std::size_t y, std::size_t begin, std::size_t end) const {
    assert(begin <= end && end <= m_width);
    return row(y).subspan(begin, end - begin);
  }
  T& operator()(std::size_t x, std::size_t y) const {
    assert(x < m_width);
    return row(y)[x];
  }
  /// The rectangle of `width` x `height` elements whose upper left one is (x, y).
  PlaneView part(std::size_t x, std::size_t y, std::size_t width, std::size_t height) const {
    assert(x <= m_width && width <= m_width - x && y <= m_height && height <= m_height - y);
    PlaneView inner(*this);
    inner.m_first += y * m_stride + x;
    inner.m_width = width;
    inner.m_height = height;
    return inner;
  }

 private:
  T* m_first = nullptr;
  std::size_t m_width = 0, m_height = 0, m_stride = 0;
};

}  // namespace greycard
