#include "cie_xyz.h"

#include "greycard/errors.h"

namespace greycard {

CDoubleMatrix CIE_XYZ(const CDoubleMatrix& spectrum, const CDoubleMatrix& observer,
                      const CDoubleMatrix& reflectances) {
  const std::int32_t n = spectrum.rows();
  if (n == 0 || spectrum.cols() != 1 || observer.rows() != n || observer.cols() != 3 ||
      reflectances.rows() != n)
    throw ShapeError("spectrum, observer and reflectances must have the same wavelengths");

  double whiteY = 0.0;
  for (std::int32_t i = 0; i < n; ++i) whiteY += spectrum[i][0] * observer[i][1];
  const double k = 100.0 / whiteY;

  CDoubleMatrix xyz(reflectances.cols(), 3);
  for (std::int32_t sample = 0; sample < reflectances.cols(); ++sample)
    for (std::int32_t c = 0; c < 3; ++c) {
      double sum = 0.0;
      for (std::int32_t i = 0; i < n; ++i)
        sum += spectrum[i][0] * observer[i][c] * reflectances[i][sample];
      xyz[sample][c] = k * sum;
    }
  return xyz;
}

}  // namespace greycard
