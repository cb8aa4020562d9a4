#include "matrix_cost.h"

#include <algorithm>
#include <cmath>
#include <optional>
#include <random>

#include "allocation_count.h"
#include "chart_fixture.h"
#include "greycard/delta_e.h"
#include "gtest/gtest.h"
#include "saturation_search.h"

namespace greycard {
namespace {

/// A camera that clips, with a gamma that isn't smooth, and a noisy chart.
class Cost : public testing::Test {
 protected:
  Cost() {
    std::mt19937 random(7);
    std::vector<std::int32_t> table = fixture::srgbGammaTable();
    for (std::int32_t& value : table) value += static_cast<std::int32_t>(random() % 101) - 50;
    curve_ = fixture::curveOf(table);
    const MacbethChartData chart = fixture::seenBySensor(illum_TL84).m_macbethData;
    rgb_ = chart.m_RGB;
    for (Vector3& patch : rgb_) patch = {1.9 * patch[0], 1.1 * patch[1], 1.4 * patch[2]};
    rgb_[21] = {1e-4, 2e-4, 1e-4};  // the linear branch of L*a*b*
    setup_ = {.targetLab = chart.m_RefLab,
              .noise = chart.m_Noise,
              .gains = {1.9, 1.1, 1.4},
              .rgbToXyz = kRgbToXyz,
              .white = {95.05, 100.0, 108.9},
              .kL = 1.25,
              .kC = 0.9,
              .noiseRate = 0.3,
              .noiseScale = 2.5};
    setup_.targetLab[4] = {50, 0, 0};  // no chroma: no pressure, and no division by it
    for (std::size_t i = 0; i < kPatchCount; ++i)
      setup_.patchWeights[i] = i % 2 ? 0.61 : 1.3;  // 22.92
    CameraCurve curve;
    std::copy_n(curve_.data(), 256, curve.begin());
    model_.emplace(rgb_, GammaStage({curve, curve, curve}), setup_.rgbToXyz, setup_.white);
    std::uniform_real_distribution<double> around(-0.6, 0.6);
    matrices_.fill({1.5, -0.3, -0.2, 1.4, -0.5, 1.6});
    for (MatrixParameters& p : matrices_)
      for (double& value : p) value += around(random);
  }

  PatchTable slowLab(const MatrixParameters& p) const {
    return toPatchTable(fixture::slowModel(toMatrix(rgb_), toMatrix(matrixFromParameters(p)),
                                           curve_, toMatrix(setup_.rgbToXyz),
                                           toMatrix(setup_.white)));
  }
  double slowNoise(const MatrixParameters& p) const;

