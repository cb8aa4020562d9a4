#include "raw_levels.h"

#include <algorithm>
#include <numeric>
#include <stdexcept>

#include "greycard/errors.h"
#include "greycard/number_text.h"

namespace greycard {

void refuseRaw(const std::string& name, const std::string& why) {
  throw FileError("can't read " + name + ": " + why);
}

void refuseCutShort(const std::string& name) {
  refuseRaw(name, "the raw data in it is damaged or cut short; copy it again");
}

void settleLevels(RawLevels& levels, const std::array<int, 4>& channels, const RawOptions& options,
                  CaptureInfo& info) {
  if (options.blackLevel) {
    levels.rows = levels.columns = 1;
    levels.pattern = {0.0};
    levels.black.fill(*options.blackLevel);
  }
  if (options.whiteLevel) levels.white.fill(*options.whiteLevel);

  const double meanOfPattern = std::accumulate(levels.pattern.begin(), levels.pattern.end(), 0.0) /
                               static_cast<double>(levels.pattern.size());
  const double most = *std::ranges::max_element(levels.pattern);
  for (std::size_t c = 0; c < 3; ++c) {
    double sum = 0.0;
    int places = 0;
    for (std::size_t place = 0; place < channels.size(); ++place) {
      if (channels[place] != static_cast<int>(c)) continue;
      sum += levels.black[place];
      ++places;
      // Written so that not-a-number is refused too.
      if (!(levels.black[place] + most + kLeastLevels <= levels.white[c] &&
            levels.white[c] <= 65535.0) ||
          !(levels.black[place] >= 0.0))
        throw std::invalid_argument("the white level (" + exact(levels.white[c]) +
                                    ") must be 32 codes or more above the black level (" +
                                    exact(levels.black[place] + most) +
                                    "), both in the raw file's codes of 0 to 65535");
    }
    if (places > 0) info.blackLevel[c] = sum / places + meanOfPattern;
  }
  info.whiteLevel = levels.white;
}

}  // namespace greycard
