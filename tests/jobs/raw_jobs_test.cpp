// One scene as a DNG, as a linear TIFF and as the simulator knows it.

#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>
#include <cmath>
#include <filesystem>

#include "greycard/color_correction_utils.h"
#include "greycard/files.h"
#include "greycard/jobs/fit_chart.h"
#include "greycard/jobs/simulate.h"

namespace greycard {
namespace {

Matrix3 fitOfTruth(const SimulatedChart& chart, const ChartFitOptions& options) {
  ColorCorrectionSettings settings = options.settings();
  settings.m_macbethData.m_RGB = chart.truth.rgb;
  ColorCorrectionUtils facade;
  facade.Optimize(settings, 0);
  return facade.m_ccm;
}

double largestDifference(const Matrix3& a, const Matrix3& b) {
  double most = 0.0;
  for (std::size_t i = 0; i < 3; ++i)
    for (std::size_t j = 0; j < 3; ++j) most = std::max(most, std::abs(a[i][j] - b[i][j]));
  return most;
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
  ChartFitOptions options;
  options.light = illum_A;

  const SimulatedChart dng = *simulateDng(settings, {BayerPattern::GRBG, 14});
  writeWholeFile(folder / "a.dng", dngOf(dng));
  settings.bits = 16;
  settings.encoding = SampleEncoding::linear;
  writePicture(folder / "a.tif", simulateChart(settings)->picture);
  const ChartFit ofDng = *fitChart(readPhotograph(folder / "a.dng"), options);
  const ChartFit ofTiff =
      *fitChart(readPhotograph(folder / "a.tif", {{{}, 512.0, {}}, {}}), options);
  std::filesystem::remove_all(folder);

  // 0.5 % of the diagonal's entries, which are 1 to 2.
  EXPECT_LE(largestDifference(ofDng.matrix, ofTiff.matrix), 0.005);
  EXPECT_LE(largestDifference(ofDng.matrix, fitOfTruth(dng, options)), 0.005);
  for (std::size_t i = 0; i < kPatchCount; ++i)
    for (std::size_t c = 0; c < 3; ++c)
      EXPECT_NEAR(ofDng.measuredRgb[i][c], dng.truth.rgb[i][c], 1e-4) << i << " " << c;
  EXPECT_EQ(ofDng.capture.value().mosaic, "GRBG");
  EXPECT_FALSE(ofTiff.capture);
}

}  // namespace
}  // namespace greycard
