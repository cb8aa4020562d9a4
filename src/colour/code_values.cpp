#include "code_values.h"

#include <algorithm>
#include <cmath>
#include <stdexcept>
#include <string>

#include "srgb_transfer.h"
#include "text.h"

namespace greycard {

void checkLevels(const SampleLevels& levels) {
  const double range = levels.whiteLevel - levels.blackLevel;
  if (!(range > 0.0) || !std::isfinite(range))
    throw std::invalid_argument("the white level (" + formatGeneral(levels.whiteLevel) +
                                ") must be above the black level (" +
                                formatGeneral(levels.blackLevel) + ")");
  if (!(levels.scale > 0.0) || !std::isfinite(levels.scale))
    throw std::invalid_argument("the scale must be above 0, not " + formatGeneral(levels.scale));
}

double linearValue(const SampleLevels& levels, double code) {
  const double v = (code - levels.blackLevel) / (levels.whiteLevel - levels.blackLevel);
  const double capped = std::min(v, 1.0);
  return levels.scale * (levels.encoding == SampleEncoding::sRGB ? sRGBDecode(capped) : capped);
}

void checkPicture(const Picture& picture) {
  if (!isWellFormed(picture))
    throw std::invalid_argument("a picture of " + std::to_string(picture.width) + " x " +
                                std::to_string(picture.height) + " pixels, " +
                                std::to_string(picture.channels) + " channels of " +
                                std::to_string(picture.bits) + " bits can't have " +
                                std::to_string(picture.samples.size()) + " samples");
}

std::vector<double> linearValues(const SampleLevels& levels, const Picture& picture) {
  checkLevels(levels);
  std::vector<double> values(static_cast<std::size_t>(picture.ceiling()) + 1);
  for (std::size_t code = 0; code < values.size(); ++code)
    values[code] = linearValue(levels, static_cast<double>(code));
  if (!std::isfinite(values.front()))
    throw std::invalid_argument("black level " + formatGeneral(levels.blackLevel) +
                                " and white level " + formatGeneral(levels.whiteLevel) +
                                " are too close for their size");
  return values;
}

}  // namespace greycard
