// interp1 and interp1_gamma: clamped cubic splines over matrix columns.

#include <span>
#include <vector>

#include "greycard/errors.h"
#include "matrix_functions.h"
#include "spline.h"

namespace greycard {
namespace {

// Added to both parts of an end slope, so that a flat or degenerate end stays finite.
constexpr double kSlopeGuard = 1e-14;

/// A clamped spline through one column of values.
class ColumnSpline {
 public:
  ColumnSpline(const CDoubleMatrix& x, const CDoubleMatrix& y, std::int32_t column)
      : x_(x.data(), x.size()), y_(x.size()), y2_(x.size()) {
    if (x.rows() < 2 || y.rows() != x.rows())
      throw ShapeError("interpolation needs at least two points and one value for each");
    for (std::int32_t i = 0; i < y.rows(); ++i) y_[static_cast<std::size_t>(i)] = y[i][column];
    const std::size_t n = x_.size();
    spline(x_, y_, endSlope(x_[0], y_[0], x_[1], y_[1]),
           endSlope(x_[n - 2], y_[n - 2], x_[n - 1], y_[n - 1]), y2_);
  }

  double at(double x) const { return splint(x_, y_, y2_, x); }

 private:
  std::span<const double> x_;
  std::vector<double> y_, y2_;
};

void requireColumn(const CDoubleMatrix& m, const char* message) {
  if (m.cols() != 1) throw ShapeError(message);
}

constexpr const char* kXNotColumn = "The x input should be a column vector";
constexpr const char* kCurveNotColumn = "input should be a column vector";

void evaluateColumn(const ColumnSpline& curve, const CDoubleMatrix& xi, std::int32_t from,
                    std::int32_t to, CDoubleMatrix& out) {
  for (std::int32_t i = 0; i < xi.rows(); ++i) out[i][to] = curve.at(xi[i][from]);
}

}  // namespace

double endSlope(double x0, double y0, double x1, double y1) {
  return (y1 - y0 + kSlopeGuard) / (x1 - x0 + kSlopeGuard);
}

CDoubleMatrix interp1(const CDoubleMatrix& x, const CDoubleMatrix& y, const CDoubleMatrix& xi) {
  requireColumn(x, kXNotColumn);
  CDoubleMatrix out(xi.rows(), y.cols());
  for (std::int32_t j = 0; j < y.cols(); ++j) evaluateColumn(ColumnSpline(x, y, j), xi, 0, j, out);
  return out;
}

CDoubleMatrix interp1_gamma(const CDoubleMatrix& x, const CDoubleMatrix& y,
                            const CDoubleMatrix& xi) {
  requireColumn(x, kXNotColumn);
  requireColumn(y, kCurveNotColumn);
  const ColumnSpline curve(x, y, 0);
  CDoubleMatrix out(xi.rows(), xi.cols());
  for (std::int32_t j = 0; j < xi.cols(); ++j) evaluateColumn(curve, xi, j, j, out);
  return out;
}

CDoubleMatrix interp1_gamma(const CDoubleMatrix& x, const CDoubleMatrix& yR,
                            const CDoubleMatrix& yG, const CDoubleMatrix& yB,
                            const CDoubleMatrix& xi) {
  requireColumn(x, kXNotColumn);
  const CDoubleMatrix* const curves[] = {&yR, &yG, &yB};
  for (const auto* curve : curves) requireColumn(*curve, kCurveNotColumn);
  CDoubleMatrix out(xi.rows(), xi.cols());
  for (std::int32_t j = 0; j < xi.cols(); ++j)
    evaluateColumn(ColumnSpline(x, *curves[j < 2 ? j : 2], 0), xi, j, j, out);
  return out;
}

}  // namespace greycard
