#include "greycard/matrix_fit.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <functional>
#include <limits>
#include <stdexcept>
#include <thread>

#include "greycard/color_correction_utils.h"
#include "greycard/delta_e.h"
#include "known_chart.h"

namespace greycard {
namespace {

using fixture::fitAlone;
using fixture::KnownCamera;
using fixture::referenceOf;
using fixture::seenBy;

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

MatrixFitSamples measuredBy(const KnownCamera& camera) {
  MatrixFitSamples samples;
  samples.referenceLab = referenceOf(illum_D65);
  samples.photographs.emplace_back().rgb = camera.measured(samples.referenceLab);
  return samples;
}

// The product of matrix, gains and exposure is the camera's; how it is shared is the options'.
void expectCamera(const MatrixFitResult& result, const KnownCamera& camera, double tolerance) {
  for (std::size_t r = 0; r < 3; ++r)
    for (std::size_t c = 0; c < 3; ++c)
      EXPECT_NEAR(result.matrix[r][c] * result.gains[c] * result.photographs[0].exposure,
                  camera.matrix[r][c] * camera.gains[c] * camera.exposure, tolerance);
}

TEST(MatrixFit, RecoversAKnownCamera) {
  const KnownCamera camera;
  const MatrixFitSamples samples = measuredBy(camera);
  for (const FitDifference difference : {FitDifference::ciede2000, FitDifference::cie94,
                                         FitDifference::cie76, FitDifference::cam16Ucs})
    for (const double norm : {1.0, 2.0, 8.0}) {
      FitOptions options = fitAlone();
      options.difference = difference;
      options.norm = norm;
      expectCamera(*MatrixFit(options).fit(samples), camera, 1e-3);
      options.whiteBalance = FitWhiteBalance::fitted;
      const auto fitted = MatrixFit(options).fit(samples);
      expectCamera(*fitted, camera, 1e-3);
      for (std::size_t c = 0; c < 3; ++c) {
        EXPECT_NEAR(fitted->gains[c], camera.gains[c], 1e-3);
        EXPECT_NEAR(fitted->matrix[c][0] + fitted->matrix[c][1] + fitted->matrix[c][2], 1.0, 1e-9);
      }
      EXPECT_NEAR(fitted->photographs[0].exposure, camera.exposure, 1e-3);
    }
}

TEST(MatrixFit, ExposureAndGainsAsAsked) {
  const KnownCamera camera{.exposure = 0.9};
  const MatrixFitSamples samples = measuredBy(camera);
  FitOptions options = fitAlone();
  options.entries = FitEntries::six;
  options.exposure = FitExposure::stated;
  const auto stated = MatrixFit(options).fit(samples);
  options.exposure = FitExposure::balanced;
  const auto balanced = MatrixFit(options).fit(samples);
  EXPECT_NEAR(stated->photographs[0].exposure / balanced->photographs[0].exposure, stated->gains[1],
              1e-12);
  EXPECT_EQ(stated->gains, balanced->gains);
  options.exposure = FitExposure::number;
  options.exposureGain = 0.7;
  EXPECT_EQ(MatrixFit(options).fit(samples)->photographs[0].exposure, 0.7);
  options.whitePatches.clear();
  EXPECT_EQ(MatrixFit(options).fit(samples)->gains, (Vector3{1, 1, 1}));
}

// What the camera's gamma does to a picture is looked at: with a gamma that clips and bends, the
// fit through it is better through it, and worse without.
TEST(MatrixFit, LooksThroughTheCamerasGamma) {
  const MatrixFitSamples samples = seenBy(ModelSensor::Ordinary, illum_D65);
  FitOptions plain = fitAlone(), through = fitAlone();
  plain.entries = through.entries = FitEntries::six;
  plain.exposure = through.exposure = FitExposure::free;
  std::vector<std::int32_t> table(256), sRgb(256);
  for (std::size_t i = 0; i < 256; ++i) {
    const double x = static_cast<double>(i) / 255.0, e = sRGBEncode(x);
    sRgb[i] = static_cast<std::int32_t>(std::lround(62.4 * 255.0 * e));
    table[i] = static_cast<std::int32_t>(
        std::lround(62.4 * 255.0 * (0.6 * e + 0.4 * e * e * (3.0 - 2.0 * e))));
  }
  through.cameraGamma = {table, table, table};
  const auto best = MatrixFit(through).fit(samples);
  const auto linear = MatrixFit(plain).fit(samples);
  // The plain fit's numbers, judged through the gamma.
  through.exposure = FitExposure::number;
  through.exposureGain = linear->photographs[0].exposure;
  EXPECT_LT(best->figures.rms2000, MatrixFit(through).fit(samples)->figures.rms2000);
  // A table of the sRGB transfer is none, but for its rounding and, of cyan, the clipping.
  plain.patchWeights[17] = 0.0;
  const double unclipped = MatrixFit(plain).fit(samples)->figures.rms2000;
  plain.cameraGamma = {sRgb, sRgb, sRgb};
  EXPECT_NEAR(MatrixFit(plain).fit(samples)->figures.rms2000, unclipped, 0.02);
}

TEST(MatrixFit, SeveralPhotographsShareTheMatrix) {
  const KnownCamera camera;
  MatrixFitSamples samples = measuredBy(camera);
  for (const double factor : {0.5, 0.25}) {
    samples.photographs.push_back(samples.photographs[0]);
    for (Vector3& rgb : samples.photographs.back().rgb)
      for (double& value : rgb) value *= factor;
  }
  for (const FitEntries entries : {FitEntries::six, FitEntries::nine}) {
    FitOptions options = fitAlone();
    options.entries = entries;
    options.exposure = FitExposure::free;
    const auto result = MatrixFit(options).fit(samples);
    // The greys, which set the gains, are not quite neutral in the references.
    expectCamera(*result, camera, entries == FitEntries::nine ? 1e-3 : 0.01);
    const double first = result->photographs[0].exposure;
    EXPECT_NEAR(result->photographs[1].exposure / first, 2.0, 1e-4);
    EXPECT_NEAR(result->photographs[2].exposure / first, 4.0, 1e-4);
  }
  // The weight decides between photographs that differ.
  MatrixFitSamples two = measuredBy(camera);
  two.photographs.push_back(two.photographs[0]);
  for (Vector3& rgb : two.photographs[1].rgb) std::swap(rgb[0], rgb[1]);
  two.photographs[1].weight = 1e-5;
  expectCamera(*MatrixFit(fitAlone()).fit(two), camera, 0.05);
}

// A patch that clips or weighs nothing is named, and whatever it measured makes no difference.
TEST(MatrixFit, LeavesOutAndNamesPatches) {
  MatrixFitSamples samples = seenBy(ModelSensor::Narrow, illum_A);
  samples.photographs[0].clipped[4] = samples.photographs[0].clipped[18] = true;
  FitOptions options = fitAlone();
  options.patchWeights[7] = 0.0;
  const auto result = MatrixFit(options).fit(samples);
  const auto& leftOut = result->photographs[0].leftOut;
  for (std::size_t i = 0; i < kPatchCount; ++i)
    EXPECT_EQ(leftOut[i].empty(), i != 4 && i != 7 && i != 18) << i;
  ASSERT_EQ(result->notes.size(), 1U);
  EXPECT_EQ(result->notes[0], "photograph 1: left out because they clip: patches 5, 19");
  samples.photographs[0].rgb[4] = {kNaN, 1e300, -5.0};
  samples.photographs[0].rgb[7] = {0.9, 0.1, 0.9};
  EXPECT_EQ(MatrixFit(options).fit(samples)->matrix, result->matrix);
}

TEST(MatrixFit, FiguresAreWhatTheySay) {
  MatrixFitSamples samples = seenBy(ModelSensor::Broad, illum_TL84);
  samples.photographs[0].clipped[3] = true;
  FitOptions options;
  options.uncertainty = false;
  const auto result = MatrixFit(options).fit(samples);
  const FittedPhotograph& photograph = result->photographs[0];
  double sum = 0, sumL = 0, levelled = 0, squares = 0, chromatic = 0;
  std::vector<double> all;
  for (std::size_t i = 0; i < kPatchCount; ++i) {
    const Vector3 &aim = samples.referenceLab[i], &lab = photograph.lab[i],
                  &split = photograph.split[i];
    EXPECT_DOUBLE_EQ(photograph.dE2000[i], deltaE2000(aim, lab));
    EXPECT_NEAR(std::hypot(split[0], split[1], split[2]), deltaE76(aim, lab), 1e-9);
    EXPECT_NEAR(split[1], std::hypot(lab[1], lab[2]) - std::hypot(aim[1], aim[2]), 1e-12);
    if (i == 3) continue;
    all.push_back(photograph.dE2000[i]);
    sum += photograph.dE2000[i];
    squares += photograph.dE2000[i] * photograph.dE2000[i];
    sumL += lab[0] - aim[0];
    if (i < 18) chromatic += deltaE76(aim, lab) / 17.0;
  }
  for (std::size_t i = 0; i < kPatchCount; ++i)
    if (i != 3) {
      Vector3 level = photograph.lab[i];
      level[0] -= sumL / 23.0;
      levelled += deltaE2000(samples.referenceLab[i], level) / 23.0;
    }
  const FitFigures& figures = result->figures;
  EXPECT_NEAR(figures.mean2000, sum / 23.0, 1e-12);
  EXPECT_NEAR(figures.rms2000, std::sqrt(squares / 23.0), 1e-12);
  EXPECT_NEAR(figures.objective, figures.rms2000, 1e-12);
  EXPECT_NEAR(figures.meanLevelled, levelled, 1e-12);
  EXPECT_NEAR(figures.metamerismIndex, 100.0 - 5.5 * chromatic, 1e-9);
  std::sort(all.begin(), all.end());
  EXPECT_DOUBLE_EQ(figures.max2000, all.back());
  EXPECT_NEAR(figures.percentile95, all[20] + 0.9 * (all[21] - all[20]),
              1e-12);  // 0.95 * 22 = 20.9
  EXPECT_EQ(photograph.figures.mean2000, figures.mean2000);

  // Singular values by the invariants of M'M: their product is |det M|.
  const Matrix3& m = result->matrix;
  for (std::size_t c = 0; c < 3; ++c)
    EXPECT_DOUBLE_EQ(result->rowNoise[c], std::hypot(m[c][0], m[c][1], m[c][2]));
  EXPECT_GT(result->conditionNumber, 1.0);

  // The stated fit is the facade's, with the sRGB transfer for a gamma.
  ColorCorrectionUtils facade;
  std::vector<std::int32_t> table(256);
  for (std::size_t i = 0; i < 256; ++i)
    table[i] = static_cast<std::int32_t>(
        std::lround(62.4 * 255.0 * sRGBEncode(static_cast<double>(i) / 255.0)));
  facade.SetGammaTable(table, table, table);
  ColorCorrectionSettings settings(0, illum_TL84, 0);
  settings.m_macbethData.m_RGB = samples.photographs[0].rgb;
  facade.Optimize(settings, 0);
  options.statedSettings = settings;
  const auto compared = MatrixFit(options).fit(samples);
  double stated = 0;
  for (std::size_t i = 0; i < kPatchCount; ++i)
    if (i != 3) stated += deltaE2000(samples.referenceLab[i], facade.m_macbethLab[i]) / 23.0;
  EXPECT_NEAR(compared->photographs[0].stated->mean2000, stated, 1e-12);
  EXPECT_LT(figures.rms2000, compared->photographs[0].stated->rms2000);
}

// Held-out errors are those of fits that never saw the patch.
TEST(MatrixFit, HeldOutPatchesAreNotSeen) {
  const MatrixFitSamples samples = seenBy(ModelSensor::Narrow, illum_D50);
  FitOptions options = fitAlone();
  options.heldOut = true;
  const auto result = MatrixFit(options).fit(samples);
  double single = 0, folds = 0;
  options.heldOut = false;
  const auto errorWithout = [&](const std::function<bool(std::size_t)>& out) {
    MatrixFitSamples fewer = samples;
    for (std::size_t i = 0; i < kPatchCount; ++i) fewer.photographs[0].clipped[i] = out(i);
    const auto fit = MatrixFit(options).fit(fewer);
    double sum = 0;
    for (std::size_t i = 0; i < kPatchCount; ++i)
      if (out(i)) sum += fit->photographs[0].dE2000[i];
    return sum;
  };
  for (std::size_t k = 0; k < kPatchCount; ++k)
    single += errorWithout([k](std::size_t i) { return i == k; });
  for (std::size_t k = 0; k < 6; ++k)
    folds += errorWithout([k](std::size_t i) { return (i % 6 + i / 6) % 6 == k; });
  EXPECT_NEAR(result->leaveOneOut->mean, single / 24.0, 1e-4);
  EXPECT_NEAR(result->sixFold->mean, folds / 24.0, 1e-4);
  EXPECT_GT(result->leaveOneOut->mean, result->figures.mean2000);
}

TEST(MatrixFit, WhatNeutralGreysTell) {
  MatrixFitSamples samples = measuredBy({});
  for (std::size_t i = 18; i < kPatchCount; ++i)
    samples.referenceLab[i] = {samples.referenceLab[i][0], 0.0, 0.0};
  samples.photographs[0].rgb = KnownCamera().measured(samples.referenceLab);
  FitOptions options = fitAlone();
  options.heldOut = true;
  options.toneCurve = FitToneCurve::monotone;
  EXPECT_TRUE(MatrixFit(options).fit(samples)->leaveOneOut);
  auto& clipped = samples.photographs[0].clipped;
  clipped[18] = clipped[20] = clipped[21] = true;
  EXPECT_FALSE(MatrixFit(options).fit(samples)->leaveOneOut) << "two greys make no curve";
  // The one patch that gives gains and exposure is left out in its turn, and they stay.
  options.toneCurve = FitToneCurve::none;
  options.entries = FitEntries::six;
  EXPECT_LT(MatrixFit(options).fit(samples)->leaveOneOut.value().mean, 0.01);
  // Greys alone don't say what becomes of colours.
  clipped.fill(false);
  std::fill_n(clipped.begin(), 18, true);
  options = FitOptions();
  options.statedSettings.emplace(0, illum_D65, 9);
  const auto grey = MatrixFit(options).fit(samples);
  EXPECT_EQ(grey->notes.back().rfind("there are no standard errors", 0), 0U);
  EXPECT_EQ(grey->photographs[0].statedRefusal.rfind("m_RGBtoXYZTransform is 9", 0), 0U);
}

TEST(MatrixFit, SameBitsInTwoThreadsTwoThreadsDoNotMeet) {
  MatrixFitSamples samples[] = {seenBy(ModelSensor::Ordinary, illum_A),
                                seenBy(ModelSensor::Broad, illum_D65)};
  FitOptions options;
  options.toneCurve = FitToneCurve::power;
  options.light = FitLight::plane;
  for (MatrixFitSamples& s : samples) s.photographs[0].noise.fill({0.001, 0.001, 0.001});
  const MatrixFit fit(options);
  const auto alone = fit.fit(samples[0]);
  std::optional<MatrixFitResult> together, other;
  std::thread thread([&] { other = fit.fit(samples[1]); });
  together = fit.fit(samples[0]);
  thread.join();
  EXPECT_EQ(together->matrix, alone->matrix);
  EXPECT_EQ(together->photographs[0].light, alone->photographs[0].light);
  EXPECT_EQ(together->uncertainty->dE2000, alone->uncertainty->dE2000);
  EXPECT_EQ(together->evaluations, alone->evaluations);
  EXPECT_NE(other->matrix, alone->matrix);
}

TEST(MatrixFit, ProgressRisesAndCancels) {
  const MatrixFitSamples samples = seenBy(ModelSensor::Ordinary, illum_A);
  FitOptions options;
  options.tradeOffSteps = 2;
  double last = -1.0;
  int calls = 0;
  ASSERT_TRUE(MatrixFit(options).fit(samples, [&](double done) {
    EXPECT_GE(done, std::exchange(last, done));
    return ++calls > 0;
  }));
  EXPECT_EQ(last, 1.0);
  for (int allowed = 0; allowed < calls; ++allowed) {
    int left = allowed;
    EXPECT_FALSE(MatrixFit(options).fit(samples, [&](double) { return left-- > 0; })) << allowed;
  }
}

struct Refusal {
  const char* message;  // what it begins with
  std::function<void(FitOptions&, MatrixFitSamples&)> spoil;
};

TEST(MatrixFit, RefusesWhatCannotBeFitted) {
  using O = FitOptions;
  using S = MatrixFitSamples;
  const auto clip = [](S& s, std::size_t from, std::size_t to) {
    for (std::size_t i = from; i < to; ++i) s.photographs[0].clipped[i] = true;
  };
  const Refusal refusals[] = {
      {"norm is 0.5; it must be 1 to 16", [](O& o, S&) { o.norm = 0.5; }},
      {"norm is nan", [](O& o, S&) { o.norm = kNaN; }},
      {"difference is 9", [](O& o, S&) { o.difference = static_cast<FitDifference>(9); }},
      {"entries must be six or nine", [](O& o, S&) { o.entries = static_cast<FitEntries>(7); }},
      {"the weight of patch 3 is -1", [](O& o, S&) { o.patchWeights[2] = -1; }},
      {"every patch weight is 0", [](O& o, S&) { o.patchWeights.fill(0); }},
      {"exposureGain is 0",
       [](O& o, S&) {
         o.exposure = FitExposure::number;
         o.exposureGain = 0;
       }},
      {"whitePatches holds row 3",
       [](O& o, S&) {
         o.whitePatches = {19, 3};
       }},
      {"a limit of rowNoiseLimits is 0.5", [](O& o, S&) { o.rowNoiseLimits[1] = 0.5; }},
      {"givenCurve has fewer than two", [](O& o, S&) { o.toneCurve = FitToneCurve::given; }},
      {"givenCurve does not rise from value 2",
       [](O& o, S&) {
         o.toneCurve = FitToneCurve::given;
         o.givenCurve = {0, 0.5, 0.5, 1};
       }},
      {"a monotone tone curve and a light field",
       [](O& o, S&) {
         o.toneCurve = FitToneCurve::monotone;
         o.light = FitLight::plane;
       }},
      {"rgbToXyz gives white a Y of 0", [](O& o, S&) { o.rgbToXyz[1].fill(0); }},
      {"rgbToXyz has no inverse", [](O& o, S&) { o.rgbToXyz[1] = o.rgbToXyz[0]; }},
      {"cameraGamma of G has 3 entries",
       [](O& o, S&) {
         o.cameraGamma[0].resize(256);
         o.cameraGamma[0].back() = 9;
         o.cameraGamma[1].resize(3);
       }},
      {"there is no photograph", [](O&, S& s) { s.photographs.clear(); }},
      {"the weight of photograph 1 is 0", [](O&, S& s) { s.photographs[0].weight = 0; }},
      {"photograph 1, patch 7, channel B: the measured value is nan",
       [](O&, S& s) { s.photographs[0].rgb[6][2] = kNaN; }},
      {"photograph 1, patch 2, channel R: the noise is -1",
       [](O&, S& s) { s.photographs[0].noise[1][0] = -1; }},
      {"photograph 1, patch 24, channel G: the flat field is 0",
       [](O&, S& s) {
         s.photographs[0].flatField.emplace().fill({1, 1, 1});
         (*s.photographs[0].flatField)[23][1] = 0;
       }},
      {"patch 1: the reference b* is inf", [](O&, S& s) { s.referenceLab[0][2] = HUGE_VAL; }},
      {"every patch for white balance is clipped",
       [](O&, S& s) {
         for (const std::size_t i : {19U, 20U, 21U}) s.photographs[0].clipped[i] = true;
       }},
      {"white balance: the patches hold no light in R",
       [](O&, S& s) {
         for (const std::size_t i : {19U, 20U, 21U}) s.photographs[0].rgb[i][0] = 0;
       }},
      {"patch 20 of photograph 1 holds no light in G",
       [](O&, S& s) { s.photographs[0].rgb[19][1] = -0.1; }},
      {"photograph 1 has fewer than three grey patches",
       [](O& o, S& s) {
         o.toneCurve = FitToneCurve::power;
         for (const std::size_t i : {18U, 21U, 22U, 23U}) s.photographs[0].clipped[i] = true;
       }},
      {"the measured greys do not rise",
       [](O& o, S& s) {
         o.toneCurve = FitToneCurve::blackWhite;
         std::swap(s.photographs[0].rgb[20], s.photographs[0].rgb[22]);
       }},
      {"patches 19 to 22 of photograph 1 are clipped",
       [=](O& o, S& s) { o.whitePatches.clear(), clip(s, 18, 22); }},
      {"too few patches are left to find the light",
       [=](O& o, S& s) { o.light = FitLight::plane, clip(s, 0, 19); }},
      {"too few patches are left to fit 9 unknowns", [=](O&, S& s) { clip(s, 0, 19); }},
      {"the best fit knows no transform 2",
       [](O& o, S&) { o.follow(ColorCorrectionSettings(0, illum_D65, 2), {}); }},
  };
  for (const Refusal& refusal : refusals) {
    FitOptions options = fitAlone();
    MatrixFitSamples samples = measuredBy({});
    try {
      refusal.spoil(options, samples);
      MatrixFit(options).fit(samples);
      ADD_FAILURE() << "not thrown: " << refusal.message;
    } catch (const std::invalid_argument& error) {
      EXPECT_EQ(std::string(error.what()).rfind(refusal.message, 0), 0U) << error.what();
    }
  }
}

TEST(PatchWeights, NamesAndNeutralsCountMore) {
  for (const char* name : {"even", "neutrals", "skin", "foliage-sky"})
    EXPECT_TRUE(patchWeightPresetFromName(name)) << name;
  EXPECT_FALSE(patchWeightPresetFromName("sky"));
  const MatrixFitSamples samples = seenBy(ModelSensor::Narrow, illum_TL84);
  FitOptions options = fitAlone();
  const auto even = MatrixFit(options).fit(samples);
  options.patchWeights = patchWeights(PatchWeightPreset::skin);
  const auto skin = MatrixFit(options).fit(samples);
  EXPECT_LT(skin->photographs[0].dE2000[0] + skin->photographs[0].dE2000[1],
            even->photographs[0].dE2000[0] + even->photographs[0].dE2000[1]);
}

}  // namespace
}  // namespace greycard
