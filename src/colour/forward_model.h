#pragma once

#include <array>
#include <optional>

#include "gamma_stage.h"
#include "greycard/types.h"

namespace greycard {

/// One value per patch. Tables that are read component by component are kept as three of these.
using PatchColumn = std::array<double, kPatchCount>;

/// What a camera with a given colour matrix makes of the 24 patches.
struct ModelColours {
  PatchColumn L, a, b;           ///< CIE 1976 L*a*b*
  std::array<PatchColumn, 3> f;  ///< f(X/Xn), f(Y/Yn), f(Z/Zn) of the L*a*b* formula

  double chroma(std::size_t patch) const;
};

/// f(t) of the L*a*b* formula is a cube root above this value of f, linear below. The two branches
/// leave a gap around it (0.2068927 to 0.2068930), so f tells which one it came from.
inline constexpr double kLabRootAbove = 0.206893;

/// Camera RGB to L*a*b*: colour matrix, clip to 0..1, the camera's gamma and the sRGB decoding
/// after it, RGB to XYZ, L*a*b*. Everything that doesn't depend on the colour matrix is worked out
/// once; an evaluation allocates nothing and takes 72 powers and 72 cube roots.
class ForwardModel {
 public:
  /// \param balancedRgb  white-balanced camera RGB
  /// \param gamma        the camera's curves; none leaves the RGB linear
  /// \param rgbToXyz     linear RGB to XYZ on the 0..1 scale
  /// \param white        XYZ of the white of L*a*b*, 0..100
  ForwardModel(const PatchTable& balancedRgb, std::optional<GammaStage> gamma,
               const Matrix3& rgbToXyz, const Vector3& white);

  /// A NaN in the matrix comes out as NaN colours.
  void evaluate(const Matrix3& ccm, ModelColours& out) const;

 private:
  std::array<PatchColumn, 3> rgb_;
  std::optional<GammaStage> gamma_;
  Matrix3 rgbToRelativeXyz_;  // linear RGB to (X/Xn, Y/Yn, Z/Zn)
};

/// The model's colours as a table.
PatchTable labTable(const ModelColours& colours);

}  // namespace greycard
