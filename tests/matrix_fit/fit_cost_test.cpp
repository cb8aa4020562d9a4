#include "fit_cost.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <optional>
#include <vector>

#include "known_chart.h"

namespace greycard {
namespace {

using namespace fixture;

// Two photographs of a chart, some way from their fit.
struct NearbyFit {
  PatchTable reference = referenceOf(illum_D65);
  std::vector<FitSample> samples;
  FitState state;

  explicit NearbyFit(FitToneCurve curve) {
    const PatchTable measured = KnownCamera().measured(reference);
    for (std::size_t k = 0; k < 2; ++k)
      for (std::size_t i = 0; i < kPatchCount; ++i) {
        FitSample sample{i, k, measured[i]};
        for (std::size_t c = 0; c < 3; ++c) {
          sample.measured[c] = std::max(sample.measured[c], 0.01) * (k == 0 ? 1.0 : 0.8);
          sample.encoded[c] = sRGBEncode(sample.measured[c]);
          sample.flat[c] = 1.0 + 0.01 * static_cast<double>(c + i);
        }
        sample.weight = i == 4 ? 0.0 : 1.0 / 46.0;
        samples.push_back(sample);
      }
    state.matrix = {{{1.5, -0.35, -0.15}, {-0.2, 1.4, -0.2}, {0.0, -0.5, 1.5}}};
    state.gains = {1.7, 1.0, 1.6};
    state.curve = unchangedCurve(curve);
    for (double& number : state.curve.numbers) number += 0.02;
    state.exposure = {0.8, 0.9};
    state.light = {{0.05, -0.03, 0.02, 0.01, -0.02}, {-0.02, 0.04, 0.0, 0.03, 0.01}};
  }
};

// The slopes that the search goes by are those of the cost, whatever is free.
TEST(FitCost, ItsSlopesAreThoseOfItsValue) {
  std::array<CameraCurve, 3> gamma;
  for (std::size_t c = 0; c < 3; ++c)
    for (std::size_t i = 0; i < gamma[c].size(); ++i)
      gamma[c][i] = std::pow(static_cast<double>(i) / static_cast<double>(gamma[c].size() - 1),
                             1.0 / (2.0 + 0.1 * static_cast<double>(c)));
  const struct {
    const char* name;
    FitFreedom freedom;
    FitToneCurve curve;
    FitDifference measure;
    double norm, smoothing;
    bool shown, limited;
  } cases[] = {
      {"nine", {}, FitToneCurve::none, FitDifference::ciede2000, 2.0, 0.0, false, false},
      {"shown", {}, FitToneCurve::none, FitDifference::cie76, 2.0, 0.0, true, false},
      {"six, a larger norm, quiet rows",
       {.entries = FitEntries::six, .gains = true},
       FitToneCurve::none,
       FitDifference::cie94,
       4.0,
       0.1,
       false,
       true},
      {"quiet rows of nine", {}, FitToneCurve::none, FitDifference::cie76, 2.0, 0.1, false, true},
      {"all of them",
       {.gains = true,
        .curveTerms = curveTerms(FitToneCurve::powerOffset),
        .exposure = true,
        .firstExposureFixed = true,
        .light = FitLight::quadratic},
       FitToneCurve::powerOffset,
       FitDifference::ciede2000,
       2.0,
       0.1,
       false,
       false},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name);
    const NearbyFit near(c.curve);
    const PatchDifference difference(c.measure, near.reference, kSRgbSpace);
    const OutputCurve output(c.shown ? std::optional(gamma) : std::nullopt);
    const FitUnknowns unknowns(c.freedom, 2);
    FitCost cost(difference, output, unknowns, near.samples, c.norm);
    cost.smoothing = c.smoothing;
    if (c.limited) cost.limits = {{1.2, 1.1, 3.0}, {0.3, 0.1, 0.2}, 2.0};
    LocalModel here, above, below;
    ASSERT_TRUE(cost.evaluate(near.state, here));
    const std::size_t n = unknowns.count();
    for (std::size_t k = 0; k < n; ++k) {
      constexpr double kStep = 1e-5;
      std::vector<double> step(n);
      step[k] = kStep;
      ASSERT_TRUE(cost.evaluate(cost.moved(near.state, step), above));
      step[k] = -kStep;
      ASSERT_TRUE(cost.evaluate(cost.moved(near.state, step), below));
      const double slope = (above.value - below.value) / (2.0 * kStep);
      EXPECT_NEAR(here.gradient[k], slope, 1e-4 * (1.0 + std::fabs(slope))) << "unknown " << k;
      for (std::size_t j = 0; j < n; ++j)
        EXPECT_EQ(here.curvature[k * n + j], here.curvature[j * n + k]);
      EXPECT_GT(here.curvature[k * n + k], 0.0);
    }
  }
}

}  // namespace
}  // namespace greycard
