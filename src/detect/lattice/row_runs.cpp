#include "lattice/row_runs.h"

#include <cstring>

namespace greycard {
namespace {

constexpr std::uint64_t kEachByte = 0x0101010101010101U, kHighBits = 0x8080808080808080U;

// Bit k set where values[k] is below the threshold, of 8 values.
std::uint64_t belowOf8(const std::uint8_t* values, std::uint64_t threshold) {
  if constexpr (std::endian::native == std::endian::little) {
    std::uint64_t bytes = 0;
    std::memcpy(&bytes, values, sizeof bytes);
    // A byte's high bit: of the value itself, or carried by adding 128 - threshold to the rest.
    const std::uint64_t reaches =
        (((bytes & ~kHighBits) + kEachByte * (128 - threshold)) | bytes) & kHighBits;
    // The multiplication gathers the eight bits in the highest byte.
    return ((~reaches & kHighBits) >> 7) * 0x0102040810204080U >> 56;
  } else {
    std::uint64_t bits = 0;
    for (int k = 0; k < 8; ++k) bits |= static_cast<std::uint64_t>(values[k] < threshold) << k;
    return bits;
  }
}

}  // namespace

void RowRuns::find(const std::uint8_t* values, int length, int threshold) {
  const auto limit = static_cast<std::uint64_t>(threshold);
  words_.assign(static_cast<std::size_t>(length) / kBits + 1, 0);
  int x = 0;
  for (; x + 8 <= length; x += 8)
    words_[static_cast<std::size_t>(x / kBits)] |= belowOf8(values + x, limit) << x % kBits;
  for (; x < length; ++x)
    words_[static_cast<std::size_t>(x / kBits)] |= static_cast<std::uint64_t>(values[x] < threshold)
                                                   << x % kBits;

  // What has two set neighbours to its right begins a run of 3; each beginning then fills its run.
  for (std::size_t w = 0; w < words_.size(); ++w) {
    const std::uint64_t next = w + 1 < words_.size() ? words_[w + 1] : 0, here = words_[w];
    words_[w] = here & (here >> 1 | next << 63) & (here >> 2 | next << 62);
  }
  std::uint64_t before = 0;
  for (auto& word : words_) {
    const std::uint64_t begins = word;
    word = begins | (begins << 1 | before >> 63) | (begins << 2 | before >> 62);
    before = begins;
  }
}

}  // namespace greycard
