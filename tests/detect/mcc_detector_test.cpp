#include "greycard/mcc_detector.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <limits>
#include <opencv2/core.hpp>
#include <random>
#include <stdexcept>
#include <string>
#include <thread>

#include "chart_renderer.h"
#include "golden.h"
#include "greycard/chart_regions.h"
#include "greycard/diagnostics.h"
#include "result/stated_search.h"

namespace greycard {
namespace {

using testing::HasSubstr;

// The stated search alone; the lattice search has tests of its own.
const DetectOptions kStated{.methods = SearchMethods::Stated};

// The remarks of a search, kept off the test's own output.
class Detector : public testing::Test {
 protected:
  void SetUp() override {
    setErrorChannel([this](std::string_view text) { remarks_ += text; });
  }
  void TearDown() override { setErrorChannel({}); }

  MCCDetector detector_;
  std::string remarks_;
};

Picture mirror(Picture picture) {
  for (int y = 0; y < picture.height; ++y)
    for (int x = 0; x < picture.width / 2; ++x)
      std::swap_ranges(picture.pixel(x, y), picture.pixel(x, y) + 3,
                       picture.pixel(picture.width - 1 - x, y));
  return picture;
}

struct PoseCase {
  double turn, tiltX, tiltY;
};

TEST_F(Detector, FindsTheChartAtEveryTurn) {
  const PoseCase cases[] = {
      {0, 0, 0},          {90, 0, 0},      {180, 0, 0},         {270, 0, 0},      {7, 0.004, 0.003},
      {45, 0.001, 0.001}, {133, 0.003, 0}, {200, 0.002, 0.004}, {301, 0, -0.004}, {0, 0.003, 0.003},
      {90, -0.003, 0},    {89.99, 0, 0},   {0.01, 0, 0},        {359.99, 0, 0},   {180.01, 0, 0}};
  for (const auto& c : cases) {
    SCOPED_TRACE(testing::Message() << c.turn << " degrees, tilt " << c.tiltX << " " << c.tiltY);
    ChartPose pose;
    pose.turnDegrees = c.turn;
    pose.tiltX = c.tiltX;
    pose.tiltY = c.tiltY;
    const auto detection = detector_.detect(renderChart(pose), kStated);
    ASSERT_TRUE(detection.found()) << detection.reason;
    EXPECT_THAT(detection.doubts, testing::IsEmpty());
    // The grid is a parallelogram and its points whole pixels; a slight tilt bends the true
    // lattice.
    const bool flat = c.tiltX == 0 && c.tiltY == 0;
    EXPECT_GE(detection.quads, flat ? 24 : 20);
    EXPECT_LT(worstDistance(detection.points, trueCentres(pose)), flat ? 2.0 : pose.pitch / 10.0);
  }
}

TEST_F(Detector, TakesGreyPicturesAndRefusesLevelsOutOfOrder) {
  const ChartPose pose;
  const auto picture = renderChart(pose);
  Picture grey(pose.width, pose.height, 1, 8);
  for (std::size_t i = 0; i < grey.samples.size(); ++i)
    grey.samples[i] = picture.samples[3 * i + 1];
  EXPECT_LT(worstDistance(detector_.detect(grey, kStated).points, trueCentres(pose)), 3.0);
  const double nan = std::numeric_limits<double>::quiet_NaN();
  for (const auto& levels :
       {SampleLevels{200.0, 100.0}, SampleLevels{0.0, nan}, SampleLevels{nan, 255.0}})
    EXPECT_THROW(detector_.detect(grey, levels), std::invalid_argument);
}

TEST_F(Detector, TwentyFiveQuadsAreTakenForTwoCharts) {
  ChartPose left;
  left.width = 1400;
  left.x = 350;
  auto picture = renderChart(left);
  EXPECT_EQ(detector_.detect(picture, kStated).quads, 24);
  EXPECT_THAT(remarks_, HasSubstr("24 initial quads found\n"));

  ChartPose right = left;
  right.x = 1050;
  right.turnDegrees = 180;
  drawChart(picture, right);
  cv::theRNG() = cv::RNG(99);
  const auto detection = detector_.detect(picture, kStated);
  EXPECT_THAT(remarks_, HasSubstr("48 initial quads found (probably a Passport)\n"));
  EXPECT_EQ(detection.quadsUsed, 24);
  EXPECT_LT(std::min(worstDistance(detection.points, trueCentres(left)),
                     worstDistance(detection.points, trueCentres(right))),
            2.0);
  EXPECT_EQ(cv::theRNG(), cv::RNG(99)) << "the library's generator is somebody else's";

  // One more patch, in a small frame of its own.
  picture = renderChart(left);
  paint(picture, 1000, 250, 1100, 350, 12);
  paint(picture, 1010, 260, 1090, 340, 140);
  EXPECT_EQ(detector_.detect(picture, kStated).quads, 25);
  EXPECT_THAT(remarks_, HasSubstr("25 initial quads found (probably a Passport)\n"));
}

TEST_F(Detector, NamesTheStageThatFailed) {
  const auto noise = [](int width, int height) {
    Picture picture(width, height, 3, 8);
    std::mt19937 random(3);
    for (auto& sample : picture.samples) sample = static_cast<std::uint16_t>(random() % 256);
    return picture;
  };
  auto inconsistent = backdrop(20, 20);
  inconsistent.samples.pop_back();
  // One framed patch: a quad, but no area between patches. One twice as wide as high: no quad.
  auto lonely = backdrop(300, 200), oblong = lonely;
  paint(lonely, 50, 50, 150, 150, 12);
  paint(lonely, 60, 60, 140, 140, 140);
  paint(oblong, 50, 50, 150, 110, 12);
  paint(oblong, 60, 60, 140, 100, 140);
  const struct {
    const char* name;
    Picture picture;
    ChartStage stage;
  } cases[] = {{"empty", Picture(), ChartStage::Picture},
               {"samples missing", inconsistent, ChartStage::Picture},
               {"one pixel", Picture(1, 1, 3, 8), ChartStage::Contours},
               {"one column", backdrop(1, 5000), ChartStage::Contours},
               {"plain", backdrop(300, 200), ChartStage::Contours},
               {"oblong", oblong, ChartStage::Quads},
               {"one patch", lonely, ChartStage::Grid}};
  std::string reasons;
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name);
    const auto detection = detector_.detect(c.picture, kStated);
    EXPECT_STREQ(chartStageName(detection.stage), chartStageName(c.stage));
    EXPECT_FALSE(detection.found() || detection.trustworthy());
    reasons += std::string(c.name) + ": " + detection.reason + "\n";
  }
  expectGolden("detect/golden/reasons.txt", reasons);
  for (const auto& [width, height] : {std::pair{1, 1}, {3, 2000}, {60, 40}, {74, 900}, {400, 300}})
    EXPECT_FALSE(detector_.detect(noise(width, height), kStated).trustworthy())
        << width << " x " << height;
}

