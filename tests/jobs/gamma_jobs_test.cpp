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
#include "greycard/jobs/make_curve.h"
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
  ASSERT_EQ(report.curves[0].fileTables.size(), 3u);
  EXPECT_EQ(report.curves[0].fileTables[1].channel, CurveChannel::Green);
  EXPECT_EQ(report.curves[1].fileTables.at(0).bits, 10);
  ASSERT_FALSE(report.curves[1].notes.empty());
  EXPECT_NE(model.GetGammaCurveByName(report.curves[1].curve.name), nullptr);

  EXPECT_EQ(comparisonCurve("HLG").curve.channels[0].table.size(), 257u);
  EXPECT_THROW(exportCurve(*curve, folder / "x.txt", {100, 8}), std::invalid_argument);
  EXPECT_THROW(exportCurve(*curve, folder / "x.txt", {64, 9}), std::invalid_argument);
}

TEST_F(GammaJobs, AFileWithoutACurveIsRefusedWithItsNotes) {
  const auto file = folder / "bad.txt";
  writeWholeFile(file, "\nGammaTableV2: junk 1 2 3");
  writeWholeFile(folder / "good.txt", ramp(4));
  const std::vector<std::filesystem::path> files{file, folder / "none.txt", folder / "good.txt"};
  const CurveImportReport report = importCurves(model, files);
  EXPECT_EQ(report.curves.size(), 1u);
  ASSERT_EQ(report.refused.size(), 2u);
  EXPECT_THAT(report.refused[0].reason,
              HasSubstr("line 2, \"GammaTableV2:\": the red table holds"));
  EXPECT_EQ(report.refused[0].notes.size(), 1u);
  EXPECT_THAT(report.refused[1].reason, HasSubstr("none.txt"));
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

// The least number is proved by trying all sets of one point less.
TEST_F(GammaJobs, FewestPointsStayWithinTheLimit) {
  const double percent = 1.0, codes = percent / 100.0 * kCurveMax;
  for (const char* name : {"VLowlight", "VOutdoor", "VNexus5"}) {
    const GammaCurvePtr curve = model.GetGammaCurveByName(name);
    const ControlPointReduction found = fewestPointsOf(*curve, percent);
    ASSERT_LE(std::abs(found.largestDeviation), codes) << name;
    ASSERT_EQ(found.points.size(), 4u) << name;
    GammaCurve through("through", model);
    const auto table = [&](int index) {
      return curve->Data()->at(static_cast<std::size_t>(index));
    };
    const auto near = [&](int x) {
      return std::pair((table(4 * x) - static_cast<int>(codes)) / 64,
                       (table(4 * x) + static_cast<int>(codes)) / 64 + 1);
    };
    // A natural spline through three points in closed form: one second derivative, at the middle.
    const auto fits = [&](double x, double y0, double y1, double y2) {
      const double h = x, k1 = 1020.0 - x;
      const double m = 3.0 * ((y2 - y1) / k1 - (y1 - y0) / h) / (h + k1);
      for (int k = 0; k < 1024; ++k) {
        const int i = k * 331 % 1024;  // far apart, as most sets fail at once somewhere
        const double t = i < x ? i / h : (1020.0 - i) / k1, end = i < x ? y0 : y2;
        const double width = i < x ? h : k1;
        const double v = end + t * (y1 - end) + (t * t * t - t) * m * width * width / 6.0;
        if (std::abs(std::min(v, 16383.0) - table(i)) > codes + 0.5) return false;
      }
      return true;
    };
    const auto threeAreEnough = [&] {
      for (int x = 1; x < 255; ++x)
        for (int y0 = near(0).first; y0 <= near(0).second; ++y0)
          for (int y1 = near(x).first; y1 <= near(x).second; ++y1)
            for (int y2 = near(255).first; y2 <= near(255).second; ++y2)
              if (fits(4.0 * x, 64.0 * y0, 64.0 * y1, 64.0 * y2)) return true;
      return false;
    };
    EXPECT_FALSE(threeAreEnough()) << name;
  }
  EXPECT_THROW(fewestPointsOf(*model.GetGammaCurveByName("VHDR"), 0.01), JobError);
  EXPECT_THROW(fewestPointsOf(*model.GetGammaCurveByName("VHDR"), NAN), std::invalid_argument);
}

TEST_F(GammaJobs, CurvesAreMadeOfOthers) {
  const auto at = [](const GammaCurve& curve, double index, CurveChannel channel) {
    const auto table = curveTable(curve, channel);
    const auto i = std::min(static_cast<std::size_t>(index), table.size() - 2);
    return table[i] + (index - static_cast<double>(i)) * (table[i + 1] - table[i]);
  };
  const GammaCurvePtr root = powerCurve(2.0), srgb = model.GetGammaCurveByName("VGammaSRGB");
  EXPECT_EQ(root->Data()->at(256), static_cast<int>(16383.0 * std::sqrt(256.0 / 1023.0)));
  const GammaCurvePtr merged = mergedCurve("m", *root, *srgb, *threeChannels());
  EXPECT_EQ(*merged->DataR(), *root->Data());
  EXPECT_EQ(*merged->DataG(), *srgb->Data());
  EXPECT_EQ(*merged->DataB(), *threeChannels()->DataB());
  EXPECT_EQ(powerCurve(2.234567)->Name(), "power2.23457");
  const GammaCurvePtr three = threeChannels(), again = mergedCurve("m", *three, *three, *three);
  EXPECT_EQ(*again->ControlPointsG(), *three->ControlPointsG());
  EXPECT_EQ(again->ControlPointsG()->size(), 3U);
  const GammaCurvePtr inverse = invertedCurve(*merged);
  EXPECT_EQ(inverse->Name(), "inverse of m");
  // Forth and back, up to the rounding of codes.
  for (const auto channel : {CurveChannel::Red, CurveChannel::Green})
    for (double i = 0; i < 1023; i += 0.7) {
      const double back = at(*merged, at(*inverse, i, channel) / kCurveMax * 1023, channel);
      const double steepest = i < 40 ? 200 : 30;
      EXPECT_NEAR(back, i / 1023 * kCurveMax, steepest) << i;
    }
  const GammaCurvePtr steps = model
                                  .ImportText("s",
                                              [] {
                                                std::string text = "GammaTable: 9 9 ";
                                                for (int i = 2; i < 64; ++i)
                                                  text += i < 32 ? "9 " : "255 ";
                                                return text;
                                              }())
                                  .curve;
  // Level at 9 * 64 up to index 31 * 16; at 255 * 64 from 32 * 16 to 63 * 16.
  EXPECT_EQ(invertedCurve(*steps)->Data()->at(0), 0);
  EXPECT_NEAR(invertedCurve(*steps)->Data()->at(100),
              16383.0 / 1023 * (496 + 16.0 * (100 * 16.0147 - 576) / 15744), 9);
  // Level at 0 up to index 2 * 16, whose middle is 16.
  std::string late = "GammaTable: 0 0 0";
  for (int i = 3; i < 64; ++i) late += " " + std::to_string(4 * i);
  EXPECT_EQ(invertedCurve(*model.ImportText("late", late).curve)->Data()->at(0),
            std::lround(16383.0 * 16.0 / 1023.0));
  const GammaCurvePtr same = invertedCurve(*powerCurve(1.0));
  for (int i = 0; i < 1024; ++i)
    EXPECT_NEAR(same->Data()->at(static_cast<std::size_t>(i)), 16383.0 * i / 1023.0, 1.6) << i;
  EXPECT_THROW(powerCurve(NAN), std::invalid_argument);
  (*root->Data())[7] = 0;
  EXPECT_THROW(invertedCurve(*root), JobError);
}

TEST_F(GammaJobs, ACurveWithoutPointsIsShownBySamplesOfItsChannel) {
  const GammaCurvePtr powers =
      mergedCurve("p", *powerCurve(2.0), *powerCurve(1.5), *powerCurve(3.0));
  for (const auto& [channel, power] :
       {std::pair{CurveChannel::Red, 2.0}, {CurveChannel::Green, 1.5}, {CurveChannel::Blue, 3.0}})
    EXPECT_EQ(showCurve(*powers, {channel, 16}).points,
              showCurve(*powerCurve(power), {CurveChannel::All, 16}).points);
  EXPECT_NO_THROW(showCurve(*powers, {CurveChannel::All, 256}));
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
  EXPECT_EQ(codesText({StandardCurveKind::HLG, 1.0, {}, {0, 22, 1023}}), "0\n22\n1023\n");
  EXPECT_THROW(fewestPointsOf(*hlg, 1.0), JobError);
  EXPECT_THROW(buildCurveLut(*hlg), JobError);
  EXPECT_THROW(degammaColour(*hlg, {}), JobError);
  curve->SetGammaTable(ColorChannel::All, nullptr);
  EXPECT_THROW(showCurve(*curve), JobError);
}

}  // namespace
}  // namespace greycard
