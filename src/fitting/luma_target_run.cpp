#include "luma_target_run.h"

#include <algorithm>
#include <cmath>
#include <stdexcept>
#include <string>

#include "text.h"

namespace greycard {
namespace {

constexpr double kLeastStatistic = 0.5;
constexpr double kGainCeiling = 16.0;

struct CandidateTargets {
  double first, second;  // A and B, the larger first
  double darkHi, darkLo;
};

struct TargetRange {
  double lo, hi;
};

// The part that the push pair [second, first] and the dark pair [darkLo, darkHi] have in common, or
// the gap between them. Tested in this order, also where fixed parameters turn a pair round.
TargetRange targetRange(const CandidateTargets& t) {
  if (t.first < t.darkLo) return {t.first, t.darkLo};
  if (t.second < t.darkLo) return {t.darkLo, std::min(t.first, t.darkHi)};
  if (t.first < t.darkHi) return {t.second, t.first};
  if (t.second < t.darkHi) return {t.second, t.darkHi};
  return {t.darkHi, t.second};
}

// The gain is at most 1 before its floor, hence always 1, and the short target is the safe one, not
// the smaller of it and A. Deliberate.
double shortTargetWithCompression(double safeTarget, double maxGain) {
  const double gain = std::max(
      std::min(std::min(safeTarget / std::max(safeTarget, 1.0), maxGain), kGainCeiling), 1.0);
  return safeTarget / gain;
}

}  // namespace

void LumaTargetRun::prepare() {
  const auto images = static_cast<std::size_t>(m_imageCount);
  m_tempTarget.resize(images);
  for (auto* table :
       {&m_final_sat_pushup_pos, &m_final_sat_pushdown_pos, &m_final_dark_pos,
        &m_resHistBasedSafeTarget, &m_resHistBasedShortTarget, &m_resHistBasedLongTarget})
    table->resize(images);
  m_weightSum = 0.0;
  for (const double weight : m_Weight) m_weightSum += weight;
  m_guides.clear();
  for (const auto& [r, g, b] : m_hist_CDF)
    m_guides.push_back({PercentileGuide(r), PercentileGuide(g), PercentileGuide(b)});
  m_pushUpRange = m_pushDownRange = m_darkRange = {};
}

void LumaTargetRun::refuseRange(const char* statistic, std::size_t first, std::size_t second,
                                const GaParameters& x) const {
  const bool fallback = !enabled(first) || &x == &m_initial_parameter;
  const std::string source = fallback ? "initial_parameter" : "x";
  const double value = (fallback ? m_initial_parameter : x)[first];
  throw std::invalid_argument("GA: " + source + "[" + std::to_string(first) + "] and " + source +
                              "[" + std::to_string(second) + "] are both " +
                              formatGeneral(value, 9) + ", which leaves the range of the " +
                              statistic + " statistic no width");
}

void LumaTargetRun::updateStatistic(std::vector<double>& statistic, PctRange& known,
                                    const PctRange& wanted) {
  if (known == wanted) return;  // as always when its parameters are not enabled
  for (std::size_t i = 0; i < statistic.size(); ++i) {
    const auto mean = [&](int channel) {
      const auto c = static_cast<std::size_t>(channel);
      return GetBHistAvgForPctRange(channel, wanted.start, wanted.end, m_hist_RGB[i][c],
                                    m_hist_CDF[i][c], m_guides[i][c]);
    };
    statistic[i] = std::max(std::max(std::max(mean(0), mean(1)), mean(2)), kLeastStatistic);
  }
  known = wanted;
}

void LumaTargetRun::updateStatistics(const GaParameters& p, const GaParameters& x) {
  const PctRange pushUp{1.0 - p[4], 1.0 - p[8]}, pushDown{1.0 - p[5], 1.0 - p[9]},
      dark{p[10], p[11]};
  if (pushUp.start == pushUp.end) refuseRange("push-up", 4, 8, x);
  if (pushDown.start == pushDown.end) refuseRange("push-down", 5, 9, x);
  if (dark.start == dark.end) refuseRange("dark", 10, 11, x);
  updateStatistic(m_final_sat_pushup_pos, m_pushUpRange, pushUp);
  updateStatistic(m_final_sat_pushdown_pos, m_pushDownRange, pushDown);
  updateStatistic(m_final_dark_pos, m_darkRange, dark);
}

double LumaTargetRun::safeTarget(std::size_t image, const GaParameters& p, double lo,
                                 double hi) const {
  const double current = m_cur_target[image];
  double target = lo > current ? lo : hi < current ? hi : current;
  // The first image's current target where the ceiling is fitted: deliberate.
  target = std::min(target, p[6] * (enabled(6) ? m_cur_target[0] : current));
  return std::max(target, p[7] * current);  // the floor wins over the ceiling
}

double LumaTargetRun::errorFunc_LumaTarget(const GaParameters& x) {
  GaParameters p;
  for (std::size_t k = 0; k < kGaParameters; ++k) p[k] = enabled(k) ? x[k] : m_initial_parameter[k];
  updateStatistics(p, x);

  double weightedSquares = 0.0, errors = 0.0;
  for (std::size_t i = 0; i < m_tempTarget.size(); ++i) {
    const double luma = m_curr_luma[i];
    const double a = p[0] / m_final_sat_pushdown_pos[i] * luma;
    const double b = p[1] / m_final_sat_pushup_pos[i] * luma;
    const double dark = m_final_dark_pos[i];
    const bool swap = b > a;
    const CandidateTargets candidates{swap ? b : a, swap ? a : b, p[2] / dark * luma,
                                      p[3] / dark * luma};
    m_tempTarget[i] = {candidates.first, candidates.second, candidates.darkHi, candidates.darkLo};

    const auto [lo, hi] = targetRange(candidates);
    const double target = safeTarget(i, p, lo, hi);
    m_resHistBasedSafeTarget[i] = m_resHistBasedLongTarget[i] = target;
    m_resHistBasedShortTarget[i] =
        m_ADRC_Enable != 0.0 ? shortTargetWithCompression(target, m_max_drc_gain) : target;

    const double error = target - m_newTarget[i];
    weightedSquares += m_Weight[i] * (error * error);
    errors += std::fabs(error);
  }
  ga_error = weightedSquares / m_weightSum;
  m_avgTargetError = errors / static_cast<double>(m_imageCount);
  m_xTmp = x;
  return ga_error;
}

}  // namespace greycard
