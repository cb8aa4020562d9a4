#include "quads.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <opencv2/imgproc.hpp>
#include <string>
#include <utility>

#include "channels.h"
#include "colour_distance.h"
#include "patch_average.h"
#include "text.h"

namespace greycard {
namespace {

constexpr int kFirstAccuracy = 2, kLastAccuracy = 7;  // pixels
constexpr double kSideTolerance = 1.1;
constexpr double kLargestSidesToArea = 1.5;
constexpr double kSmallestDiagonalShare = 0.15;
constexpr std::int64_t kPatchesPerPicture = 2400;
constexpr double kLargestLabDistance = 444.0;  // above sqrt(3) * 255

// The polygon of the first accuracy that leaves four vertices, else that of the last accuracy.
// Approximating twice takes away the vertex that the walk happened to start from.
Contour approximate(const Contour& contour) {
  Contour polygon;
  for (int accuracy = kFirstAccuracy; accuracy <= kLastAccuracy; ++accuracy) {
    cv::approxPolyDP(contour, polygon, accuracy, true);
    cv::approxPolyDP(polygon, polygon, accuracy, true);
    if (polygon.size() == 4) break;
  }
  return polygon;
}

// A remark for who tunes the search; nothing depends on it.
void logQuad(const Quad& quad, const cv::Mat& image) {
  if (!debugLogHasListener()) return;
  const auto mean = contour_average({quad.begin(), quad.end()}, image);
  double nearest = kLargestLabDistance;
  for (const auto& reference : colorchecker_srgb)
    nearest = std::min(nearest, euclidean_distance_lab(mean, reference));
  writeDebug(0, "DebugPrint",
             "quad at " + std::to_string(quad[0].x) + ", " + std::to_string(quad[0].y) +
                 ": nearest reference colour at " + formatFixed(nearest, 2));
}

}  // namespace

std::optional<Quad> find_quad(const Contour& sourceContour, int minSize) {
  const auto polygon = approximate(sourceContour);
  if (polygon.size() != 4 || !cv::isContourConvex(polygon)) return std::nullopt;

  const double perimeter = cv::arcLength(polygon, true);
  const double area = std::fabs(cv::contourArea(polygon));
  const double diagonal1 = euclidean_distance(polygon[0], polygon[2]);
  const double diagonal2 = euclidean_distance(polygon[1], polygon[3]);
  const double side1 = euclidean_distance(polygon[0], polygon[1]);
  const double side2 = euclidean_distance(polygon[1], polygon[2]);

  const bool square = side1 * kSideTolerance > side2 && side2 * kSideTolerance > side1;
  const bool full = side1 * side2 < area * kLargestSidesToArea && area > minSize;
  const bool open = diagonal1 >= kSmallestDiagonalShare * perimeter &&
                    diagonal2 >= kSmallestDiagonalShare * perimeter;
  if (!square || !full || !open) return std::nullopt;
  return Quad{polygon[0], polygon[1], polygon[2], polygon[3]};
}

cv::RotatedRect min_area_rect(cv::InputArray points) {
  auto box = cv::minAreaRect(points);
  // OpenCV counts the angle in (0, 90] since 4.5.1 (and any way round for points in one line); a
  // quarter turn back with width and height exchanged is the same rectangle.
  while (box.angle >= 0.0F) {
    box.angle -= 90.0F;
    std::swap(box.size.width, box.size.height);
  }
  while (box.angle < -90.0F) {
    box.angle += 90.0F;
    std::swap(box.size.width, box.size.height);
  }
  return box;
}

int minimumQuadSize(cv::Size image) {
  return static_cast<int>(std::int64_t{image.width} * image.height / kPatchesPerPicture);
}

QuadSearch find_quads(const cv::Mat& mask, const cv::Mat& image) {
  std::vector<Contour> contours;
  std::vector<cv::Vec4i> hierarchy;  // next, previous, first child, parent
  cv::findContours(mask, contours, hierarchy, cv::RETR_CCOMP, cv::CHAIN_APPROX_SIMPLE);

  QuadSearch found;
  found.anyContour = !contours.empty();
  const int minSize = minimumQuadSize(mask.size());
  for (std::size_t i = 0; i < contours.size(); ++i) {
    // In two levels every border with a parent is that of a hole.
    const bool hole = hierarchy[i][3] >= 0;
    if (!hole || cv::boundingRect(contours[i]).area() < minSize) continue;
    if (const auto quad = find_quad(contours[i], minSize)) {
      logQuad(*quad, image);
      found.quads.push_back(*quad);
      found.boxes.push_back(min_area_rect(*quad));
    }
  }
  return found;
}

}  // namespace greycard
