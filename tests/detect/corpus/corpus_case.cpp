#include "corpus_case.h"

#include <algorithm>
#include <cmath>

namespace greycard {
namespace {

double distance(const Point2& a, const Point2& b) {
  return std::hypot(a.x - b.x, a.y - b.y);
}

// The smallest, over the charts, of what `measure` makes of the 24 distances.
template <typename Measure>
double nearestChart(const CorpusCase& wanted, const Centres& found, Measure measure) {
  double best = HUGE_VAL;
  for (const auto& chart : wanted.charts) {
    double value = 0.0;
    for (std::size_t i = 0; i < found.size(); ++i)
      value = measure(value, distance(chart[i], found[i]));
    best = std::min(best, value / pitchOf(chart));
  }
  return best;
}

}  // namespace

double pitchOf(const Centres& c) {
  double sum = 0.0;
  int count = 0;
  for (std::size_t i = 0; i < c.size(); ++i) {
    if (i % 6 != 0) sum += distance(c[i], c[i - 1]), ++count;
    if (i >= 6) sum += distance(c[i], c[i - 6]), ++count;
  }
  return sum / count;
}

double worstError(const CorpusCase& wanted, const Centres& found) {
  return nearestChart(wanted, found, [](double value, double d) { return std::max(value, d); });
}

double meanError(const CorpusCase& wanted, const Centres& found) {
  return nearestChart(wanted, found,
                      [](double value, double d) { return value + d / kPatchCount; });
}

}  // namespace greycard
