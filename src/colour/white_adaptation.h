#pragma once

#include "double_matrix.h"
#include "greycard/types.h"

namespace greycard {

/// Von Kries adaptation of XYZ colours from one white to another in CAT02 cone space.
/// Source: CIE 159:2004 (CIECAM02), the chromatic adaptation step.
class DeltaECWhiteAdapt {
 public:
  /// \param D  degree of adaptation, 0 (none) to 1 (full)
  /// \throws NumericError when a white has no response in one of the cones
  DeltaECWhiteAdapt(const Vector3& pwhite_src, const Vector3& pwhite_dest, double D) {
    Init(pwhite_src, pwhite_dest, D);
  }
  void Init(const Vector3& pWXYZ_src, const Vector3& pWXYZ_dest, double D);
  void AdaptXYZ(Vector3& pXYZdest, const Vector3& pXYZsrc) const;

  /// Cone responses; the name is older than the choice of CAT02 for the matrix.
  static void XYZ2BFD(Vector3& pout, const Vector3& pin);
  static Matrix3 Matrix3x3Invert(const Matrix3& m);
  static Matrix3 Matrix3x3Multiply(const Matrix3& a, const Matrix3& b);

 private:
  Matrix3 adaptation_{};
};

}  // namespace greycard
