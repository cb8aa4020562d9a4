#include "matrix_cost.h"

#include <cmath>
#include <cstdlib>
#include <new>
#include <random>
#include <stdexcept>

#include "chart_fixture.h"
#include "gtest/gtest.h"

namespace {
thread_local long allocations = 0;
}

void* operator new(std::size_t size) {
  ++allocations;
  if (void* memory = std::malloc(size > 0 ? size : 1)) return memory;
  throw std::bad_alloc();
}
void operator delete(void* memory) noexcept {
  std::free(memory);
}
void operator delete(void* memory, std::size_t) noexcept {
  std::free(memory);
}

namespace greycard {
namespace {

using fixture::slowModel;

/// A camera that clips, with a gamma that isn't smooth, and a noisy chart.
class Cost : public testing::Test {
 protected:
  Cost() {
    std::mt19937 random(7);
    std::vector<std::int32_t> table = fixture::srgbGammaTable();
    for (std::int32_t& value : table) value += static_cast<std::int32_t>(random() % 101) - 50;
    curve_ = fixture::curveOf(table);
    const MacbethChartData chart = fixture::seenBySensor(illum_TL84).m_macbethData;
    const Vector3 gains{1.9, 1.1, 1.4};
    rgb_ = chart.m_RGB;
    for (Vector3& patch : rgb_)
      for (std::size_t c = 0; c < 3; ++c) patch[c] *= gains[c];
    rgb_[21] = {1e-4, 2e-4, 1e-4};  // the linear branch of L*a*b*
    setup_.targetLab = chart.m_RefLab;
    for (double& weight : setup_.patchWeights)
      weight = 0.5 + 0.001 * static_cast<double>(random() % 1000);
    setup_.noise = chart.m_Noise;
    setup_.gains = gains;
    setup_.rgbToXyz = kRgbToXyz;
    setup_.white = {95.05, 100.0, 108.9};
    setup_.kL = 1.25;
    setup_.kC = 0.9;
    setup_.noiseRate = 0.3;
    setup_.noiseScale = 2.5;
    CameraCurve curve;
    std::copy_n(curve_.data(), 256, curve.begin());
    model_.emplace(rgb_, GammaStage({curve, curve, curve}), setup_.rgbToXyz, setup_.white);
  }

  CDoubleMatrix slowLab(const Matrix3& ccm) const {
    return slowModel(toMatrix(rgb_), toMatrix(ccm), curve_, toMatrix(setup_.rgbToXyz),
                     toMatrix(setup_.white));
  }

