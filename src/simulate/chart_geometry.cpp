#include "chart_geometry.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numbers>

#include "matrix3.h"
#include "patch_grid.h"

namespace greycard {
namespace {

constexpr double kCameraDistance = 18.0;  // pitches, three chart widths
constexpr double kDegree = std::numbers::pi / 180.0;

// The chart's plane through a pinhole camera, in units of the pitch, with the chart's centre at the
// origin. With Rz(rotation) Rx(tilt) Ry(yaw) the chart's own axes become the first two columns.
Matrix3 poseHomography(const SimulationSettings& s) {
  const double cr = std::cos(s.rotationDeg * kDegree), sr = std::sin(s.rotationDeg * kDegree);
  const double ct = std::cos(s.tiltDeg * kDegree), st = std::sin(s.tiltDeg * kDegree);
  const double cy = std::cos(s.yawDeg * kDegree), sy = std::sin(s.yawDeg * kDegree);
  // Before the rotation in the picture: x right, y down, z away from the camera.
  const Vector3 alongU{cy, st * sy, ct * sy};
  const Vector3 alongV{0.0, ct, -st};
  return {{{cr * alongU[0] - sr * alongU[1], cr * alongV[0] - sr * alongV[1], 0.0},
           {sr * alongU[0] + cr * alongU[1], sr * alongV[0] + cr * alongV[1], 0.0},
           {alongU[2] / kCameraDistance, alongV[2] / kCameraDistance, 1.0}}};
}

struct Box {
  double left, top, right, bottom;
};

Box frameBox(const Matrix3& homography) {
  constexpr double kInfinity = std::numeric_limits<double>::infinity();
  Box box{kInfinity, kInfinity, -kInfinity, -kInfinity};
  for (const double u : {-kMargin, kChartColumns + kMargin}) {
    for (const double v : {-kMargin, kChartRows + kMargin}) {
      const auto p = project(homography, {u, v});
      box = {std::min(box.left, p.x), std::min(box.top, p.y), std::max(box.right, p.x),
             std::max(box.bottom, p.y)};
    }
  }
  return box;
}

}  // namespace

ChartGeometry::ChartGeometry(const SimulationSettings& s) {
  const Matrix3 centred{
      {{1.0, 0.0, -0.5 * kChartColumns}, {0.0, 1.0, -0.5 * kChartRows}, {0.0, 0.0, 1.0}}};
  const Matrix3 pose = product(poseHomography(s), centred);
  const Box box = frameBox(pose);
  const double scale =
      s.sizeShare * std::min(s.width / (box.right - box.left), s.height / (box.bottom - box.top));
  // The box's centre goes to the picture's, which is the middle of its pixels' centres.
  const double x = 0.5 * (s.width - 1) + s.offsetX * s.width;
  const double y = 0.5 * (s.height - 1) + s.offsetY * s.height;
  const Matrix3 fit{{{scale, 0.0, x - scale * 0.5 * (box.left + box.right)},
                     {0.0, scale, y - scale * 0.5 * (box.top + box.bottom)},
                     {0.0, 0.0, 1.0}}};
  m_toPicture = product(fit, pose);
  m_toChart = inverse(m_toPicture);
}

Point2 ChartGeometry::toPicture(const Point2& chart) const {
  return project(m_toPicture, chart);
}

void ChartGeometry::describe(SimulationTruth& truth) const {
  double sides = 0.0;
  truth.sideRatio = 1.0;
  for (std::size_t i = 0; i < kPatchCount; ++i) {
    const double u = static_cast<double>(i % kChartColumns) + 0.5;
    const double v = static_cast<double>(i / kChartColumns) + 0.5;
    truth.centres[i] = toPicture({u, v});
    auto& corners = truth.corners[i];
    corners = {
        toPicture({u - kHalfPatch, v - kHalfPatch}), toPicture({u + kHalfPatch, v - kHalfPatch}),
        toPicture({u + kHalfPatch, v + kHalfPatch}), toPicture({u - kHalfPatch, v + kHalfPatch})};
    std::array<double, 4> side{};
    for (std::size_t k = 0; k < 4; ++k) side[k] = distance(corners[k], corners[(k + 1) % 4]);
    for (std::size_t k = 0; k < 4; ++k) {
      sides += side[k];
      const double ratio = side[k] / side[(k + 1) % 4];
      truth.sideRatio = std::max({truth.sideRatio, ratio, 1.0 / ratio});
    }
  }
  truth.patchSide = sides / (4 * kPatchCount);
  truth.pitch = meanPitch(truth.centres);
  const Point2& first = truth.centres.front();
  const Point2& last = truth.centres[kChartColumns - 1];
  const double turn = std::atan2(last.y - first.y, last.x - first.x) / kDegree;
  truth.turnDeg = turn < 0.0 ? turn + 360.0 : turn;
}

}  // namespace greycard
