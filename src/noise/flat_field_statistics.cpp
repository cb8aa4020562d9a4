#include "flat_field_statistics.h"

#include <algorithm>

namespace greycard {
namespace {

constexpr std::uint16_t kByteMost = 255;
constexpr std::uint64_t kSquaresAcross = 10;

// Sum over the square whose upper left pixel is (x, y).
double sumOfSquare(const pxcore::TImage<unsigned char>& image, std::uint64_t x, std::uint64_t y,
                   std::uint64_t side) {
  std::uint64_t sum = 0;
  for (std::uint64_t row = y; row < y + side; ++row)
    for (std::uint64_t column = x; column < x + side; ++column) sum += image.RowPtr(row)[column];
  return static_cast<double>(sum);
}

}  // namespace

void takeLowBytes(std::span<const std::uint16_t> samples, pxcore::TImage<unsigned char>& image,
                  SigmaReport& report) {
  const std::uint64_t width = image.Width();
  std::uint64_t atCeiling = 0, atFloor = 0, above = 0;
  for (std::uint64_t y = 0; y < image.Height(); ++y) {
    const std::uint16_t* const from = samples.data() + y * width;
    unsigned char* const to = image.RowPtr(y);
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
  report.ceilingShare = static_cast<double>(atCeiling) / all;
  report.floorShare = static_cast<double>(atFloor) / all;
  report.highByteDropped = above;
}

void measureFallOff(const pxcore::TImage<unsigned char>& image, SigmaReport& report) {
  const std::uint64_t w = image.Width(), h = image.Height();
  const std::uint64_t side = std::max<std::uint64_t>(std::min(w, h) / kSquaresAcross, 1);
  const auto pixels = static_cast<double>(side * side);
  report.centreMean = sumOfSquare(image, (w - side) / 2, (h - side) / 2, side) / pixels;
  double corners = 0.0;
  for (const std::uint64_t x : {std::uint64_t{0}, w - side})
    for (const std::uint64_t y : {std::uint64_t{0}, h - side})
      corners += sumOfSquare(image, x, y, side);
  report.cornerMean = corners / (4.0 * pixels);
}

}  // namespace greycard
