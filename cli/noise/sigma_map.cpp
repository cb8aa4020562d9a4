#include "sigma_map.h"

#include <algorithm>
#include <cmath>

#include "greycard/number_text.h"
#include "pixel_digits.h"
#include "text_table.h"

namespace greycard::cli {
namespace {

constexpr int kLongestSide = 900, kGap = 12, kBarWidth = 20, kLabelWidth = 7 * kDigitWidth;
constexpr int kTicks = 5, kLeastHeight = 2 * kTicks * kDigitHeight;
constexpr double kMostGrey = 65535.0;

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
Picture greys(const LumaPlane& plane, std::span<const float> sigma, double least, double most) {
  Picture grey(static_cast<int>(plane.width), static_cast<int>(plane.height), 1, 16);
  const double scale = most > least ? kMostGrey / (most - least) : 0.0;
  std::ranges::transform(sigma, grey.samples.begin(), [&](float s) {
    return static_cast<std::uint16_t>(std::lround((s - least) * scale));
  });
  const int longest = std::max(grey.width, grey.height);
  return longest > kLongestSide ? shrinkPicture(grey, kLongestSide) : grey;
}

void drawScale(Picture& canvas, int left, double least, double most) {
  for (int y = 0; y < canvas.height; ++y)
    for (int x = left; x < left + kBarWidth; ++x)
      std::ranges::copy(colourOf(1.0 - y / (canvas.height - 1.0)), canvas.pixel(x, y));
  for (int tick = 0; tick < kTicks; ++tick) {
    const double share = 1.0 - tick / (kTicks - 1.0);
    const int top = tick * (canvas.height - kDigitHeight) / (kTicks - 1);
    drawDigits(canvas, left + kBarWidth + kGap / 2, top, fixed(least + share * (most - least), 2),
               {0, 0, 0});
  }
}

}  // namespace

Picture sigmaMap(const LumaPlane& plane, std::span<const float> localSigma) {
  const auto [least, most] = std::ranges::minmax(localSigma);
  const Picture grey = greys(plane, localSigma, least, most);
  Picture canvas(grey.width + kGap + kBarWidth + kLabelWidth, std::max(grey.height, kLeastHeight),
                 3, 8);
  std::ranges::fill(canvas.samples, std::uint16_t{255});
  for (int y = 0; y < grey.height; ++y)
    for (int x = 0; x < grey.width; ++x)
      std::ranges::copy(colourOf(*grey.pixel(x, y) / kMostGrey), canvas.pixel(x, y));
  drawScale(canvas, grey.width + kGap, least, most);
  return canvas;
}

}  // namespace greycard::cli
