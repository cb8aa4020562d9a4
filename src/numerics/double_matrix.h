#pragma once

// The dense matrix of doubles that the colour code computes on.

#include <cassert>
#include <concepts>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace greycard {

/// Row-major, one contiguous block. Rows and columns are both >= 1, or both 0 with no storage.
///
/// The *temporary* flag marks an expiring intermediate: copying or assigning from a matrix whose
/// flag is set takes over its storage and leaves it empty, even through a const reference.
/// C++ moves stand beside it and do the same for any matrix.
class CDoubleMatrix {
 public:
  CDoubleMatrix() = default;
  /// Zero-filled; empty (0 x 0) when either size is below 1.
  CDoubleMatrix(std::int32_t rows, std::int32_t cols) { Init(rows, cols); }
  /// A strict bool, so that three numbers always mean the range below.
  CDoubleMatrix(std::int32_t rows, std::int32_t cols, std::same_as<bool> auto temporary) {
    m_.temporary = temporary;
    Init(rows, cols);
  }
  /// Column vector start, start + step, ... of floor((end - start) / step) + 1 rows; empty when
  /// that count is below 1. \throws ShapeError when the count is not a number or above 2^31 - 1
  CDoubleMatrix(double start, double step, double end);
  CDoubleMatrix(const CDoubleMatrix& source);
  CDoubleMatrix(CDoubleMatrix&& source) noexcept;
  CDoubleMatrix& operator=(const CDoubleMatrix& source);
  CDoubleMatrix& operator=(CDoubleMatrix&& source) noexcept;
  ~CDoubleMatrix() = default;

  std::int32_t rows() const { return m_.rows; }
  std::int32_t cols() const { return m_.cols; }
  std::size_t size() const { return m_.data.size(); }
  bool temporary() const { return m_.temporary; }
  void setTemporary(bool temporary) { m_.temporary = temporary; }

  /// An unchanged size keeps the entries; a new one gives zeros, or an empty matrix below 1.
  void Init(std::int32_t rows, std::int32_t cols);
  /// Every entry becomes `value`.
  void Init(double value);
  /// \throws ShapeError unless the matrix is 3 x 3
  void Init3x3(double a00, double a01, double a02, double a10, double a11, double a12, double a20,
               double a21, double a22);
  void Clear() { Init(0.0); }
  void Transpose();

  /// The row's entries; which row is checked by an assert.
  double* operator[](std::int32_t row) { return m_.data.data() + offset(row); }
  const double* operator[](std::int32_t row) const { return m_.data.data() + offset(row); }
  double* data() { return m_.data.data(); }
  const double* data() const { return m_.data.data(); }

  CDoubleMatrix& operator*=(double factor);
  /// Same shape and bitwise equal entries: 0.0 differs from -0.0, a NaN equals itself.
  bool operator==(const CDoubleMatrix& other) const;

 private:
  struct Fields {
    std::int32_t rows = 0, cols = 0;
    std::vector<double> data;
    bool temporary = false;
  };
  std::size_t offset(std::int32_t row) const {
    assert(row >= 0 && row < m_.rows);
    return static_cast<std::size_t>(row) * static_cast<std::size_t>(m_.cols);
  }
  void takeOver(Fields& source) noexcept;

  // Mutable because a temporary hands its storage over through a const reference.
  mutable Fields m_;
};

/// Sum of the products of corresponding entries in row-major order, over the entries of a.
/// \throws ShapeError when b has fewer entries than a
double dot(const CDoubleMatrix& a, const CDoubleMatrix& b);

/// Every entry increased by `scalar`; the result is marked temporary.
CDoubleMatrix operator+(const CDoubleMatrix& a, double scalar);

}  // namespace greycard
