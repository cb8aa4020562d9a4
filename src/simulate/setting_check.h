#pragma once

namespace greycard {

/// A setting and the values that it may have.
struct SettingRange {
  const char* what;
  double value, low, high;
};

/// \throws std::invalid_argument with one sentence when the value is outside or not a number
void checkSetting(const SettingRange& range);

/// \throws std::invalid_argument for a picture of more than 100 million pixels
void checkPixels(int width, int height);

}  // namespace greycard
