// Pictures without a whole chart: what may be taken for one.

#include <algorithm>
#include <cmath>
#include <opencv2/imgproc.hpp>

#include "scene_drawing.h"

namespace greycard {
namespace {

struct Scene {
  cv::Mat image;
  std::array<cv::Point2f, 4> quad;  // where a 6 x 4 grid goes
};

Scene emptyScene(Dice& dice) {
  Scene scene;
  scene.image =
      cv::Mat(480, 640, CV_8UC3, cv::Scalar(dice.below(256), dice.below(256), dice.below(256)));
  drawClutter(scene.image, dice, 25);
  const double pitch = dice.between(12.0, 75.0);
  scene.quad = turnedBox({dice.between(280.0, 360.0), dice.between(210.0, 270.0)}, 6 * pitch,
                         4 * pitch, dice.between(0, 360));
  return scene;
}

void drawSixByFour(Scene& scene, Dice& dice, const std::vector<cv::Scalar>& colours) {
  drawGrid(scene.image, scene.quad, 6, 4, dice.between(0.1, 0.25), colours,
           cv::Scalar::all(dice.chance(0.7) ? dice.below(50) : 255 - dice.below(50)));
}

// The chart's colours in another order; never its own and never a half turn of it.
std::vector<cv::Scalar> permuted(Dice& dice, int kind) {
  auto c = chartColours();
  switch (kind) {
    case 0:
      for (std::size_t i = c.size() - 1; i > 0; --i)
        std::swap(c[i], c[static_cast<std::size_t>(dice.below(static_cast<int>(i) + 1))]);
      break;
    case 1:  // two rows exchanged
      std::swap_ranges(c.begin(), c.begin() + 6, c.begin() + 6 * (1 + dice.below(3)));
      break;
    case 2:  // rows moved on
      std::rotate(c.begin(), c.begin() + 6 * (1 + dice.below(3)), c.end());
      break;
    case 3:  // columns moved on
      for (int row = 0, by = 1 + dice.below(5); row < 4; ++row)
        std::rotate(c.begin() + 6 * row, c.begin() + 6 * row + by, c.begin() + 6 * row + 6);
      break;
    default:  // mirrored
      for (int row = 0; row < 4; ++row) std::reverse(c.begin() + 6 * row, c.begin() + 6 * row + 6);
  }
  return c;
}

std::vector<cv::Scalar> hues(Dice& dice) {
  std::vector<cv::Scalar> colours;
  const int start = dice.below(180), step = 3 + dice.below(12);
  for (int i = 0; i < 24; ++i) {
    cv::Mat hsv(1, 1, CV_8UC3,
                cv::Scalar((start + i * step) % 180, 120 + dice.below(136), 80 + dice.below(176)));
    cv::cvtColor(hsv, hsv, cv::COLOR_HSV2BGR);
    const auto& p = hsv.at<cv::Vec3b>(0, 0);
    colours.emplace_back(p[0], p[1], p[2]);
  }
  return colours;
}

void drawFacade(cv::Mat& image, Dice& dice) {
  const int across = 18 + dice.below(50), down = 18 + dice.below(50);
  image = cv::Scalar(100 + dice.below(100), 100 + dice.below(100), 100 + dice.below(100));
  for (int y = 4; y < image.rows; y += down)
    for (int x = 4; x < image.cols; x += across)
      cv::rectangle(
          image, cv::Rect(x, y, across * 2 / 3, down * 2 / 3) & cv::Rect({0, 0}, image.size()),
          cv::Scalar(40 + dice.below(120), 40 + dice.below(90), 30 + dice.below(90)), cv::FILLED);
}

void drawText(cv::Mat& image, Dice& dice) {
  image = cv::Scalar(235, 240, 245);
  for (int y = 20; y < image.rows; y += 18) {
    std::string line;
    for (int i = 0; i < 60; ++i)
      line += dice.chance(0.18) ? ' ' : static_cast<char>('a' + dice.below(26));
    cv::putText(image, line, {8, y}, cv::FONT_HERSHEY_SIMPLEX, 0.5, cv::Scalar::all(dice.below(80)),
                1, cv::LINE_AA);
  }
}

void fillWithNoise(cv::Mat& image, Dice& dice) {
  const int grain = 1 + dice.below(24);
  cv::Mat small(std::max(1, image.rows / grain), std::max(1, image.cols / grain), CV_8UC3);
  for (auto it = small.begin<cv::Vec3b>(); it != small.end<cv::Vec3b>(); ++it)
    for (int c = 0; c < 3; ++c) (*it)[c] = static_cast<std::uint8_t>(dice.below(256));
  cv::resize(small, image, image.size(), 0, 0,
             dice.chance(0.5) ? cv::INTER_NEAREST : cv::INTER_CUBIC);
}

// The chart itself, with at least a row or a column outside the picture.
void cutChart(Scene& scene, Dice& dice) {
  drawSixByFour(scene, dice, chartColours());
  const auto at = [&](double u, double v) {  // of the grid, 0..1
    const auto &a = scene.quad[0], &b = scene.quad[1], &d = scene.quad[3];
    return cv::Point2d(a.x + u * (b.x - a.x) + v * (d.x - a.x),
                       a.y + u * (b.y - a.y) + v * (d.y - a.y));
  };
  const double u = dice.chance(0.5) ? dice.between(0.25, 0.75) : 0.5;
  const auto middle = at(u, dice.between(0.3, 0.7));
  const int x = std::clamp(cvRound(middle.x), 100, 540);
  scene.image = scene.image.colRange(dice.chance(0.5) ? 0 : x, 640).clone();
  if (scene.image.cols == 640) scene.image = scene.image.colRange(0, x).clone();
}

void coverChart(Scene& scene, Dice& dice) {
  drawSixByFour(scene, dice, chartColours());
  const auto& q = scene.quad;
  const int side = dice.below(4);
  const auto &a = q[static_cast<std::size_t>(side)],
             &b = q[static_cast<std::size_t>((side + 1) % 4)],
             &c = q[static_cast<std::size_t>((side + 2) % 4)],
             &d = q[static_cast<std::size_t>((side + 3) % 4)];
  const float share = static_cast<float>(dice.between(0.4, 0.7));
  const std::vector<cv::Point> sheet{cv::Point(a), cv::Point(b), cv::Point(b + share * (c - b)),
                                     cv::Point(a + share * (d - a))};
  cv::fillConvexPoly(scene.image, sheet,
                     cv::Scalar(dice.below(256), dice.below(256), dice.below(256)));
}

constexpr std::array kKinds{"random colours", "hues",          "chart's colours shuffled",
                            "rows exchanged", "rows moved on", "columns moved on",
                            "mirrored chart", "equal squares", "chessboard",
                            "facade",         "text",          "noise",
                            "cut chart",      "covered chart", "larger grid of its colours",
                            "clutter"};

}  // namespace

CorpusCase chartlessCase(int number) {
  Dice dice(5000U + static_cast<std::uint32_t>(number));
  auto scene = emptyScene(dice);
  switch (static_cast<std::size_t>(number) % kKinds.size()) {
    case 0:
      drawSixByFour(scene, dice, randomColours(dice, 24));
      break;
    case 1:
      drawSixByFour(scene, dice, hues(dice));
      break;
    case 2:
    case 3:
    case 4:
    case 5:
    case 6:
      drawSixByFour(scene, dice, permuted(dice, number % static_cast<int>(kKinds.size()) - 2));
      break;
    case 7:
      drawSixByFour(scene, dice, {cv::Scalar::all(60 + dice.below(190))});
      break;
    case 8:  // a chessboard
      drawGrid(scene.image, scene.quad, 7, 5, 0.0, {cv::Scalar::all(20), cv::Scalar::all(230)},
               cv::Scalar::all(128));
      break;
    case 9:
      drawFacade(scene.image, dice);
      break;
    case 10:
      drawText(scene.image, dice);
      break;
    case 11:
      fillWithNoise(scene.image, dice);
      break;
    case 12:
      cutChart(scene, dice);
      break;
    case 13:
      coverChart(scene, dice);
      break;
    case 14: {  // a larger grid of the chart's colours in any order
      std::vector<cv::Scalar> many;
      for (int i = 0; i < 96; ++i)
        many.push_back(chartColours()[static_cast<std::size_t>(dice.below(24))]);
      drawGrid(scene.image, scene.quad, 12, 8, 0.15, many, cv::Scalar::all(20));
      break;
    }
    default:
      drawClutter(scene.image, dice, 150);
  }
  if (dice.chance(0.3)) addNoise(scene.image, dice, dice.between(1.0, 8.0));
  return {std::to_string(number),
          kKinds[static_cast<std::size_t>(number) % kKinds.size()],
          fromBgr(scene.image),
          {},
          0.0};
}

}  // namespace greycard