  PatchTable rgb_;
  CDoubleMatrix curve_;
  CostSetup setup_;
  std::optional<ForwardModel> model_;
  std::array<MatrixParameters, 20> matrices_;
};

TEST_F(Cost, ModelEqualsTheStepByStepOne) {
  for (const MatrixParameters& p : matrices_) {
    ModelColours colours;
    model_->evaluate(matrixFromParameters(p), colours);
    const PatchTable fast = labTable(colours), slow = slowLab(p);
    for (std::size_t i = 0; i < kPatchCount; ++i)
      for (std::size_t c = 0; c < 3; ++c)
        EXPECT_NEAR(fast[i][c], slow[i][c], 1e-11) << i << ", " << c;
  }
}

// CIE94 with the hue difference from the angle rather than from the difference of squares.
double slowCie94(const Vector3& target, const Vector3& model, double kL, double kC, double kH) {
  const double c1 = std::hypot(target[1], target[2]), c2 = std::hypot(model[1], model[2]);
  const double angle = std::atan2(target[2], target[1]) - std::atan2(model[2], model[1]);
  const double dH = 2 * std::sqrt(c1 * c2) * std::sin(angle / 2);
  return std::hypot((model[0] - target[0]) / kL, (c2 - c1) / (kC * (1 + 0.045 * c1)),
                    dH * dH < 0.1 ? 0 : dH / (kH * (1 + 0.015 * c1)));
}

// First-order propagation of one measured channel's noise after the other, with derivatives of
// L*a*b* from central differences.
double Cost::slowNoise(const MatrixParameters& p) const {
  const PatchTable lab = slowLab(p);
  double sum = 0;
  for (std::size_t i = 0; i < kPatchCount; ++i) {
    const Vector3 xyz = CIELab_to_XYZ(lab[i], setup_.white);
    Vector3 variance{};
    for (std::size_t k = 0; k < 3; ++k) {
      Vector3 rgb{}, up = xyz, down = xyz;
      rgb[k] = 100 * setup_.gains[k] * setup_.noise[i][k];
      const Vector3 change = multiply(setup_.rgbToXyz, multiply(matrixFromParameters(p), rgb));
      for (std::size_t c = 0; c < 3; ++c) up[c] += 1e-3 * change[c], down[c] -= 1e-3 * change[c];
      const Vector3 a = XYZ_to_CIELab(up, setup_.white), b = XYZ_to_CIELab(down, setup_.white);
      for (std::size_t c = 0; c < 3; ++c) variance[c] += std::pow((a[c] - b[c]) / 2e-3, 2);
    }
    sum += std::sqrt(variance[0] + 0.1 * variance[1] + 0.05 * variance[2]);
  }
  return sum / kPatchCount;
}

TEST_F(Cost, TermsEqualTheirFormulas) {
  for (const OptimMode mode : {OptimMode::Cie76, OptimMode::Cie94}) {
    setup_.mode = mode;
    MatrixCost cost(*model_, setup_);
    cost.hueWeight = 1.4;
    cost.saturationPressure = 1.5;
    for (const MatrixParameters& p : matrices_) {
      const PatchTable lab = slowLab(p);
      double error = 0, pressure = 0, chroma = 0, wanted = 0;
      for (std::size_t i = 0; i < kPatchCount; ++i) {
        const Vector3& target = setup_.targetLab[i];
        error += setup_.patchWeights[i] * (mode == OptimMode::Cie94
                                               ? slowCie94(target, lab[i], 1.25, 0.9, 1.4)
                                               : deltaE76(target, lab[i]));
        if (i >= 18) continue;
        const double c = std::hypot(lab[i][1], lab[i][2]),
                     reference = std::hypot(target[1], target[2]);
        if (reference > 0) pressure += std::exp(-c / reference);
        chroma += c;
        wanted += reference;
      }
      const CostTerms terms = cost.terms(p);
      EXPECT_NEAR(terms.colour, 0.7 * error / 22, 1e-10);
      EXPECT_NEAR(terms.pressure, 1.5 * pressure, 1e-11);
      EXPECT_NEAR(terms.noise / (0.3 * 2.5 * slowNoise(p)), 1.0, 1e-5);
      EXPECT_EQ(cost(p), terms.noise + terms.colour + terms.pressure);
      EXPECT_NEAR(cost.chromaChange(p), chroma / wanted - 1, 1e-12);
    }
  }
}

// Far off, so that no sweep comes near: the coarse one to where nothing improves, then for each hue
// weight a wide and a narrow one, each centred where the one before has ended.
TEST_F(Cost, SaturationSearchGoesThroughItsSchedule) {
  MatrixCost cost(*model_, setup_);
  std::vector<double> hue, pressure, share;
  const ProgressCallback note = [&](double fraction) {
    hue.push_back(cost.hueWeight), pressure.push_back(cost.saturationPressure);
    share.push_back(fraction);
    return true;
  };
  const auto found = SaturationSearch(cost, 9.0, note).run({1.5, -0.3, -0.2, 1.4, -0.5, 1.6});
  ASSERT_TRUE(found);
  const auto coarse = static_cast<std::size_t>(std::ranges::count(hue, 1.0)) - 75;
  ASSERT_EQ(hue.size(), coarse + 11 * 75);
  EXPECT_EQ(found->powellRuns, static_cast<int>(hue.size()));
  EXPECT_GT(found->evaluations, found->powellRuns);
  double g = coarse < 250 ? static_cast<double>(coarse - 1) * 4 / 249 : 250.0 * 4 / 249;
  for (std::size_t i = 0; i < coarse; ++i) {
    EXPECT_NEAR(pressure[i], static_cast<double>(i) * 4 / 249, 1e-12);
    EXPECT_NEAR(share[i], static_cast<double>(i) / 1075, 1e-12);
  }
  std::size_t at = coarse;
  for (const double weight : {0.5, 0.6, 0.7, 0.8, 0.9, 1.0, 1.2, 1.4, 1.6, 1.8, 2.0})
    for (const auto& [half, steps] : {std::pair{0.5, 50}, {0.25, 25}}) {
      for (int n = 0; n < steps; ++n, ++at) {
        EXPECT_NEAR(hue[at], weight, 1e-12) << at;
        EXPECT_NEAR(pressure[at], g - half + n * 2 * half / (steps - 1), 1e-9) << at;
        EXPECT_NEAR(share[at], (250.0 + static_cast<double>(at - coarse)) / 1075, 1e-12);
      }
      g += -half + steps * 2 * half / (steps - 1);
    }
}

TEST_F(Cost, EvaluationDoesNotAllocate) {
  for (const OptimMode mode : {OptimMode::Cie76, OptimMode::Cie94}) {
    setup_.mode = mode;
    MatrixCost cost(*model_, setup_);
    cost.saturationPressure = 1.0;
    const long before = allocationCount();
    const double value = cost(matrices_[0]) + cost.chromaChange(matrices_[0]);
    EXPECT_EQ(allocationCount(), before);
    EXPECT_TRUE(std::isfinite(value));
  }
}

}  // namespace
}  // namespace greycard
