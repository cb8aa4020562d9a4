#include "white_balance.h"

#include <stdexcept>
#include <string>

#include "greycard/errors.h"
#include "greycard/types.h"

namespace greycard {
namespace {

CDoubleMatrix diagonal(const Vector3& gains) {
  CDoubleMatrix m(3, 3);
  for (std::int32_t c = 0; c < 3; ++c) m[c][c] = gains[static_cast<std::size_t>(c)];
  return m;
}

}  // namespace

CDoubleMatrix M_white_balance(const CDoubleMatrix& rgb, const std::vector<std::int32_t>& patches) {
  if (rgb.rows() != kPatchCount || rgb.cols() != 3)
    throw ShapeError("white balance needs a table of 24 patches with R, G and B");
  Vector3 sum{};
  for (const std::int32_t patch : patches) {
    if (patch < 0 || patch >= kPatchCount)
      throw std::out_of_range("white balance: patch index " + std::to_string(patch) +
                              " is outside 0..23");
    for (std::int32_t c = 0; c < 3; ++c) sum[static_cast<std::size_t>(c)] += rgb[patch][c];
  }
  if (sum[0] == 0.0 || sum[2] == 0.0) return diagonal({1.0, 1.0, 1.0});

  Vector3 gains{sum[1] / sum[0], 1.0, sum[1] / sum[2]};
  const auto divideBy = [&gains](double divisor) {
    for (double& gain : gains) gain /= divisor;
  };
  if (gains[0] < 1.0 && gains[2] >= gains[0]) divideBy(gains[0]);
  if (gains[2] < 1.0 && gains[0] > gains[2]) divideBy(gains[2]);
  return diagonal(gains);
}

}  // namespace greycard
