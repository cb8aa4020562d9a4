// One scene as a DNG, as a linear TIFF and as the simulator knows it.

#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <stdexcept>
#include <vector>

#include "greycard/files.h"
#include "greycard/jobs/fit_chart_best.h"
#include "greycard/jobs/simulate.h"
#include "greycard/macbeth_chart_data.h"
#include "greycard/matrix_fit.h"
#include "greycard/raw/read_raw.h"

namespace greycard {
namespace {

// The search of the best fit ends in one place; where the stated one stops depends on the last
// digits of what it is given.
Matrix3 fitOfTruth(const SimulatedChart& chart, const BestChartFit& like) {
  MacbethChartData data;
  data.m_RGB = chart.truth.rgb;
  MatrixFitSamples samples;
  samples.photographs.emplace_back(data, like.stated.front().sampling);
  samples.referenceLab = like.stated.front().fit.m_targetLab;
  return MatrixFit(like.options).fit(samples)->matrix;
}

void expectAgreement(const Matrix3& a, const Matrix3& b) {
  constexpr double kShare = 0.005, kSmallest = 0.2;  // of an entry; the smallest taken for this
  for (std::size_t i = 0; i < 3; ++i)
    for (std::size_t j = 0; j < 3; ++j)
      EXPECT_NEAR(a[i][j], b[i][j], kShare * std::max(std::abs(b[i][j]), kSmallest)) << i << j;
}

TEST(RawJobs, DngTiffAndTruthAgree) {
  if (!readsRaw()) GTEST_SKIP() << "built without raw input";
  auto name = (std::filesystem::temp_directory_path() / "greycard-jobs-XXXXXX").string();
  ASSERT_NE(::mkdtemp(name.data()), nullptr);
  const std::filesystem::path folder = name;
  SimulationSettings settings;
  settings.width = 1200;
  settings.height = 900;
  settings.rotationDeg = 4.0;
  settings.light = illum_A;
  settings.blackLevel = 512.0;
  BestFitOptions options;
  options.chart.light = illum_A;

  const SimulatedChart dng = *simulateDng(settings, {BayerPattern::GRBG, 14});
  writeWholeFile(folder / "a.dng", dngOf(dng));
  settings.bits = 16;
  settings.encoding = SampleEncoding::linear;
  writePicture(folder / "a.tif", simulateChart(settings)->picture);
  const std::vector dngs = {chartPhotograph(readPhotograph(folder / "a.dng"))};
  const std::vector tiffs = {
      chartPhotograph(readPhotograph(folder / "a.tif", {{{}, 512.0, {}}, {}}))};
  std::filesystem::remove_all(folder);
  const BestChartFit ofDng = *fitChartBest(dngs, options), ofTiff = *fitChartBest(tiffs, options);

  expectAgreement(ofDng.best.matrix, ofTiff.best.matrix);
  expectAgreement(ofDng.best.matrix, fitOfTruth(dng, ofDng));
  const ChartFit& stated = ofDng.stated.front();
  for (std::size_t i = 0; i < kPatchCount; ++i)
    for (std::size_t c = 0; c < 3; ++c)
      EXPECT_NEAR(stated.measuredRgb[i][c], dng.truth.rgb[i][c], 1e-4) << i << " " << c;
  EXPECT_EQ(stated.capture.value().mosaic, "GRBG");
  EXPECT_FALSE(ofTiff.stated.front().capture);
}

TEST(RawJobs, ADngOfOtherBitsLevelsOrSizesIsRefused) {
  SimulationSettings settings;
  settings.width = 64, settings.height = 65, settings.whiteLevel = 1023.0;
  EXPECT_NO_THROW(simulateDng(settings, {{}, 10}));
  EXPECT_THROW(simulateDng(settings, {BayerPattern::RGGB, 10}), std::invalid_argument);
  for (const int bits : {8, 11, 13, 15, 18})
    EXPECT_THROW(simulateDng(settings, {{}, bits}), std::invalid_argument);
  settings.width = 65, settings.height = 64;
  EXPECT_THROW(simulateDng(settings, {BayerPattern::RGGB, 10}), std::invalid_argument);
  settings.whiteLevel = 1024.0;
  EXPECT_THROW(simulateDng(settings, {{}, 10}), std::invalid_argument);
}

}  // namespace
}  // namespace greycard
