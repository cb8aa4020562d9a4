#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace greycard {

/// Finds the runs of pixels below a threshold in one row after the other.
///
/// A row becomes a row of bits, from which bit operations drop the runs under 3 pixels: most of
/// what a noisy picture has.
class RowRuns {
 public:
  /// Looks at `length` values. threshold: 1..128.
  void find(const std::uint8_t* values, int length, int threshold);

  /// Calls use(first, last) for each run, from the left.
  template <typename Use>
  void forEach(Use use) const {
    int first = -1;  // of the run that goes on
    for (std::size_t w = 0; w < words_.size(); ++w) {
      const int base = static_cast<int>(w) * kBits;
      std::uint64_t changes = words_[w] ^ (words_[w] << 1 | (first >= 0 ? 1U : 0U));
      for (; changes != 0; changes &= changes - 1) {
        const int at = base + std::countr_zero(changes);
        if (first < 0) {
          first = at;
        } else {
          use(first, at - 1);
          first = -1;
        }
      }
    }
  }

 private:
  static constexpr int kBits = 64;
  std::vector<std::uint64_t> words_;  // a bit per pixel and at least one more, which is 0
};

}  // namespace greycard
