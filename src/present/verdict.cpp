#include "greycard/present/verdict.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

namespace greycard::present {

ColourVerdict colourVerdict(const ErrorColumn& errors) {
  ColourVerdict verdict{errors.mean, NAN, ColourGrade::Poor};
  auto sorted = errors.patch;
  if (std::ranges::any_of(sorted, [](double error) { return std::isnan(error); })) return verdict;
  std::ranges::sort(sorted);
  const double at = 0.95 * static_cast<double>(sorted.size() - 1);
  const auto below = static_cast<std::size_t>(at);
  verdict.percentile95 = std::lerp(sorted[below], sorted[below + 1], at - std::floor(at));
  for (const double factor : {2.0, 1.0})
    if (verdict.mean <= factor * kNoticedDifference &&
        verdict.percentile95 <= factor * kTwiceNoticed)
      verdict.grade = factor == 1.0 ? ColourGrade::Good : ColourGrade::Fair;
  return verdict;
}

}  // namespace greycard::present
