#pragma once

// Products of 3 x 3 matrices, adaptation between whites, and matrices rounded with their row sums
// kept. A matrix acts on columns here: multiply(m, rgb).

#include <cstdint>

#include "greycard/types.h"

namespace greycard::exchange {

using WholeMatrix = std::array<std::array<std::int32_t, 3>, 3>;

/// X, Y, Z of the D50 white of the profile connection space, as whole numbers of 1/65536
/// (ICC.1:2022, 7.2.16) and to four decimals.
inline constexpr std::array<std::int32_t, 3> kD50Fixed16{0xF6D6, 0x10000, 0xD32D};
inline constexpr Vector3 kD50White{0.9642, 1.0, 0.8249};
/// Of D65 at x = 0.3127, y = 0.3290 (IEC 61966-2-1).
inline constexpr Vector3 kD65White{0.3127 / 0.3290, 1.0, (1.0 - 0.3127 - 0.3290) / 0.3290};

Vector3 multiply(const Matrix3& m, const Vector3& v);
/// What b and then a do.
Matrix3 multiply(const Matrix3& a, const Matrix3& b);
/// \throws std::invalid_argument for a matrix that can't be inverted or isn't finite
Matrix3 inverted(const Matrix3& m);

/// Linear sRGB to XYZ under D65, from the primaries and the white of IEC 61966-2-1.
Matrix3 srgbToXyz();
/// XYZ under one white to XYZ under another: linear Bradford (ICC.1:2022, annex E).
Matrix3 adaptation(const Vector3& fromWhite, const Vector3& toWhite);

/// Entries times `scale` as whole numbers whose rows sum to `sums`: the entry of largest size takes
/// what rounding left over. \throws std::invalid_argument beyond 32 bits or when not finite
WholeMatrix wholeRows(const Matrix3& m, double scale, const std::array<std::int32_t, 3>& sums);

}  // namespace greycard::exchange
