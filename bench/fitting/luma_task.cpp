#include "luma_task.h"

#include <algorithm>
#include <cmath>
#include <random>

namespace greycard {
namespace {

// The weighted table at a percentile, along straight lines between the bins' ends.
double cumulativeAt(double pct, const std::array<double, 256>& weighted,
                    const std::array<double, 256>& cdf) {
  if (pct < cdf[0]) return weighted[0] * std::max(pct, 0.0) / cdf[0];
  if (pct > 1.0) return weighted[255];
  const auto bin = static_cast<std::size_t>(std::clamp<std::ptrdiff_t>(
      std::lower_bound(cdf.begin(), cdf.end(), pct) - cdf.begin(), 1, 255));
  const double width = cdf[bin] - cdf[bin - 1];
  const double share = width > 0.0 ? (pct - cdf[bin - 1]) / width : 0.0;
  return weighted[bin - 1] + (weighted[bin] - weighted[bin - 1]) * share;
}

double statistic(const LumaTask& task, std::size_t image, double from, double to) {
  double largest = 0.5;
  for (std::size_t c = 0; c < 3; ++c) {
    const auto& weighted = task.rgb[image][c];
    const auto& cdf = task.cdf[image][c];
    largest =
        std::max(largest, (cumulativeAt(to, weighted, cdf) - cumulativeAt(from, weighted, cdf)) /
                              (to - from));
  }
  return largest;
}

}  // namespace

LumaTask::LumaTask(int images, std::uint32_t seed) : imageCount(images) {
  std::mt19937 random(seed);
  const auto between = [&random](double low, double high) {
    return low + (high - low) * (static_cast<double>(random()) / 4294967296.0);
  };
  const auto count = static_cast<std::size_t>(images);
  rgb.resize(count);
  cdf.resize(count);
  for (std::size_t i = 0; i < count; ++i) {
    const double centre = between(10, 120), spread = between(5, 50), glow = between(0, 0.1);
    for (std::size_t c = 0; c < 3; ++c) {
      const double mid = centre * between(0.8, 1.2);
      std::array<double, 256> share;
      double total = 0.0, sum = 0.0, mean = 0.0;
      for (std::size_t k = 0; k < 256; ++k) {
        const auto bin = static_cast<double>(k);
        const double off = (bin - mid) / spread, high = (bin - 230.0) / 15.0;
        share[k] = std::exp(-off * off / 2) + glow * std::exp(-high * high / 2);
        if (k % 7 == 3) share[k] = 0.0;  // bins that hold nothing
        total += share[k];
      }
      for (std::size_t k = 0; k < 256; ++k) {
        cdf[i][c][k] = std::min(1.0, sum += share[k] / total);
        rgb[i][c][k] = mean += static_cast<double>(k) * share[k] / total;
      }
    }
    luma.push_back(0.299 * rgb[i][0][255] + 0.587 * rgb[i][1][255] + 0.114 * rgb[i][2][255]);
    current.push_back(luma.back() * between(0.8, 1.25));
    weight.push_back(between(0.5, 2));
  }
  wanted = current;
  unused.assign(count, 0.0);
  for (auto* table : {&safe, &brief, &lasting, &pushUp, &pushDown, &dark}) table->resize(count);
}

GaParameters LumaTask::call(bool isManual, const SearchOptions& options) {
  return NLoptHelper().GA(lower, upper, start, imageCount, weight, wanted, luma, current,
                          maxDrcGain, adrc, rgb, cdf, unused, unused, unused, fallback, enable,
                          isManual, four, safe, brief, lasting, pushUp, pushDown, dark, result,
                          meanError, error, options, &report);
}

LumaTargetRun runOf(const LumaTask& task) {
  LumaTargetRun run;
  run.m_imageCount = task.imageCount;
  run.m_max_drc_gain = task.maxDrcGain;
  run.m_ADRC_Enable = task.adrc;
  run.m_Weight = task.weight;
  run.m_newTarget = task.wanted;
  run.m_curr_luma = task.luma;
  run.m_cur_target = task.current;
  run.m_initial_parameter = task.fallback;
  std::copy(task.enable.begin(), task.enable.end(), run.m_parameters_enable.begin());
  run.m_hist_RGB = task.rgb;
  run.m_hist_CDF = task.cdf;
  run.prepare();
  return run;
}

PlainEvaluation evaluatePlainly(const LumaTask& task, const GaParameters& x) {
  const auto count = static_cast<std::size_t>(task.imageCount);
  const auto p = [&](std::size_t k, std::size_t flag) {
    return task.enable[flag] != 0.0 ? x[k] : task.fallback[k];
  };
  PlainEvaluation out;
  double weights = 0.0;
  for (std::size_t i = 0; i < count; ++i) {
    out.pushUp.push_back(statistic(task, i, 1 - p(4, 6), 1 - p(8, 6)));
    out.pushDown.push_back(statistic(task, i, 1 - p(5, 7), 1 - p(9, 7)));
    out.dark.push_back(statistic(task, i, p(10, 8), p(11, 8)));
    const double luma = task.luma[i], current = task.current[i];
    const double a = p(0, 0) / out.pushDown[i] * luma, b = p(1, 1) / out.pushUp[i] * luma;
    const double high = std::max(a, b), low = std::min(a, b);
    const double darkHigh = p(2, 2) / out.dark[i] * luma, darkLow = p(3, 3) / out.dark[i] * luma;
    out.four.push_back({high, low, darkHigh, darkLow});
    // The common part of two proper intervals is [larger start, smaller end]; apart, the gap.
    double from = std::max(low, darkLow), to = std::min(high, darkHigh);
    if (from > to) std::swap(from, to);
    double target = std::min(std::max(current, from), to);
    target = std::min(target, p(6, 4) * (task.enable[4] != 0.0 ? task.current[0] : current));
    target = std::max(target, p(7, 5) * current);
    out.safe.push_back(target);
    out.error += task.weight[i] * (target - task.wanted[i]) * (target - task.wanted[i]);
    out.meanError += std::fabs(target - task.wanted[i]) / static_cast<double>(count);
    weights += task.weight[i];
  }
  out.error /= weights;
  return out;
}

}  // namespace greycard
