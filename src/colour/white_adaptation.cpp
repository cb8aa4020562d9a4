#include "white_adaptation.h"

#include "matrix3.h"
#include "numeric_error.h"

namespace greycard {
namespace {

// CAT02 cone responses of XYZ.
constexpr Matrix3 kCone{
    {{0.7328, 0.4296, -0.1624}, {-0.7036, 1.6975, 0.0061}, {0.0030, 0.0136, 0.9834}}};

}  // namespace

void DeltaECWhiteAdapt::Init(const Vector3& pWXYZ_src, const Vector3& pWXYZ_dest, double D) {
  Vector3 source, destination;
  XYZ2BFD(source, pWXYZ_src);
  XYZ2BFD(destination, pWXYZ_dest);
  Matrix3 diagonal{};
  for (std::size_t c = 0; c < 3; ++c) {
    if (source[c] == 0.0) nrerror("a white without response in one of the cones can't be adapted");
    diagonal[c][c] = D * (destination[c] / source[c]) + (1.0 - D);
  }
  adaptation_ = product(inverse(kCone), product(diagonal, kCone));
}

void DeltaECWhiteAdapt::AdaptXYZ(Vector3& pXYZdest, const Vector3& pXYZsrc) const {
  pXYZdest = multiply(adaptation_, pXYZsrc);
}

void DeltaECWhiteAdapt::XYZ2BFD(Vector3& pout, const Vector3& pin) {
  pout = multiply(kCone, pin);
}

Matrix3 DeltaECWhiteAdapt::Matrix3x3Invert(const Matrix3& m) {
  return inverse(m);
}

Matrix3 DeltaECWhiteAdapt::Matrix3x3Multiply(const Matrix3& a, const Matrix3& b) {
  return product(a, b);
}

}  // namespace greycard
