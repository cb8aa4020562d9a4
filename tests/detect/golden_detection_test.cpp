// A region file, the reference colours and the doubts about a fit as texts beside this file.

#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <opencv2/core.hpp>

#include "chart_renderer.h"
#include "drawing.h"
#include "fit_doubts.h"
#include "golden.h"
#include "greycard/chart_regions.h"
#include "greycard/diagnostics.h"
#include "greycard/mcc_detector.h"
#include "search_image.h"
#include "text.h"

namespace greycard {
namespace {

TEST(GoldenDetection, RegionFileAndRemarks) {
  std::string text;
  setErrorChannel([&](std::string_view part) {
    if (!part.starts_with("Box") && !part.starts_with("Slope")) text += part;  // digits of OpenCV
  });
  std::string quads;
  setDebugLog([&](int level, std::string_view category, std::string_view part) {
    quads += std::to_string(level) + std::string(category) + std::string(part.substr(0, 8)) +
             std::string(part.substr(part.find(':'))) + "\n";  // where it begins is OpenCV's
  });
  for (const double turn : {0.0, 90.0, 180.0}) {
    ChartPose pose;
    pose.turnDegrees = turn;
    const auto detection =
        MCCDetector().detect(renderChart(pose), {.methods = SearchMethods::Stated});
    text += formatRegions(detection.regions) + "size " + formatGeneral(detection.size) +
            ", error " + formatGeneral(detection.error) + "\n";
  }
  setErrorChannel({});
  setDebugLog({});
  text += quads.substr(0, quads.size() / 24);
  expectGolden("detect/golden/regions.txt", text);
}

TEST(GoldenDetection, ReferenceColours) {
  std::string text;
  for (const cv::Scalar& c : colorchecker_srgb)
    text += formatGeneral(c[0]) + ", " + formatGeneral(c[1]) + ", " + formatGeneral(c[2]) + ", " +
            formatGeneral(c[3]) + "\n";
  expectGolden("detect/golden/reference_colours.txt", text);
}

// A fit without any doubt: patches of the reference colours in an even picture.
struct Fit {
  ColorChecker checker;
  cv::Mat image{480, 640, CV_8UC3, cv::Scalar(128, 128, 128)};

