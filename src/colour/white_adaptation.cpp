#include "white_adaptation.h"

#include "colour_space.h"
#include "matrix_functions.h"
#include "numeric_error.h"
#include "table_conversion.h"

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
  adaptation_ = Matrix3x3Multiply(Matrix3x3Invert(kCone), Matrix3x3Multiply(diagonal, kCone));
}

void DeltaECWhiteAdapt::AdaptXYZ(Vector3& pXYZdest, const Vector3& pXYZsrc) const {
  pXYZdest = multiply(adaptation_, pXYZsrc);
}

void DeltaECWhiteAdapt::XYZ2BFD(Vector3& pout, const Vector3& pin) {
  pout = multiply(kCone, pin);
}

Matrix3 DeltaECWhiteAdapt::Matrix3x3Invert(const Matrix3& m) {
  return toMatrix3(minv(toMatrix(m)));
}

Matrix3 DeltaECWhiteAdapt::Matrix3x3Multiply(const Matrix3& a, const Matrix3& b) {
  Matrix3 product{};
  for (std::size_t i = 0; i < 3; ++i)
    for (std::size_t j = 0; j < 3; ++j)
      for (std::size_t k = 0; k < 3; ++k) product[i][j] += a[i][k] * b[k][j];
  return product;
}

}  // namespace greycard
