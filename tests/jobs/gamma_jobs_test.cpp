#include <gmock/gmock.h>
#include <unistd.h>

#include <cmath>
#include <cstdlib>
#include <filesystem>

#include "greycard/errors.h"
#include "greycard/files.h"
#include "greycard/jobs/build_curve_lut.h"
#include "greycard/jobs/curve_files.h"
#include "greycard/jobs/degamma_colour.h"
#include "greycard/jobs/reduce_curve.h"
#include "greycard/jobs/show_curve.h"
#include "greycard/jobs/standard_curve.h"

namespace greycard {
namespace {

using testing::HasSubstr;

class GammaJobs : public testing::Test {
 protected:
  GammaJobs() : folder(testing::TempDir() + "gamma_jobs_" + std::to_string(::getpid())) {
    std::filesystem::create_directories(folder);
  }
  ~GammaJobs() override { std::filesystem::remove_all(folder); }

  // 256 entries of 10 bits, each `step` above the one before.
  static std::string ramp(int step) {
    std::string text;
    for (int i = 0; i < 256; ++i) text += std::to_string(std::min(step * i, 1023)) + " ";
    return text;
  }
  GammaCurvePtr threeChannels() {
    return model
        .ImportText("three", "GammaTableV2R: " + ramp(6) + "\nGammaTableV2G: " + ramp(5) +
                                 "\nGammaTableV2B: " + ramp(5) +
                                 "\nGammaControlPointsV2R: 0,0 255,255\nGammaControlPointsV2G: "
                                 "0,0 99,90 255,255\nGammaControlPointsV2B: 0,0 255,255")
        .curve;
  }

  std::filesystem::path folder;
  GammaCurveModel model{true};
};

TEST_F(GammaJobs, FilesGoOutAndComeBackWithTheirNotes) {
  const GammaCurvePtr curve = threeChannels();
  const CurveExport exported = exportCurve(*curve, folder / "out.txt", {1024, 14});
  writeWholeFile(folder / "odd.txt", "junk " + ramp(4));
  const std::vector<std::filesystem::path> files{folder / "out.txt", folder / "odd.txt"};
  const CurveImportReport report = importCurves(model, files);
  ASSERT_EQ(report.curves.size(), 2u);
  EXPECT_EQ(report.curves[0].curve.channels, exported.curve.channels);
  EXPECT_EQ(report.curves[0].fileTables.size(), 3u);
  EXPECT_EQ(report.curves[1].fileTables.at(0).bits, 10);
  ASSERT_FALSE(report.curves[1].notes.empty());
  EXPECT_NE(model.GetGammaCurveByName(report.curves[1].curve.name), nullptr);

  const SourcedCurve odd = curveByNameOrFile((folder / "odd.txt").string());
  EXPECT_THAT(odd.notes, testing::Contains(HasSubstr("odd.txt\", line 1, \"junk\": ")));
  EXPECT_EQ(comparisonCurve((folder / "odd.txt").string()).curve.name, "odd.txt");
  EXPECT_EQ(comparisonCurve("HLG").curve.channels[0].table.size(), 257u);
  EXPECT_THROW(exportCurve(*curve, folder / "x.txt", {100, 8}), std::invalid_argument);
  EXPECT_THROW(exportCurve(*curve, folder / "x.txt", {64, 9}), std::invalid_argument);
}

TEST_F(GammaJobs, AFileWithoutACurveIsRefusedWithItsNotes) {
  const auto file = folder / "bad.txt";
  writeWholeFile(file, "\nGammaTableV2: junk 1 2 3");
  const std::vector<std::filesystem::path> files{file};
  const std::vector<std::function<void()>> calls{[&] { curveByNameOrFile(file.string()); },
                                                 [&] { comparisonCurve(file.string()); },
                                                 [&] { importCurves(model, files); }};
  for (const auto& call : calls) try {
      call();
      FAIL();
    } catch (const CurveFileRefused& refusal) {
      EXPECT_THAT(refusal.what(), HasSubstr("line 2, \"GammaTableV2:\": the red table holds"));
      EXPECT_THAT(refusal.notes(), testing::Contains(HasSubstr("line 2, \"junk\"")));
    }
  try {
    curveByNameOrFile("vnormal");
    FAIL();
  } catch (const JobError& error) {
    EXPECT_THAT(error.what(), HasSubstr("did you mean \"VNormal\"?"));
  }
}

TEST_F(GammaJobs, ControlPointsComeWithTheirLargestDeviation) {
  const GammaCurvePtr curve = threeChannels();
  const ControlPointReduction reduction = reduceToControlPoints(*curve, CurveChannel::Green);
  EXPECT_EQ(reduction.table, *curve->DataG());
  std::int64_t worst = 0;
  for (std::size_t i = 0; i < reduction.table.size(); ++i)
    worst = std::max<std::int64_t>(worst,
                                   std::abs(reduction.tableThroughPoints[i] - reduction.table[i]));
  EXPECT_EQ(std::abs(reduction.largestDeviation), worst);
  const std::size_t at = reduction.largestDeviationIndex;
  EXPECT_EQ(reduction.largestDeviation,
            reduction.tableThroughPoints.at(at) - reduction.table.at(at));
}

TEST_F(GammaJobs, OptionsAndCurvesThatCantBeAreRefused) {
  const GammaCurvePtr curve = threeChannels(), hlg = model.GenerateHLGCurve();
  const std::vector<std::function<void()>> options{
      [&] {
        showCurve(*curve, {{}, 1});
      },
      [&] {
        showCurve(*curve, {{}, 257});
      },
      [&] {
        buildCurveLut(*curve, {LutKind::To12Bits, {}, 14});
      },
      [&] {
        buildCurveLut(*curve, {LutKind::Plain, {}, 10});
      },
      [&] {
        standardCurve({StandardCurveKind::HDR10, 0});
      },
      [&] {
        degammaColour(*curve, {0.0, NAN, 0.0});
      }};
  for (const auto& call : options) EXPECT_THROW(call(), std::invalid_argument);
  EXPECT_THROW(buildCurveLut(*hlg), JobError);
  EXPECT_THROW(degammaColour(*hlg, {}), JobError);
  curve->SetGammaTable(ColorChannel::All, nullptr);
  EXPECT_THROW(showCurve(*curve), JobError);
}

}  // namespace
}  // namespace greycard
