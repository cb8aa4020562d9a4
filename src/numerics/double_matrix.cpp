#include "double_matrix.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <limits>
#include <utility>

#include "greycard/errors.h"

namespace greycard {

CDoubleMatrix::CDoubleMatrix(double start, double step, double end) {
  const double count = std::floor((end - start) / step) + 1.0;
  if (!(count <= std::numeric_limits<std::int32_t>::max()))
    throw ShapeError("a range needs a start, a step other than 0 and an end that are numbers");
  if (count < 1.0) return;
  Init(static_cast<std::int32_t>(count), 1);
  for (std::int32_t i = 0; i < m_.rows; ++i)
    m_.data[static_cast<std::size_t>(i)] = start + i * step;
}

CDoubleMatrix::CDoubleMatrix(const CDoubleMatrix& source) {
  *this = source;
}
CDoubleMatrix::CDoubleMatrix(CDoubleMatrix&& source) noexcept {
  takeOver(source.m_);
}

CDoubleMatrix& CDoubleMatrix::operator=(const CDoubleMatrix& source) {
  if (this == &source) return *this;
  if (source.m_.temporary) {
    takeOver(source.m_);
  } else {
    m_.rows = source.m_.rows;
    m_.cols = source.m_.cols;
    m_.data = source.m_.data;
  }
  return *this;
}

CDoubleMatrix& CDoubleMatrix::operator=(CDoubleMatrix&& source) noexcept {
  if (this != &source) takeOver(source.m_);
  return *this;
}

// The flag is no part of the storage: the receiver keeps its own, the source ends with all fields
// 0.
void CDoubleMatrix::takeOver(Fields& source) noexcept {
  m_.rows = source.rows;
  m_.cols = source.cols;
  m_.data = std::move(source.data);
  source = Fields{};
}

void CDoubleMatrix::Init(std::int32_t rows, std::int32_t cols) {
  if (rows < 1 || cols < 1) rows = cols = 0;
  if (rows == m_.rows && cols == m_.cols) return;
  m_.data.assign(static_cast<std::size_t>(rows) * static_cast<std::size_t>(cols), 0.0);
  m_.rows = rows;
  m_.cols = cols;
}

void CDoubleMatrix::Init(double value) {
  std::fill(m_.data.begin(), m_.data.end(), value);
}

void CDoubleMatrix::Init3x3(double a00, double a01, double a02, double a10, double a11, double a12,
                            double a20, double a21, double a22) {
  if (m_.rows != 3 || m_.cols != 3) throw ShapeError("Init3x3 needs a 3 x 3 matrix");
  m_.data = {a00, a01, a02, a10, a11, a12, a20, a21, a22};
}

void CDoubleMatrix::Transpose() {
  CDoubleMatrix transposed(m_.cols, m_.rows);
  for (std::int32_t r = 0; r < m_.rows; ++r)
    for (std::int32_t c = 0; c < m_.cols; ++c) transposed[c][r] = (*this)[r][c];
  takeOver(transposed.m_);
}

CDoubleMatrix& CDoubleMatrix::operator*=(double factor) {
  for (double& entry : m_.data) entry *= factor;
  return *this;
}

bool CDoubleMatrix::operator==(const CDoubleMatrix& other) const {
  return m_.rows == other.m_.rows && m_.cols == other.m_.cols &&
         (m_.data.empty() ||
          std::memcmp(m_.data.data(), other.m_.data.data(), m_.data.size() * sizeof(double)) == 0);
}

double dot(const CDoubleMatrix& a, const CDoubleMatrix& b) {
  if (b.size() < a.size())
    throw ShapeError("the second matrix of a dot product has too few entries");
  double sum = 0.0;
  for (std::size_t i = 0; i < a.size(); ++i) sum += a.data()[i] * b.data()[i];
  return sum;
}

CDoubleMatrix operator+(const CDoubleMatrix& a, double scalar) {
  CDoubleMatrix sum(a);
  for (std::size_t i = 0; i < sum.size(); ++i) sum.data()[i] += scalar;
  sum.setTemporary(true);
  return sum;
}

}  // namespace greycard
