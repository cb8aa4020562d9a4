#pragma once

// The work area in which every tone curve is fitted and sampled.

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

#include "greycard/control_point.h"

namespace greycard {

/// Entries of a curve's working table.
inline constexpr std::size_t kCurveEntries = 1024;

/// A curve table comes with this many entries, or it is refused.
constexpr bool isCurveLength(std::size_t entries) {
  return entries == 64 || entries == 256 || entries == 512 || entries == kCurveEntries;
}

/// Fits natural cubic splines of up to 512 points and samples them; needs no heap.
///
/// Each sample is min(ceiling, trunc(v + 0.5)) of the spline's value v, trunc towards zero. That
/// the cap is one-sided and that values between -1.5 and -0.5 become 0 are deliberate. Values
/// outside 32 bits saturate; not-a-number (points that share an X inside the curve) becomes 0.
///
/// A refusal leaves the last fit and the destination as they were, an error leaves the destination.
class Interpolator {
 public:
  static constexpr std::size_t kCapacity = 512;

  explicit Interpolator(std::int32_t nMaxY) : m_nMaxY(nMaxY) {}

  /// Spline through the points scaled by (xFactor, yFactor), sampled at 0..1023 into aDest.
  /// \return false for no points, for more than 512, or unless aDest holds 1024 entries
  /// \throws NumericError("Bad xa input to routine splint") for a single point, or where
  ///         an evaluation lands on two points of equal X
  bool GenerateCurve(std::span<const ControlPoint> aPoints, std::int32_t xFactor,
                     std::int32_t yFactor, std::span<std::int32_t> aDest);

  /// Resamples a table of 64, 256, 512 or 1024 entries to 1024; one of 1024 is copied, without the
  /// cap.
  /// \return false for any other length
  bool InterpolateCurve(std::span<const std::int32_t> aSrc, std::span<std::int32_t> aDest);

  /// Spline through the points (px[i], py[i]), sampled at 0..aOut.size() - 1.
  /// \throws std::invalid_argument for more than 512 points or px and py of different lengths
  /// \throws NumericError as GenerateCurve
  void Interpolate(std::span<const double> px, std::span<const double> py,
                   std::span<std::int32_t> aOut);

  /// The last fitted spline at x, neither rounded nor capped; 0 before the first fit.
  double InterpolatePoint(double x) const;

 private:
  void fit(std::size_t n);
  void sample(std::span<std::int32_t> out) const;
  std::span<const double> abscissae() const { return std::span(m_x).first(m_n); }

  std::int32_t m_nMaxY;
  std::size_t m_n = 0;
  std::array<double, kCapacity> m_x{}, m_y{}, m_y2{};
};

}  // namespace greycard
