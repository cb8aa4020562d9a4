#include "flat_field_statistics.h"

#include <algorithm>

namespace greycard {
namespace {

constexpr std::uint16_t kByteMost = 255;
constexpr std::uint64_t kSquaresAcross = 10;

double sumOf(const PlaneView<const unsigned char>& pixels) {
  std::uint64_t sum = 0;
  for (std::uint64_t y = 0; y < pixels.height(); ++y)
    for (const unsigned char pixel : pixels.row(y)) sum += pixel;
  return static_cast<double>(sum);
}

}  // namespace

void takeLowBytes(std::span<const std::uint16_t> samples, pxcore::TImage<unsigned char>& image,
                  SigmaReport& report) {
  const std::uint64_t width = image.Width();
  const PlaneView<const std::uint16_t> all16(samples, width, image.Height());
  std::uint64_t atCeiling = 0, atFloor = 0, above = 0;
  for (std::uint64_t y = 0; y < image.Height(); ++y) {
    const auto from = all16.row(y);
    const auto to = image.View().row(y);
    // Counts of a row in 32 bits: the compiler handles several samples at once.
    std::uint32_t rowCeiling = 0, rowFloor = 0, rowAbove = 0;
    for (std::uint64_t x = 0; x < width; ++x) {
      to[x] = static_cast<unsigned char>(from[x] & kByteMost);
      rowCeiling += to[x] == kByteMost;
      rowFloor += to[x] == 0;
      rowAbove += from[x] > kByteMost;
    }
    atCeiling += rowCeiling;
    atFloor += rowFloor;
    above += rowAbove;
  }
  const auto all = static_cast<double>(width * image.Height());
  report.allEqual = std::ranges::all_of(samples.first(width * image.Height()),
                                        [&](std::uint16_t s) { return s == samples.front(); });
  report.ceilingShare = static_cast<double>(atCeiling) / all;
  report.floorShare = static_cast<double>(atFloor) / all;
  report.highByteDropped = above;
}

void measureFallOff(const pxcore::TImage<unsigned char>& image, SigmaReport& report) {
  const std::uint64_t w = image.Width(), h = image.Height();
  const std::uint64_t side = std::max<std::uint64_t>(std::min(w, h) / kSquaresAcross, 1);
  const auto pixels = static_cast<double>(side * side);
  const PlaneView<const unsigned char> view = image.View();
  report.centreMean = sumOf(view.part((w - side) / 2, (h - side) / 2, side, side)) / pixels;
  double corners = 0.0;
  for (const std::uint64_t x : {std::uint64_t{0}, w - side})
    for (const std::uint64_t y : {std::uint64_t{0}, h - side})
      corners += sumOf(view.part(x, y, side, side));
  report.cornerMean = corners / (4.0 * pixels);
}

}  // namespace greycard
