#include "interpolator.h"

#include <algorithm>
#include <cmath>
#include <functional>
#include <stdexcept>

#include "integer_conversion.h"
#include "numeric_error.h"
#include "spline.h"

namespace greycard {
namespace {

std::int32_t toSample(double value, std::int32_t ceiling) {
  return std::min(ceiling, saturatingTruncate(value + 0.5));
}

// Whether the cubic stays well inside 32 bits over [from, to]; false when anything is not a number.
// a and b of its formula are linear, so |a| and |b| are largest at the ends.
bool fitsIntegers(const SplineCubic& cubic, double from, double to) {
  const double h = cubic.x1 - cubic.x0;
  const double r = std::max({std::abs(cubic.x1 - from), std::abs(cubic.x1 - to),
                             std::abs(from - cubic.x0), std::abs(to - cubic.x0)}) /
                   std::abs(h);
  const double bound = r * (std::abs(cubic.y0) + std::abs(cubic.y1)) +
                       (r * r * r + r) * (std::abs(cubic.m0) + std::abs(cubic.m1)) * h * h;
  return bound < 1e9;
}

// Every neighbouring pair in order; not-a-number is in order with nothing.
bool isAscending(std::span<const double> x) {
  return std::adjacent_find(x.begin(), x.end(), std::not_fn(std::less_equal<>())) == x.end();
}

}  // namespace

// A single point leaves the evaluation only a segment without width.
void Interpolator::fit(std::size_t n) {
  if (n < 2) nrerror(kBadAbscissae);
  m_n = n;
  std::array<double, kCapacity> work;
  spline(abscissae(), m_y, kNaturalEnd, kNaturalEnd, m_y2, work);
}

// The abscissae 0, 1, 2, ... increase, so the segments are walked; on ascending points that finds
// the same segment as the bisection does. Points in any other order are left to the bisection.
void Interpolator::sample(std::span<std::int32_t> out) const {
  const auto xa = abscissae();
  const auto count = static_cast<std::int32_t>(out.size());
  if (!isAscending(xa)) {
    for (std::int32_t i = 0; i < count; ++i)
      out[static_cast<std::size_t>(i)] = toSample(splint(xa, m_y, m_y2, i), m_nMaxY);
    return;
  }
  std::size_t klo = 0;
  for (std::int32_t i = 0; i < count;) {
    while (klo + 2 < m_n && xa[klo + 1] <= i) ++klo;
    const bool last = klo + 2 >= m_n || xa[klo + 1] >= count;
    const std::int32_t end = last ? count : static_cast<std::int32_t>(std::ceil(xa[klo + 1]));
    const SplineCubic cubic = splineCubic(xa, m_y, m_y2, klo);
    std::int32_t* const row = out.data();
    if (fitsIntegers(cubic, i, end)) {
      for (; i < end; ++i) {
        const double raised = cubic(i) + 0.5;
        row[i] = std::min(m_nMaxY, static_cast<std::int32_t>(raised));
      }
    } else {
      for (; i < end; ++i) row[i] = toSample(cubic(i), m_nMaxY);
    }
  }
}

bool Interpolator::GenerateCurve(std::span<const ControlPoint> aPoints, std::int32_t xFactor,
                                 std::int32_t yFactor, std::span<std::int32_t> aDest) {
  if (aDest.size() != kCurveEntries) return false;
  if (aPoints.empty() || aPoints.size() > kCapacity) return false;
  for (std::size_t k = 0; k < aPoints.size(); ++k) {
    m_x[k] = static_cast<double>(aPoints[k].X) * xFactor;
    m_y[k] = static_cast<double>(aPoints[k].Y) * yFactor;
  }
  fit(aPoints.size());
  std::array<std::int32_t, kCurveEntries> samples;
  sample(samples);
  std::copy(samples.begin(), samples.end(), aDest.begin());
  return true;
}

bool Interpolator::InterpolateCurve(std::span<const std::int32_t> aSrc,
                                    std::span<std::int32_t> aDest) {
  const std::size_t n = aSrc.size();
  if (!isCurveLength(n) || aDest.size() != kCurveEntries) return false;
  if (n == kCurveEntries) {
    std::copy(aSrc.begin(), aSrc.end(), aDest.begin());
    return true;
  }
  const std::size_t step = kCurveEntries / n;
  for (std::size_t i = 0; i < n; ++i) {
    m_x[i] = static_cast<double>(i * step);
    m_y[i] = aSrc[i];
  }
  fit(n);
  sample(aDest);
  return true;
}

void Interpolator::Interpolate(std::span<const double> px, std::span<const double> py,
                               std::span<std::int32_t> aOut) {
  if (px.size() > kCapacity || px.size() != py.size())
    throw std::invalid_argument(
        "a curve is fitted through at most 512 points, each with an x and a y");
  std::copy(px.begin(), px.end(), m_x.begin());
  std::copy(py.begin(), py.end(), m_y.begin());
  fit(px.size());
  sample(aOut);
}

double Interpolator::InterpolatePoint(double x) const {
  return m_n == 0 ? 0.0 : splint(abscissae(), m_y, m_y2, x);
}

}  // namespace greycard