TEST_F(Detector, FitsOffTheChartAreNotTrusted) {
  // The neutral row painted over: the grid hangs on what is left and is wrong.
  auto covered = renderChart({});
  paint(covered, 0, 370, 800, 600, 12);
  EXPECT_TRUE(detector_.detect(covered, kStated).found());
  EXPECT_FALSE(detector_.detect(covered, kStated).trustworthy());

  // The right lattice with the wrong colours: a mirrored picture.
  EXPECT_FALSE(detector_.detect(mirror(renderChart({})), kStated).trustworthy());
}

TEST_F(Detector, TheLatticeSearchComesFirstAndSaysWhyNot) {
  const ChartPose leaning{.pitch = 60, .turnDegrees = 40, .tiltX = 0.06, .tiltY = 0.04};
  const auto found = detector_.detect(renderChart(leaning));
  EXPECT_EQ(found.method, ChartMethod::Lattice);
  EXPECT_TRUE(found.trustworthy());
  EXPECT_LT(worstDistance(found.placement.centres, trueCentres(leaning)), 0.02 * leaning.pitch);

  const ChartPose cut{.x = 640};
  auto squares = renderChart({});
  for (int i = 0; i < 24; ++i) {
    const auto centre = trueCentres({})[static_cast<std::size_t>(i)];
    const int x = static_cast<int>(centre.x), y = static_cast<int>(centre.y);
    paint(squares, x - 29, y - 29, x + 29, y + 29, 60 + i * 53 % 190);
  }
  const struct {
    Picture picture;
    ChartRefusal refusal;
    const char* says;
  } cases[] = {
      {mirror(renderChart({})), ChartRefusal::Mirrored, "flip the picture"},
      {renderChart(cut), ChartRefusal::Cut, "right edge cuts the chart"},
      {squares, ChartRefusal::OtherColours,
       "a regular grid of 24 patches was found round (400, 300)"},
      {backdrop(300, 200), ChartRefusal::NoPatches, "no regular grid of patches was found"},
      {backdrop(65535, 1), ChartRefusal::TooSmall, "too few to hold a chart"}};
  for (const auto& c : cases) {
    const auto detection = detector_.detect(c.picture);
    EXPECT_STREQ(chartRefusalName(detection.refusal), chartRefusalName(c.refusal));
    EXPECT_THAT(detection.reason, HasSubstr(c.says));
    EXPECT_EQ(detector_.detectAll(c.picture).size(), 0U);
  }
}

