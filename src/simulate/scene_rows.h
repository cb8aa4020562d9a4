#pragma once

#include <cstddef>
#include <span>

#include "chart_geometry.h"
#include "scene_colours.h"

namespace greycard {

/// Paints the rows of the sharp, noise-free picture: flat colours with smooth edges.
class SceneRows {
 public:
  SceneRows(const ChartGeometry& geometry, const SceneColours& colours);

  /// Row y as R, G, B of each pixel; the pixel's colour is the mean over its area.
  void paint(int y, std::span<double> rgb) const;

 private:
  struct ChartPoint {
    double u, v;
    double perW;  // 1 / w
  };
  ChartPoint at(double x, double y) const;
  const Vector3& colourAt(double u, double v) const;
  const Vector3* flatColour(const ChartPoint& point) const;
  Vector3 meanColour(double x, double y) const;

  Matrix3 m_toChart;
  SceneColours m_colours;
};

}  // namespace greycard