  PatchTable rgb_;
  CDoubleMatrix curve_;
  CostSetup setup_;
  std::optional<ForwardModel> model_;
};

std::vector<MatrixParameters> someMatrices() {
  std::mt19937 random(11);
  std::uniform_real_distribution<double> around(-0.6, 0.6);
  std::vector<MatrixParameters> all(20);
  for (MatrixParameters& p : all) {
    p = {1.5, -0.3, -0.2, 1.4, -0.5, 1.6};
    for (double& value : p) value += around(random);
  }
  return all;
}

TEST_F(Cost, ModelEqualsTheStepByStepOne) {
  for (const MatrixParameters& p : someMatrices()) {
    const Matrix3 ccm = matrixFromParameters(p);
    ModelColours colours;
    model_->evaluate(ccm, colours);
    const PatchTable fast = labTable(colours), slow = toPatchTable(slowLab(ccm));
    for (std::size_t i = 0; i < kPatchCount; ++i)
      for (std::size_t c = 0; c < 3; ++c)
        EXPECT_NEAR(fast[i][c], slow[i][c], 1e-11) << i << ", " << c;
  }
}

// CIE94 from hue angles rather than from the difference of squares; colours so far apart that the
// floor of the hue difference is rarely met, and is applied where it is.
double slowCie94(const double* target, const double* model, double kL, double kC, double kH) {
  const double c1 = std::hypot(target[1], target[2]), c2 = std::hypot(model[1], model[2]);
  const double angle = std::atan2(target[2], target[1]) - std::atan2(model[2], model[1]);
  const double dH = 2 * std::sqrt(c1 * c2) * std::sin(angle / 2);
  const double dL = (model[0] - target[0]) / kL;
  const double dC = (c2 - c1) / (kC * (1 + 0.045 * c1));
  const double dHWeighted = dH * dH < 0.1 ? 0 : dH / (kH * (1 + 0.015 * c1));
  return std::sqrt(dL * dL + dC * dC + dHWeighted * dHWeighted);
}

TEST_F(Cost, ColourTermEqualsTheFormula) {
  for (const OptimMode mode : {OptimMode::Cie76, OptimMode::Cie94}) {
    setup_.mode = mode;
    MatrixCost cost(*model_, setup_);
    cost.hueWeight = 1.4;
    for (const MatrixParameters& p : someMatrices()) {
      const CDoubleMatrix model = slowLab(matrixFromParameters(p)),
                          target = toMatrix(setup_.targetLab);
      double sum = 0, weights = 0;
      for (std::int32_t i = 0; i < 24; ++i) {
        const double *t = target[i], *m = model[i];
        const double error = mode == OptimMode::Cie94
                                 ? slowCie94(t, m, 1.25, 0.9, 1.4)
                                 : std::hypot(t[0] - m[0], t[1] - m[1], t[2] - m[2]);
        sum += setup_.patchWeights[static_cast<std::size_t>(i)] * error;
        weights += setup_.patchWeights[static_cast<std::size_t>(i)];
      }
      EXPECT_NEAR(cost.terms(p).colour, 0.7 * sum / std::floor(weights), 1e-10);
    }
  }
}

// Standard deviations by first-order propagation with derivatives from central differences.
TEST_F(Cost, NoiseTermAgreesWithFiniteDifferences) {
  const CDoubleMatrix white = toMatrix(setup_.white);
  const MatrixCost cost(*model_, setup_);
  for (const MatrixParameters& p : someMatrices()) {
    const Matrix3 ccm = matrixFromParameters(p);
    CDoubleMatrix gains = meye(3);
    for (std::int32_t c = 0; c < 3; ++c) gains[c][c] = setup_.gains[static_cast<std::size_t>(c)];
    const CDoubleMatrix toXyz = MatrixMultiply(
        MatrixMultiply(MatrixMultiply(toMatrix(setup_.rgbToXyz), 100.0), toMatrix(ccm)), gains);
    const PatchTable lab = toPatchTable(slowLab(ccm));
    double sum = 0;
    for (std::size_t i = 0; i < kPatchCount; ++i) {
      const Vector3 xyz = CIELab_to_XYZ(lab[i], setup_.white);
      Vector3 variance{};
      for (std::int32_t k = 0; k < 3; ++k) {  // one noise source after the other
        Vector3 up = xyz, down = xyz;
        for (std::size_t c = 0; c < 3; ++c) {
          const double step = 1e-5 * toXyz[static_cast<std::int32_t>(c)][k];
          up[c] += step;
          down[c] -= step;
        }
        const Vector3 labUp = XYZ_to_CIELab(up, setup_.white),
                      labDown = XYZ_to_CIELab(down, setup_.white);
        for (std::size_t c = 0; c < 3; ++c)
          variance[c] += std::pow(
              (labUp[c] - labDown[c]) / 2e-5 * setup_.noise[i][static_cast<std::size_t>(k)], 2);
      }
      sum += std::sqrt(variance[0] + 0.1 * variance[1] + 0.05 * variance[2]);
    }
    EXPECT_NEAR(cost.terms(p).noise / (0.3 * 2.5 * sum / 24), 1.0, 1e-5);
  }
}

TEST_F(Cost, PressureAndChromaChange) {
  setup_.targetLab[4] = {50, 0, 0};  // no chroma: no pressure, and no division by it
  MatrixCost cost(*model_, setup_);
  cost.saturationPressure = 1.5;
  const MatrixParameters p = someMatrices()[0];
  const PatchTable lab = toPatchTable(slowLab(matrixFromParameters(p)));
  double pressure = 0, chroma = 0, wanted = 0;
  for (std::size_t i = 0; i < 18; ++i) {
    const double c = std::hypot(lab[i][1], lab[i][2]);
    const double reference = std::hypot(setup_.targetLab[i][1], setup_.targetLab[i][2]);
    if (i != 4) pressure += 1.5 * std::exp(-c / reference);
    chroma += c;
    wanted += reference;
  }
  const CostTerms terms = cost.terms(p);
  EXPECT_NEAR(terms.pressure, pressure, 1e-11);
  EXPECT_EQ(cost(p), terms.noise + terms.colour + terms.pressure);
  EXPECT_NEAR(cost.chromaChange(p), chroma / wanted - 1, 1e-12);
}

TEST_F(Cost, EvaluationDoesNotAllocate) {
  for (const OptimMode mode : {OptimMode::Cie76, OptimMode::Cie94}) {
    setup_.mode = mode;
    MatrixCost cost(*model_, setup_);
    cost.saturationPressure = 1.0;
    const MatrixParameters p{1.5, -0.3, -0.2, 1.4, -0.5, 1.6};
    const long before = allocations;
    const double value = cost(p) + cost.chromaChange(p);
    EXPECT_EQ(allocations, before);
    EXPECT_TRUE(std::isfinite(value));
  }
}

TEST_F(Cost, RefusesWeightsThatSumToNothing) {
  setup_.patchWeights.fill(0.04);  // 0.96, truncated to 0
  EXPECT_THROW(MatrixCost(*model_, setup_), std::invalid_argument);
}

TEST(MatrixParameters, RowsSumToOneAndTheBlueRowReadsDifferently) {
  const Matrix3 ccm = matrixFromParameters(MatrixParameters{1, 2, 3, 4, 5, 6});
  EXPECT_EQ(ccm, (Matrix3{{{1, 2, -2}, {3, 4, -6}, {-10, 5, 6}}}));
  EXPECT_EQ(parametersFromMatrix(ccm), (MatrixParameters{1, 2, 3, 4, 5, 6}));
}

}  // namespace
}  // namespace greycard
