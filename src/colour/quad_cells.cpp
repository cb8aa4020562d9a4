#include "quad_cells.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace greycard {
namespace {

constexpr int kCells = 3, kKnots = kCells + 1;

// (x w, y w, w) = rows * (u, v, 1), with w = 1 at the first corner.
struct SquareToQuad {
  double a, b, c, d, e, f, g, h;

  explicit SquareToQuad(const PatchQuad& q) {
    const double dx1 = q[1].x - q[2].x, dx2 = q[3].x - q[2].x;
    const double dy1 = q[1].y - q[2].y, dy2 = q[3].y - q[2].y;
    const double sx = q[0].x - q[1].x + q[2].x - q[3].x, sy = q[0].y - q[1].y + q[2].y - q[3].y;
    const double area = dx1 * dy2 - dx2 * dy1;
    g = (sx * dy2 - dx2 * sy) / area;
    h = (dx1 * sy - sx * dy1) / area;
    a = q[1].x - q[0].x + g * q[1].x, b = q[3].x - q[0].x + h * q[3].x, c = q[0].x;
    d = q[1].y - q[0].y + g * q[1].y, e = q[3].y - q[0].y + h * q[3].y, f = q[0].y;
  }
  Point2 operator()(double u, double v) const {
    const double w = g * u + h * v + 1.0;
    return {(a * u + b * v + c) / w, (d * u + e * v + f) / w};
  }
};

int firstPixelFrom(double edge, int size) {
  return static_cast<int>(std::clamp(std::ceil(edge), 0.0, static_cast<double>(size)));
}

// Where the side crosses the row, computed from the upper end whichever way round it is given, so
// that cells on both sides of it get the same number.
double crossing(const Point2& p, const Point2& q, double y) {
  const bool swapped = q.y < p.y || (q.y == p.y && q.x < p.x);
  const auto &upper = swapped ? q : p, &lower = swapped ? p : q;
  return upper.x + (lower.x - upper.x) * (y - upper.y) / (lower.y - upper.y);
}

void addCell(const std::array<Point2, 4>& corners, int cell, int width, int height,
             std::vector<CellSpan>& spans) {
  const auto [top, bottom] = std::minmax_element(
      corners.begin(), corners.end(), [](const auto& p, const auto& q) { return p.y < q.y; });
  const int end = firstPixelFrom(bottom->y, height);
  for (int y = firstPixelFrom(top->y, height); y < end; ++y) {
    double left = HUGE_VAL, right = -HUGE_VAL;
    for (std::size_t k = 0; k < 4; ++k) {
      const auto &p = corners[k], &q = corners[(k + 1) % 4];
      // The upper end of a side belongs to it, the lower one does not.
      if ((p.y <= y) == (q.y <= y)) continue;
      const double x = crossing(p, q, y);
      left = std::min(left, x);
      right = std::max(right, x);
    }
    const int first = firstPixelFrom(left, width), past = firstPixelFrom(right, width);
    if (first < past) spans.push_back({cell, y, first, past});
  }
}

}  // namespace

void cellSpans(const PatchQuad& quad, double share, int width, int height,
               std::vector<CellSpan>& spans) {
  const SquareToQuad map(quad);
  std::array<std::array<Point2, kKnots>, kKnots> knots;
  const auto at = [share](std::size_t i) {
    return 0.5 + share * (static_cast<double>(i) / kCells - 0.5);
  };
  for (std::size_t j = 0; j < kKnots; ++j)
    for (std::size_t i = 0; i < kKnots; ++i) knots[j][i] = map(at(i), at(j));
  spans.clear();
  for (std::size_t j = 0; j < kCells; ++j)
    for (std::size_t i = 0; i < kCells; ++i)
      addCell({knots[j][i], knots[j][i + 1], knots[j + 1][i + 1], knots[j + 1][i]},
              static_cast<int>(j * kCells + i), width, height, spans);
}

PatchQuad middleOf(const PatchQuad& quad, double share) {
  const SquareToQuad map(quad);
  const double low = 0.5 - 0.5 * share, high = 0.5 + 0.5 * share;
  return {map(low, low), map(high, low), map(high, high), map(low, high)};
}

}  // namespace greycard
