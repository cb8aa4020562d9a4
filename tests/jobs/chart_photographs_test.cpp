// Jobs given a photograph, and what it says of itself.

#include <gmock/gmock.h>

#include <functional>
#include <utility>
#include <vector>

#include "greycard/errors.h"
#include "greycard/jobs/chart_samples.h"
#include "greycard/jobs/describe_photograph.h"
#include "greycard/jobs/evaluate_chart.h"
#include "greycard/jobs/fit_chart_best.h"
#include "greycard/jobs/fit_profile.h"
#include "greycard/jobs/measure_chart.h"
#include "greycard/jobs/simulate.h"

namespace greycard {
namespace {

using testing::HasSubstr;

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

TEST(ChartPhotographs, TellEveryJobWhatTheirSamplesMean) {
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
}

TEST(ChartPhotographs, APlaceThatCantBeIsRefusedByWhereItComesFrom) {
  Photograph photograph = misread();
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

// In codes of 8 bits, of which one is up to 0.7 units of a* and b* in the dark.
TEST(ChartPhotographs, CorrectedOnesHaveTheColoursOfTheirFit) {
  Photograph photograph = misread();
  photograph.samples = {{}, 1000.0, 41000.0};
  const std::vector one{chartPhotograph(photograph)};
  const ChartFit stated = *fitChart(photograph);
  const BestChartFit best = *fitChartBest(one);
  const SampleMeaning& samples = photograph.samples;
  const std::pair<Picture, PatchTable> cases[] = {
      {correctedPhotograph(photograph.picture, stated, samples), stated.correctedLab},
      {correctedPhotograph(photograph.picture, best, 0, samples), best.shown(0).correctedLab}};
  for (const auto& [picture, promised] : cases) {
    const PatchTable seen = evaluateChart(picture).measuredLab;
    for (std::size_t i = 0; i < kPatchCount; ++i)
      for (std::size_t c = 0; c < 3; ++c) EXPECT_NEAR(seen[i][c], promised[i][c], 0.8) << i;
  }
}

TEST(ChartPhotographs, FlatFieldsAreReadWhereThePatchesAre) {
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

TEST(ChartPhotographs, GreyOnesHoldNothingToFit) {
  Photograph photograph;
  photograph.picture = Picture(64, 48, 1, 8);
  photograph.file = "a.png";
  const std::vector<ChartPhotograph> one{chartPhotograph(photograph)};
  for (const std::function<void()>& fit : std::vector<std::function<void()>>{
           [&] { fitChart(photograph); }, [&] { sampleChart(photograph, LocatedChart()); },
           [&] { fitChartBest(one); }})
    EXPECT_THAT(fit, testing::ThrowsMessage<JobError>(HasSubstr("is a grey picture")));
}

}  // namespace
}  // namespace greycard
