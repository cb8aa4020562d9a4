#pragma once

#include <array>
#include <cstdint>
#include <span>
#include <vector>

#include "greycard/patch_sampler.h"

namespace greycard {

/// What one channel of a patch shows.
struct CodeStatistics {
  double mean = 0.0, deviation = 0.0, median = 0.0;  ///< of the linear values
  double unevenness = 0.0;                           ///< standard deviation of the cells' means
  ChannelClipping clipping;
};

/// How often each 8-bit code was seen.
using CodeCounts = std::array<std::uint32_t, 256>;

/// Statistics of codes of one bit depth, in one pass per question over memory that is used again.
class CodeSummary {
 public:
  /// \throws std::invalid_argument unless the levels are finite, white above black, scale above 0
  CodeSummary(const SampleLevels& levels, int bits);

  /// Of 8 bits, which hold so few codes that counts of them answer everything.
  /// \param cells  up to 9, not all empty
  CodeStatistics ofCounts(std::span<const CodeCounts> cells);
  /// Of 16 bits.
  /// \param codes  not empty; cell after cell, up to 9
  /// \param ends  where each cell's codes end; ascending, the last one is the number of codes.
  CodeStatistics ofCodes(std::span<const std::uint16_t> codes, std::span<const std::size_t> ends);

 private:
  // Those from the ceiling up, and those up to the floor.
  struct Limits {
    int ceiling, floor;
  };
  double linear(std::size_t code);
  double medianOf(std::size_t count, auto ranked);
  Limits limits() const;

  SampleLevels levels_;
  std::vector<double> values_;  // linear value per code, computed when first asked for
};

}  // namespace greycard
