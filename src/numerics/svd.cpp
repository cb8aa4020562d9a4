#include "svd.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

#include "numeric_error.h"

// Three stages on A scaled by a power of two to entries below 1 (so that no square overflows):
//   1. A = U B transpose(V) with B upper bidiagonal: diagonal d_0..d_{n-1}, superdiagonal
//      f_0..f_{n-2}, by Householder reflections from the left and the right in turn;
//   2. U and V built by applying the reflections to the identity, last one first;
//   3. QR steps with Wilkinson's shift on B until every f is negligible. A diagonal entry that
//      vanishes splits B after its row has been rotated away.

namespace greycard {
namespace {

constexpr int kMaxIterations = 30;
constexpr double kEpsilon = std::numeric_limits<double>::epsilon();

[[noreturn]] void noConvergence() {
  nrerror("no convergence in 30 svdcmp iterations");
}

struct Rotation {
  double c, s, r;
};
// c, s with c * y + s * z = r and c * z - s * y = 0.
Rotation rotationFor(double y, double z) {
  const double r = std::hypot(y, z);
  return r == 0.0 ? Rotation{1.0, 0.0, 0.0} : Rotation{y / r, z / r, r};
}

// Columns i and j of m become c * col_i + s * col_j and c * col_j - s * col_i.
void rotateColumns(CDoubleMatrix& m, std::int32_t i, std::int32_t j, const Rotation& g) {
  for (std::int32_t row = 0; row < m.rows(); ++row) {
    const double a = m[row][i], b = m[row][j];
    m[row][i] = g.c * a + g.s * b;
    m[row][j] = g.c * b - g.s * a;
  }
}

// What is below this is rounding in a matrix of entries up to 1; its reflection would overflow.
constexpr double kNoNorm2 = 1e-280;

// Reflection I - beta v transpose(v) that takes x to (alpha, 0, ..., 0). x becomes v.
struct Reflection {
  double beta, alpha;
};
template <typename At>
Reflection makeReflection(std::int32_t begin, std::int32_t end, At x) {
  double norm2 = 0.0;
  for (std::int32_t i = begin; i < end; ++i) norm2 += x(i) * x(i);
  if (norm2 < kNoNorm2) return {0.0, 0.0};
  const double alpha = -std::copysign(std::sqrt(norm2), x(begin));
  x(begin) -= alpha;
  // transpose(v) v = 2 (norm2 - alpha x_begin), with x_begin - alpha already stored.
  return {-1.0 / (alpha * x(begin)), alpha};
}

class Decomposer {
 public:
  explicit Decomposer(CDoubleMatrix a)
      : n_(a.cols()),
        a_(std::move(a)),
        left_(size(n_)),
        right_(size(n_)),
        d_(size(n_)),
        f_(size(n_)) {}

  void run() {
    bidiagonalise();
    accumulate();
    for (std::int32_t k = n_ - 1; k >= 0; --k) settle(k);
  }

  SingularValues result(std::int32_t rows, double scale) {
    SingularValues out{CDoubleMatrix(rows, n_), {}, std::move(v_)};
    std::copy(u_.data(), u_.data() + out.u.size(), out.u.data());
    for (const double value : d_) out.w.push_back(value * scale);
    return out;
  }

 private:
  static std::size_t size(std::int32_t n) { return static_cast<std::size_t>(n); }
  double& d(std::int32_t i) { return d_[size(i)]; }
  double& f(std::int32_t i) { return f_[size(i)]; }

  // Rows k.. of the columns from..  -=  beta v (transpose(v) column), v in column k of a_.
  void reflectFromLeft(CDoubleMatrix& m, std::int32_t k, std::int32_t from) {
    for (std::int32_t col = from; col < m.cols(); ++col) {
      double sum = 0.0;
      for (std::int32_t i = k; i < a_.rows(); ++i) sum += a_[i][k] * m[i][col];
      sum *= left_[size(k)];
      for (std::int32_t i = k; i < a_.rows(); ++i) m[i][col] -= sum * a_[i][k];
    }
  }

  void bidiagonalise() {
    for (std::int32_t k = 0; k < n_; ++k) {
      const auto column = [&](std::int32_t i) -> double& { return a_[i][k]; };
      const Reflection fromLeft = makeReflection(k, a_.rows(), column);
      left_[size(k)] = fromLeft.beta;
      d(k) = fromLeft.alpha;
      reflectFromLeft(a_, k, k + 1);

      if (k + 1 >= n_) continue;
      const auto row = [&](std::int32_t j) -> double& { return a_[k][j]; };
      const Reflection fromRight = makeReflection(k + 1, n_, row);
      right_[size(k)] = fromRight.beta;
      f(k) = fromRight.alpha;
      for (std::int32_t i = k + 1; i < a_.rows(); ++i) {
        double sum = 0.0;
        for (std::int32_t j = k + 1; j < n_; ++j) sum += a_[i][j] * a_[k][j];
        sum *= fromRight.beta;
        for (std::int32_t j = k + 1; j < n_; ++j) a_[i][j] -= sum * a_[k][j];
      }
    }
  }

