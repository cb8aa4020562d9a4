#pragma once

#include <array>
#include <opencv2/core.hpp>
#include <optional>
#include <vector>

namespace greycard {

using Quad = std::array<cv::Point, 4>;
using Contour = std::vector<cv::Point>;

/// A contour reduced to a convex, nearly square quadrilateral; empty when it is none: adjacent
/// sides must agree within 10 % (strictly), the area must exceed minSize pixels and two thirds of
/// the product of two sides, and neither diagonal may be under 15 % of the perimeter.
std::optional<Quad> find_quad(const Contour& sourceContour, int minSize);

/// Smallest rotated rectangle round the points, with its angle in [-90, 0) degrees.
cv::RotatedRect min_area_rect(cv::InputArray points);

/// Patch candidates of a mask.
struct QuadSearch {
  bool anyContour = false;
  std::vector<Quad> quads;
  std::vector<cv::RotatedRect> boxes;  ///< one per quad
};

/// Smallest area of a patch in an image of this size, in pixels.
int minimumQuadSize(cv::Size image);

/// The quads among the holes of the mask. `image` (8-bit B, G, R) only serves the debugger log.
QuadSearch find_quads(const cv::Mat& mask, const cv::Mat& image);

}  // namespace greycard
