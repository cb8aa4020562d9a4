#include "pixel_block.h"

#include <algorithm>
#include <bit>
#include <cstdlib>
#include <cstring>

namespace greycard {
namespace {

// A lane that is known to be positive: its right shift is the same, and cheaper to find for the
// compiler.
constexpr std::uint16_t positive(int value) {
  return static_cast<std::uint16_t>(value);
}

// Where two numbers, not negative, are equal.
constexpr LaneMask ifEqual(int a, int b) {
  return ifNegative(lane<LaneMask>((a ^ b) - 1));
}

// Two lanes of 16 bits as one of 32: half of it is a lane widened, without a shuffle. Which half is
// which does not matter, as results go back into the same ones.
template <Lane T>
std::uint32_t loadPair(const PixelBlock::Lanes<T>& lanes, std::size_t k) {
  std::uint32_t pair = 0;
  std::memcpy(&pair, &lanes[k], sizeof pair);
  return pair;
}
template <Lane T>
void storePair(PixelBlock::Lanes<T>& lanes, std::size_t k, std::uint32_t pair) {
  std::memcpy(&lanes[k], &pair, sizeof pair);
}

// value / divisor * 2048, with the rounding of a reciprocal of 13 significant bits, rounded up.
// The quotient in single precision never rounds onto a 13-bit number that it is not, and its
// product with a value of 10 bits is exact.
std::uint32_t ratio2048(std::uint32_t value, std::uint32_t divisor) {
  constexpr std::uint32_t kDropped = (1U << 11) - 1;  // of the 24 bits
  const float quotient = 2048.0F / static_cast<float>(static_cast<std::int32_t>(divisor));
  const auto reciprocal =
      std::bit_cast<float>((std::bit_cast<std::uint32_t>(quotient) + kDropped) & ~kDropped);
  const float ratio = static_cast<float>(static_cast<std::int32_t>(value)) * reciprocal + 0.5F;
  return static_cast<std::uint32_t>(static_cast<std::int32_t>(ratio));
}

// The ratios of all lanes; divisors are not 0.
void ratios(const PixelBlock::Lanes<SampleLane>& values,
            const PixelBlock::Lanes<SampleLane>& divisors, PixelBlock::Lanes<ShareLane>& results) {
  constexpr std::uint32_t kLow = 0xFFFF;
  for (std::size_t k = 0; k < PixelBlock::kSize; k += 2) {
    const std::uint32_t value = loadPair(values, k), divisor = loadPair(divisors, k);
    const std::uint32_t low = ratio2048(value & kLow, divisor & kLow);
    storePair(results, k, low | ratio2048(value >> 16, divisor >> 16) << 16);
  }
}

// The upper half of the product of 16-bit lanes, which is an instruction of its own.
constexpr int highProduct(int a, int b) {
  return static_cast<std::int16_t>((static_cast<std::int16_t>(a) * static_cast<std::int16_t>(b)) >>
                                   16);
}

// (share * value + 1024) >> 11 of a value in 0..1023, without leaving 16 bits: the floor, and one
// more when the first bit below it is set.
constexpr SampleLane operator*(ShareLane share, SampleLane value) {
  const int floor = highProduct(raw(share) << 3, raw(value) << 2);
  const auto low = static_cast<std::uint16_t>(raw(share) * raw(value));
  return lane<SampleLane>(floor + ((low >> 10) & 1));
}

// (58 * blue + 153 * red + 256) >> 9, likewise: the floors of both terms, and what their remainders
// make together.
constexpr SampleLane weightedFall(SampleLane blue, SampleLane red) {
  constexpr int kBlue = 58, kRed = 153, kRemainder = 511;
  const int floors = highProduct(raw(blue), kBlue << 7) + highProduct(raw(red), kRed << 7);
  const int rest = ((raw(blue) * kBlue) & kRemainder) + ((raw(red) * kRed) & kRemainder);
  return lane<SampleLane>(floors + (static_cast<std::int16_t>(rest + 256) >> 9));
}

constexpr SampleLane sample(std::uint16_t value) {
  return lane<SampleLane>(value < kSampleMax ? value : kSampleMax);
}

constexpr SampleLane denominator(SampleLane lightness) {
  return min(lightness, lane<SampleLane>(kLightnessSumMax) - lightness);
}

// From less than a turn beyond either end.
constexpr HueLane wrappedHue(HueLane hue) {
  constexpr auto kTurn = lane<HueLane>(kHueCircle);
  const HueLane above = hue + (kTurn & ifNegative(hue));
  const HueLane below = above - kTurn;
  return below + (kTurn & ifNegative(below));
}

}  // namespace

void PixelBlock::toHueSat(const Planes& samples) {
  const auto [r, g, b] = samples;
  constexpr auto kOne = lane<SampleLane>(1);
  alignas(16) Lanes<HueLane> start;
  alignas(16) Lanes<LaneMask> isBackward;
  alignas(16) Lanes<SampleLane> chroma, middle, satDivisor, hueDivisor;
  for (std::size_t k = 0; k < kSize; ++k) {
    const SampleLane red = sample(r[k]), green = sample(g[k]), blue = sample(b[k]);
    const LaneMask greenLeads = ifNegative(red - green);
    const SampleLane high = max(red, green), low = min(red, green);
    const LaneMask blueLeads = ifNegative(high - blue);
    const LaneMask blueIsMiddle = ifNegative(low - blue);
    const SampleLane largest = max(high, blue), smallest = min(low, blue);
    lightness[k] = largest + smallest;
    chroma[k] = largest - smallest;
    middle[k] = max(low, min(high, blue)) - smallest;
    satDivisor[k] = max(denominator(lightness[k]), kOne);
    hueDivisor[k] = max(chroma[k], kOne);
    // On ties red wins over green and both over blue. Hue runs from the start by the middle's share
    // of a sextant, forward or backward.
    const HueLane redOrGreen =
        select(greenLeads, lane<HueLane>(kThirdOfCircle), lane<HueLane>(kHueCircle) & blueIsMiddle);
    start[k] = select(blueLeads, lane<HueLane>(2 * kThirdOfCircle), redOrGreen);
    isBackward[k] = greenLeads ^ (blueIsMiddle & ~blueLeads);
  }
  ratios(chroma, satDivisor, sat);
  Lanes<ShareLane>& share = satChange;  // free until the look-up
  ratios(middle, hueDivisor, share);
  for (std::size_t k = 0; k < kSize; ++k)
    hue[k] = start[k] + negatedWhere(isBackward[k], lane<HueLane>(raw(share[k])));
}

void PixelBlock::lookUp(const PackedNodes& nodes) {
  // Which pixel of a pair its lower half holds.
  constexpr std::size_t kLower = std::endian::native == std::endian::little ? 0 : 1;
  for (std::size_t k = 0; k < kSize; k += 2) {
    const auto changeOf = [&](std::size_t i) { return nodes.change(hue[i], sat[i], lightness[i]); };
    const std::uint64_t lower = changeOf(k + kLower), upper = changeOf(k + 1 - kLower);
    const std::uint64_t pairs = upper ^ ((upper ^ lower >> 16) & both(0xFFFF));  // a bitwise choice
    storePair(hueChange, k, static_cast<std::uint32_t>(pairs));
    storePair(satChange, k, static_cast<std::uint32_t>(pairs >> 32));
  }
  constexpr auto kOffset = lane<HueLane>(PackedNodes::kHueOffset);
  constexpr auto kNone = lane<ShareLane>(0), kAll = lane<ShareLane>(kSatMax);
  for (std::size_t k = 0; k < kSize; ++k) {
    hue[k] = wrappedHue(hue[k] + (hueChange[k] ^ kOffset));
    sat[k] = min(max(sat[k] + satChange[k], kNone), kAll);
  }
}

// A rise or fall that takes any component to white or black.
constexpr std::int32_t kFar = 2 * kLightnessSumMax;

// offsetOf(lumaFall): what all three components rise by beside their base.
template <typename OffsetOf>
void PixelBlock::rebuild(const Planes& samples, OffsetOf offsetOf) {
  const auto [r, g, b] = samples;
  const auto toSample = [](SampleLane value) {
    constexpr auto kBlack = lane<SampleLane>(0), kWhite = lane<SampleLane>(kSampleMax);
    return positive(raw(min(max(value, kBlack), kWhite)));
  };
  for (std::size_t k = 0; k < kSize; ++k) {
    const SampleLane red = sample(r[k]), green = sample(g[k]), blue = sample(b[k]);
    const SampleLane newChroma = sat[k] * denominator(lightness[k]);
    const int primary = positive(raw(hue[k]) + kSextant) >> 12;
    const HueLane off = lane<HueLane>(raw(hue[k]) - primary * kThirdOfCircle);
    const LaneMask isBefore = ifNegative(off);
    // A distance within a sextant is a share of it.
    const SampleLane part = lane<ShareLane>(raw(negatedWhere(isBefore, off))) * newChroma;
    const SampleLane before = part & isBefore, after = part & ~isBefore;
    const LaneMask isGreen = ifEqual(primary, 1), isBlue = ifEqual(primary, 2);
    const SampleLane newR = select(isGreen, before, select(isBlue, after, newChroma));
    const SampleLane newG = select(isGreen, newChroma, select(isBlue, before, after));
    const SampleLane newB = select(isBlue, newChroma, select(isGreen, after, before));

    // Luma weights of red and blue in 512ths; green's is folded in through its difference.
    const auto base = lane<SampleLane>(positive(raw(lightness[k] - newChroma)) >> 1);
    const SampleLane greenRise = newG - green;
    const SampleLane blueFall = blue - newB + greenRise, redFall = red - newR + greenRise;
    const SampleLane lumaFall = weightedFall(blueFall, redFall) - greenRise - base;
    const SampleLane offset = offsetOf(lumaFall) + base;

    r[k] = toSample(newR + offset);
    g[k] = toSample(newG + offset);
    b[k] = toSample(newB + offset);
  }
}

void PixelBlock::toRgb(const Planes& samples, std::int32_t yBlend) {
  constexpr std::int32_t kLargestInLanes = 31;  // times a luma it still fits 16 bits
  if (std::abs(yBlend) <= kLargestInLanes)
    rebuild(samples, [blend = static_cast<std::int16_t>(yBlend)](SampleLane lumaFall) {
      return lane<SampleLane>(static_cast<std::int16_t>(blend * raw(lumaFall) + 8) >> 4);
    });
  else
    rebuild(samples, [yBlend](SampleLane lumaFall) {
      return lane<SampleLane>(std::clamp((yBlend * raw(lumaFall) + 8) >> 4, -kFar, kFar));
    });
}

}  // namespace greycard
