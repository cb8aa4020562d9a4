#include "greycard/de_gamma.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <numeric>
#include <stdexcept>

#include "linear_interpolation.h"

namespace greycard {

bool DeGamma::runDeGamma(std::span<const double> gamma, std::span<const double> OrigRGB,
                         std::span<double> sRGB) const {
  constexpr std::size_t kEntries = 256, kChannels = 3;
  constexpr double kTableUnitsPerLevel = 4.0;
  if (gamma.size() < kEntries || OrigRGB.size() < kChannels || sRGB.size() < kChannels)
    throw std::invalid_argument(
        "runDeGamma needs a table of 256 entries and colours of 3 channels");

  std::array<double, kEntries> positions;
  std::iota(positions.begin(), positions.end(), 1.0);
  std::array<double, kChannels> levels;
  std::transform(OrigRGB.begin(), OrigRGB.begin() + kChannels, levels.begin(),
                 [](double level) { return level * kTableUnitsPerLevel; });
  // The table and its positions change places: interp1 reads the inverse curve.
  const auto found = interp1<double>(gamma.first(kEntries), positions, levels);
  std::copy(found.begin(), found.end(), sRGB.begin());
  return true;
}

}  // namespace greycard
