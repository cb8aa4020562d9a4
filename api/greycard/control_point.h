#pragma once
/// \file
/// \ingroup contract

#include <cstdint>
#include <memory>
#include <vector>

namespace greycard {

/// A point that a tone curve passes through, in downsampled units: X is a table index divided by
/// the model's XScale, Y a table value divided by its YScale (0..255 each at the default settings).
struct ControlPoint {
  std::int32_t X = 0, Y = 0;
  bool operator==(const ControlPoint&) const = default;
};

/// Points in the order given; nothing sorts them or drops repeated ones. The spline through them
/// requires X to increase strictly.
using ControlPointList = std::vector<ControlPoint>;
/// Shared between a curve and its host; null means absent, which differs from empty.
using ControlPointListPtr = std::shared_ptr<ControlPointList>;

}  // namespace greycard
