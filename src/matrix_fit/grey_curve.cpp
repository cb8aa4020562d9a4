#include "grey_curve.h"

#include <algorithm>
#include <cmath>
#include <stdexcept>

#include "colour_space.h"
#include "damped_search.h"
#include "srgb_transfer.h"

namespace greycard {
namespace {

double lightness(double y) {
  return 116.0 * labF(y) - 16.0;
}
double lightnessSlope(double y) {
  const double f = labF(y);
  return 116.0 * (y > kLabRootAboveT ? 1.0 / (3.0 * f * f) : kLabLinearSlope);
}

/// Sum of squares of L*(scale * curve(measured)) - L*(target) over greys and channels.
class GreyCost {
 public:
  struct State {
    ParametricCurve curve;
    std::vector<Vector3> scale;  // per photograph
  };

  GreyCost(std::span<const GreySample> greys, FitToneCurve family)
      : greys_(greys),
        whitePoint_(family == FitToneCurve::blackWhite),
        terms_(whitePoint_ ? 2 : curveTerms(family)) {
    for (const GreySample& grey : greys) photographs_ = std::max(photographs_, grey.photograph + 1);
  }

  State start(FitToneCurve family) const {
    std::vector<Vector3> measured(photographs_), scale(photographs_);
    for (const GreySample& grey : greys_)
      for (std::size_t c = 0; c < 3; ++c) {
        measured[grey.photograph][c] += grey.measured[c];
        scale[grey.photograph][c] += grey.target[c];
      }
    for (std::size_t k = 0; k < photographs_; ++k)
      for (std::size_t c = 0; c < 3; ++c) scale[k][c] /= measured[k][c];
    if (whitePoint_) scale[0][1] = 1.0;
    return {unchangedCurve(family), scale};
  }

  std::size_t unknowns() const { return terms_ + 3 * photographs_; }

  State moved(const State& state, std::span<const double> step) const {
    State next = state;
    for (std::size_t k = 0; k < terms_; ++k) next.curve.numbers[k] += step[k];
    for (std::size_t k = terms_; k < step.size(); ++k)
      next.scale[(k - terms_) / 3][(k - terms_) % 3] *= std::exp(step[k]);
    return next;
  }

  bool evaluate(const State& state, LocalModel& out) const {
    const std::size_t n = unknowns();
    out.reset(n);
    if (!isCurve(state.curve)) return false;
    for (const GreySample& grey : greys_)
      for (std::size_t c = 0; c < 3; ++c) {
        const double scale = state.scale[grey.photograph][c];
        const CurvePoint point =
            curvePoint(state.curve, grey.measured[c], sRGBEncode(grey.measured[c]));
        const double light = scale * point.value, byLight = lightnessSlope(light);
        const double miss = lightness(light) - lightness(grey.target[c]);
        std::array<double, 3> slope{};
        std::array<std::size_t, 3> place{};
        for (std::size_t k = 0; k < terms_; ++k) {
          slope[k] = byLight * scale * point.slope[k];
          place[k] = k;
        }
        // The white point stands for the scale of one channel.
        slope[terms_] = whitePoint_ && grey.photograph == 0 && c == 1 ? 0.0 : byLight * light;
        place[terms_] = terms_ + 3 * grey.photograph + c;
        out.value += miss * miss;
        for (std::size_t i = 0; i <= terms_; ++i) {
          out.gradient[place[i]] += 2.0 * miss * slope[i];
          for (std::size_t k = 0; k <= terms_; ++k)
            out.curvature[place[i] * n + place[k]] += 2.0 * slope[i] * slope[k];
        }
      }
    return std::isfinite(out.value);
  }

