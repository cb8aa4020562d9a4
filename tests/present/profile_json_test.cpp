#include <gmock/gmock.h>
#include <unistd.h>

#include <filesystem>
#include <functional>
#include <stdexcept>
#include <tuple>

#include "greycard/camera_gamma.h"
#include "greycard/errors.h"
#include "greycard/files.h"
#include "greycard/present/chart.h"
#include "greycard/present/comparison.h"
#include "greycard/present/fit_file.h"
#include "greycard/present/measured_chart.h"
#include "greycard/present/profile.h"

namespace greycard::present {
namespace {

ChartFit fitUnder(Illum light, double gain) {
  ChartFit fit;
  fit.light = light;
  fit.gamma = cameraGamma("VGammaSRGB");
  fit.matrix = {{{1.0 + gain, -gain, 0.0}, {0.0, 1.0, 0.0}, {0.0, 0.0, 1.0}}};
  fit.whiteBalance = {1.0, 1.0, gain};
  for (std::size_t p = 0; p < kPatchCount; ++p)
    fit.fit.m_balancedRGB[p] = {0.02 * static_cast<double>(p), 0.3, 0.2};
  return fit;
}

TEST(ProfileJson, ReadsBackWithAllThatFollowsFromTheFits) {
  CameraProfile profile =
      profileOf({{fitUnder(illum_D65, 1.5), {}}, {fitUnder(illum_A, 0.2), 2700.0}});
  profile.warnings = {"told"};
  CameraProfile back;
  fromJson(toJson(profile), back);
  EXPECT_EQ(toJson(back), toJson(profile));
  EXPECT_EQ(back.warnings, profile.warnings);
  EXPECT_EQ(back.lights[1].source, KelvinSource::spectrum);
  EXPECT_EQ(back.errors[1][0].patch, profile.errors[1][0].patch);
  EXPECT_EQ(back.steps[0].worst, profile.steps[0].worst);
  EXPECT_THROW(fromJson(R"({"lights": [], "warnings": []})", back), std::invalid_argument);

  ProfilePoint point = profileAt(profile, 4000.0), again;
  fromJson(toJson(point), again);
  EXPECT_EQ(toJson(again), toJson(point));
}

TEST(ProfileJson, AFitIsReadWhateverItsKind) {
  const ChartFit fit = fitUnder(illum_A, 0.2);
  const AnyFit read = fitFromJson(toJson(fit));
  EXPECT_EQ(chartFitOf(read).matrix, fit.matrix);
  EXPECT_THROW(fitFromJson(R"({"stated": []})"), std::invalid_argument);
  EXPECT_THROW(fitFromJson("[]"), std::invalid_argument);
}

TEST(ResultFiles, AreReadOrRefused) {
  const std::filesystem::path file = testing::TempDir() + "result_" + std::to_string(::getpid());
  using Case = std::tuple<std::function<void()>, const char*, const char*>;
  for (const auto& [read, text, says] :
       {Case{[&] { readMatrix(file); }, "1 2 3 4 5 6 7 8", "is 9 numbers, and here are 8"},
        {[&] { readMatrix(file); }, "1 2 3 4 5 6 7 8 9 10", "here are 10"},
        {[&] { readMatrix(file); }, "\n{}", "is no colour-correction matrix: matrix is missing"},
        {[&] { readMeasuredChart(file); }, "{}", "is no measured chart: patches is missing"},
        {[&] { readJudgedChart(file); }, "{}", "it is neither a fit nor an evaluation of a chart;"},
        {[&] { readFit(file); }, "{}", "is no fit, as greycard ccm --json writes it: "}}) {
    writeWholeFile(file, text);
    EXPECT_THAT(read, testing::ThrowsMessage<JobError>(testing::HasSubstr(says)));
  }
  EXPECT_EQ(matrixFromNumbers("1, 2 3\n4 5 6 7 8 9"), (Matrix3{{{1, 2, 3}, {4, 5, 6}, {7, 8, 9}}}));
  ChartFit fit = fitUnder(illum_A, 0.2);
  fit.correctedLab.fill({10, 0, 0});
  writeWholeFile(file, toJson(fit));
  EXPECT_EQ(readJudgedChart(file).errors.cie76.mean, 10);
  std::filesystem::remove(file);
}

}  // namespace
}  // namespace greycard::present
