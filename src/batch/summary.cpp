#include "greycard/batch/summary.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <vector>

#include "batch_fields.h"
#include "greycard/version.h"
#include "json_reader.h"
#include "json_writer.h"

namespace greycard::batch {
namespace {

// Below this, a spread and a median say nothing.
constexpr std::size_t kFewestFits = 3;
// Of a normal distribution, the standard deviation is this times the median absolute deviation.
constexpr double kDeviationPerMad = 1.4826;

double medianOf(std::vector<double> values) {
  std::ranges::sort(values);
  const std::size_t middle = values.size() / 2;
  return values.size() % 2 == 1 ? values[middle] : 0.5 * (values[middle - 1] + values[middle]);
}

struct Spread {
  double mean, deviation, median, mad;
};

Spread spreadOf(const std::vector<double>& values) {
  const auto count = static_cast<double>(values.size());
  Spread spread{};
  for (const double value : values) spread.mean += value;
  spread.mean /= count;
  double squares = 0.0;
  for (const double value : values) squares += (value - spread.mean) * (value - spread.mean);
  spread.deviation = std::sqrt(squares / (count - 1.0));
  spread.median = medianOf(values);
  std::vector<double> distances = values;
  for (double& distance : distances) distance = std::abs(distance - spread.median);
  spread.mad = medianOf(std::move(distances));
  return spread;
}

void summariseEntry(const std::vector<const Result*>& fits, std::size_t r, std::size_t c,
                    const OutlierRule& rule, LightSummary& light,
                    std::vector<OutsideFit>& furthest) {
  std::vector<double> values(fits.size());
  std::ranges::transform(fits, values.begin(),
                         [&](const Result* fit) { return (*fit->figures.matrix)[r][c]; });
  const Spread spread = spreadOf(values);
  light.mean[r][c] = spread.mean;
  light.spread[r][c] = spread.deviation;
  light.median[r][c] = spread.median;
  light.medianDeviation[r][c] = spread.mad;
  const double unit = std::max(kDeviationPerMad * spread.mad, rule.floor);
  for (std::size_t i = 0; i < values.size(); ++i) {
    const double away = std::abs(values[i] - spread.median);
    if (!(away > rule.factor * unit)) continue;
    const double distance = away / unit;
    if (distance > furthest[i].distance) furthest[i] = {fits[i]->photo, r, c, values[i], distance};
  }
}

LightSummary lightSummaryOf(Illum name, const std::vector<const Result*>& fits,
                            const OutlierRule& rule) {
  LightSummary light;
  light.light = name;
  light.fits = fits.size();
  std::vector<OutsideFit> furthest(fits.size());
  for (std::size_t row = 0; row < 3; ++row)
    for (std::size_t column = 0; column < 3; ++column)
      summariseEntry(fits, row, column, rule, light, furthest);
  for (OutsideFit& fit : furthest)
    if (fit.distance > 0.0) light.outside.push_back(std::move(fit));
  std::ranges::stable_sort(light.outside, std::greater{}, &OutsideFit::distance);
  return light;
}

bool isFinite(const Matrix3& matrix) {
  for (const Vector3& row : matrix)
    for (const double entry : row)
      if (!std::isfinite(entry)) return false;
  return true;
}

}  // namespace

Summary summaryOf(std::span<const Result> results, const Settings& settings) {
  checkRule(settings.outliers);
  Summary summary;
  summary.job = settings.job;
  summary.version = libraryVersion();
  summary.photographs = results.size();
  summary.outliers = settings.outliers;
  std::map<Illum, std::vector<const Result*>> byLight;
  for (const Result& result : results) {
    const Figures& figures = result.figures;
    if (result.failed()) summary.failures.push_back({result.photo, result.reason});
    if (figures.light && figures.matrix && isFinite(*figures.matrix))
      byLight[*figures.light].push_back(&result);
  }
  for (const auto& [light, fits] : byLight)
    if (fits.size() >= kFewestFits)
      summary.lights.push_back(lightSummaryOf(light, fits, settings.outliers));
  return summary;
}

std::string toJson(const Summary& summary) {
  return present::documentOf(summary);
}
void fromJson(std::string_view text, Summary& summary) {
  Summary filled;
  present::readFresh(text, filled);
  for (const LightSummary& light : filled.lights)
    for (const OutsideFit& fit : light.outside)
      if (fit.row > 2 || fit.column > 2)
        present::refuseField("lights: row and column of what lies outside", "1, 2 or 3");
  summary = std::move(filled);
}

}  // namespace greycard::batch
