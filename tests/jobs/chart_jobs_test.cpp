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
#include "greycard/jobs/chart_samples.h"
#include "greycard/jobs/describe_photograph.h"
#include "greycard/jobs/evaluate_chart.h"
#include "greycard/jobs/fit_chart.h"
#include "greycard/jobs/fit_chart_best.h"
#include "greycard/jobs/fit_profile.h"
#include "greycard/jobs/locate_chart.h"
#include "greycard/jobs/measure_chart.h"
#include "greycard/jobs/simulate.h"
#include "greycard/macbeth_chart_data.h"

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

TEST(ChartJobs, LightIsMeasuredThroughTheCurveWhereThereIsOne) {
  BestChartFit fit;
  fit.stated.resize(1);
  fit.stated[0].measuredRgb.fill({0.25, 0.5, 1.0});
  EXPECT_EQ(fit.lightRgb(0), fit.stated[0].measuredRgb);
  fit.best.toneCurve = {0.0, 0.5};  // half of what sRGB decodes, on one straight line
  for (std::size_t c = 0; c < 3; ++c)
    EXPECT_EQ(fit.lightRgb(0)[9][c],
              curveLight(fit.best.toneCurve, fit.stated[0].measuredRgb[9][c]));
  EXPECT_NEAR(fit.lightRgb(0)[9][2], 0.5, 1e-12);
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
}

double lightOf(double l) {  // CIE 15:2004, above L* 8
  return std::pow((l + 16.0) / 116.0, 3.0);
}

// Greys as their references are, and some colours.
ChartSamples withTrueGreys(SampleEncoding encoding) {
  MacbethChartData reference;
  reference.LoadMCCCIELAB(illum_D65);
  ChartSamples samples;
  samples.levels = SampleLevels::sixteenBit(encoding);
  for (std::size_t i = 0; i < kPatchCount; ++i) {
    const auto at = static_cast<double>(i);
    samples.measuredRgb[i] = {0.1 + 0.02 * at, 0.5 - 0.02 * at,
                              0.1 + 0.1 * static_cast<double>(i % 5)};
    if (i >= 18) samples.measuredRgb[i].fill(lightOf(reference.m_RefLab[i][0]));
  }
  return samples;
}

TEST(ChartJobs, AFitTellsWhatPhotographAndOptionsLack) {
  const auto scaled = [](std::size_t channel, double factor) {
    return [=](ChartSamples& samples, ChartFitOptions&) {
      for (Vector3& rgb : samples.measuredRgb) rgb[channel] *= factor;
    };
  };
  const auto chroma = [](std::array<double, 4> factors) {
    return [=](ChartSamples&, ChartFitOptions& options) { options.targetSaturation = factors; };
  };
  const struct {
    std::function<void(ChartSamples&, ChartFitOptions&)> change;
    const char* says;
  } cases[] = {
      {chroma({1.1, 1.1, 1.1, 1.1}), ""},
      {chroma({1.0, 1.1, 1.2, 1.3}), ""},
      {chroma({1.1, 1.1, 1.1, 1.2}), "the chroma factor 1.1 for all.*, as in 1.1,1.1,1.1,1.1"},
      {scaled(0, 1.009), ""},
      {scaled(0, 1.012), "raises green by 1.2 %"},
      {scaled(0, 0.0), "channel R is 0 in every patch"},
      {scaled(2, 0.0), "channel B is 0 in every patch"},
      {[](ChartSamples& samples, ChartFitOptions&) {
         samples.sampling.clipping[18][1].ceiling = 0.011;
         samples.sampling.clipping[3][0].ceiling = 0.01;
       },
       "clipped in the photograph: patches 19 .white 9.5.; expose"},
      {[](ChartSamples& samples, ChartFitOptions& options) {
         samples.measuredRgb[0].fill(0.9);
         options.exposure = FitExposure::number, options.exposureGain = 1.2;
       },
       "exceeds full scale and is clipped there: patches 1 .dark skin., 19 .white 9.5.$"},
      {[](ChartSamples&, ChartFitOptions& options) { options.saturation = 4.0; },
       "the saturation search ended at .* where 300.0 % was wanted"},
  };
  for (const auto& [change, says] : cases) {
    ChartSamples samples = withTrueGreys(SampleEncoding::linear);
    ChartFitOptions options;
    change(samples, options);
    const auto warnings = fitChart(samples, options)->warnings;
    EXPECT_EQ(warnings.size(), *says == 0 ? 0U : 1U) << says;
    EXPECT_THAT(warnings, testing::Each(testing::ContainsRegex(says)));
  }
}

TEST(ChartJobs, AGreyRowMoreThanThreeOffIsTold) {
  for (const auto encoding : {SampleEncoding::linear, SampleEncoding::sRGB}) {
    const bool isSRgb = encoding == SampleEncoding::sRGB;
    // Of six, the changed patch takes five sixths of its factor and the others the rest.
    for (const double off : {2.99, 3.01}) {
      ChartSamples samples = withTrueGreys(encoding);
      const double light = samples.measuredRgb[22][0], l = 116.0 * std::cbrt(light) - 16.0;
      samples.measuredRgb[22].fill(light * std::pow(lightOf(l + off) / light, 1.2));
      const char* says = isSRgb
                             ? "(srgb) by up to 3.0 L* at patch 23; the photograph is tone-mapped"
                             : "(linear) by up to 3.0 L* at patch 23; check --black";
      EXPECT_THAT(fitChart(samples)->warnings, testing::Contains(HasSubstr(says)).Times(off > 3));
    }
  }
}

