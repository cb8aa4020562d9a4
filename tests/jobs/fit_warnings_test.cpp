// What a fit says of samples and options that it was made of.

#include <gmock/gmock.h>

#include <cmath>
#include <functional>

#include "greycard/jobs/chart_samples.h"
#include "greycard/jobs/fit_chart.h"
#include "greycard/macbeth_chart_data.h"

namespace greycard {
namespace {

using testing::HasSubstr;

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

TEST(FitWarnings, TellWhatPhotographAndOptionsLack) {
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

TEST(FitWarnings, TellAGreyRowMoreThanThreeOff) {
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

}  // namespace
}  // namespace greycard