// Squares of 40, 60 from one to the next, in rows of 5.
TEST_F(Detector, SaysHowMuchOfAGridItSees) {
  const std::pair<int, const char*> cases[] = {
      {0, "found: nothing in the picture looks like a patch"},
      {1, "found: only 1 place in the picture looks like a patch"},
      {6, "found: only 6 places in the picture look like a patch"},
      {15, "a regular grid of 15 patches was found round (154, 90), but no 4 x 6 of them"}};
  for (const auto& [count, says] : cases) {
    Picture picture = backdrop(310, 180);
    for (int i = 0; i < count; ++i) {
      const int left = 15 + i % 5 * 60, top = 10 + i / 5 * 60;
      paint(picture, left, top, left + 40, top + 40, 40 + 8 * (i * 7 % 15));
    }
    const ChartDetection detection =
        MCCDetector().detect(picture, {.methods = SearchMethods::Lattice});
    EXPECT_FALSE(detection.found());
    EXPECT_THAT(detection.reason, HasSubstr(says));
  }
}

TEST_F(Detector, AllChartsAreFoundWithinTheRegionOfInterest) {
  ChartPose left{.width = 1400, .x = 350}, right{.width = 1400, .turnDegrees = 180, .x = 1050};
  auto picture = renderChart(left);
  drawChart(picture, right);
  EXPECT_EQ(detector_.detectAll(picture).size(), 2U);
  EXPECT_EQ(detector_.detectAll(picture, {.mostCharts = 1}).size(), 1U);
  const auto one =
      detector_.detectAll(picture, {.regionOfInterest = PatchRegion{690, 0, 710, 600}});
  ASSERT_EQ(one.size(), 1U);
  EXPECT_LT(worstDistance(one[0].placement.centres, trueCentres(right)), 1.0);
  EXPECT_NEAR(one[0].placement.orientationDeg, 180.0, 0.1);
  for (const DetectOptions& wrong :
       {DetectOptions{.regionOfInterest = PatchRegion{2000, 0, 9, 9}},
        DetectOptions{.smallestGate = 1.5}, DetectOptions{.mostCharts = 0},
        DetectOptions{.finestPixels = 0}})
    EXPECT_THROW(detector_.detectAll(picture, wrong), std::invalid_argument);
}

// Beside a dim chart stand two more patches in a line, whose greys fit better by chance.
TEST_F(Detector, AStrayPatchDoesNotWinOverTheChart) {
  ChartPose dim{.width = 1400, .x = 350};
  auto picture = renderChart(dim);
  for (auto& sample : picture.samples) sample = static_cast<std::uint16_t>(sample / 2);
  for (const int left : {1000, 1150}) {
    paint(picture, left, 250, left + 100, 350, 3);
    paint(picture, left + 10, 260, left + 90, 340, 128);
  }
  const auto detection = detector_.detect(picture, kStated);
  EXPECT_GT(detection.quads, 24);
  EXPECT_GT(detection.quadsUsed, 20) << detection.reason;
}

