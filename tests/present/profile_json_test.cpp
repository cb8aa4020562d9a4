#include <gtest/gtest.h>

#include <stdexcept>

#include "greycard/camera_gamma.h"
#include "greycard/present/chart.h"
#include "greycard/present/fit_file.h"
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
  const CameraProfile profile =
      profileOf({{fitUnder(illum_D65, 1.5), {}}, {fitUnder(illum_A, 0.2), 2700.0}});
  CameraProfile back;
  fromJson(toJson(profile), back);
  EXPECT_EQ(toJson(back), toJson(profile));
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

}  // namespace
}  // namespace greycard::present
