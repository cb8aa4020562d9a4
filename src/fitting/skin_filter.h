#pragma once

namespace greycard {

/// The two sets of accepted skin colours; a value that is not a number is in neither.
constexpr bool isUpperSkin(float h, float s) {
  return -2.0F <= h && h <= 0.0F && 0.0F <= s && s <= 1.0F;
}
/// Doesn't look at h, which may be infinite or not a number (deliberate).
constexpr bool isLowerSkin(float s, float y) {
  return 0.0F <= s && s <= 1.0F && 0.0F <= y && y <= 1.0F;
}

}  // namespace greycard
