#include <gmock/gmock.h>
#include <unistd.h>

#include <filesystem>
#include <limits>

#include "greycard/errors.h"
#include "greycard/files.h"
#include "greycard/present/fitting.h"
#include "round_trip.h"

namespace greycard::present {
namespace {

using testing::HasSubstr;

ExposureImage inlineImage() {
  ExposureImage image;
  image.name = "night \u66f2";
  image.hist_CDF.emplace();
  image.hist_RGB.emplace();
  for (auto& channel : *image.hist_CDF) channel.fill(1.0);
  image.hist_RGB->at(1)[7] = 1.0 / 3.0;
  image.newTarget = 60.0;
  image.cur_target = 0.1;
  image.Weight = 2.0;
  image.max_dark_mean = 3.0;
  return image;
}

ExposureEvaluation evaluation(double number) {
  ExposureEvaluation evaluation;
  evaluation.parameters.fill(number);
  evaluation.target = evaluation.pushUp = evaluation.pushDown = evaluation.dark = {number};
  evaluation.fourTargets = {{number, 2.0, 3.0, 4.0}};
  evaluation.error = number;
  return evaluation;
}

SkinCalibration skinResult() {
  SkinCalibration skin;
  skin.charts = {"d65.png", "a.png", "t84.json"};
  skin.gammaName = "g";
  skin.matrixFrom = "m";
  skin.matrix = {{{1, 2, 3}, {4, 5, 6}, {7, 8, 0.1}}};
  skin.lower.accepted = 5;
  skin.lower.acceptedUnder = {1, 2, 2};
  skin.lower.h = {-1.5, 0.25};
  skin.warnings = {"w"};
  return skin;
}

TEST(FittingJson, WhatIsWrittenReadsBackToTheSame) {
  ExposureJob job;
  job.images = {inlineImage(), {}};
  job.images[1].picture = "a/b.png";
  job.images[1].whiteLevel = 4095;
  job.initial_parameter = job.upperBound;
  const ExposureJob back = roundTrip(job);
  EXPECT_EQ(back.images.at(0).hist_RGB, job.images[0].hist_RGB);
  EXPECT_EQ(back.images.at(1).whiteLevel, 4095);
  EXPECT_FALSE(back.images[1].curr_luma);
  EXPECT_FALSE(roundTrip(ExposureJob()).initial_parameter);
  SearchOptions search;
  search.seed = 4294967295;
  EXPECT_EQ(roundTrip(search).seed, 4294967295);

  ExposureFit fit;
  fit.least = std::numeric_limits<double>::infinity();  // null in JSON
  fit.evaluations = 7;
  fit.seconds = 0.5;
  fit.images = {{"n", 1.0, 2.0, 3.0, 4.0}};
  fit.start = evaluation(1.0), fit.best = evaluation(0.1), fit.returned = evaluation(1.0 / 3.0);
  EXPECT_EQ(roundTrip(fit).returned.fourTargets, fit.returned.fourTargets);
  EXPECT_THAT(toJson(fit), HasSubstr("\"evaluations_per_second\": 14.0"));
  EXPECT_EQ(roundTrip(ExposureTrial{fit.images, fit.best}).manual.error, 0.1);

  EXPECT_EQ(roundTrip(LumaMatchOptions{{1, 2, 3}, {4, 5, 6}, search}).search.seed, search.seed);
  EXPECT_EQ(roundTrip(LumaMatch{0.1, 1, 2, 3}).factor, 0.1);

  const WhiteBalanceOptions points{
      {{{0, 0}, {1, 0}, {0, 1}}}, {{{1, 2}, {3, 4}, {5, 7}}}, {{8, 0.1}}};
  EXPECT_EQ(roundTrip(points).points, points.points);
  const WhiteBalanceMapping mapping = mapWhiteBalance(points);
  EXPECT_EQ(roundTrip(mapping).transform(points.points[0]), mapping.transform(points.points[0]));

  SkinOptions options;
  options.matrix = skinResult().matrix;
  EXPECT_EQ(roundTrip(options).matrix, options.matrix);
  EXPECT_EQ(roundTrip(skinResult()).lower.h, skinResult().lower.h);
  EXPECT_FALSE(roundTrip(skinResult()).upper.h);
}

TEST(FittingJson, PlotsAndTablesOfResultsReadBackAreWhole) {
  ExposureFit fit;
  fit.images = {{"a", 1, 2, 3, 4}, {"b", 1, 2, 3, 4}};
  fit.best = evaluation(5.0);  // as a file may have it: of one image only
  EXPECT_THAT(exposurePlot(fit), HasSubstr("</svg>"));
  EXPECT_THAT(exposurePlot(ExposureTrial()), HasSubstr("</svg>"));
  EXPECT_THAT(skinPlot(skinResult()), HasSubstr("</svg>"));
  EXPECT_EQ(skinCsv(skinResult()), "light,brightness,spectrum,upper,lower,h,s,y,red,green,blue\n");
}

TEST(FittingJson, AnExposureJobsFileIsRefusedWithTheField) {
  auto name = (std::filesystem::temp_directory_path() / "greycard-present-XXXXXX").string();
  ASSERT_NE(::mkdtemp(name.data()), nullptr);
  const std::filesystem::path folder = name;
  const auto read = [&](const std::string& text) {
    writeWholeFile(folder / "fit.json", text);
    return readExposureJob(folder / "fit.json");
  };
  const ExposureJob job =
      read(R"({"images": [{"picture": "sub/a.png", "newTarget": 7, "white_level": 255.0}]})");
  EXPECT_EQ(job.images.at(0).picture, folder / "sub/a.png");
  EXPECT_EQ(job.images[0].name, "sub/a.png");
  EXPECT_EQ(job.images[0].whiteLevel, 255);

  std::string many = R"({"images": [{})";
  for (int i = 0; i < 299; ++i) many += ",{}";
  const std::pair<std::string, const char*> refusals[] = {
      {"", "fit.json\" is no exposure fit: the file is empty"},
      {"{", "is not JSON from line 1, column 2 on"},
      {"[]", "it must hold one object"},
      {R"({"image": []})", "did you mean \"images\"?"},
      {R"({"lowerBound": [1, 2]})", "lowerBound must be a list of 12 numbers"},
      {R"({"max_drc_gain": "4"})", "max_drc_gain must be a number"},
      {R"({"images": 5})", "images must be a list of at most 299 objects"},
      {many + "]}", "images must be a list of at most 299 objects"},
      {R"({"images": [5]})", "images[0] must be an object"},
      {R"({"images": [{"Wieght": 1}]})", "there is no field \"images[0].Wieght\""},
      {R"({"images": [{"picture": 7}]})", "images[0].picture must be a text"},
      {R"({"images": [{"picture": "a.png"}]})", "images[0].newTarget is missing"},
      {R"({"images": [{"newTarget": null}]})", "images[0].newTarget must be a number"},
      {R"({"images": [{"newTarget": 1}]})", "images[0].picture is missing"},
      {R"({"images": [{"white_level": 0.5}]})",
       "images[0].white_level must be a whole number from 1 to 65535"},
      {R"({"images": [{"white_level": 65536}]})", "white_level must be a whole number from 1"},
      {R"({"images": [{"hist_CDF": [[1]]}]})", "hist_CDF must be 3 lists of 256 numbers"},
      {R"({"images": [{"hist_CDF": [[1], 2, 3]}]})", "hist_CDF[0] must be a list of 256 numbers"},
  };
  for (const auto& bad : refusals)
    EXPECT_THAT([&] { read(bad.first); }, testing::ThrowsMessage<JobError>(HasSubstr(bad.second)));
  std::filesystem::remove_all(folder);
}

TEST(FittingJson, ResultsThatCantBeAreRefusedAndTheValueStays) {
  WhiteBalanceMapping mapping;
  const std::string text = toJson(mapping);
  expectRefused(replaced(text, "\"points\"", "\"p\""), mapping, "points is missing");
  expectRefused(replaced(text, "\"from\": [", "\"from\": [1,"), mapping,
                "references[0].from must be a list of 2 numbers");
  SkinCalibration skin = skinResult();
  expectRefused(replaced(toJson(skin), "\"accepted\": 0", "\"accepted\": 0.5"), skin,
                "upper.accepted must be a whole number from");
  expectRefused(replaced(toJson(skin), "\"A\": \"a.png\"", "\"A\": 3"), skin,
                "charts.A must be a text");
  SearchOptions search;
  expectRefused(R"({"seed": -1})", search, "seed must be a whole number from 0 to 4294967295");
}

}  // namespace
}  // namespace greycard::present
