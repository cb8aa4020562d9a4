#include "greycard/raw/bayer_pattern.h"

#include "greycard/names.h"

namespace greycard {
namespace {

constexpr std::array<const char*, 4> kNames{"RGGB", "BGGR", "GRBG", "GBRG"};

}  // namespace

std::optional<BayerPattern> bayerPatternFromName(TextView name) {
  for (std::size_t i = 0; i < kNames.size(); ++i)
    if (equalIgnoringCase(kNames[i], name)) return static_cast<BayerPattern>(i);
  return std::nullopt;
}

const char* bayerPatternName(BayerPattern pattern) {
  return kNames.at(static_cast<std::size_t>(pattern));
}

std::array<int, 4> cellChannels(BayerPattern pattern) {
  std::array<int, 4> channels{};
  for (std::size_t i = 0; i < channels.size(); ++i) {
    const char colour = bayerPatternName(pattern)[i];
    channels[i] = colour == 'R' ? 0 : colour == 'G' ? 1 : 2;
  }
  return channels;
}

}  // namespace greycard