TEST(StatedSearch, FindsInAShrunkPictureTheSamePlaces) {
  const Picture picture = renderChart({1600, 1200, 140.0, 0.0, 0.0, 0.0, 800.0, 600.0});
  const PixelWindow part{40, 60, 1500, 1100};
  const ChartDetection whole = detectStated(picture, part, {}, 1);
  for (const int factor : {2, 3}) {
    const ChartDetection shrunk = detectStated(picture, part, {}, factor);
    ASSERT_TRUE(shrunk.found()) << factor;
    EXPECT_NEAR(shrunk.size, whole.size, 8.0);
    for (std::size_t i = 0; i < kPatchCount; ++i) {
      EXPECT_NEAR(shrunk.points[i].x, whole.points[i].x, 6.0);
      EXPECT_NEAR(shrunk.points[i].y, whole.points[i].y, 6.0);
      const PatchRegion &a = shrunk.regions[i], &b = whole.regions[i];
      EXPECT_NEAR(a.left, b.left, 12.0);
      EXPECT_NEAR(a.top, b.top, 12.0);
      EXPECT_NEAR(a.width, b.width, 12.0);
      EXPECT_NEAR(a.height, b.height, 12.0);
    }
  }
}

TEST_F(Detector, RunDetectorKeepsItsContract) {
  const auto folder = std::filesystem::path(testing::TempDir()) / "greycard detector ü";
  std::filesystem::create_directories(folder);
  const auto photo = folder / "photo.png", regions = folder / "regions.txt";
  const ChartPose pose;
  writePicture(photo, renderChart(pose));
  const char* const null = nullptr;
  EXPECT_FALSE(detector_.runDetector("", regions.c_str()));
  EXPECT_FALSE(detector_.runDetector(null, regions.c_str()));
  EXPECT_TRUE(remarks_.empty()) << "nothing else is done";

  EXPECT_TRUE(detector_.runDetector(folder / "missing.png", regions));
  writePicture(folder / "plain.png", backdrop(90, 60));
  EXPECT_TRUE(detector_.runDetector(folder / "plain.png", regions));
  EXPECT_TRUE(detector_.runDetector(photo.c_str(), null));
  EXPECT_TRUE(detector_.runDetector(photo, folder / "no such folder" / "regions.txt"));
  EXPECT_FALSE(std::filesystem::exists(regions));

  EXPECT_TRUE(detector_.runDetector(photo, regions));
  const auto read = readRegions(regions);
  const auto detection = detector_.detectFile(photo, kStated);
  EXPECT_EQ(formatRegions(read), formatRegions(detection.regions));
  EXPECT_EQ(read[0].width, std::nearbyint(1.5 * detection.size));
  const auto centres = trueCentres(pose);
  EXPECT_NEAR(read[5].left + read[5].width / 2, centres[5].x, 2.0);
  EXPECT_NEAR(read[18].top + read[18].height / 2, centres[18].y, 2.0);
  EXPECT_EQ(detector_.detectFile(folder / "missing.png").stage, ChartStage::Picture);
  std::filesystem::remove_all(folder);
}

TEST(DetectorTwoThreads, FindTheSameAsOneAfterTheOther) {
  setErrorChannel({});
  ChartPose poses[2];
  poses[1].turnDegrees = 33;
  std::array<Point2, kPatchCount> alone[2], together[2];
  for (int i = 0; i < 2; ++i) alone[i] = MCCDetector().detect(renderChart(poses[i])).points;
  {
    std::jthread threads[2];
    for (int i = 0; i < 2; ++i)
      threads[i] = std::jthread(
          [&, i] { together[i] = MCCDetector().detect(renderChart(poses[i])).points; });
  }
  EXPECT_EQ(alone[0], together[0]);
  EXPECT_EQ(alone[1], together[1]);
}

}  // namespace
}  // namespace greycard
