#include "setting_check.h"

#include <stdexcept>
#include <string>

#include "text.h"

namespace greycard {
namespace {

constexpr long long kMostPixels = 100'000'000;

}  // namespace

void checkSetting(const SettingRange& range) {
  // Written so that NaN is refused too.
  if (range.value >= range.low && range.value <= range.high) return;
  throw std::invalid_argument(std::string("the ") + range.what + " must be from " +
                              formatGeneral(range.low) + " to " + formatGeneral(range.high) +
                              ", not " + formatGeneral(range.value));
}

void checkPixels(int width, int height) {
  if (1LL * width * height > kMostPixels)
    throw std::invalid_argument("a picture of more than 100 million pixels is too large");
}

}  // namespace greycard
