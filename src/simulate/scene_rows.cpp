#include "scene_rows.h"

#include <algorithm>
#include <cmath>

namespace greycard {
namespace {

constexpr double kHalfGap = 0.5 - kHalfPatch;
constexpr int kSubsamples = 8;  // per direction, at edges: 64 levels

// Whether the interval centre +- half lies between the patches of a direction with `cells` cells.
bool misses(double centre, double half, int cells) {
  if (centre + half < kHalfGap || centre - half > cells - kHalfGap) return true;
  return std::abs(centre - static_cast<int>(centre + 0.5)) + half < kHalfGap;
}

}  // namespace

SceneRows::SceneRows(const ChartGeometry& geometry, const SceneColours& colours)
    : m_toChart(geometry.toChart()), m_colours(colours) {}

SceneRows::ChartPoint SceneRows::at(double x, double y) const {
  const Matrix3& m = m_toChart;
  const double perW = 1.0 / (m[2][0] * x + m[2][1] * y + m[2][2]);
  return {(m[0][0] * x + m[0][1] * y + m[0][2]) * perW,
          (m[1][0] * x + m[1][1] * y + m[1][2]) * perW, perW};
}

const Vector3& SceneRows::colourAt(double u, double v) const {
  if (!(u >= -kMargin && u <= kChartColumns + kMargin && v >= -kMargin &&
        v <= kChartRows + kMargin))
    return m_colours.surround;
  const int column = std::clamp(static_cast<int>(u), 0, kChartColumns - 1);
  const int row = std::clamp(static_cast<int>(v), 0, kChartRows - 1);
  if (std::abs(u - column - 0.5) > kHalfPatch || std::abs(v - row - 0.5) > kHalfPatch)
    return m_colours.frame;
  return m_colours.patches[static_cast<std::size_t>(row * kChartColumns + column)];
}

// The colour of a pixel that no edge runs through; null when one might. The pixel's extent in chart
// coordinates comes from the mapping's derivatives at its centre, a little enlarged for what they
// change across it.
const Vector3* SceneRows::flatColour(const ChartPoint& p) const {
  const Matrix3& m = m_toChart;
  const double half = 0.51 * std::abs(p.perW);
  const double du = half * (std::abs(m[0][0] - p.u * m[2][0]) + std::abs(m[0][1] - p.u * m[2][1]));
  const double dv = half * (std::abs(m[1][0] - p.v * m[2][0]) + std::abs(m[1][1] - p.v * m[2][1]));
  // Of the chart's outline, and then of the frame inside it.
  const double outU = std::abs(p.u - 0.5 * kChartColumns) - (0.5 * kChartColumns + kMargin);
  const double outV = std::abs(p.v - 0.5 * kChartRows) - (0.5 * kChartRows + kMargin);
  if (outU > du || outV > dv) return &m_colours.surround;
  if (outU > -du || outV > -dv) return nullptr;
  if (misses(p.u, du, kChartColumns) || misses(p.v, dv, kChartRows)) return &m_colours.frame;
  const double inU = kHalfPatch - std::abs(p.u - static_cast<int>(p.u) - 0.5);
  const double inV = kHalfPatch - std::abs(p.v - static_cast<int>(p.v) - 0.5);
  return inU > du && inV > dv ? &colourAt(p.u, p.v) : nullptr;
}

Vector3 SceneRows::meanColour(double x, double y) const {
  Vector3 sum{};
  for (int j = 0; j < kSubsamples; ++j) {
    for (int i = 0; i < kSubsamples; ++i) {
      const auto p = at(x + (i + 0.5) / kSubsamples - 0.5, y + (j + 0.5) / kSubsamples - 0.5);
      const Vector3& colour = colourAt(p.u, p.v);
      for (std::size_t c = 0; c < 3; ++c) sum[c] += colour[c];
    }
  }
  for (double& value : sum) value /= kSubsamples * kSubsamples;
  return sum;
}

void SceneRows::paint(int y, std::span<double> rgb) const {
  for (std::size_t x = 0; 3 * x < rgb.size(); ++x) {
    const Vector3* flat = flatColour(at(static_cast<double>(x), y));
    const Vector3 colour = flat != nullptr ? *flat : meanColour(static_cast<double>(x), y);
    std::ranges::copy(colour, rgb.begin() + static_cast<std::ptrdiff_t>(3 * x));
  }
}

}  // namespace greycard
