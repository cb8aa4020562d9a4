#pragma once

// A flat drawing of the chart for the detector's tests: known centres, no optics.

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>

#include "colour_distance.h"
#include "greycard/picture.h"
#include "greycard/types.h"

namespace greycard {

struct ChartPose {
  int width = 800, height = 600;
  double pitch = 70.0;              // pixels between neighbouring patches
  double turnDegrees = 0.0;         // clockwise
  double tiltX = 0.0, tiltY = 0.0;  // perspective: relative shrinking per pitch
  double x = 400.0, y = 300.0;      // where the chart's centre goes
};

inline Point2 project(const ChartPose& pose, double u, double v) {
  const double angle = pose.turnDegrees * std::numbers::pi / 180.0;
  const double w = 1.0 + pose.tiltX * u + pose.tiltY * v;
  const double c = std::cos(angle), s = std::sin(angle);
  return {pose.x + pose.pitch * (c * u - s * v) / w, pose.y + pose.pitch * (s * u + c * v) / w};
}

// The chart's coordinates (in pitches from its centre) of a picture point: the inverse of project.
inline Point2 unproject(const ChartPose& pose, double x, double y) {
  const double angle = pose.turnDegrees * std::numbers::pi / 180.0;
  const double c = std::cos(angle), s = std::sin(angle);
  const double px = (x - pose.x) / pose.pitch, py = (y - pose.y) / pose.pitch;
  const double a = c * px + s * py, b = -s * px + c * py;  // u / w and v / w
  const double w = 1.0 / (1.0 - pose.tiltX * a - pose.tiltY * b);
  return {a * w, b * w};
}

inline std::array<Point2, kPatchCount> trueCentres(const ChartPose& pose) {
  std::array<Point2, kPatchCount> centres;
  for (int i = 0; i < kPatchCount; ++i)
    centres[static_cast<std::size_t>(i)] = project(pose, i % 6 - 2.5, i / 6 - 1.5);
  return centres;
}

// Draws into an R, G, B picture of 8 bits, four samples per pixel.
inline void drawChart(Picture& picture, const ChartPose& pose) {
  constexpr double kFrame[3] = {12.0, 12.0, 12.0}, kGap = 0.08, kMargin = 0.15;
  const auto colourAt = [&](double u, double v, int channel, double behind) {
    if (std::fabs(u) > 3.0 + kMargin || std::fabs(v) > 2.0 + kMargin) return behind;
    const double column = std::floor(u + 3.0), row = std::floor(v + 2.0);
    const double inX = u + 3.0 - column, inY = v + 2.0 - row;
    const bool patch = column >= 0.0 && column < 6.0 && row >= 0.0 && row < 4.0 && inX > kGap &&
                       inX < 1.0 - kGap && inY > kGap && inY < 1.0 - kGap;
    if (!patch) return kFrame[channel];
    const auto index = static_cast<std::size_t>(row * 6.0 + column);
    return kChartBgr[index][static_cast<std::size_t>(2 - channel)];
  };
  for (int y = 0; y < picture.height; ++y) {
    for (int x = 0; x < picture.width; ++x) {
      for (int channel = 0; channel < 3; ++channel) {
        auto& sample = picture.pixel(x, y)[channel];
        double sum = 0.0;
        for (const double dy : {-0.25, 0.25})
          for (const double dx : {-0.25, 0.25}) {
            const auto at = unproject(pose, x + dx, y + dy);
            sum += colourAt(at.x, at.y, channel, sample);
          }
        sample = static_cast<std::uint16_t>(std::lround(sum / 4.0));
      }
    }
  }
}

// Fills the rectangle from (left, top) up to (right, bottom) with a grey.
inline void paint(Picture& picture, int left, int top, int right, int bottom, int grey) {
  for (int y = top; y < bottom; ++y)
    std::fill(picture.pixel(left, y), picture.pixel(left, y) + 3 * (right - left),
              static_cast<std::uint16_t>(grey));
}

inline Picture backdrop(int width, int height) {
  Picture picture(width, height, 3, 8);
  paint(picture, 0, 0, width, height, 175);
  return picture;
}

inline Picture renderChart(const ChartPose& pose) {
  auto picture = backdrop(pose.width, pose.height);
  drawChart(picture, pose);
  return picture;
}

// Largest distance between points and centres.
inline double worstDistance(const std::array<Point2, kPatchCount>& a,
                            const std::array<Point2, kPatchCount>& b) {
  double worst = 0.0;
  for (std::size_t i = 0; i < a.size(); ++i)
    worst = std::max(worst, std::hypot(a[i].x - b[i].x, a[i].y - b[i].y));
  return worst;
}

}  // namespace greycard