// In 16 bits from code 1000 to 41000, taken for encoded ones up to 30000, where white clips.
Photograph misread() {
  SimulationSettings settings;
  settings.width = 480, settings.height = 360, settings.bits = 16;
  settings.encoding = SampleEncoding::linear;
  settings.blackLevel = 1000.0, settings.whiteLevel = 41000.0;
  const SampleMeaning samples{SampleEncoding::sRGB, 1000.0, 30000.0};
  const std::vector<std::string> pages{"page 2", "page 3"};
  return {simulateChart(settings)->picture, "a.tif", "TIFF", samples, CaptureInfo(), pages};
}

TEST(ChartJobs, APhotographTellsWhatItsSamplesMean) {
  Photograph photograph = misread();
  ChartFitOptions options;
  options.locate.force = true;
  const auto samples = sampleChart(photograph, searchChart(photograph, options.locate).chart);
  const ChartFit fit = *fitChart(photograph, options), again = *fitChart(samples);
  const ChartEvaluation judged = evaluateChart(photograph, {options.locate});
  const MeasuredChart measured = measureChart(photograph, options.locate);
  for (const auto& rgb : {fit.measuredRgb, judged.measuredRgb, measured.rgb})
    EXPECT_EQ(rgb, samples.measuredRgb);
  for (const auto& told : {fit.warnings, again.warnings, judged.warnings, measured.warnings})
    EXPECT_TRUE(told.at(1) == "page 3" && told.size() > 2) << told[0];
  EXPECT_THAT(judged.warnings.back(), testing::EndsWith("it would not with --encoding linear"));
  const PhotographInfo info = describePhotograph(photograph);
  EXPECT_EQ(info.levels.whiteLevel, 30000.0);
  for (const auto& capture : {info.capture, again.capture, fit.capture, judged.capture,
                              searchChart(photograph).capture, searchCharts(photograph).capture})
    EXPECT_TRUE(capture);
  const LightPhotograph lit[] = {{photograph, illum_D65, 3000.0}};
  options.light = illum_A;
  EXPECT_EQ(fitProfile(lit, options)->lights.at(0).fit.matrix, fit.matrix);
  EXPECT_FALSE(fitProfile(lit, options, [](double) { return false; }));
  options.transform = 1;
  EXPECT_THROW(fitProfile(lit, options), JobError);
  LocateOptions place;
  place.corners = {{{5, 5}, {95, 5}, {95, 65}, {5, 65}}};
  EXPECT_THAT(searchChart(photograph, place).refusal,
              testing::StartsWith("the corners given for the chart in \"a.tif\" can't be right: "));
  EXPECT_THROW(searchCharts(photograph, place), std::invalid_argument);
  place.within = PatchRegion{0, 0, 99, 99};
  EXPECT_THROW(searchChart(photograph, place), std::invalid_argument);
  const ChartSearch none = searchChart(Picture(64, 48, 3, 8), {}, "a.png");
  EXPECT_THAT(none.refusal, testing::StartsWith("no chart found in \"a.png\": "));
  EXPECT_THROW(none.require(), NoChart);
  photograph.samples.blackLevel = 30000.0;
  EXPECT_THROW(searchChart(photograph), std::invalid_argument);
  EXPECT_THROW(searchCharts(photograph), std::invalid_argument);
}

TEST(ChartJobs, FlatFieldsAreReadWhereThePatchesAre) {
  Photograph flat{
      Picture(480, 360, 3, 8), "", "", {SampleEncoding::linear, 40.0, {}}, {}, {"flat"}};
  for (std::size_t i = 0; i < flat.picture.samples.size(); ++i)
    flat.picture.samples[i] = i / 3 % 480 < 240 ? 60 : 200;
  std::vector photographs{chartPhotograph(misread(), 1.0, flat)};
  BestFitOptions options;
  options.chart.locate.force = true;
  const auto fit = fitChartBest(photographs, options);
  EXPECT_NEAR(fit->best.photographs[0].lightRange, 100.0 * (1.0 - 20.0 / 160.0), 1e-9);
  EXPECT_EQ(fit->warnings.at(2), "flat");
  for (const double until : {0.0, 0.3, 0.31})
    EXPECT_FALSE(fitChartBest(photographs, options, [&](double at) { return at < until; }));
  const auto fitting = [&] { fitChartBest(photographs, options); };
  photographs[0].flatFieldSamples->whiteLevel = 200.0;
  const char* says = "the flat field clips at patches 4 (foliage), 5 (blue flower), 6";
  EXPECT_THAT(fitting, testing::ThrowsMessage<JobError>(HasSubstr(says)));
  photographs[0].flatField = Picture(480, 359, 3, 8);
  says = "480 x 359 pixels and the photograph 480 x 360";
  EXPECT_THAT(fitting, testing::ThrowsMessage<JobError>(HasSubstr(says)));
}

TEST(ChartJobs, GreyPhotographsHoldNothingToFit) {
  Photograph photograph;
  photograph.picture = Picture(64, 48, 1, 8);
  photograph.file = "a.png";
  const std::vector<ChartPhotograph> one{chartPhotograph(photograph)};
  for (const std::function<void()>& fit : std::vector<std::function<void()>>{
           [&] { fitChart(photograph); }, [&] { sampleChart(photograph, LocatedChart()); },
           [&] { fitChartBest(one); }})
    EXPECT_THAT(fit, testing::ThrowsMessage<JobError>(HasSubstr("is a grey picture")));
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