  Fit() {
    checker.values.create(kChartRows, kChartColumns);
    checker.points.create(kChartRows, kChartColumns);
    checker.size = 20.0;
    for (int i = 0; i < kPatchCount; ++i) {
      const cv::Scalar& c = colorchecker_srgb[static_cast<std::size_t>(i)];
      checker.values(i / 6, i % 6) =
          cv::Vec3f(static_cast<float>(c[0]), static_cast<float>(c[1]), static_cast<float>(c[2]));
      checker.points(i / 6, i % 6) =
          cv::Vec2f(static_cast<float>(60 + 100 * (i % 6)), static_cast<float>(60 + 100 * (i / 6)));
    }
  }
  void neutral(int column, float level) { checker.values(3, column) = {level, level, level}; }
  // The left third of a patch's square becomes brighter in one channel.
  void thirdBrighter(int patch, int channel, int by) {
    const auto& at = checker.points(patch / 6, patch % 6);
    cv::Mat third =
        image(cv::Rect(static_cast<int>(at[0]) - 10, static_cast<int>(at[1]) - 20, 6, 40));
    cv::Scalar brighter;
    brighter[channel] = by;
    third += brighter;
  }
};

TEST(GoldenDetection, Doubts) {
  const std::function<void(Fit&)> cases[] = {
      // What is changed about a fit without any doubt.
      [](Fit&) {},
      [](Fit& f) {
        f.checker.points(0, 0) = {-0.5F, 60}, f.checker.points(2, 3) = {640, 60};
      },
      [](Fit& f) {
        f.checker.points(0, 0) = {0, 0}, f.checker.points(2, 3) = {639.5F, 479.5F};
      },
      [](Fit& f) {
        f.checker.points(1, 1) = {60, 480}, f.checker.points(1, 2) = {60, -1};
      },
      [](Fit& f) { f.checker.points(1, 1)[0] = std::nanf(""); },
      [](Fit& f) { f.neutral(2, 202.6F); },
      [](Fit& f) { f.neutral(2, 203); },
      [](Fit& f) { f.neutral(5, std::nanf("")); },
      [](Fit& f) {
        for (int x = 0; x < 6; ++x) f.neutral(x, x < 5 ? 100 : 69);
      },
      [](Fit& f) {
        for (int x = 0; x < 6; ++x) f.neutral(x, x < 5 ? 100 : 70);
      },
      [](Fit& f) { f.thirdBrighter(2, 1, 20); },
      [](Fit& f) { f.thirdBrighter(2, 0, 21), f.thirdBrighter(13, 2, 40); },
      [](Fit& f) { f.checker.values *= 0.2, f.thirdBrighter(9, 1, 5); },
      [](Fit& f) { f.checker.values *= 0.2, f.thirdBrighter(9, 1, 6); },
      [](Fit& f) { f.checker.size = 3, f.thirdBrighter(2, 1, 90); },
      [](Fit& f) { f.checker.size = 4; },
      [](Fit& f) { f.checker.size = 2; },
      [](Fit& f) {
        for (int x = 0; x < 6; ++x) std::swap(f.checker.values(0, x), f.checker.values(2, x));
      },
      [](Fit& f) {
        for (int i = 0; i < 18; ++i) f.checker.values(i / 6, i % 6) = {90, 90, 90};
      },
      [](Fit& f) {
        for (auto& v : f.checker.values) v[0] = 7;
      }};
  std::string text;
  for (const auto& change : cases) {
    Fit fit;
    change(fit);
    text += "fit " + std::to_string(&change - cases) + "\n";
    for (const std::string& doubt : fitDoubts(fit.checker, fit.image)) text += "  " + doubt + "\n";
  }
  expectGolden("detect/golden/doubts.txt", text);
}

TEST(SearchImage, TakesTheSmallestScaleThatHoldsTheBrightestSample) {
  const std::pair<std::uint16_t, int> cases[] = {{255, 64},   {1023, 255}, {1024, 64},
                                                 {4095, 255}, {4096, 64},  {16383, 255},
                                                 {16384, 64}, {65535, 255}};
  for (const auto& [brightest, code] : cases) {
    Picture picture(2, 1, 3, 16);
    picture.samples = {0, brightest, 0, 0, 0, 0};
    EXPECT_EQ(searchImage(picture, {}).at<cv::Vec3b>(0, 0),
              cv::Vec3b(0, static_cast<uchar>(code), 0));
  }
  Picture picture(1, 1, 3, 16);
  picture.samples = {300, 1100, 4100};  // of 100 to 4100: 0.05, 0.25, 1
  const auto bytes = [&](SampleEncoding encoding) {
    return searchImage(picture, SampleLevels{100, 4100, 1, encoding}).at<cv::Vec3b>(0, 0);
  };
  EXPECT_EQ(bytes(SampleEncoding::sRGB), cv::Vec3b(255, 64, 13));
  EXPECT_EQ(bytes(SampleEncoding::linear), cv::Vec3b(255, 136, 65));  // ^ 1 / 2.2
  Picture bright(1, 1, 1, 8);
  bright.samples = {400};  // beyond its 8 bits
  EXPECT_EQ(searchImage(bright, SampleLevels{0, 510, 1, SampleEncoding::sRGB}).at<cv::Vec3b>(0, 0),
            cv::Vec3b(128, 128, 128));
}

TEST(DrawColorchecker, PutsMeasuredDiscsIntoReferenceDiscs) {
  Fit fit;
  fit.checker.values(1, 2) = {10.4F, std::nanf(""), 250.0F};
  draw_colorchecker(fit.checker.values, fit.checker.points, fit.image, 30);
  const auto at = [&](int dx, int dy) { return fit.image.at<cv::Vec3b>(160 + dy, 260 + dx); };
  EXPECT_EQ(at(0, 0), cv::Vec3b(10, 0, 250));
  EXPECT_EQ(at(14, 0), cv::Vec3b(10, 0, 250));
  EXPECT_EQ(at(17, 0), cv::Vec3b(98, 84, 195));
  EXPECT_EQ(at(0, 29), cv::Vec3b(98, 84, 195));
  EXPECT_EQ(at(0, 32), cv::Vec3b(128, 128, 128));
}

}  // namespace
}  // namespace greycard
