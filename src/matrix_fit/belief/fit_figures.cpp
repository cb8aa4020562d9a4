#include "belief/fit_figures.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

#include "greycard/delta_e.h"

namespace greycard {
namespace {

constexpr std::size_t kChromaticPatches = 18;
constexpr double kMetamerismFactor = 5.5;

// The mean of L* - reference L* over the patches that count.
double meanBrighter(const PatchTable& reference, const ShownPhotograph& photograph) {
  double sum = 0.0, count = 0.0;
  for (std::size_t i = 0; i < kPatchCount; ++i)
    if (photograph.counts[i]) {
      sum += photograph.lab[i][0] - reference[i][0];
      count += 1.0;
    }
  return count > 0.0 ? sum / count : 0.0;
}

class Mean {
 public:
  void add(double value) {
    sum_ += value;
    count_ += 1.0;
  }
  double value() const { return count_ > 0.0 ? sum_ / count_ : 0.0; }

 private:
  double sum_ = 0.0, count_ = 0.0;
};

}  // namespace

double percentile(std::vector<double> values, double share) {
  if (values.empty()) return 0.0;
  std::sort(values.begin(), values.end());
  const double at = share * static_cast<double>(values.size() - 1);
  const auto i = static_cast<std::size_t>(at);
  if (i + 1 == values.size()) return values.back();
  return values[i] + (at - static_cast<double>(i)) * (values[i + 1] - values[i]);
}

std::array<double, kPatchCount> lightOver(const FitSetup& setup, const FitState& state,
                                          std::size_t photograph) {
  std::array<double, kPatchCount> light;
  for (std::size_t i = 0; i < kPatchCount; ++i)
    light[i] =
        lightAt(state.light[photograph], i) * setup.samples[photograph * kPatchCount + i].flat[1];
  return light;
}

double lightRange(const std::array<double, kPatchCount>& light) {
  const auto [least, most] = std::minmax_element(light.begin(), light.end());
  return 100.0 * (*most - *least) / *most;
}

std::vector<ShownPhotograph> shownPhotographs(const FitContext& context, const FitSetup& setup,
                                              const FitState& state) {
  std::vector<ShownPhotograph> shown(state.exposure.size());
  for (const FitSample& sample : setup.samples) {
    ShownPhotograph& photograph = shown[sample.photograph];
    photograph.number = sample.photograph;
    photograph.lab[sample.patch] = context.shownLab(linearRgb(state, sample));
    photograph.counts[sample.patch] = sample.weight > 0.0;
  }
  return shown;
}

FitFigures figuresOf(const FitContext& context, std::span<const ShownPhotograph> photographs) {
  const PatchTable& reference = context.input.referenceLab;
  Mean d2000, square2000, levelled, d76, d94, dCam16, dL, dC, dH, chromatic76;
  double power = 0.0, weights = 0.0;
  std::vector<double> all;
  for (const ShownPhotograph& photograph : photographs) {
    const double brighter = meanBrighter(reference, photograph);
    for (std::size_t i = 0; i < kPatchCount; ++i) {
      if (!photograph.counts[i]) continue;
      const Vector3 &aim = reference[i], &lab = photograph.lab[i];
      all.push_back(deltaE2000(aim, lab));
      d2000.add(all.back());
      square2000.add(all.back() * all.back());
      levelled.add(deltaE2000(aim, {lab[0] - brighter, lab[1], lab[2]}));
      d76.add(deltaE76(aim, lab));
      if (i < kChromaticPatches) chromatic76.add(deltaE76(aim, lab));
      d94.add(deltaE94(aim, lab));
      dCam16.add(context.cam16Between(aim, lab));
      const Vector3 split = differenceSplit(aim, lab);
      dL.add(std::fabs(split[0]));
      dC.add(std::fabs(split[1]));
      dH.add(std::fabs(split[2]));
      const double weight = context.weightOf(photograph.number, i);
      power += weight * std::pow(context.measureBetween(aim, lab), context.options.norm);
      weights += weight;
    }
  }
  FitFigures figures;
  if (weights > 0.0) figures.objective = std::pow(power / weights, 1.0 / context.options.norm);
  figures.mean2000 = d2000.value();
  figures.rms2000 = std::sqrt(square2000.value());
  figures.percentile95 = percentile(all, 0.95);
  figures.max2000 = percentile(all, 1.0);
  figures.meanLevelled = levelled.value();
  figures.mean76 = d76.value();
  figures.mean94 = d94.value();
  figures.meanCam16 = dCam16.value();
  figures.meanL = dL.value();
  figures.meanC = dC.value();
  figures.meanH = dH.value();
  figures.metamerismIndex = 100.0 - kMetamerismFactor * chromatic76.value();
  return figures;
}

}  // namespace greycard
