#include <gmock/gmock.h>
#include <unistd.h>

#include <cmath>
#include <filesystem>
#include <functional>
#include <utility>
#include <vector>

#include "greycard/errors.h"
#include "greycard/image_utils_ex.h"
#include "greycard/jobs/apply_fit.h"
#include "greycard/jobs/evaluate_chart.h"
#include "greycard/jobs/fit_chart.h"
#include "greycard/jobs/fit_chart_best.h"
#include "greycard/jobs/locate_chart.h"

namespace greycard {
namespace {

using testing::HasSubstr;

TEST(ChartJobs, ASpaceOfYourOwnNeedsAMatrixThatIsUndoneByTheOther) {
  ChartFitOptions options;
  options.transform = 3;
  options.rgbToXyz = Matrix3{{{0.5, 0.25, 0.0}, {0.25, 0.5, 0.0}, {0.0, 0.0, 0.8}}};
  options.xyzToRgb = Matrix3{{{8.0 / 3, -4.0 / 3, 0.0}, {-4.0 / 3, 8.0 / 3, 0.0}, {0, 0, 1.25}}};
  EXPECT_EQ(options.settings().m_CustXYZ2sRGB, *options.xyzToRgb);
  EXPECT_NO_THROW(checkOptions(options));
  (*options.xyzToRgb)[0][1] = -1.3;
  try {
    options.settings();
    ADD_FAILURE() << "taken";
  } catch (const std::invalid_argument& error) {
    // 8/3 * 1/2 - 1.3 * 1/4
    EXPECT_THAT(error.what(), HasSubstr("row 1, column 1 of their product is 1.00833"));
  }
}

TEST(ChartJobs, RegionsOfTheFirstFormAreSampledWhole) {
  LocatedChart chart;
  chart.patches.fill({{{0, 0}, {8, 0}, {8, 8}, {0, 8}}});
  EXPECT_EQ(chart.sampled()[3], (PatchQuad{{{2, 2}, {6, 2}, {6, 6}, {2, 6}}}));
  chart.upright = true;
  EXPECT_EQ(chart.sampled(), chart.patches);
}

template <typename Options>
std::string refusalOf(const Options& options) {
  try {
    checkOptions(options);
  } catch (const std::invalid_argument& error) {
    return error.what();
  }
  return "";
}

TEST(ChartJobs, OptionsThatExcludeEachOtherAreRefused) {
  ChartFitOptions fit;
  fit.xyzToRgb = Matrix3{{{1, 0, 0}, {0, 1, 0}, {0, 0, 1}}};
  EXPECT_THAT(refusalOf(fit), HasSubstr("are for transform 3"));
  fit.transform = 3;
  EXPECT_THAT(refusalOf(fit), HasSubstr("and the one back"));
  std::swap(fit.xyzToRgb, fit.rgbToXyz);
  EXPECT_THAT(refusalOf(fit), HasSubstr("and the one back"));
  fit.transform = 1;
  EXPECT_THAT(refusalOf(fit), HasSubstr("are for transform 3"));
  for (fit.whitePatches = {22, 18}; fit.whitePatches[1] < 24; fit.whitePatches[1] += 5)
    EXPECT_THAT(refusalOf(fit), HasSubstr("19 to 22, not "));
  fit = ChartFitOptions();
  fit.referenceLab = fit.referenceSRgb = "a.txt";
  EXPECT_THAT(refusalOf(fit), HasSubstr("from one file, not from two"));
  EvaluationOptions judge;
  judge.locate.samples = {{}, 99.0, 100.0};
  EXPECT_EQ(refusalOf(judge), "");
  judge.scale = 0.0;
  EXPECT_THAT(refusalOf(judge), HasSubstr("scale"));
  judge.locate.samples.blackLevel = 100.0;
  EXPECT_THAT(refusalOf(judge), HasSubstr("above the black level"));

  LocateOptions place;
  place.within = PatchRegion{0, 0, 10, 10};
  EXPECT_EQ(refusalOf(place), "");
  place.regions = "regions.txt";
  EXPECT_THAT(refusalOf(place), HasSubstr("a part of the picture to look in is of no use"));
  place.within.reset();
  place.corners = {{{0, 0}, {60, 0}, {60, 40}, {0, 40}}};
  EXPECT_THAT(refusalOf(place), HasSubstr("not from both"));
  place.regions.clear();
  EXPECT_EQ(refusalOf(place), "");
  place.within = PatchRegion{0, 0, 10, 10};
  EXPECT_THAT(refusalOf(place), HasSubstr("of no use"));
}

TEST(ChartJobs, SurroundingsAreHalfAPatchWideWithinThePicture) {
  ChartDetection chart;
  chart.placement.pitch = 8.0;
  chart.placement.patches.fill({{{10, 20}, {16, 20}, {16, 26}, {10, 26}}});
  chart.placement.patches[9] = {{{3, 4.25}, {50.5, 20}, {16, 26}, {10, 70}}};
  const PatchRegion around = surroundings(chart);
  EXPECT_EQ(around.left, 0.0);  // not -1
  EXPECT_EQ(around.top, 0.0);   // of 0.25
  EXPECT_EQ(around.width, 55.0);
  EXPECT_EQ(around.height, 74.0);
  for (PatchQuad& patch : chart.placement.patches)
    for (Point2& corner : patch) corner = {corner.x + 100.5, corner.y + 200.0};
  EXPECT_EQ(surroundings(chart).left, 99.0);
  EXPECT_EQ(surroundings(chart).top, 200.0);
  EXPECT_EQ(surroundings(chart).width, 56.0);
  EXPECT_EQ(patchList({18, 0}), "19 (white 9.5), 1 (dark skin)");
}

// The curve halves encoded values; the camera's are straight, so that light is the screen's code,
// and of green's half.
TEST(ChartJobs, ABestFitIsShownAndAppliedByPhotograph) {
  BestChartFit fit;
  fit.stated.resize(2);
  fit.best.photographs.resize(2);
  for (std::size_t c = 0; c < 3; ++c)
    for (int i = 0; i < 256; ++i)
      fit.stated[1].gamma.tables[c].push_back(
          static_cast<int>(std::lround((c == 1 ? 31.2 : 62.4) * i)));
  fit.best.toneCurve = {0.0, 0.5};
  fit.best.gains = {0.8, 0.4, 0.2};
  fit.best.matrix = {{{0, 1, 0}, {1, 0, 0}, {0, 0, 1}}};
  fit.best.photographs[1].exposure = 2.0;
  fit.best.photographs[1].lab.fill({53.0, 0.0, 4.0});
  fit.stated[1].measuredRgb.fill({1.0, 1.0, 1.0});
  fit.stated[1].fit.m_targetLab.fill({50.0, 0.0, 0.0});
  fit.warnings = {"of both"};
  const ChartFit shown = fit.shown(1);
  EXPECT_EQ(shown.warnings, fit.warnings);
  EXPECT_EQ(shown.after.cie76.mean, 5.0);
  EXPECT_EQ(shown.correctedLab[7], (Vector3{53.0, 0.0, 4.0}));
  Vector3 lab;
  ImageUtilsEx::sRGBToCIELab(lab, {0.8, 0.2, 0.2});
  for (std::size_t c = 0; c < 3; ++c) {
    EXPECT_NEAR(shown.fit.m_balancedRGB[7][c], fit.best.gains[c], 1e-12);
    EXPECT_NEAR(shown.fit.m_uncorrectedLab[7][c], lab[c], 0.05);
  }
  EXPECT_NEAR(shown.before.cie76.mean, std::hypot(lab[0] - 50.0, lab[1], lab[2]), 0.05);

  Photograph photograph{Picture(1, 1, 3, 8), "", "", {}, {}, {}};
  photograph.picture.samples = {200, 100, 50};
  const std::vector<std::uint16_t> codes{40, 80, 10};
  EXPECT_EQ(correctedPhotograph(photograph.picture, fit, 1).samples, codes);
  EXPECT_EQ(applyFit(photograph, pipelineOf(fit, 1)).samples, codes);
  fit.best.toneCurve.clear();
  EXPECT_EQ(fit.lightRgb(1), fit.stated[1].measuredRgb);
}

TEST(ChartJobs, AFitGoesOverPhotographsOfWhichOneMayFail) {
  auto name = (std::filesystem::temp_directory_path() / "greycard-apply-XXXXXX").string();
  ASSERT_NE(::mkdtemp(name.data()), nullptr);
  const std::filesystem::path folder = name;
  Picture colours(2, 1, 3, 8);
  colours.samples = {255, 0, 0, 0, 255, 0};
  writePicture(folder / "a.png", colours);
  writePicture(folder / "grey.png", Picture(2, 2, 1, 8));
  FittedPipeline swapped;
  swapped.matrix = {{{0, 1, 0}, {1, 0, 0}, {0, 0, 1}}};
  swapped.gamma = cameraGamma("VGammaSRGB");
  const std::vector photos{folder / "grey.png", folder / "missing.png", folder / "a.png"};
  const std::vector outputs{folder / "0.png", folder / "1.png", folder / "2.png"};
  const auto done = *applyFitToFiles(photos, outputs, swapped);
  ASSERT_EQ(done.size(), 3U);
  EXPECT_THAT(done[0].failure, HasSubstr("grey.png\" is a grey picture"));
  EXPECT_THAT(done[1].failure, HasSubstr("missing.png"));
  EXPECT_TRUE(done[1].output.empty());
  EXPECT_EQ(done[2].failure, "");
  EXPECT_EQ(readPicture(done[2].output).samples,
            (std::vector<std::uint16_t>{0, 255, 0, 255, 0, 0}));
  EXPECT_FALSE(std::filesystem::exists(outputs[0]));

  int asked = 0;
  EXPECT_FALSE(applyFitToFiles(photos, outputs, swapped, {}, {}, [&](double fraction) {
    EXPECT_EQ(fraction, 0.0);
    return ++asked == 0;
  }));
  EXPECT_EQ(applyFitToFiles({photos[2]}, {outputs[2]}, swapped, {}, {{{}, 300.0, 200.0}, {}})
                ->front()
                .failure.substr(0, 10),
            "can't read");
  EXPECT_THROW(applyFitToFiles(photos, {outputs[0]}, swapped), std::invalid_argument);
  EXPECT_EQ(resultPaths({"x/a.b.jpg", "c"}, "out").front(), "out/a.b.png");
  const std::vector<std::filesystem::path> twins{"c.jpg", "a.jpg", "y/a.dng"};
  const char* says = "\"a.jpg\" and \"y/a.dng\" would both be \"out/a.png\"";
  EXPECT_THAT([&] { resultPaths(twins, "out"); },
              testing::ThrowsMessage<JobError>(HasSubstr(says)));
  std::filesystem::remove_all(folder);
}

}  // namespace
}  // namespace greycard
