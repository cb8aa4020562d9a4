#include "window/chart_score.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

#include "colour_distance.h"

namespace greycard {
namespace {

using Values = std::array<double, kPatchCount>;
using Weights = Values;  // 1 for patches that count, 0 for the others

constexpr double kDamping = 45.0;      // levels: keeps the noise of dark patches out
constexpr double kMostUneven = 0.9;    // of the light, across the chart, over its mean
constexpr double kColourless = 0.012;  // spread of both colour coordinates; the chart has 0.13
constexpr double kFlat = 0.08;         // spread of lightness over its mean; the chart has 0.5
constexpr double kGreyStrictness = 2.3;
// Deviations that a patch may have: cameras agree on neutral patches and differ most on vivid ones.
constexpr double kPassingNeutral = 0.10, kPassingPerChroma = 0.6, kPassingLightness = 50.0;
constexpr int kFewestVisible = 10, kFewestRecognised = 10;
constexpr int kPardoned = 1;
constexpr double kTie = 2.0;                      // levels
constexpr double kSmallestNeutralContrast = 0.7;  // black over white at most

// Colour and lightness of 24 patches.
struct Coordinates {
  Values redGreen{}, yellowBlue{}, lightness{};
};

// The channels are brought to these sums over the patches that count.
Coordinates coordinatesOf(const WindowColours& colours, const Weights& weights,
                          const std::array<double, 3>& sums) {
  std::array<double, 3> gains{};
  for (std::size_t c = 0; c < 3; ++c) {
    double sum = 0.0;
    for (std::size_t i = 0; i < kPatchCount; ++i) sum += weights[i] * colours.values[i][c];
    gains[c] = sum > 0.0 ? sums[c] / sum : 0.0;
  }
  Coordinates result;
  for (std::size_t i = 0; i < kPatchCount; ++i) {
    const auto& value = colours.values[i];
    const double r = value[0] * gains[0], g = value[1] * gains[1], b = value[2] * gains[2];
    const double weight = 1.0 / (r + g + b + kDamping);
    result.redGreen[i] = (r - g) * weight;
    result.yellowBlue[i] = (0.5 * (r + g) - b) * weight;
    result.lightness[i] = colours.grey ? r : (r + g + b) / 3.0;
  }
  return result;
}

// The chart's own colours.
struct Reference {
  std::array<Values, 3> channels{};
  Coordinates coordinates;
  Values grey{};  // lightness in grey pictures, which are mostly made as luma (ITU-R BT.601)

  Reference() {
    WindowColours colours;
    for (std::size_t i = 0; i < kPatchCount; ++i)
      for (std::size_t c = 0; c < 3; ++c)
        colours.values[i][c] = channels[c][i] = kChartBgr[i][2 - c];
    Weights all;
    all.fill(1.0);
    coordinates = coordinatesOf(colours, all, sums(all));
    for (std::size_t i = 0; i < kPatchCount; ++i)
      grey[i] = 0.299 * channels[0][i] + 0.587 * channels[1][i] + 0.114 * channels[2][i];
  }
  std::array<double, 3> sums(const Weights& weights) const {
    std::array<double, 3> result{};
    for (std::size_t c = 0; c < 3; ++c)
      for (std::size_t i = 0; i < kPatchCount; ++i) result[c] += weights[i] * channels[c][i];
    return result;
  }
};

const Reference& reference() {
  static const Reference made;
  return made;
}

const Values& knownLightness(bool colourless) {
  return colourless ? reference().grey : reference().coordinates.lightness;
}

struct Line {
  double correlation = 0.0, slope = 0.0, offset = 0.0;
  double spread = 0.0, mean = 0.0;  // of the measured

