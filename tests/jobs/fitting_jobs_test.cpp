#include <gmock/gmock.h>
#include <unistd.h>

#include <cmath>
#include <filesystem>
#include <functional>
#include <stdexcept>

#include "greycard/errors.h"
#include "greycard/files.h"
#include "greycard/jobs/calibrate_skin.h"
#include "greycard/jobs/fit_chart_best.h"
#include "greycard/jobs/fit_exposure.h"
#include "greycard/jobs/map_white_balance.h"
#include "greycard/jobs/match_luma.h"

namespace greycard {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

class FittingJobs : public testing::Test {
 protected:
  FittingJobs() {
    auto name = (std::filesystem::temp_directory_path() / "greycard-jobs-XXXXXX").string();
    if (::mkdtemp(name.data()) == nullptr) ADD_FAILURE() << "no temporary folder";
    folder = name;
  }
  ~FittingJobs() override { std::filesystem::remove_all(folder); }
  std::filesystem::path file(const char* name, const char* text) const {
    writeWholeFile(folder / name, text);
    return folder / name;
  }
  std::filesystem::path folder;
};

// Four equal shares of the pixels, in bins 10, 20, 30 and 60 of all channels.
ExposureImage quarters() {
  ExposureImage image;
  image.newTarget = 25.0;
  image.hist_CDF.emplace();
  image.hist_RGB.emplace();
  for (std::size_t c = 0; c < 3; ++c)
    for (std::size_t k = 0; k < kHistogramBins; ++k)
      for (const std::size_t bin : {10U, 20U, 30U, 60U})
        if (k >= bin) {
          (*image.hist_CDF)[c][k] += 0.25;
          (*image.hist_RGB)[c][k] += 0.25 * static_cast<double>(bin);
        }
  return image;
}

TEST_F(FittingJobs, ImagesThatCantBeAreNamedByTheirField) {
  const struct {
    std::function<void(ExposureImage&)> spoil;
    const char* says;
  } cases[] = {
      {[](auto& image) { image.newTarget.reset(); },
       "images[1].newTarget is missing: the luma target wanted"},
      {[](auto& image) { image.newTarget = 255.5; }, "images[1].newTarget is 255.5; a luma"},
      {[](auto& image) { image.newTarget = NAN; }, "images[1].newTarget is nan; a luma"},
      {[](auto& image) { image.picture = "a.png"; },
       "images[1].picture and histograms exclude each other"},
      {[](auto& image) { image.whiteLevel = 255; },
       "images[1].white_level is for a picture, and none is named"},
      {[](auto& image) { image.hist_RGB.reset(); }, "images[1].picture is missing, and images[1]."},
      {[](auto& image) { (*image.hist_CDF)[2][0] = 0.3; },
       "images[1].hist_CDF[2] must be a cumulative histogram"},
      {[](auto& image) { (*image.hist_CDF)[0].back() = std::nan(""); },
       "images[1].hist_CDF[0] must be a cumulative histogram"},
      {[](auto& image) {
         image.picture = "a.png", image.whiteLevel = 0;
         image.hist_CDF = image.hist_RGB = {};
       },
       "images[1].white_level must be a whole number from 1 to 65535"},
  };
  for (const auto& [spoil, says] : cases) {
    SCOPED_TRACE(says);
    ExposureJob job;
    job.images = {quarters(), quarters()};
    EXPECT_NO_THROW(job.check());
    spoil(job.images[1]);
    EXPECT_THAT([&] { evaluateExposure(job); },
                testing::ThrowsMessage<std::invalid_argument>(HasSubstr(says)));
  }
  ExposureJob first;
  first.images = {{}, quarters()};
  EXPECT_THROW(first.check(), std::invalid_argument);
  EXPECT_THROW(fitExposure({}), std::invalid_argument);  // no images
}

// BT.601 of the channels' means, unless it is told.
TEST_F(FittingJobs, TheLumaOfHistogramsIsThatOfTheirMeans) {
  ExposureJob job;
  job.images = {quarters(), quarters()};
  for (std::size_t c = 0; c < 3; ++c)
    for (double& mean : (*job.images[0].hist_RGB)[c]) mean *= static_cast<double>(c + 1);
  job.images[1].curr_luma = 77.0;
  const ExposureTrial trial = evaluateExposure(job);
  EXPECT_NEAR(trial.images[0].curr_luma, 30.0 * (0.299 + 2 * 0.587 + 3 * 0.114), 1e-9);
  EXPECT_EQ(trial.images[0].cur_target, trial.images[0].curr_luma);
  EXPECT_EQ(trial.images[1].curr_luma, 77.0);
  EXPECT_EQ(trial.images[1].name, "image 2");

  EXPECT_TRUE(job.fitsAny());
  EXPECT_EQ(job.fixedParameters(), job.initialBound);
  job.parameters_enable.fill(0.0);
  EXPECT_FALSE(job.fitsAny());
  job.parameters_enable[4] = 1.0;
  EXPECT_TRUE(job.fitsAny());
  job.initial_parameter = job.lowerBound;
  EXPECT_EQ(job.fixedParameters(), job.lowerBound);
}

TEST(LumaMatch, IsReachedWithinAHundredthOfLightness) {
  EXPECT_FALSE(LumaMatch({1.0, 50.0, 50.011, 50.0}).reached());
  EXPECT_TRUE(LumaMatch({1.0, 50.0, 49.991, 50.0}).reached());
  const LumaMatch half = matchLuma({{128, 64, 255}, {64, 32, 127.5}, {}});
  EXPECT_NEAR(half.factor, 0.5, 1e-4);
  EXPECT_NEAR(half.scaledL, half.targetL, 1e-3);
  EXPECT_NEAR(matchLuma({{255, 255, 255}, {}, {}}).testL, 100.0, 1e-6);
  EXPECT_NEAR(matchLuma({{255, 255, 255}, {}, {}}).factor, 0.0, 1e-5);
}

TEST(ExposureFit, EndsOnEvaluationsNotOnAClock) {
  EXPECT_EQ(exposureSearch().maxSeconds, 0.0);
  EXPECT_EQ(exposureSearch().maxEvaluations, 500000);
  ExposureFit fit;
  EXPECT_EQ(fit.evaluationsPerSecond(), 0.0);
  fit.evaluations = 30, fit.seconds = 1.5;
  EXPECT_EQ(fit.evaluationsPerSecond(), 20.0);
}

TEST_F(FittingJobs, WhiteBalancePointsComeFromFilesAndGoThroughTheTransform) {
  WhiteBalanceOptions options;
  options.from = {{{0.0, 0.0}, {1.0, 0.0}, {0.0, 1.0}}};
  options.to = {{{0.5, 1.0}, {2.5, 1.0}, {0.5, 5.0}}};  // X' = 2 X + 0.5, Y' = 4 Y + 1
  options.points = readWhiteBalancePoints(file("points.txt", "# R/G, B/G\r\n1 2\r\n\n-0.5,+0.25"));
  EXPECT_THAT(options.points,
              ElementsAre(WhiteBalancePoint{1.0, 2.0}, WhiteBalancePoint{-0.5, 0.25}));
  const WhiteBalanceMapping mapping = mapWhiteBalance(options);
  EXPECT_EQ(mapping.transform(mapping.points[0]), (WhiteBalancePoint{2.5, 9.0}));
  EXPECT_EQ(mapping.largestResidual(), 0.0);
  WhiteBalanceMapping untrue;
  untrue.from = options.from;
  untrue.to = {{{0.0, 0.25}, {1.5, 0.0}, {-2.0, 1.125}}};
  EXPECT_EQ(untrue.largestResidual(), 2.0);    // it maps every point to itself
  for (const double off : {0.9e-6, 1.1e-6}) {  // of the largest target
    untrue.from[2] = {-4.0, 1.0};
    untrue.to = {{{0.0, 4.0 * off}, {1.0, 0.0}, {-4.0, 1.0}}};
    EXPECT_EQ(untrue.meetsTargets(), off < 1e-6);
    untrue.from = {{{0.0, 0.0}, {0.25, 0.0}, {0.0, 0.125}}};
    untrue.to = {{{0.0, 0.25 * off}, {0.25, 0.0}, {0.0, 0.125}}};
    EXPECT_EQ(untrue.meetsTargets(), off < 1e-6);
  }

  options.from[2] = {2.0, 0.0};
  EXPECT_THAT([&] { mapWhiteBalance(options); },
              testing::ThrowsMessage<JobError>(HasSubstr("do not span a plane")));
  options.from = {{{1.0, 1.0}, {2.0, 2.0}, {3.0, 3.000000000001}}};
  options.to = {{{0.48, 0.66}, {0.64, 0.52}, {0.93, 0.37}}};
  EXPECT_THAT([&] { mapWhiteBalance(options); },
              testing::ThrowsMessage<JobError>(HasSubstr("not mapped onto their targets")));

  const std::pair<const char*, const char*> refusals[] = {
      {"1,2\n0.5;0.6\n", "line 2 of "},
      {"1\n", "a point is two numbers RG,BG, and here are 1"},
      {"1 nan\n", "\"nan\" is not a finite number"},
      {"# nothing\n\n", "holds no points"},
      {"", "holds no points"}};
  for (const auto& bad : refusals)
    EXPECT_THAT([&] { readWhiteBalancePoints(file("bad.txt", bad.first)); },
                testing::ThrowsMessage<JobError>(HasSubstr(bad.second)));
}

TEST_F(FittingJobs, PatchWeightsAre24NumbersOf0OrAbove) {
  const std::string rest = " 1 1 1 1 1 1 1 1 1 1 1 1 1 1 1 1 1 1 1 1 1 1 1";  // 23
  EXPECT_EQ(readPatchWeights(file("weights.txt", ("0" + rest).c_str()))[0], 0.0);
  for (const char* first : {"", "1 1", "-0.5", "one"})
    EXPECT_THROW(readPatchWeights(file("bad.txt", (first + rest).c_str())), JobError);
}

TEST_F(FittingJobs, SkinNeedsAMatrixAndTellsOfWrongCharts) {
  SkinCharts charts;
  for (MeasuredChart& chart : charts)
    for (std::size_t i = 0; i < kPatchCount; ++i)
      chart.rgb[i] = {0.2, 0.1 + 0.01 * static_cast<double>(i), 0.3};
  charts[1].rgb[19][1] = 0.0;
  charts[0].light = illum_A;
  EXPECT_THAT([&] { calibrateSkin(charts); },
              testing::ThrowsMessage<JobError>(HasSubstr("a colour-correction matrix is needed")));
  charts[2].matrix = Matrix3{{{1.0, 0.0, 0.0}, {0.0, 1.0, 0.0}, {0.0, 0.0, 1.0}}};
  const SkinCalibration skin = calibrateSkin(charts, {}, {"", "", "tl84.json"});
  EXPECT_EQ(skin.matrix, *charts[2].matrix);
  EXPECT_EQ(skin.matrixFrom, "tl84.json");
  for (std::size_t c = 0; c < 3; ++c) {
    charts[1].rgb[19].fill(0.1);
    charts[1].rgb[19][c] = 0.0;
    EXPECT_EQ(calibrateSkin(charts).warnings.size(), 2U) << c;
  }
  EXPECT_THAT(skin.warnings,
              ElementsAre("the chart under D65: fitted for light A but given as D65",
                          HasSubstr("the chart under A: patch 20 is not above black")));
}

}  // namespace
}  // namespace greycard
