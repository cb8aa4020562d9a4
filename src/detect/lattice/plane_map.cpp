#include "lattice/plane_map.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <utility>

namespace greycard {
namespace {

constexpr std::size_t kTerms = 8;
constexpr double kPerspectivePull = 1e-4;  // per point, on terms of the centred, scaled problem
constexpr int kReweightings = 2;
constexpr std::size_t kFewestForRadial = 12;
constexpr double kStrongestRadial = 0.6;
constexpr double kStraight = 0.008;   // root mean square residual in pitches that asks for no lens
constexpr double kRadialPays = 0.85;  // of the residual, or the radial term is left out

using Row = std::array<double, kTerms + 1>;

// The radius in the picture at which undistorted radius `r` is seen: s (1 + k s^2) = r.
double seenRadius(double r, double k) {
  double s = r;
  for (int i = 0; i < 12; ++i) {
    const double slope = 1.0 + 3.0 * k * s * s;
    if (!(slope > 0.05)) return s;
    const double change = (s * (1.0 + k * s * s) - r) / slope;
    s = std::max(0.0, s - change);
    if (std::fabs(change) < 1e-12) break;
  }
  return s;
}

Point2 undistorted(const Point2& seen, double k, const LensFrame& lens) {
  const double x = (seen.x - lens.centre.x) / lens.radius,
               y = (seen.y - lens.centre.y) / lens.radius;
  const double factor = lens.radius * (1.0 + k * (x * x + y * y));
  return {lens.centre.x + x * factor, lens.centre.y + y * factor};
}

Point2 distorted(const Point2& p, double k, const LensFrame& lens) {
  if (k == 0.0) return p;
  const double x = p.x - lens.centre.x, y = p.y - lens.centre.y;
  const double r = std::sqrt(x * x + y * y) / lens.radius;
  if (!(r > 0.0)) return p;
  const double factor = seenRadius(r, k) / r;
  return {lens.centre.x + x * factor, lens.centre.y + y * factor};
}

// Gaussian elimination with column pivots. False when the equations don't determine the terms.
bool solve(std::array<Row, kTerms>& rows, std::array<double, kTerms>& terms) {
  for (std::size_t c = 0; c < kTerms; ++c) {
    std::size_t pivot = c;
    for (std::size_t r = c + 1; r < kTerms; ++r)
      if (std::fabs(rows[r][c]) > std::fabs(rows[pivot][c])) pivot = r;
    if (!(std::fabs(rows[pivot][c]) > 1e-10)) return false;
    std::swap(rows[c], rows[pivot]);
    for (std::size_t r = c + 1; r < kTerms; ++r) {
      const double factor = rows[r][c] / rows[c][c];
      for (std::size_t k = c; k <= kTerms; ++k) rows[r][k] -= factor * rows[c][k];
    }
  }
  for (std::size_t c = kTerms; c-- > 0;) {
    double value = rows[c][kTerms];
    for (std::size_t k = c + 1; k < kTerms; ++k) value -= rows[c][k] * terms[k];
    terms[c] = value / rows[c][c];
  }
  return true;
}

// Centre and scale that bring points near the unit square.
struct Frame {
  Point2 centre;
  double scale = 1.0;
  Point2 into(const Point2& p) const {
    return {(p.x - centre.x) / scale, (p.y - centre.y) / scale};
  }
};

template <typename Get>
Frame frameOf(std::span<const PlanePoint> points, Get get) {
  Frame frame;
  const auto n = static_cast<double>(points.size());
  for (const auto& p : points) {
    frame.centre.x += get(p).x / n;
    frame.centre.y += get(p).y / n;
  }
  double sum = 0.0;
  for (const auto& p : points)
    sum += std::hypot(get(p).x - frame.centre.x, get(p).y - frame.centre.y);
  frame.scale = std::max(sum / n, 1e-9);
  return frame;
}

Matrix3 product(const Matrix3& a, const Matrix3& b) {
  Matrix3 c{};
  for (std::size_t i = 0; i < 3; ++i)
    for (std::size_t j = 0; j < 3; ++j)
      for (std::size_t k = 0; k < 3; ++k) c[i][j] += a[i][k] * b[k][j];
  return c;
}

// Adds weight * (row . terms = right)^2 to the normal equations.
void addEquation(std::array<Row, kTerms>& normal, const Row& row, double weight) {
  for (std::size_t i = 0; i < kTerms; ++i)
    for (std::size_t j = 0; j <= kTerms; ++j) normal[i][j] += weight * row[i] * row[j];
}

std::optional<Matrix3> fitHomography(std::span<const PlanePoint> points) {
  const Frame from = frameOf(points, [](const PlanePoint& p) { return p.plane; });
  const Frame to = frameOf(points, [](const PlanePoint& p) { return p.seen; });
  std::array<double, kTerms> h{};
  for (int pass = 0; pass < kReweightings; ++pass) {
    std::array<Row, kTerms> normal{};
    for (const auto& point : points) {
      const auto p = from.into(point.plane), q = to.into(point.seen);
      // The equation holds the depth w as a factor; its square leaves with the weight.
      const double w = h[6] * p.x + h[7] * p.y + 1.0;
      const double weight = 1.0 / std::max(w * w, 1e-3);
      addEquation(normal, {p.x, p.y, 1.0, 0.0, 0.0, 0.0, -q.x * p.x, -q.x * p.y, q.x}, weight);
      addEquation(normal, {0.0, 0.0, 0.0, p.x, p.y, 1.0, -q.y * p.x, -q.y * p.y, q.y}, weight);
    }
    for (const std::size_t c : {6U, 7U})
      normal[c][c] += kPerspectivePull * static_cast<double>(points.size());
    if (!solve(normal, h)) return std::nullopt;
  }
  const Matrix3 core{{{h[0], h[1], h[2]}, {h[3], h[4], h[5]}, {h[6], h[7], 1.0}}};
  const Matrix3 into{{{1.0 / from.scale, 0.0, -from.centre.x / from.scale},
                      {0.0, 1.0 / from.scale, -from.centre.y / from.scale},
                      {0.0, 0.0, 1.0}}};
  const Matrix3 back{{{to.scale, 0.0, to.centre.x}, {0.0, to.scale, to.centre.y}, {0.0, 0.0, 1.0}}};
  return product(product(back, core), into);
}

// The best map with a given radial term, and its sum of squared residuals in the picture.
struct Fit {
  PlaneMap map;
  double residual = 0.0;
};

std::optional<Fit> fitWith(std::span<const PlanePoint> points, const LensFrame& lens,
                           double radial) {
  std::vector<PlanePoint> straight(points.begin(), points.end());
  if (radial != 0.0)
    for (auto& p : straight) p.seen = undistorted(p.seen, radial, lens);
  const auto homography = fitHomography(straight);
  if (!homography) return std::nullopt;
  Fit fit{PlaneMap(*homography, radial, lens), 0.0};
  for (const auto& p : points) {
    const auto at = fit.map(p.plane);
    fit.residual += (at.x - p.seen.x) * (at.x - p.seen.x) + (at.y - p.seen.y) * (at.y - p.seen.y);
  }
  if (!std::isfinite(fit.residual)) return std::nullopt;
  return fit;
}

// The residual is nearly a parabola in the radial term: its vertex through three trials, closer
// each time.
std::optional<Fit> fitRadial(std::span<const PlanePoint> points, const LensFrame& lens) {
  double middle = 0.0;
  for (const double step : {0.25, 0.05, 0.01}) {
    const auto left = fitWith(points, lens, middle - step),
               right = fitWith(points, lens, middle + step);
    const auto here = fitWith(points, lens, middle);
    if (!left || !right || !here) return std::nullopt;
    const double bend = left->residual - 2.0 * here->residual + right->residual;
    if (!(bend > 0.0)) return std::nullopt;
    const double shift = 0.5 * step * (left->residual - right->residual) / bend;
    middle = std::clamp(middle + std::clamp(shift, -3.0 * step, 3.0 * step), -kStrongestRadial,
                        kStrongestRadial);
  }
  return fitWith(points, lens, middle);
}

}  // namespace

LensFrame lensOf(const Picture& picture) {
  return {{0.5 * (picture.width - 1), 0.5 * (picture.height - 1)},
          0.5 * std::hypot(picture.width, picture.height)};
}

Point2 PlaneMap::operator()(double u, double v) const {
  const auto& m = homography_;
  const double w = m[2][0] * u + m[2][1] * v + m[2][2];
  return distorted(
      {(m[0][0] * u + m[0][1] * v + m[0][2]) / w, (m[1][0] * u + m[1][1] * v + m[1][2]) / w},
      radial_, lens_);
}

bool PlaneMap::sees(double u, double v) const {
  const auto& m = homography_;
  return m[2][0] * u + m[2][1] * v + m[2][2] > 0.0;
}

PlaneMap PlaneMap::relabelled(const Point2& origin, const Point2& along, const Point2& down) const {
  const Matrix3 inside{{{along.x, down.x, origin.x}, {along.y, down.y, origin.y}, {0.0, 0.0, 1.0}}};
  auto homography = product(homography_, inside);
  const double scale = homography[2][2];
  if (scale > 0.0)
    for (auto& row : homography)
      for (double& value : row) value /= scale;
  return {homography, radial_, lens_};
}

double PlaneMap::pitchAt(double u, double v) const {
  const auto left = (*this)(u - 0.5, v), right = (*this)(u + 0.5, v);
  const auto top = (*this)(u, v - 0.5), bottom = (*this)(u, v + 0.5);
  return 0.5 * (std::hypot(right.x - left.x, right.y - left.y) +
                std::hypot(bottom.x - top.x, bottom.y - top.y));
}

WorstPoint worstPoint(std::span<const PlanePoint> points, const PlaneMap& map) {
  WorstPoint worst;
  for (std::size_t n = 0; n < points.size(); ++n) {
    const auto& p = points[n];
    const auto seen = map(p.plane);
    const double off =
        std::hypot(seen.x - p.seen.x, seen.y - p.seen.y) / map.pitchAt(p.plane.x, p.plane.y);
    if (off > worst.pitchesOff) worst = {n, off};
  }
  return worst;
}

std::array<Point2, 4> squareCorners(const PlaneMap& map, double u, double v, double half) {
  return {map(u - half, v - half), map(u + half, v - half), map(u + half, v + half),
          map(u - half, v + half)};
}

std::optional<PlaneMap> fitPlane(std::span<const PlanePoint> points, const LensFrame& lens,
                                 bool withRadial) {
  if (points.size() < 4) return std::nullopt;
  auto plain = fitWith(points, lens, 0.0);
  if (!plain) return std::nullopt;
  const double allowed = kStraight * plain->map.pitchAt(points[0].plane.x, points[0].plane.y);
  const bool straight = plain->residual < allowed * allowed * static_cast<double>(points.size());
  if (!withRadial || straight || points.size() < kFewestForRadial) return plain->map;
  const auto bent = fitRadial(points, lens);
  const bool pays = bent && bent->residual < kRadialPays * plain->residual;
  return pays ? bent->map : plain->map;
}

}  // namespace greycard
