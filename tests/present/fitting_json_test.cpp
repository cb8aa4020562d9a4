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

TEST(FittingJson, PlotsAndTablesOfResultsReadBackAreWhole) {
  ExposureFit fit;
  fit.images = {{"a", 1, 2, 3, 4}, {"b", 1, 2, 3, 4}};
  fit.best = evaluation(5.0);  // as a file may have it: of one image only
  EXPECT_THAT(exposurePlot(fit), HasSubstr("</svg>"));
  EXPECT_THAT(exposurePlot(ExposureTrial()), HasSubstr("</svg>"));
  EXPECT_THAT(skinPlot(skinResult()), HasSubstr("</svg>"));
  EXPECT_EQ(skinCsv(skinResult()), "light,brightness,spectrum,upper,lower,h,s,y,red,green,blue\n");
}

TEST(FittingPlots, TellOfSkinBeyondTheAxes) {
  SkinCalibration skin;
  skin.colours.resize(SkinColorHelper::kPoints);
  skin.upper.points.resize(SkinColorHelper::kPoints);
  skin.lower = skin.upper;
  skin.lower.points[1071] = {-3.0F, 0.21F, 0.5F};
  EXPECT_THAT(skinPlot(skin), testing::Not(HasSubstr("lie beyond")));
  skin.upper.points[1] = skin.lower.points[1] = {-3.01F, 0.1F, 0.5F};
  skin.lower.points[2] = {1.01F, 0.1F, 0.5F};
  for (const char* part : {" (no unit); 2 points lie beyond<", ">-3<", ">0.25<", ">D65 (1)<",
                           ">A, lower set only (hollow) (1)<"})
    EXPECT_THAT(skinPlot(skin), HasSubstr(part));
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
  EXPECT_EQ(roundTrip(LumaMatchOptions{{1, 2, 3}, {4, 5, 6}, {}}).target, (Vector3{4, 5, 6}));
  SearchOptions search;
  expectRefused(R"({"seed": -1})", search, "seed must be a whole number from 0 to 4294967295");
}

}  // namespace
}  // namespace greycard::present
