#pragma once
/// \file
/// \ingroup own

#include <array>
#include <span>
#include <string>

#include "greycard/control_point.h"
#include "greycard/export.h"
#include "greycard/gamma_curve.h"

namespace greycard {

/// Bits and largest code of a curve's tables at the default settings of its model.
inline constexpr int kCurveBits = 14, kCurveMax = (1 << kCurveBits) - 1;

/// A channel of a curve as a user names it: All is the same as Red.
enum class CurveChannel { All, Red, Green, Blue };
/// The names, in that order.
inline constexpr std::array kCurveChannelNames{"all", "red", "green", "blue"};

/// The channel's table in the curve; empty when it is absent.
GREYCARD_EXPORT std::span<const std::int32_t> curveTable(const GammaCurve& curve,
                                                         CurveChannel channel = CurveChannel::All);
/// The same of a curve that must have one. \throws JobError that names the curve
GREYCARD_EXPORT std::span<const std::int32_t> wantedTable(const GammaCurve& curve,
                                                          CurveChannel channel = CurveChannel::All);
/// The channel's control points in the curve; empty when they are absent.
GREYCARD_EXPORT std::span<const ControlPoint> curvePoints(const GammaCurve& curve,
                                                          CurveChannel channel = CurveChannel::All);

/// A curve as a value: copies of its tables and control points.
struct CurveTables {
  struct Channel {
    GammaTable table;  ///< codes of kCurveBits bits
    ControlPointList points;
    bool operator==(const Channel&) const = default;
  };

  std::string name;
  bool unified = true;              ///< one table serves all channels
  std::array<Channel, 3> channels;  ///< red (or all), green, blue; unified: the first alone
  bool operator==(const CurveTables&) const = default;
};

/// \throws JobError for a curve with a table missing
GREYCARD_EXPORT CurveTables curveTables(const GammaCurve& curve);

}  // namespace greycard
