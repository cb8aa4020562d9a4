#pragma once

// Plain 2D arrays for code that does not need a matrix.

#include <cstddef>
#include <vector>

namespace greycard {

/// Row pointers over one contiguous zero-filled block; freed by free_MatrixType or when it goes.
template <typename T>
class MatrixType {
 public:
  MatrixType(std::size_t rows, std::size_t columns) : block_(rows * columns), rows_(rows) {
    for (std::size_t r = 0; r < rows; ++r) rows_[r] = block_.data() + r * columns;
  }
  MatrixType(const MatrixType&) = delete;
  MatrixType& operator=(const MatrixType&) = delete;
  MatrixType(MatrixType&&) noexcept = default;
  MatrixType& operator=(MatrixType&&) noexcept = default;
  ~MatrixType() = default;

  T* operator[](std::size_t row) { return rows_[row]; }
  const T* operator[](std::size_t row) const { return rows_[row]; }
  bool empty() const { return rows_.empty(); }

 private:
  std::vector<T> block_;
  std::vector<T*> rows_;
};

/// Releases the block and its row pointers.
template <typename T>
void free_MatrixType(MatrixType<T>& array) {
  array = MatrixType<T>(0, 0);
}

/// An n-element array of m-element arrays, all zero.
template <typename T>
std::vector<std::vector<T>> Create2DArray(std::size_t n, std::size_t m) {
  return std::vector<std::vector<T>>(n, std::vector<T>(m));
}

}  // namespace greycard
