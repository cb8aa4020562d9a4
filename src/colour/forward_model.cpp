#include "forward_model.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "colour_space.h"

namespace greycard {

double ModelColours::chroma(std::size_t patch) const {
  return std::sqrt(a[patch] * a[patch] + b[patch] * b[patch]);
}

ForwardModel::ForwardModel(const PatchTable& balancedRgb, std::optional<GammaStage> gamma,
                           const Matrix3& rgbToXyz, const Vector3& white)
    : gamma_(std::move(gamma)) {
  for (std::size_t c = 0; c < 3; ++c) {
    for (std::size_t i = 0; i < kPatchCount; ++i) rgb_[c][i] = balancedRgb[i][c];
    for (std::size_t k = 0; k < 3; ++k) rgbToRelativeXyz_[c][k] = 100.0 * rgbToXyz[c][k] / white[c];
  }
}

void ForwardModel::evaluate(const Matrix3& ccm, ModelColours& out) const {
  std::array<PatchColumn, 3> linear;
  for (std::size_t c = 0; c < 3; ++c) {
    const Vector3& row = ccm[c];
    PatchColumn& column = linear[c];
    for (std::size_t i = 0; i < kPatchCount; ++i) {
      const double mixed = rgb_[0][i] * row[0] + rgb_[1][i] * row[1] + rgb_[2][i] * row[2];
      column[i] = std::min(std::max(mixed, 0.0), 1.0);
    }
    if (gamma_)
      for (double& value : column) value = sRGBDecode(gamma_->at(c, value));
  }
  for (std::size_t c = 0; c < 3; ++c) {
    const Vector3& row = rgbToRelativeXyz_[c];
    for (std::size_t i = 0; i < kPatchCount; ++i)
      out.f[c][i] = labF(linear[0][i] * row[0] + linear[1][i] * row[1] + linear[2][i] * row[2]);
  }
  for (std::size_t i = 0; i < kPatchCount; ++i) {
    out.L[i] = 116.0 * out.f[1][i] - 16.0;
    out.a[i] = 500.0 * (out.f[0][i] - out.f[1][i]);
    out.b[i] = 200.0 * (out.f[1][i] - out.f[2][i]);
  }
}

PatchTable labTable(const ModelColours& colours) {
  PatchTable table;
  for (std::size_t i = 0; i < kPatchCount; ++i)
    table[i] = {colours.L[i], colours.a[i], colours.b[i]};
  return table;
}

}  // namespace greycard