 private:
  std::span<const GreySample> greys_;
  bool whitePoint_;
  std::size_t terms_, photographs_ = 0;
};

GreyCurve parametricCurve(std::span<const GreySample> greys, FitToneCurve family) {
  const GreyCost cost(greys, family);
  const auto found = dampedSearch(cost, cost.start(family), {.tolerance = 1e-10});
  return {
      found.state.curve, {}, std::sqrt(found.value / (3.0 * static_cast<double>(greys.size())))};
}

/// A knot of the monotone curve, in sRGB-encoded values.
struct Knot {
  double x = 0.0, y = 0.0, slope = 0.0;
};

// Slopes of Fritsch and Carlson with the weighted harmonic mean (Fritsch and Butland, SIAM J. Sci.
// Stat. Comput. 5 (1984) 300), one-sided at the ends.
void setSlopes(std::vector<Knot>& knots) {
  const std::size_t last = knots.size() - 1;
  const auto secant = [&](std::size_t i) {
    return (knots[i + 1].y - knots[i].y) / (knots[i + 1].x - knots[i].x);
  };
  knots[0].slope = secant(0);
  knots[last].slope = secant(last - 1);
  for (std::size_t i = 1; i < last; ++i) {
    const double before = knots[i].x - knots[i - 1].x, after = knots[i + 1].x - knots[i].x;
    const double left = secant(i - 1), right = secant(i);
    const double w1 = 2.0 * after + before, w2 = after + 2.0 * before;
    knots[i].slope = left > 0.0 && right > 0.0 ? (w1 + w2) / (w1 / left + w2 / right) : 0.0;
  }
}

// Straight on beyond the ends, but not below 0.
double through(const std::vector<Knot>& knots, double x) {
  if (x <= knots.front().x)
    return std::max(0.0, knots.front().y + knots.front().slope * (x - knots.front().x));
  if (x >= knots.back().x) return knots.back().y + knots.back().slope * (x - knots.back().x);
  std::size_t i = 0;
  while (knots[i + 1].x < x) ++i;
  const Knot &a = knots[i], &b = knots[i + 1];
  const double h = b.x - a.x, t = (x - a.x) / h, u = 1.0 - t;
  return u * u * (1.0 + 2.0 * t) * a.y + t * t * (3.0 - 2.0 * t) * b.y +
         h * t * u * (u * a.slope - t * b.slope);
}

/// Knots at the mean over the channels of what was measured, each channel
/// divided by its share of the sum, against the mean target.
std::vector<Knot> knotsOf(std::span<const GreySample> greys) {
  Vector3 measured{}, target{};
  for (const GreySample& grey : greys)
    for (std::size_t c = 0; c < 3; ++c) {
      measured[c] += grey.measured[c];
      target[c] += grey.target[c];
    }
  std::vector<Knot> knots;
  for (const GreySample& grey : greys) {
    Knot knot;
    for (std::size_t c = 0; c < 3; ++c) {
      const double balance = (measured[0] + measured[1] + measured[2]) / (3.0 * measured[c]);
      knot.x += sRGBEncode(grey.measured[c] * balance) / 3.0;
      knot.y += sRGBEncode(grey.target[c]) / 3.0;
    }
    knots.push_back(knot);
  }
  std::sort(knots.begin(), knots.end(), [](const Knot& a, const Knot& b) { return a.x < b.x; });
  return knots;
}

void checkRising(const std::vector<Knot>& knots) {
  for (std::size_t i = 1; i < knots.size(); ++i)
    if (!(knots[i].x > knots[i - 1].x && knots[i].y > knots[i - 1].y))
      throw std::invalid_argument(
          "the measured greys do not rise with their references, so there is no tone curve through "
          "them; check the regions and the light");
}

// The greys of one photograph.
std::vector<GreySample> ofPhotograph(std::span<const GreySample> greys, std::size_t photograph) {
  std::vector<GreySample> found;
  for (const GreySample& grey : greys)
    if (grey.photograph == photograph) found.push_back(grey);
  return found;
}

// Root mean square of L* by which the greys between the darkest and the lightest miss the curve
// through all others.
double missWithoutEach(const std::vector<Knot>& knots) {
  double sum = 0.0;
  for (std::size_t i = 1; i + 1 < knots.size(); ++i) {
    std::vector<Knot> others = knots;
    others.erase(others.begin() + static_cast<std::ptrdiff_t>(i));
    setSlopes(others);
    const double miss =
        lightness(sRGBDecode(through(others, knots[i].x))) - lightness(sRGBDecode(knots[i].y));
    sum += miss * miss;
  }
  return std::sqrt(sum / static_cast<double>(knots.size() - 2));
}

GreyCurve monotoneCurve(std::span<const GreySample> greys) {
  const auto brightest =
      std::max_element(greys.begin(), greys.end(), [](const GreySample& a, const GreySample& b) {
        return *std::max_element(a.measured.begin(), a.measured.end()) <
               *std::max_element(b.measured.begin(), b.measured.end());
      });
  std::vector<Knot> knots = knotsOf(ofPhotograph(greys, brightest->photograph));
  setSlopes(knots);
  GreyCurve result;
  result.curve = unchangedCurve(FitToneCurve::none);
  for (std::size_t i = 0; i < kCodes; ++i)
    result.table.push_back(sRGBDecode(through(knots, static_cast<double>(i) / (kCodes - 1.0))));
  result.residual = missWithoutEach(knots);
  return result;
}

}  // namespace

GreyCurve greyCurve(std::span<const GreySample> greys, FitToneCurve family) {
  for (std::size_t k = 0;; ++k) {
    const std::vector<GreySample> some = ofPhotograph(greys, k);
    if (some.empty()) break;
    checkRising(knotsOf(some));
  }
  return family == FitToneCurve::monotone ? monotoneCurve(greys) : parametricCurve(greys, family);
}

}  // namespace greycard
