#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <limits>
#include <opencv2/imgproc.hpp>
#include <stdexcept>

#include "greycard/number_text.h"
#include "greycard/present/noise.h"

namespace greycard::present {
namespace {

constexpr int kLongestSide = 900, kGap = 12, kBarWidth = 20, kLabelWidth = 84, kLabelHeight = 15;
constexpr int kTicks = 5, kLeastHeight = 2 * kTicks * kLabelHeight;
constexpr double kMostGrey = 65535.0;

using Rgb8 = std::array<std::uint16_t, 3>;

// Lightness rises from end to end, so that the order also shows in grey.
Rgb8 colourOf(double share) {
  static constexpr std::array<std::array<double, 3>, 5> kStops{
      {{10, 10, 30}, {60, 40, 140}, {190, 55, 110}, {245, 145, 45}, {255, 250, 190}}};
  const double at = std::clamp(share, 0.0, 1.0) * (kStops.size() - 1);
  const auto low = std::min(static_cast<std::size_t>(at), kStops.size() - 2);
  const double part = at - static_cast<double>(low);
  Rgb8 colour{};
  for (std::size_t c = 0; c < 3; ++c)
    colour[c] = static_cast<std::uint16_t>(
        std::lround(kStops[low][c] + part * (kStops[low + 1][c] - kStops[low][c])));
  return colour;
}

// The sigmas as a grey picture, least to most from 0 to kMostGrey, shrunk by averaging.
Picture greys(const SigmaEstimate& estimate, double least, double most) {
  Picture grey(static_cast<int>(estimate.width), static_cast<int>(estimate.height), 1, 16);
  const double scale = most > least ? kMostGrey / (most - least) : 0.0;
  std::ranges::transform(estimate.localSigma, grey.samples.begin(), [&](float s) {
    return static_cast<std::uint16_t>(std::lround((s - least) * scale));
  });
  const int longest = std::max(grey.width, grey.height);
  return longest > kLongestSide ? shrinkPicture(grey, kLongestSide) : grey;
}

// The numbers beside the bar, black on white.
cv::Mat_<std::uint8_t> labels(int height, double least, double most) {
  constexpr double kScale = 0.55;
  constexpr int kAboveBaseline = 13;
  cv::Mat_<std::uint8_t> strip(height, kLabelWidth, 255);
  for (int tick = 0; tick < kTicks; ++tick) {
    const double share = 1.0 - tick / (kTicks - 1.0);
    const int top = tick * (height - kLabelHeight) / (kTicks - 1);
    cv::putText(strip, fixed(least + share * (most - least), 2), {kGap / 2, top + kAboveBaseline},
                cv::FONT_HERSHEY_SIMPLEX, kScale, cv::Scalar(0), 1, cv::LINE_AA);
  }
  return strip;
}

void drawScale(Picture& canvas, int left, double least, double most) {
  const auto strip = labels(canvas.height, least, most);
  for (int y = 0; y < canvas.height; ++y) {
    for (int x = left; x < left + kBarWidth; ++x)
      std::ranges::copy(colourOf(1.0 - y / (canvas.height - 1.0)), canvas.pixel(x, y));
    for (int x = 0; x < kLabelWidth; ++x)
      std::ranges::fill_n(canvas.pixel(left + kBarWidth + x, y), 3, strip(y, x));
  }
}

bool hasLocalSigma(const SigmaEstimate& estimate) {
  constexpr std::uint64_t kMostPixels = std::numeric_limits<int>::max();
  const std::uint64_t count = estimate.localSigma.size();
  return count > 0 && estimate.width > 0 && estimate.width <= kMostPixels &&
         estimate.height <= kMostPixels && count % estimate.width == 0 &&
         count / estimate.width == estimate.height;
}

}  // namespace

Picture sigmaMap(const SigmaEstimate& estimate) {
  if (!hasLocalSigma(estimate))
    throw std::invalid_argument("a sigma map needs the local sigma of every pixel");
  const auto [least, most] = std::ranges::minmax(estimate.localSigma);
  const Picture grey = greys(estimate, least, most);
  Picture canvas(grey.width + kGap + kBarWidth + kLabelWidth, std::max(grey.height, kLeastHeight),
                 3, 8);
  std::ranges::fill(canvas.samples, std::uint16_t{255});
  for (int y = 0; y < grey.height; ++y)
    for (int x = 0; x < grey.width; ++x)
      std::ranges::copy(colourOf(*grey.pixel(x, y) / kMostGrey), canvas.pixel(x, y));
  drawScale(canvas, grey.width + kGap, least, most);
  return canvas;
}

}  // namespace greycard::present
