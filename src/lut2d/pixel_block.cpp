#include "pixel_block.h"

#include <algorithm>
#include <bit>
#include <cstdlib>
#include <cstring>

namespace greycard {
namespace {

using Int16 = std::int16_t;

// Arithmetic of 16-bit lanes: each result is known to fit.
constexpr Int16 lane(int value) {
  return static_cast<Int16>(value);
}

// A lane that is known to be positive: its right shift is the same, and cheaper to find for the
// compiler.
constexpr std::uint16_t positive(int value) {
  return static_cast<std::uint16_t>(value);
}

// All bits of the lane when the value is negative, else none. Lanes are chosen by such masks, not
// by ?:, which the compiler may turn into branches and then leave the loop scalar.
constexpr Int16 ifNegative(Int16 value) {
  return lane(value >> 15);
}
// The same when two values, not negative, are equal.
constexpr Int16 ifEqual(Int16 a, Int16 b) {
  return ifNegative(lane((a ^ b) - 1));
}
constexpr Int16 select(Int16 mask, Int16 set, Int16 clear) {
  return lane((set & mask) | (clear & ~mask));
}

constexpr Int16 min(Int16 a, Int16 b) {
  return a < b ? a : b;
}
constexpr Int16 max(Int16 a, Int16 b) {
  return a > b ? a : b;
}

// Two lanes of 16 bits as one of 32: half of it is a lane widened, without a shuffle. Which half is
// which does not matter, as results go back into the same ones.
std::uint32_t loadPair(const PixelBlock::Lanes& lanes, std::size_t k) {
  std::uint32_t pair = 0;
  std::memcpy(&pair, &lanes[k], sizeof pair);
  return pair;
}
void storePair(PixelBlock::Lanes& lanes, std::size_t k, std::uint32_t pair) {
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
void ratios(const PixelBlock::Lanes& values, const PixelBlock::Lanes& divisors,
            PixelBlock::Lanes& results) {
  constexpr std::uint32_t kLow = 0xFFFF;
  for (std::size_t k = 0; k < PixelBlock::kSize; k += 2) {
    const std::uint32_t value = loadPair(values, k), divisor = loadPair(divisors, k);
    const std::uint32_t low = ratio2048(value & kLow, divisor & kLow);
    storePair(results, k, low | ratio2048(value >> 16, divisor >> 16) << 16);
  }
}

// The upper half of the product of 16-bit lanes, which is an instruction of its own.
constexpr Int16 highProduct(Int16 a, Int16 b) {
  return static_cast<Int16>((std::int32_t{a} * b) >> 16);
}

// (a * b + 1024) >> 11 of a in 0..2048 and b in 0..1023, without leaving 16 bits: the floor, and
// one more when the first bit below it is set.
constexpr Int16 product2048(Int16 a, Int16 b) {
  const Int16 floor = highProduct(lane(a << 3), lane(b << 2));
  const auto low = static_cast<std::uint16_t>(a * b);
  return lane(floor + ((low >> 10) & 1));
}

// (58 * blue + 153 * red + 256) >> 9, likewise: the floors of both terms, and what their remainders
// make together.
constexpr Int16 weightedFall(Int16 blue, Int16 red) {
  constexpr Int16 kBlue = 58, kRed = 153, kRemainder = 511;
  const Int16 floors = lane(highProduct(blue, kBlue << 7) + highProduct(red, kRed << 7));
  const Int16 rest = lane((lane(blue * kBlue) & kRemainder) + (lane(red * kRed) & kRemainder));
  return lane(floors + (lane(rest + 256) >> 9));
}

constexpr Int16 sample(std::uint16_t value) {
  return lane(value < kSampleMax ? value : kSampleMax);
}

constexpr Int16 denominator(Int16 lightness) {
  return min(lightness, lane(kLightnessSumMax - lightness));
}

// From less than a turn beyond either end.
constexpr Int16 wrappedHue(Int16 hue) {
  const Int16 above = lane(hue + (ifNegative(hue) & kHueCircle));
  const Int16 below = lane(above - kHueCircle);
  return lane(below + (ifNegative(below) & kHueCircle));
}

}  // namespace

void PixelBlock::toHueSat(const Planes& samples) {
  const auto [r, g, b] = samples;
  alignas(16) Lanes start, sign, chroma, middle, satDivisor, hueDivisor;
  for (std::size_t k = 0; k < kSize; ++k) {
    const Int16 red = sample(r[k]), green = sample(g[k]), blue = sample(b[k]);
    const Int16 greenLeads = ifNegative(lane(red - green));
    const Int16 high = max(red, green), low = min(red, green);
    const Int16 blueLeads = ifNegative(lane(high - blue));
    const Int16 blueIsMiddle = ifNegative(lane(low - blue));
    const Int16 largest = max(high, blue), smallest = min(low, blue);
    lightness[k] = lane(largest + smallest);
    chroma[k] = lane(largest - smallest);
    middle[k] = lane(max(low, min(high, blue)) - smallest);
    satDivisor[k] = max(denominator(lightness[k]), 1);
    hueDivisor[k] = max(chroma[k], 1);
    // On ties red wins over green and both over blue. Hue runs from the start by plus or minus
    // (sign 0 or -1) the middle's share.
    const Int16 redOrGreen = select(greenLeads, kThirdOfCircle, lane(blueIsMiddle & kHueCircle));
    start[k] = select(blueLeads, 2 * kThirdOfCircle, redOrGreen);
    sign[k] = lane(greenLeads ^ (blueIsMiddle & ~blueLeads));
  }
  ratios(chroma, satDivisor, sat);
  ratios(middle, hueDivisor, hue);
  for (std::size_t k = 0; k < kSize; ++k)
    hue[k] = lane(start[k] + lane(hue[k] ^ sign[k]) - sign[k]);
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
  for (std::size_t k = 0; k < kSize; ++k) {
    const Int16 change = lane(hueChange[k] ^ lane(PackedNodes::kHueOffset));
    hue[k] = wrappedHue(lane(hue[k] + change));
    sat[k] = min(max(lane(sat[k] + satChange[k]), 0), lane(kSatMax));
  }
}

// A rise or fall that takes any component to white or black.
constexpr std::int32_t kFar = 2 * kLightnessSumMax;

// offsetOf(lumaFall, base): what all three components rise by.
template <typename OffsetOf>
void PixelBlock::rebuild(const Planes& samples, OffsetOf offsetOf) {
  const auto [r, g, b] = samples;
  for (std::size_t k = 0; k < kSize; ++k) {
    const Int16 red = sample(r[k]), green = sample(g[k]), blue = sample(b[k]);
    const Int16 newChroma = product2048(sat[k], denominator(lightness[k]));
    const Int16 primary = lane(positive(hue[k] + kSextant) >> 12);
    const Int16 off = lane(hue[k] - primary * kThirdOfCircle);
    const Int16 isBefore = ifNegative(off);
    const Int16 part = product2048(lane((off ^ isBefore) - isBefore), newChroma);
    const Int16 before = lane(part & isBefore), after = lane(part & ~isBefore);
    const Int16 isGreen = ifEqual(primary, 1), isBlue = ifEqual(primary, 2);
    const Int16 newR = select(isGreen, before, select(isBlue, after, newChroma));
    const Int16 newG = select(isGreen, newChroma, select(isBlue, before, after));
    const Int16 newB = select(isBlue, newChroma, select(isGreen, after, before));

    // Luma weights of red and blue in 512ths; green's is folded in through its difference.
    const Int16 base = lane(positive(lightness[k] - newChroma) >> 1);
    const Int16 greenRise = lane(newG - green);
    const Int16 blueFall = lane(blue - newB + greenRise), redFall = lane(red - newR + greenRise);
    const Int16 lumaFall = lane(weightedFall(blueFall, redFall) - greenRise - base);
    const Int16 offset = offsetOf(lumaFall, base);
    r[k] = positive(min(max(lane(newR + offset), 0), lane(kSampleMax)));
    g[k] = positive(min(max(lane(newG + offset), 0), lane(kSampleMax)));
    b[k] = positive(min(max(lane(newB + offset), 0), lane(kSampleMax)));
  }
}

void PixelBlock::toRgb(const Planes& samples, std::int32_t yBlend) {
  constexpr std::int32_t kLargestInLanes = 31;  // times a luma it still fits 16 bits
  if (std::abs(yBlend) <= kLargestInLanes)
    rebuild(samples, [blend = lane(yBlend)](Int16 lumaFall, Int16 base) {
      return lane((lane(blend * lumaFall + 8) >> 4) + base);
    });
  else
    rebuild(samples, [yBlend](Int16 lumaFall, Int16 base) {
      return lane(std::clamp((yBlend * lumaFall + 8) >> 4, -kFar, kFar) + base);
    });
}

}  // namespace greycard
