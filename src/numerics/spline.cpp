#include "spline.h"

#include <cassert>
#include <new>
#include <vector>

#include "greycard/errors.h"
#include "numeric_error.h"

namespace greycard {
// The second derivatives m_i solve the tridiagonal system
//   (x_i - x_{i-1}) m_{i-1} + 2 (x_{i+1} - x_{i-1}) m_i + (x_{i+1} - x_i) m_{i+1}
//     = 6 (s_i - s_{i-1})
// with s_i the slope of segment i. Forward elimination leaves m_i = y2_i m_{i+1} + work_i.
void spline(std::span<const double> x, std::span<const double> y, double yp1, double ypn,
            std::span<double> y2, std::span<double> work) {
  const std::size_t n = x.size();
  if (n < 2 || y.size() < n || y2.size() < n || work.size() < n)
    throw ShapeError("a spline needs at least two points and as many values as abscissae");
  const auto slope = [&](std::size_t i) { return (y[i + 1] - y[i]) / (x[i + 1] - x[i]); };

  if (yp1 > kNaturalEndAbove) {
    y2[0] = work[0] = 0.0;
  } else {
    y2[0] = -0.5;
    work[0] = (3.0 / (x[1] - x[0])) * (slope(0) - yp1);
  }
  for (std::size_t i = 1; i + 1 < n; ++i) {
    const double sig = (x[i] - x[i - 1]) / (x[i + 1] - x[i - 1]);
    const double p = sig * y2[i - 1] + 2.0;
    y2[i] = (sig - 1.0) / p;
    const double bend = slope(i) - slope(i - 1);
    work[i] = (6.0 * bend / (x[i + 1] - x[i - 1]) - sig * work[i - 1]) / p;
  }
  double qn = 0.0, un = 0.0;
  if (!(ypn > kNaturalEndAbove)) {
    qn = 0.5;
    un = (3.0 / (x[n - 1] - x[n - 2])) * (ypn - slope(n - 2));
  }
  y2[n - 1] = (un - qn * work[n - 2]) / (qn * y2[n - 2] + 1.0);
  for (std::size_t k = n - 1; k-- > 0;) y2[k] = y2[k] * y2[k + 1] + work[k];
}

void spline(std::span<const double> x, std::span<const double> y, double yp1, double ypn,
            std::span<double> y2) {
  std::vector<double> work;
  try {
    work.resize(x.size());
  } catch (const std::bad_alloc&) {
    nrerror("allocation failure in vector()");
  }
  spline(x, y, yp1, ypn, y2, work);
}

std::size_t splineSegment(std::span<const double> xa, double x) {
  assert(xa.size() >= 2);
  std::size_t klo = 0, khi = xa.size() - 1;
  while (khi - klo > 1) {
    const std::size_t k = (khi + klo) / 2;
    if (xa[k] > x)
      khi = k;
    else
      klo = k;
  }
  return klo;
}

SplineCubic splineCubic(std::span<const double> xa, std::span<const double> ya,
                        std::span<const double> y2a, std::size_t klo) {
  assert(klo + 1 < xa.size() && klo + 1 < ya.size() && klo + 1 < y2a.size());
  if (xa[klo + 1] - xa[klo] == 0.0) nrerror(kBadAbscissae);
  return {xa[klo], xa[klo + 1], ya[klo], ya[klo + 1], y2a[klo], y2a[klo + 1]};
}

double splint(std::span<const double> xa, std::span<const double> ya, std::span<const double> y2a,
              double x) {
  if (xa.size() < 2) nrerror(kBadAbscissae);
  return splineCubic(xa, ya, y2a, splineSegment(xa, x))(x);
}

}  // namespace greycard