  void accumulate() {
    u_ = CDoubleMatrix(a_.rows(), n_);
    v_ = CDoubleMatrix(n_, n_);
    for (std::int32_t i = 0; i < n_; ++i) u_[i][i] = v_[i][i] = 1.0;
    for (std::int32_t k = n_ - 1; k >= 0; --k) {
      reflectFromLeft(u_, k, k);
      for (std::int32_t col = k + 1; col < n_; ++col) {
        double sum = 0.0;
        for (std::int32_t j = k + 1; j < n_; ++j) sum += a_[k][j] * v_[j][col];
        sum *= right_[size(k)];
        for (std::int32_t j = k + 1; j < n_; ++j) v_[j][col] -= sum * a_[k][j];
      }
    }
  }

  // Iterates until f(k - 1) is negligible, then makes d(k) positive.
  void settle(std::int32_t k) {
    for (int iteration = 0;; ++iteration) {
      const std::int32_t start = activeBlock(k);
      if (start == k) break;
      if (iteration == kMaxIterations) noConvergence();
      qrStep(start, k);
    }
    if (d(k) < 0.0) {
      d(k) = -d(k);
      for (std::int32_t row = 0; row < n_; ++row) v_[row][k] = -v_[row][k];
    }
  }

  // First index of the unreduced block that ends at k; negligible entries on the way become 0.
  std::int32_t activeBlock(std::int32_t k) {
    for (std::int32_t i = k - 1; i >= 0; --i) {
      if (std::abs(f(i)) <= kEpsilon * (std::abs(d(i)) + std::abs(d(i + 1)))) {
        f(i) = 0.0;
        return i + 1;
      }
      if (std::abs(d(i)) <= kEpsilon * norm()) {
        rotateRowAway(i, k);
        return i + 1;
      }
    }
    return 0;
  }

  double norm() const {
    double largest = 0.0;
    for (std::size_t i = 0; i < d_.size(); ++i)
      largest = std::max(largest, std::abs(d_[i]) + std::abs(f_[i]));
    return largest;
  }

  // With d(i) = 0, row i of B holds f(i) alone: rotations with the rows below move it out to the
  // right.
  void rotateRowAway(std::int32_t i, std::int32_t k) {
    d(i) = 0.0;
    double bulge = std::exchange(f(i), 0.0);
    for (std::int32_t j = i + 1; j <= k && bulge != 0.0; ++j) {
      const Rotation g = rotationFor(d(j), bulge);
      d(j) = g.r;
      rotateColumns(u_, j, i, g);
      if (j == k) break;
      bulge = -g.s * f(j);
      f(j) *= g.c;
    }
  }

  // Eigenvalue of the last 2 x 2 block of transpose(B) B that is nearer to its last entry.
  double wilkinsonShift(std::int32_t start, std::int32_t k) {
    const double above = k - 1 > start ? f(k - 2) : 0.0;
    const double first = d(k - 1) * d(k - 1) + above * above;
    const double last = d(k) * d(k) + f(k - 1) * f(k - 1);
    const double off = d(k - 1) * f(k - 1);
    if (off == 0.0) return last;
    const double half = 0.5 * (first - last);
    return last - off * off / (half + std::copysign(std::hypot(half, off), half));
  }

  void qrStep(std::int32_t start, std::int32_t k) {
    double y = d(start) * d(start) - wilkinsonShift(start, k);
    double z = d(start) * f(start);
    for (std::int32_t i = start; i < k; ++i) {
      const Rotation right = rotationFor(y, z);
      if (i > start) f(i - 1) = right.r;
      y = right.c * d(i) + right.s * f(i);
      f(i) = right.c * f(i) - right.s * d(i);
      z = right.s * d(i + 1);
      d(i + 1) *= right.c;
      rotateColumns(v_, i, i + 1, right);

      const Rotation left = rotationFor(y, z);
      d(i) = left.r;
      y = left.c * f(i) + left.s * d(i + 1);
      d(i + 1) = left.c * d(i + 1) - left.s * f(i);
      f(i) = y;
      rotateColumns(u_, i, i + 1, left);
      if (i + 1 < k) {
        z = left.s * f(i + 1);
        f(i + 1) *= left.c;
      }
    }
  }

  std::int32_t n_;
  CDoubleMatrix a_;                   // reduced in place; keeps the reflection vectors
  std::vector<double> left_, right_;  // beta of each reflection
  std::vector<double> d_, f_;         // diagonal, superdiagonal of B
  CDoubleMatrix u_, v_;
};

}  // namespace

SingularValues svdcmp(const CDoubleMatrix& a) {
  double largest = 0.0;
  for (std::size_t i = 0; i < a.size(); ++i) {
    if (!std::isfinite(a.data()[i])) noConvergence();
    largest = std::max(largest, std::abs(a.data()[i]));
  }
  int exponent = 0;
  std::frexp(largest, &exponent);

  // A wide matrix gets rows of zeros below it; they add nothing and are cut off again at the end.
  CDoubleMatrix work(std::max(a.rows(), a.cols()), a.cols());
  for (std::size_t i = 0; i < a.size(); ++i) work.data()[i] = std::ldexp(a.data()[i], -exponent);
  Decomposer decomposer(std::move(work));
  decomposer.run();
  return decomposer.result(a.rows(), std::ldexp(1.0, exponent));
}

}  // namespace greycard
