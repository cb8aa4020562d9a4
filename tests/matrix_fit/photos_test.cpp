// Real photographs with measured patch centres: a folder of NAME.jpg and NAME.json named by the
// variable GREYCARD_PHOTOS. Without it these tests are skipped.

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <nlohmann/json.hpp>

#include "greycard/picture.h"
#include "known_chart.h"

namespace greycard {
namespace {

std::vector<MatrixFitSamples> photographsIn(const std::filesystem::path& folder) {
  std::vector<MatrixFitSamples> all;
  for (const auto& entry : std::filesystem::directory_iterator(folder)) {
    if (entry.path().extension() != ".json") continue;
    const auto truth = nlohmann::json::parse(std::ifstream(entry.path()));
    const double side = 0.5 * truth.at("patch_px").get<double>();
    PatchRegions regions;
    for (std::size_t i = 0; i < kPatchCount; ++i)
      regions[i] = {truth["centres"][i][0].get<double>() - side / 2,
                    truth["centres"][i][1].get<double>() - side / 2, side, side};
    MacbethChartData chart;
    chart.LoadMCCCIELAB(illum_D65);
    const SamplingReport report =
        chart.CollectRGBData(readPicture(folder / truth.at("file").get<std::string>()), regions,
                             SampleLevels::eightBit(SampleEncoding::sRGB));
    all.push_back({{FitPhotograph(chart, report)}, chart.m_RefLab});
    // A photograph with more patches clipped says little about fits.
    if (report.clippedPatches().size() > 8) all.pop_back();
  }
  return all;
}

/// Means over the photographs: fitted, held out, and of the stated fit.
struct Means {
  double fitted = 0.0, heldOut = 0.0, stated = 0.0;
};
Means meansOf(const std::vector<MatrixFitSamples>& photographs, const FitOptions& options) {
  Means means;
  for (const MatrixFitSamples& samples : photographs) {
    const auto result = MatrixFit(options).fit(samples);
    EXPECT_TRUE(result->converged);
    EXPECT_TRUE(result->uncertainty);
    const auto count = static_cast<double>(photographs.size());
    means.fitted += result->figures.mean2000 / count;
    means.heldOut += result->sixFold->mean / count;
    means.stated += result->photographs[0].stated->mean2000 / count;
  }
  return means;
}

TEST(Photos, FitsAreBetterThanTheStatedOneAndACurveIsWorthIt) {
  const char* folder = std::getenv("GREYCARD_PHOTOS");
  if (!folder || !*folder) GTEST_SKIP() << "GREYCARD_PHOTOS names no folder of photographs";
  const std::vector<MatrixFitSamples> photographs = photographsIn(folder);
  ASSERT_FALSE(photographs.empty()) << folder << " holds no photographs with their JSON files";
  FitOptions options;
  const Means nine = meansOf(photographs, options);
  options.entries = FitEntries::six;
  options.exposure = FitExposure::free;
  const Means six = meansOf(photographs, options);
  options = {};
  options.toneCurve = FitToneCurve::power;
  const Means curve = meansOf(photographs, options);
  EXPECT_LT(nine.fitted, nine.stated);
  EXPECT_LT(six.fitted, 1.03 * nine.fitted);
  EXPECT_LT(curve.fitted, 0.8 * nine.fitted);
  EXPECT_LT(curve.heldOut, 0.8 * nine.heldOut);
}

}  // namespace
}  // namespace greycard
