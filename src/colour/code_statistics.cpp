#include "code_statistics.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "code_values.h"

namespace greycard {
namespace {

using Counts = std::array<std::uint32_t, 256>;

// Counts in turns in two tables: equal neighbours then don't wait for each other.
template <typename BinOf>
void countInto(Counts& counts, std::span<const std::uint16_t> codes, BinOf binOf) {
  Counts other{};
  std::size_t i = 0;
  for (; i + 1 < codes.size(); i += 2) {
    ++counts[binOf(codes[i])];
    ++other[binOf(codes[i + 1])];
  }
  if (i < codes.size()) ++counts[binOf(codes[i])];
  for (std::size_t bin = 0; bin < counts.size(); ++bin) counts[bin] += other[bin];
}

// The bin that holds the rank, which becomes a rank in it.
std::size_t binOfRank(const Counts& counts, std::size_t& rank) {
  std::size_t bin = 0;
  while (rank >= counts[bin]) rank -= counts[bin++];
  return bin;
}

double spreadOf(const std::array<double, 9>& means, std::size_t count) {
  if (count < 2) return 0.0;
  double sum = 0.0, squares = 0.0;
  for (std::size_t i = 0; i < count; ++i) sum += means[i];
  const double mean = sum / static_cast<double>(count);
  for (std::size_t i = 0; i < count; ++i) squares += (means[i] - mean) * (means[i] - mean);
  return std::sqrt(squares / static_cast<double>(count - 1));
}

}  // namespace

CodeSummary::CodeSummary(const SampleLevels& levels, int bits)
    : levels_(levels),
      shift_(bits == 16 ? 8 : 0),
      values_(bits == 16 ? 65536 : 256, std::numeric_limits<double>::quiet_NaN()) {
  checkLevels(levels);
}

double CodeSummary::linear(std::size_t code) {
  double& value = values_[code];
  if (std::isnan(value)) value = linearValue(levels_, static_cast<double>(code));
  return value;
}

// Eight bits hold so few codes that counting them answers everything.
void CodeSummary::sumCells(std::span<const std::uint16_t> codes, std::span<const std::size_t> ends,
                           CodeStatistics& result) {
  std::array<double, 9> means{};
  std::size_t cells = 0, begin = 0;
  double total = 0.0;
  counts_.fill(0);
  for (const std::size_t end : ends) {
    if (end == begin) continue;
    const auto cell = codes.subspan(begin, end - begin);
    double sum = 0.0;
    if (shift_ == 0) {
      Counts counts{};
      countInto(counts, cell, [](std::uint16_t code) { return std::size_t{code} & 0xFFU; });
      for (std::size_t code = 0; code < counts.size(); ++code) {
        if (counts[code] == 0) continue;
        sum += counts[code] * linear(code);
        counts_[code] += counts[code];
      }
    } else {
      for (const auto code : cell) sum += linear(code);
    }
    means[cells++] = sum / static_cast<double>(cell.size());
    total += sum;
    begin = end;
  }
  if (shift_ != 0)
    countInto(counts_, codes, [](std::uint16_t code) { return std::size_t{code} >> 8U; });
  result.mean = total / static_cast<double>(codes.size());
  result.unevenness = spreadOf(means, cells);
}

// About the mean, so that a small deviation around a large mean keeps its digits.
double CodeSummary::squaresAbout(double mean, std::span<const std::uint16_t> codes) {
  double squares = 0.0;
  const auto square = [&](std::size_t code) {
    const double d = linear(code) - mean;
    return d * d;
  };
  if (shift_ == 0) {
    for (std::size_t code = 0; code < counts_.size(); ++code)
      if (counts_[code] != 0) squares += counts_[code] * square(code);
  } else {
    for (const auto code : codes) squares += square(code);
  }
  return squares;
}

// The code that `rank` others are not above.
std::size_t CodeSummary::ranked(std::span<const std::uint16_t> codes, std::size_t rank) const {
  const std::size_t bin = binOfRank(counts_, rank);
  if (shift_ == 0) return bin;
  Counts low{};
  for (const auto code : codes)
    if (code >> 8U == bin) ++low[code & 0xFFU];
  return bin << 8U | binOfRank(low, rank);
}

CodeStatistics CodeSummary::of(std::span<const std::uint16_t> codes,
                               std::span<const std::size_t> ends) {
  CodeStatistics result;
  sumCells(codes, ends, result);
  const std::size_t count = codes.size();
  const auto n = static_cast<double>(count);
  if (count > 1) result.deviation = std::sqrt(squaresAbout(result.mean, codes) / (n - 1.0));
  result.median = 0.5 * (linear(ranked(codes, (count - 1) / 2)) + linear(ranked(codes, count / 2)));

  // In whole codes: from the ceiling up, and up to the floor.
  const auto whole = [](double level) {
    return static_cast<int>(std::clamp(level, -1.0, 65536.0));
  };
  const int ceiling = whole(std::ceil(levels_.whiteLevel));
  const int floor = whole(std::floor(levels_.blackLevel));
  int atCeiling = 0, atFloor = 0;
  for (const auto code : codes) {
    atCeiling += code >= ceiling;
    atFloor += code <= floor;
  }
  result.clipping = {atCeiling / n, atFloor / n};
  return result;
}

}  // namespace greycard
