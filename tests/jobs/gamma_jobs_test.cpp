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

TEST_F(GammaJobs, ShowsTheChannelThatIsAskedFor) {
  const GammaCurvePtr curve = threeChannels();
  const ShownCurve green = showCurve(*curve, {CurveChannel::Green});
  EXPECT_EQ(green.table, *curve->DataG());
  EXPECT_FALSE(green.pointsAreSamples);
  EXPECT_EQ(green.points, (ControlPointList{{0, 0}, {99, 90}, {255, 255}}));
  EXPECT_NE(showCurve(*curve, {CurveChannel::Red}).table, green.table);

  const ShownCurve normal = showCurve(*model.GetGammaCurveByName("VNormal"), {{}, 5});
  EXPECT_TRUE(normal.pointsAreSamples && normal.unified && normal.immutable);
  ASSERT_EQ(normal.points.size(), 5u);
  EXPECT_EQ(normal.points.back().X, 255);
  EXPECT_THROW(showCurve(*curve, {{}, 1}), std::invalid_argument);
  curve->SetGammaTable(ColorChannel::All, nullptr);
  EXPECT_THROW(showCurve(*curve), JobError);
  EXPECT_THROW(curveTables(*curve), JobError);

  const GammaCatalogueListing listing = listCurves(model);
  ASSERT_EQ(listing.curves.size(), 12u);
  EXPECT_EQ(listing.curves[8].name, "VGammaSRGB");
  EXPECT_FALSE(listing.curves[11].unified);
}

TEST_F(GammaJobs, LutsAreMadeOfTheShiftedCurve) {
  const GammaCurvePtr curve = model.GetGammaCurveByName("VOutdoor");
  const GammaTable& table = *curve->Data();
  for (const int bits : {8, 14}) {
    const CurveLut plain = buildCurveLut(*curve, {LutKind::Plain, CurveChannel::Blue, bits});
    ASSERT_EQ(plain.values.size(), 256u);
    for (std::size_t i = 0; i < 256; ++i) EXPECT_EQ(plain.values[i], table[4 * i] >> (14 - bits));
  }
  const CurveLut norm = buildCurveLut(*curve, {LutKind::Norm});
  EXPECT_EQ(norm.curveBits, 8);
  EXPECT_EQ(norm.values[255], (table[1020] >> 6) / 255.0);
  const CurveLut wide = buildCurveLut(*curve, {LutKind::To12Bits});
  ASSERT_EQ(wide.values.size(), 4096u);
  EXPECT_EQ(wide.values[4095], wide.values[4091]);
  EXPECT_THAT(lutText(wide),
              testing::EndsWith("\n" + std::to_string(int(wide.values[4095])) + "\n"));
  EXPECT_EQ(buildCurveLut(*curve, {LutKind::Of14Bits}).values[10], table[40] / 62.4);
  EXPECT_THROW(buildCurveLut(*curve, {LutKind::To12Bits, {}, 14}), std::invalid_argument);
  EXPECT_THROW(buildCurveLut(*curve, {LutKind::Plain, {}, 10}), std::invalid_argument);
  EXPECT_THROW(buildCurveLut(*model.GenerateHLGCurve()), JobError);
}

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

TEST_F(GammaJobs, StandardCurvesTellTheirLight) {
  const StandardCurve pq = standardCurve({StandardCurveKind::HDR10, 1000});
  ASSERT_EQ(pq.inputs.size(), 257u);
  EXPECT_EQ(pq.inputs[255], 4080);
  EXPECT_EQ(pq.inputs[256], 4095);
  EXPECT_EQ(pq.light(4095), 1000.0);
  EXPECT_EQ(pq.table.size(), 257u);
  EXPECT_THAT(codesText(pq), testing::EndsWith("\n" + std::to_string(pq.table[256]) + "\n"));
  EXPECT_EQ(standardCurve({StandardCurveKind::HLG}).peak, 1.0);
  EXPECT_THROW(standardCurve({StandardCurveKind::HDR10, 0}), std::invalid_argument);
}

// Entries of 8-bit slopes 1.5 (red) and 1.25: level v is reached at entry 1 + 4 v / slope in 10
// bits.
TEST_F(GammaJobs, DegammaFindsTheInputsOfEachChannel) {
  const GammaCurvePtr curve = threeChannels();
  const DeGammaResult result = degammaColour(*curve, {60.0, 60.0, 30.0});
  EXPECT_NEAR(result.positions[0], 1.0 + 240.0 / 6.0, 1e-9);
  EXPECT_NEAR(result.positions[1], 1.0 + 240.0 / 5.0, 1e-9);
  EXPECT_NEAR(result.positions[2], 1.0 + 120.0 / 5.0, 1e-9);
  EXPECT_EQ(result.tables[1][48], 240.0);
  EXPECT_THROW(degammaColour(*curve, {0.0, NAN, 0.0}), std::invalid_argument);
  EXPECT_THROW(degammaColour(*model.GenerateHLGCurve(), {}), JobError);
}

}  // namespace
}  // namespace greycard
