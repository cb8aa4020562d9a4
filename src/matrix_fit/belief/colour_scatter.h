#pragma once

#include <vector>

#include "greycard/types.h"

namespace greycard {

/// How much CIEDE2000 of colours scatters when the colours do, normally distributed. By draws, the
/// same ones every time: near the reference dE has no slope, and no normal distribution either.
class ColourScatter {
 public:
  ColourScatter();

  /// Standard deviation of dE from the reference of a colour with that covariance of L*, a*, b*.
  double deviation(const Vector3& referenceLab, const Vector3& lab,
                   const Matrix3& covariance) const;

 private:
  std::vector<Vector3> normal_;
};

}  // namespace greycard
