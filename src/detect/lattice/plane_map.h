#pragma once

#include <array>
#include <cstddef>
#include <optional>
#include <span>
#include <vector>

#include "greycard/picture.h"
#include "greycard/types.h"

namespace greycard {

/// The lens of a picture: a point at radius r from the centre, as a share of the reference radius,
/// is seen where an undistorted picture would have r (1 + radial r^2).
struct LensFrame {
  Point2 centre;        ///< of the picture
  double radius = 1.0;  ///< half the picture's diagonal, pixels
};
/// Of an uncut picture.
LensFrame lensOf(const Picture& picture);

/// A plane seen through a camera: plane (u, v) to picture, by a homography and a radial distortion.
class PlaneMap {
 public:
  PlaneMap() = default;
  PlaneMap(const Matrix3& homography, double radial, const LensFrame& lens)
      : homography_(homography), radial_(radial), lens_(lens) {}

  /// Not finite, or far off, where the plane is seen edge on or from behind.
  Point2 operator()(double u, double v) const;
  Point2 operator()(const Point2& p) const { return (*this)(p.x, p.y); }

  /// Whether the plane faces the camera at this point: its depth there is above 0.
  bool sees(double u, double v) const;

  /// The map of another plane whose point (u, v) is this one's origin + u along + v down.
  PlaneMap relabelled(const Point2& origin, const Point2& along, const Point2& down) const;

  const Matrix3& homography() const { return homography_; }
  double radial() const { return radial_; }
  const LensFrame& lens() const { return lens_; }

  /// Mean length of a step of 1 along u and v at this point, in pixels.
  double pitchAt(double u, double v) const;

 private:
  Matrix3 homography_{{{1.0, 0.0, 0.0}, {0.0, 1.0, 0.0}, {0.0, 0.0, 1.0}}};
  double radial_ = 0.0;
  LensFrame lens_;
};

/// A point of the plane and where it is seen.
struct PlanePoint {
  Point2 plane, seen;
};

/// The point that is farthest from where the map has it, in steps of 1 of the plane.
struct WorstPoint {
  std::size_t number = 0;
  double pitchesOff = 0.0;
};
WorstPoint worstPoint(std::span<const PlanePoint> points, const PlaneMap& map);

/// The corners of the square with centre (u, v) and half side `half`: the plane's upper left, upper
/// right, lower right, lower left.
std::array<Point2, 4> squareCorners(const PlaneMap& map, double u, double v, double half);

/// The map that fits the points best: linear least squares for the homography, the perspective
/// terms pulled slightly to 0; the radial term by a search in one dimension where at least 12
/// points ask for it clearly. Empty for fewer than 4 points or a degenerate set.
std::optional<PlaneMap> fitPlane(std::span<const PlanePoint> points, const LensFrame& lens,
                                 bool withRadial);

}  // namespace greycard