  double at(double x) const { return offset + slope * x; }
};

Line lineThrough(const Values& x, const Values& y, const Weights& weights) {
  double n = 0.0, mx = 0.0, my = 0.0, xx = 0.0, xy = 0.0, yy = 0.0;
  for (std::size_t i = 0; i < kPatchCount; ++i)
    n += weights[i], mx += weights[i] * x[i], my += weights[i] * y[i];
  mx /= n, my /= n;
  for (std::size_t i = 0; i < kPatchCount; ++i) {
    xx += weights[i] * (x[i] - mx) * (x[i] - mx);
    xy += weights[i] * (x[i] - mx) * (y[i] - my);
    yy += weights[i] * (y[i] - my) * (y[i] - my);
  }
  Line line;
  line.spread = std::sqrt(yy / n);
  line.mean = my;
  if (!(xx > 0.0)) return line;
  line.slope = xy / xx;
  line.offset = my - line.slope * mx;
  if (yy > 0.0) line.correlation = xy / std::sqrt(xx * yy);
  return line;
}

// Reference lightness in the light a + b column + c row, columns and rows from -1 to 1, and 1.
std::array<double, 4> lightRow(const Values& known, std::size_t patch) {
  const double light = known[patch];
  const double column = (static_cast<double>(patch % 6) - 2.5) / 2.5;
  const double row = (static_cast<double>(patch / 6) - 1.5) / 1.5;
  return {light, light * column, light * row, 1.0};
}

// a, b, c and the constant by least squares.
std::array<double, 4> fitLight(const Values& known, const Values& lightness,
                               const Weights& weights) {
  std::array<std::array<double, 5>, 4> m{};
  for (std::size_t i = 0; i < kPatchCount; ++i) {
    const auto row = lightRow(known, i);
    for (std::size_t r = 0; r < 4; ++r) {
      for (std::size_t c = 0; c < 4; ++c) m[r][c] += weights[i] * row[r] * row[c];
      m[r][4] += weights[i] * row[r] * lightness[i];
    }
  }
  // Positive definite for any 10 patches: no pivots needed.
  for (std::size_t c = 0; c < 4; ++c)
    for (std::size_t r = c + 1; r < 4; ++r) {
      const double factor = m[r][c] / m[c][c];
      for (std::size_t k = c; k < 5; ++k) m[r][k] -= factor * m[c][k];
    }
  std::array<double, 4> terms{};
  for (std::size_t c = 4; c-- > 0;) {
    terms[c] = m[c][4];
    for (std::size_t k = c + 1; k < 4; ++k) terms[c] -= m[c][k] * terms[k];
    terms[c] /= m[c][c];
  }
  return terms;
}

// The lightness that the chart would have in the light that fits; an unlikely light falls evenly.
Values expectedLightness(const Values& known, const Values& lightness, const Weights& weights) {
  const auto terms = fitLight(known, lightness, weights);
  const bool likely =
      terms[0] > 0.0 && std::fabs(terms[1]) + std::fabs(terms[2]) < kMostUneven * terms[0];
  const auto line = lineThrough(known, lightness, weights);
  Values expected{};
  for (std::size_t i = 0; i < kPatchCount; ++i) {
    const auto row = lightRow(known, i);
    expected[i] = likely ? terms[0] * row[0] + terms[1] * row[1] + terms[2] * row[2] + terms[3]
                         : line.at(row[0]);
  }
  return expected;
}

double lightnessCorrelation(const Values& known, const Values& lightness, const Weights& counting) {
  const auto even = lineThrough(known, lightness, counting);
  if (even.spread < kFlat * even.mean) return 0.0;
  if (even.slope <= 0.0) return even.correlation;
  return lineThrough(expectedLightness(known, lightness, counting), lightness, counting)
      .correlation;
}

Values deviationsOf(const Coordinates& seen, const Weights& weights, bool colourless) {
  const auto& known = reference().coordinates;
  const auto redGreen = lineThrough(known.redGreen, seen.redGreen, weights);
  const auto yellowBlue = lineThrough(known.yellowBlue, seen.yellowBlue, weights);
  const auto expected = expectedLightness(knownLightness(colourless), seen.lightness, weights);
  Values result{};
  for (std::size_t i = 0; i < kPatchCount; ++i) {
    result[i] = std::fabs(seen.lightness[i] - expected[i]) / kPassingLightness;
    if (colourless) continue;
    const double colour = std::hypot(seen.redGreen[i] - redGreen.at(known.redGreen[i]),
                                     seen.yellowBlue[i] - yellowBlue.at(known.yellowBlue[i]));
    const double chroma = std::hypot(known.redGreen[i], known.yellowBlue[i]);
    result[i] = std::max(result[i], colour / (kPassingNeutral + kPassingPerChroma * chroma));
  }
  return result;
}

// From patch to patch, those left out that don't count.
bool darkens(const WindowColours& colours, const Weights& counting) {
  constexpr std::size_t kWhite = 18;
  double first = -1.0, last = -1.0;
  for (std::size_t patch = kWhite; patch < kPatchCount; ++patch) {
    if (counting[patch] == 0.0) continue;
    const auto& v = colours.values[patch];
    const double level = colours.grey ? v[0] : (v[0] + v[1] + v[2]) / 3.0;
    if (first < 0.0) first = level;
    if (last >= 0.0 && !(level <= last + kTie)) return false;
    last = level;
  }
  return first < 0.0 || last < kSmallestNeutralContrast * first;
}

int countOf(const Weights& weights) {
  return static_cast<int>(std::count(weights.begin(), weights.end(), 1.0));
}

// Correlations over the patches that count, and the score they make.
void correlate(ChartScore& result, const Coordinates& seen, const Weights& counting) {
  const auto& known = reference().coordinates;
  result.correlations = {
      lineThrough(known.redGreen, seen.redGreen, counting).correlation,
      lineThrough(known.yellowBlue, seen.yellowBlue, counting).correlation,
      lightnessCorrelation(knownLightness(result.colourless), seen.lightness, counting)};
  const auto& c = result.correlations;
  result.score =
      result.colourless ? 1.0 - kGreyStrictness * (1.0 - c[2]) : (c[0] + c[1] + c[2]) / 3.0;
}

// The patches in view but the worst of those that are far off, at most one: a hand, a glare.
Weights withoutPardoned(const Values& deviations, Weights weights) {
  for (int i = 0; i < kPardoned; ++i) {
    std::size_t worst = 0;
    for (std::size_t k = 1; k < kPatchCount; ++k)
      if (weights[k] * deviations[k] > weights[worst] * deviations[worst]) worst = k;
    if (deviations[worst] > 1.0) weights[worst] = 0.0;
  }
  return weights;
}

}  // namespace

ChartScore scoreChart(const WindowColours& colours, double hopeless) {
  const auto& known = reference();
  Weights all{}, judges{};
  for (std::size_t i = 0; i < kPatchCount; ++i) {
    all[i] = colours.visible[i] ? 1.0 : 0.0;
    judges[i] = colours.visible[i] && colours.recognised[i] ? 1.0 : 0.0;
  }
  if (countOf(all) < kFewestVisible) return {};
  if (countOf(judges) < kFewestRecognised) judges = all;

  auto seen = coordinatesOf(colours, judges, known.sums(judges));
  const auto redGreen = lineThrough(known.coordinates.redGreen, seen.redGreen, all);
  const auto yellowBlue = lineThrough(known.coordinates.yellowBlue, seen.yellowBlue, all);
  ChartScore result;
  result.colourless =
      colours.grey || (redGreen.spread < kColourless && yellowBlue.spread < kColourless);
  // Lightness adds at most 1.
  if (!result.colourless && redGreen.correlation + yellowBlue.correlation + 1.0 < 3.0 * hopeless) {
    result.score = (redGreen.correlation + yellowBlue.correlation + 1.0) / 3.0;
    return result;
  }
  const auto deviations = [&] {
    auto values = deviationsOf(seen, judges, result.colourless);
    for (std::size_t i = 0; i < kPatchCount; ++i) values[i] *= all[i];
    return values;
  };
  result.deviations = deviations();
  // Again without what is far off, which must not tell what to expect.
  for (std::size_t i = 0; i < kPatchCount; ++i)
    if (result.deviations[i] > 1.0) judges[i] = 0.0;
  if (countOf(judges) >= kFewestRecognised) {
    seen = coordinatesOf(colours, judges, known.sums(judges));
    result.deviations = deviations();
  }
  const auto counting = withoutPardoned(result.deviations, all);
  correlate(result, seen, counting);
  result.neutralsDarken = darkens(colours, counting);
  return result;
}

}  // namespace greycard
