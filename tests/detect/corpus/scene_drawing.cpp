#include "scene_drawing.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <opencv2/imgproc.hpp>

#include "colour_distance.h"
#include "picture_mat.h"

namespace greycard {
namespace {

cv::Scalar randomColour(Dice& dice) {
  const double b = dice.below(256), g = dice.below(256), r = dice.below(256);
  return {b, g, r};
}

cv::Point randomPoint(Dice& dice, const cv::Mat& image) {
  const int x = dice.below(image.cols), y = dice.below(image.rows);
  return {x, y};
}

}  // namespace

cv::Mat toBgr(const Picture& picture) {
  return toMat(picture);
}

Picture fromBgr(const cv::Mat& image) {
  return fromMat(image);
}

void drawClutter(cv::Mat& image, Dice& dice, int count) {
  const int unit = std::max(4, std::min(image.cols, image.rows) / 12);
  for (int i = 0; i < count; ++i) {
    const auto colour = randomColour(dice);
    const auto at = randomPoint(dice, image);
    switch (dice.below(4)) {
      case 0: {
        const auto box =
            turnedBox(at, 4 + dice.below(3 * unit), 4 + dice.below(3 * unit), dice.between(0, 90));
        std::vector<cv::Point> points(box.begin(), box.end());
        cv::fillConvexPoly(image, points, colour, cv::LINE_AA);
        break;
      }
      case 1:
        cv::circle(image, at, 2 + dice.below(unit), colour, cv::FILLED, cv::LINE_AA);
        break;
      case 2:
        cv::line(image, at, randomPoint(dice, image), colour, 1 + dice.below(4), cv::LINE_AA);
        break;
      default:
        cv::putText(image, "grey card", at, cv::FONT_HERSHEY_SIMPLEX, 0.01 * unit + 0.3, colour, 1,
                    cv::LINE_AA);
    }
  }
}

void drawGrid(cv::Mat& image, const std::array<cv::Point2f, 4>& quad, int columns, int rows,
              double gap, const std::vector<cv::Scalar>& colours, const cv::Scalar& plane) {
  constexpr int kFineBits = 4;  // corners in sixteenths of a pixel
  const auto width = static_cast<float>(columns), height = static_cast<float>(rows);
  const std::array<cv::Point2f, 4> flat{{{0, 0}, {width, 0}, {width, height}, {0, height}}};
  const auto toImage = cv::getPerspectiveTransform(flat.data(), quad.data());
  const auto fill = [&](double u0, double v0, double u1, double v1, const cv::Scalar& colour) {
    std::vector<cv::Point2d> corners{{u0, v0}, {u1, v0}, {u1, v1}, {u0, v1}};
    cv::perspectiveTransform(corners, corners, toImage);
    std::vector<cv::Point> points;
    for (const auto& p : corners)
      points.emplace_back(cvRound(p.x * (1 << kFineBits)), cvRound(p.y * (1 << kFineBits)));
    cv::fillConvexPoly(image, points, colour, cv::LINE_AA, kFineBits);
  };
  fill(-gap, -gap, columns + gap, rows + gap, plane);
  for (int i = 0; i < columns * rows; ++i) {
    const double u = i % columns, v = i / columns;
    fill(u + 0.5 * gap, v + 0.5 * gap, u + 1.0 - 0.5 * gap, v + 1.0 - 0.5 * gap,
         colours[static_cast<std::size_t>(i) % colours.size()]);
  }
}

std::vector<cv::Scalar> randomColours(Dice& dice, int count) {
  std::vector<cv::Scalar> colours;
  for (int i = 0; i < count; ++i) colours.push_back(randomColour(dice));
  return colours;
}

std::vector<cv::Scalar> chartColours() {
  return {colorchecker_srgb.begin(), colorchecker_srgb.end()};
}

std::array<cv::Point2f, 4> turnedBox(cv::Point2d centre, double width, double height,
                                     double degrees) {
  const double angle = degrees * std::numbers::pi / 180.0, c = std::cos(angle), s = std::sin(angle);
  std::array<cv::Point2f, 4> corners;
  const double signs[4][2] = {{-1, -1}, {1, -1}, {1, 1}, {-1, 1}};
  for (std::size_t k = 0; k < 4; ++k) {
    const double x = 0.5 * signs[k][0] * width, y = 0.5 * signs[k][1] * height;
    corners[k] = {static_cast<float>(centre.x + c * x - s * y),
                  static_cast<float>(centre.y + s * x + c * y)};
  }
  return corners;
}

cv::Mat distort(const cv::Mat& image, double radial, std::vector<Centres>& charts) {
  const double cx = 0.5 * (image.cols - 1), cy = 0.5 * (image.rows - 1);
  const double radius = 0.5 * std::hypot(image.cols, image.rows);
  const auto seen = [&](double x, double y) {
    const double r = std::hypot(x - cx, y - cy) / radius, factor = 1.0 + radial * r * r;
    return cv::Point2d(cx + (x - cx) * factor, cy + (y - cy) * factor);
  };
  for (auto& chart : charts)
    for (auto& p : chart) {
      const auto at = seen(p.x, p.y);
      p = {at.x, at.y};
    }
  // The way back, by fixed-point iteration.
  cv::Mat mapX(image.size(), CV_32F), mapY(image.size(), CV_32F), result;
  for (int y = 0; y < image.rows; ++y) {
    for (int x = 0; x < image.cols; ++x) {
      double r = std::hypot(x - cx, y - cy) / radius, undistorted = r;
      for (int i = 0; i < 30; ++i) undistorted = r / (1.0 + radial * undistorted * undistorted);
      const double factor = r > 0.0 ? undistorted / r : 1.0;
      mapX.at<float>(y, x) = static_cast<float>(cx + (x - cx) * factor);
      mapY.at<float>(y, x) = static_cast<float>(cy + (y - cy) * factor);
    }
  }
  cv::remap(image, result, mapX, mapY, cv::INTER_LINEAR, cv::BORDER_REPLICATE);
  return result;
}

void addNoise(cv::Mat& image, Dice& dice, double sigma) {
  for (int y = 0; y < image.rows; ++y) {
    auto* row = image.ptr<std::uint8_t>(y);
    for (int i = 0; i < image.cols * image.channels(); ++i) {
      // Four uniform numbers make a bell of variance 1/3.
      double sum = -2.0;
      for (int k = 0; k < 4; ++k) sum += dice.between(0.0, 1.0);
      row[i] = cv::saturate_cast<std::uint8_t>(row[i] + sigma * std::sqrt(3.0) * sum);
    }
  }
}

void shade(cv::Mat& image, double lowest, int corner) {
  for (int y = 0; y < image.rows; ++y) {
    for (int x = 0; x < image.cols; ++x) {
      const double across = static_cast<double>(x) / image.cols,
                   down = static_cast<double>(y) / image.rows;
      const double way =
          0.5 * ((corner & 1 ? 1.0 - across : across) + (corner & 2 ? 1.0 - down : down));
      auto& pixel = image.at<cv::Vec3b>(y, x);
      for (int c = 0; c < 3; ++c)
        pixel[c] = cv::saturate_cast<std::uint8_t>(pixel[c] * (1.0 + (lowest - 1.0) * way));
    }
  }
}

}  // namespace greycard
