#include "code_statistics.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "code_values.h"

namespace greycard {
namespace {

// Counts the codes' upper halves, in turns in two tables: equal neighbours then don't wait for each
// other.
CodeCounts upperHalves(std::span<const std::uint16_t> codes) {
  CodeCounts counts{}, other{};
  std::size_t i = 0;
  for (; i + 1 < codes.size(); i += 2) {
    ++counts[codes[i] >> 8U];
    ++other[codes[i + 1] >> 8U];
  }
  if (i < codes.size()) ++counts[codes[i] >> 8U];
  for (std::size_t bin = 0; bin < counts.size(); ++bin) counts[bin] += other[bin];
  return counts;
}

// The bin that holds the rank, which becomes a rank in it.
std::size_t binOfRank(const CodeCounts& counts, std::size_t& rank) {
  std::size_t bin = 0;
  while (rank >= counts[bin]) rank -= counts[bin++];
  return bin;
}

// Sums of cells, one after the other.
class CellMeans {
 public:
  void add(double sum, std::size_t count) {
    m_means[m_cells++] = sum / static_cast<double>(count);
    m_total += sum;
  }
  double total() const { return m_total; }
  double spread() const {
    if (m_cells < 2) return 0.0;
    double sum = 0.0, squares = 0.0;
    for (std::size_t i = 0; i < m_cells; ++i) sum += m_means[i];
    const double mean = sum / static_cast<double>(m_cells);
    for (std::size_t i = 0; i < m_cells; ++i) squares += (m_means[i] - mean) * (m_means[i] - mean);
    return std::sqrt(squares / static_cast<double>(m_cells - 1));
  }

 private:
  std::array<double, 9> m_means{};
  std::size_t m_cells = 0;
  double m_total = 0.0;
};

}  // namespace

CodeSummary::CodeSummary(const SampleLevels& levels, int bits)
    : levels_(levels), values_(bits == 16 ? 65536 : 256, std::numeric_limits<double>::quiet_NaN()) {
  checkLevels(levels);
}

double CodeSummary::linear(std::size_t code) {
  double& value = values_[code];
  if (std::isnan(value)) value = linearValue(levels_, static_cast<double>(code));
  return value;
}

// \param ranked  gives the code that so many others are not above
double CodeSummary::medianOf(std::size_t count, auto ranked) {
  return 0.5 * (linear(ranked((count - 1) / 2)) + linear(ranked(count / 2)));
}

CodeSummary::Limits CodeSummary::limits() const {
  const auto whole = [](double level) {
    return static_cast<int>(std::clamp(level, -1.0, 65536.0));
  };
  return {whole(std::ceil(levels_.whiteLevel)), whole(std::floor(levels_.blackLevel))};
}

CodeStatistics CodeSummary::ofCounts(std::span<const CodeCounts> cells) {
  CodeCounts all{};
  for (const CodeCounts& cell : cells)
    for (std::size_t code = 0; code < cell.size(); ++code) all[code] += cell[code];
  // A patch has few of the codes.
  std::size_t first = 0, end = all.size();
  while (all[first] == 0) ++first;
  while (all[end - 1] == 0) --end;

  CellMeans means;
  std::size_t count = 0;
  for (const CodeCounts& cell : cells) {
    double sum = 0.0;
    std::size_t inCell = 0;
    for (std::size_t code = first; code < end; ++code) {
      if (cell[code] == 0) continue;
      sum += cell[code] * linear(code);
      inCell += cell[code];
    }
    if (inCell > 0) means.add(sum, inCell);
    count += inCell;
  }

  CodeStatistics result;
  const auto n = static_cast<double>(count);
  result.mean = means.total() / n;
  result.unevenness = means.spread();
  result.median = medianOf(count, [&](std::size_t rank) { return binOfRank(all, rank); });
  // About the mean, so that a small deviation around a large mean keeps its digits.
  double squares = 0.0;
  std::uint32_t atCeiling = 0, atFloor = 0;
  const auto [ceiling, floor] = limits();
  for (std::size_t code = first; code < end; ++code) {
    if (all[code] == 0) continue;
    const double d = linear(code) - result.mean;
    squares += all[code] * (d * d);
    if (static_cast<int>(code) >= ceiling) atCeiling += all[code];
    if (static_cast<int>(code) <= floor) atFloor += all[code];
  }
  if (count > 1) result.deviation = std::sqrt(squares / (n - 1.0));
  result.clipping = {atCeiling / n, atFloor / n};
  return result;
}

CodeStatistics CodeSummary::ofCodes(std::span<const std::uint16_t> codes,
                                    std::span<const std::size_t> ends) {
  CellMeans means;
  std::size_t begin = 0;
  for (const std::size_t end : ends) {
    if (end == begin) continue;
    double sum = 0.0;
    for (const auto code : codes.subspan(begin, end - begin)) sum += linear(code);
    means.add(sum, end - begin);
    begin = end;
  }

  CodeStatistics result;
  const auto n = static_cast<double>(codes.size());
  result.mean = means.total() / n;
  result.unevenness = means.spread();
  const CodeCounts upper = upperHalves(codes);
  result.median = medianOf(codes.size(), [&](std::size_t rank) {
    const std::size_t bin = binOfRank(upper, rank);
    CodeCounts lower{};
    for (const auto code : codes)
      if (code >> 8U == bin) ++lower[code & 0xFFU];
    return bin << 8U | binOfRank(lower, rank);
  });
  double squares = 0.0;
  int atCeiling = 0, atFloor = 0;
  const auto [ceiling, floor] = limits();
  for (const auto code : codes) {
    const double d = linear(code) - result.mean;
    squares += d * d;
    atCeiling += code >= ceiling;
    atFloor += code <= floor;
  }
  if (codes.size() > 1) result.deviation = std::sqrt(squares / (n - 1.0));
  result.clipping = {atCeiling / n, atFloor / n};
  return result;
}

}  // namespace greycard
