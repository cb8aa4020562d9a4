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

/// Statistics of codes of one bit depth, in one pass per question over memory that is used again.
class CodeSummary {
 public:
  /// \throws std::invalid_argument unless the levels are finite, white above black, scale above 0
  CodeSummary(const SampleLevels& levels, int bits);

  /// \param codes  not empty, none above what the bits hold; cell after cell.
  /// \param ends  where each cell's codes end; ascending, the last one is the number of codes.
  CodeStatistics of(std::span<const std::uint16_t> codes, std::span<const std::size_t> ends);

 private:
  double linear(std::size_t code);
  void sumCells(std::span<const std::uint16_t> codes, std::span<const std::size_t> ends,
                CodeStatistics& result);
  double squaresAbout(double mean, std::span<const std::uint16_t> codes);
  std::size_t ranked(std::span<const std::uint16_t> codes, std::size_t rank) const;

  SampleLevels levels_;
  int shift_;                   // of a code to its bin: 0 for 8 bits, 8 for 16
  std::vector<double> values_;  // linear value per code, computed when first asked for
  std::array<std::uint32_t, 256> counts_{};
};

}  // namespace greycard
