#include <algorithm>
#include <cmath>
#include <opencv2/imgproc.hpp>

#include "corpus_case.h"
#include "greycard/chart_simulator.h"
#include "scene_drawing.h"

namespace greycard {
namespace {

constexpr double kSmallestPitch = 8.0;

// The frame round the chart, from the outer patches' corners: the chart's own plane reaches 0.185
// pitches further.
std::array<cv::Point2f, 4> frameOf(const SimulationTruth& truth) {
  const double half = 0.435, beyond = 0.12;
  const std::array<cv::Point2f, 4> inner{
      {{static_cast<float>(0.5 - half), static_cast<float>(0.5 - half)},
       {static_cast<float>(5.5 + half), static_cast<float>(0.5 - half)},
       {static_cast<float>(5.5 + half), static_cast<float>(3.5 + half)},
       {static_cast<float>(0.5 - half), static_cast<float>(3.5 + half)}}};
  std::array<cv::Point2f, 4> seen;
  const std::size_t patches[4] = {0, 5, 23, 18};
  for (std::size_t k = 0; k < 4; ++k) {
    const auto& p = truth.corners[patches[k]][k];
    seen[k] = {static_cast<float>(p.x), static_cast<float>(p.y)};
  }
  std::vector<cv::Point2d> outer{
      {-beyond, -beyond}, {6 + beyond, -beyond}, {6 + beyond, 4 + beyond}, {-beyond, 4 + beyond}};
  cv::perspectiveTransform(outer, outer, cv::getPerspectiveTransform(inner.data(), seen.data()));
  std::array<cv::Point2f, 4> frame;
  std::copy(outer.begin(), outer.end(), frame.begin());
  return frame;
}

SimulationSettings poseOf(int number, Dice& dice) {
  SimulationSettings s;
  const int sizes[][2] = {{640, 480}, {800, 600}, {1024, 768}, {480, 640}, {1280, 960}, {320, 240}};
  const auto& size = sizes[number % 6];
  s.width = size[0], s.height = size[1];
  s.rotationDeg = dice.between(0.0, 360.0);
  const double lean = dice.between(0.0, 60.0), way = dice.between(0.0, 6.28318);
  s.tiltDeg = lean * std::cos(way);
  s.yawDeg = lean * std::sin(way);
  // From patches of 8 pixels, as many small ones as large ones, to a chart that fills the picture.
  const double fullPitch = std::min(s.width / 6.4, s.height / 4.4);
  s.sizeShare = 0.85 * std::pow(kSmallestPitch / fullPitch, dice.between(0.0, 1.0));
  s.offsetX = dice.between(-0.5, 0.5) * (1.0 - s.sizeShare) * 0.9;
  s.offsetY = dice.between(-0.5, 0.5) * (1.0 - s.sizeShare) * 0.9;
  for (double& share : s.surround) share = dice.between(0.05, 0.8);
  const Illum lights[] = {illum_D65, illum_A, illum_TL84, illum_D50};
  s.light = lights[dice.below(4)];
  s.sensor = static_cast<ModelSensor>(dice.below(4));
  s.whiteShare = dice.between(0.25, 0.95);
  s.vignetting = dice.chance(0.4) ? dice.between(0.0, 0.5) : 0.0;
  s.shotNoise = dice.chance(0.6) ? dice.between(0.0, 0.03) : 0.0;
  s.readNoise = 0.2 * s.shotNoise;
  s.seed = static_cast<std::uint64_t>(number) + 1;
  return s;
}

// The chart's own pixels on a picture full of other things.
cv::Mat amongOthers(const cv::Mat& chart, const SimulationTruth& truth, Dice& dice) {
  cv::Mat scene(chart.size(), CV_8UC3);
  scene = cv::Scalar(dice.below(256), dice.below(256), dice.below(256));
  drawClutter(scene, dice, 60);
  if (dice.chance(0.6)) {
    const int columns = 3 + dice.below(6), rows = 2 + dice.below(5);
    const double pitch = truth.pitch * dice.between(0.5, 1.3);
    const cv::Point2d centre(dice.between(0.0, chart.cols), dice.between(0.0, chart.rows));
    drawGrid(scene, turnedBox(centre, columns * pitch, rows * pitch, dice.between(0, 90)), columns,
             rows, dice.between(0.08, 0.3), randomColours(dice, columns * rows),
             cv::Scalar::all(dice.below(60)));
  }
  cv::Mat mask = cv::Mat::zeros(chart.size(), CV_8UC1);
  const auto frame = frameOf(truth);
  std::vector<cv::Point> points;
  for (const auto& p : frame) points.emplace_back(cvRound(p.x), cvRound(p.y));
  cv::fillConvexPoly(mask, points, cv::Scalar(255));
  chart.copyTo(scene, mask);
  return scene;
}

double smallestStep(const Centres& c) {
  double smallest = HUGE_VAL;
  for (std::size_t i = 0; i < c.size(); ++i) {
    if (i % 6 != 0)
      smallest = std::min(smallest, std::hypot(c[i].x - c[i - 1].x, c[i].y - c[i - 1].y));
    if (i >= 6) smallest = std::min(smallest, std::hypot(c[i].x - c[i - 6].x, c[i].y - c[i - 6].y));
  }
  return smallest;
}

bool isInside(const Centres& centres, const Picture& picture, double margin) {
  return std::all_of(centres.begin(), centres.end(), [&](const Point2& p) {
    return p.x > margin && p.y > margin && p.x < picture.width - margin &&
           p.y < picture.height - margin;
  });
}

CorpusCase tryRender(int number, std::uint32_t seed) {
  Dice dice(seed);
  ChartSimulator simulator;
  simulator.m_settings = poseOf(number, dice);
  auto settings = simulator.m_settings;
  // The smallest step decides how much blur the chart bears; it is known once rendered.
  settings.shotNoise = settings.readNoise = 0.0;
  settings.width = simulator.m_settings.width;
  simulator.Simulate();
  const double radial = number % 3 == 0 ? dice.between(-0.2, 0.2) : 0.0;
  const double blur = dice.chance(0.5) ? dice.between(0.0, 0.11) : 0.0;
  const bool clutter = number % 2 == 0;
  CorpusCase result{std::to_string(number),
                    std::string(clutter ? "rendered among other things" : "rendered") +
                        (radial != 0.0 ? ", distorted" : ""),
                    {},
                    {simulator.m_truth.centres},
                    0.0};
  auto image = toBgr(simulator.m_picture);
  if (clutter) image = amongOthers(image, simulator.m_truth, dice);
  if (radial != 0.0) image = distort(image, radial, result.charts);
  const double step = smallestStep(result.charts[0]);
  if (blur * step > 0.2) cv::GaussianBlur(image, image, {}, blur * step);
  if (dice.chance(0.4)) addNoise(image, dice, dice.between(1.0, 6.0));
  result.picture = fromBgr(image);
  result.pitch = pitchOf(result.charts[0]);
  const bool counts =
      step >= kSmallestPitch && isInside(result.charts[0], result.picture, 0.6 * result.pitch);
  if (!counts) result.charts.clear();
  return result;
}

}  // namespace

CorpusCase renderedCase(int number) {
  // Poses that leave the picture or make patches too small are thrown again.
  for (std::uint32_t round = 0;; ++round) {
    auto result = tryRender(number, static_cast<std::uint32_t>(number) * 1000 + round);
    if (!result.charts.empty()) return result;
  }
}

}  // namespace greycard
