#include "greycard/awb_utils.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "matrix_functions.h"

namespace greycard {

// Each pair of points gives two of six equations in (a, b, c, d, e, f):
//   [x y 0 0 1 0]   X'
//   [0 0 x y 0 1] = Y'
AffineTransform AWBUtils::GetAffineTransform(const ReferencePoints& source,
                                             const ReferencePoints& target) const {
  CDoubleMatrix system(6, 6), targets(6, 1);
  for (std::int32_t k = 0; k < 3; ++k) {
    const auto& [x, y] = source[static_cast<std::size_t>(k)];
    double *const ofX = system[2 * k], *const ofY = system[2 * k + 1];
    ofX[0] = ofY[2] = x;
    ofX[1] = ofY[3] = y;
    ofX[4] = ofY[5] = 1.0;
    targets[2 * k][0] = target[static_cast<std::size_t>(k)].rg;
    targets[2 * k + 1][0] = target[static_cast<std::size_t>(k)].bg;
  }
  // By the inverse and not by elimination: a singular system gives minv's tiny pivots (deliberate).
  const CDoubleMatrix u = MatrixMultiply(minv(system), targets);
  return {u[0][0], u[1][0], u[2][0], u[3][0], u[4][0], u[5][0]};
}

bool AWBUtils::SpansPlane(const ReferencePoints& points) {
  double largest = 0.0;
  for (const auto& [x, y] : points) largest = std::max({largest, std::abs(x), std::abs(y)});
  const double ux = points[1].rg - points[0].rg, uy = points[1].bg - points[0].bg;
  const double vx = points[2].rg - points[0].rg, vy = points[2].bg - points[0].bg;
  const double longest = std::max(std::hypot(ux, uy), std::hypot(vx, vy));
  // In units of the longest side, so that no square leaves the range of a double. Coordinates that
  // are rounded to double move the doubled area by a few epsilons of the largest of them.
  const double doubledArea =
      std::abs(ux / longest * (vy / longest) - uy / longest * (vx / longest));
  const double rounding = 16.0 * std::numeric_limits<double>::epsilon() * (largest / longest);
  return doubledArea > rounding;
}

}  // namespace greycard
