#include "tuned_curve.h"

#include <algorithm>
#include <cmath>
#include <stdexcept>

namespace greycard {
namespace {

constexpr std::size_t kBodyBegin = 5, kMiddle = 256, kBodyEnd = 509;
constexpr std::size_t kRises = kBodyEnd - kBodyBegin;
constexpr double kDarkEntries = 40.0;  // the index warp is linear well below, logarithmic above

using Rises = std::array<double, kRises>;

// w at each rise, from 0 at the first to 1 at the last.
Rises warpedIndices() {
  Rises w;
  for (std::size_t i = 0; i < kRises; ++i)
    w[i] = std::log1p(static_cast<double>(kBodyBegin + i) / kDarkEntries);
  const double begin = w.front(), range = w.back() - w.front();
  for (double& value : w) value = (value - begin) / range;
  return w;
}

// The two free coefficients, in the basis w (1 - w)^2 and w^2 (1 - w) that leaves the ends alone.
struct Bend {
  double toe = 0.0, shoulder = 0.0;
};

// How far the body rises before and after the middle, and the derivatives by the coefficients.
struct Heights {
  std::array<double, 2> rise{}, byToe{}, byShoulder{};
};

class Body {
 public:
  explicit Body(const TunedCurve& curve)
      : w_(warpedIndices()),
        logStart_(std::log(curve.startSlope)),
        logEnd_(std::log(curve.endSlope)) {}

  double rise(std::size_t i, Bend bend) const {
    const double w = w_[i];
    return std::exp(logStart_ + (logEnd_ - logStart_) * w +
                    w * (1.0 - w) * (bend.toe * (1.0 - w) + bend.shoulder * w));
  }

  Heights heights(Bend bend) const {
    Heights sum;
    for (std::size_t i = 0; i < kRises; ++i) {
      const std::size_t half = kBodyBegin + i < kMiddle ? 0 : 1;
      const double w = w_[i], d = rise(i, bend), weight = d * w * (1.0 - w);
      sum.rise[half] += d;
      sum.byToe[half] += weight * (1.0 - w);
      sum.byShoulder[half] += weight * w;
    }
    return sum;
  }

 private:
  Rises w_;
  double logStart_, logEnd_;
};

// Newton's method on the two heights, in steps of at most 2 in either coefficient.
Bend solveBend(const Body& body, double lowerHeight, double upperHeight) {
  constexpr int kSteps = 60;
  constexpr double kLongestStep = 2.0, kConverged = 1e-12;
  Bend bend;
  for (int step = 0; step < kSteps; ++step) {
    const Heights at = body.heights(bend);
    const double lower = at.rise[0] - lowerHeight, upper = at.rise[1] - upperHeight;
    const double det = at.byToe[0] * at.byShoulder[1] - at.byShoulder[0] * at.byToe[1];
    const double toe = (lower * at.byShoulder[1] - upper * at.byShoulder[0]) / det;
    const double shoulder = (upper * at.byToe[0] - lower * at.byToe[1]) / det;
    const double longest = std::max(std::abs(toe), std::abs(shoulder));
    const double scale = longest > kLongestStep ? kLongestStep / longest : 1.0;
    bend = {bend.toe - scale * toe, bend.shoulder - scale * shoulder};
    if (longest < kConverged) return bend;
  }
  throw std::invalid_argument("tuned curve: no smooth body joins these slopes and levels");
}

}  // namespace

BuiltinTable tunedTable(const TunedCurve& curve) {
  const Body body(curve);
  const Bend bend =
      solveBend(body, curve.middle - curve.first.back(), curve.last.front() - curve.middle);
  BuiltinTable table;
  std::copy(curve.first.begin(), curve.first.end(), table.begin());
  double level = curve.first.back();
  for (std::size_t i = 0; i < kRises; ++i) {
    level += body.rise(i, bend);
    table[kBodyBegin + i + 1] = static_cast<std::int32_t>(std::lround(level));
  }
  std::copy(curve.last.begin(), curve.last.end(), table.end() - 3);
  return table;
}

}  // namespace greycard
