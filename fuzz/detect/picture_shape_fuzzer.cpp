// A picture of any shape, depth and number of channels, filled with the bytes over and over, and
// corners and a region of interest from the same bytes: everything that looks for a chart or is
// told where it is. What can't be used is refused as an invalid argument; what is found has finite
// places, and no two charts stand on the same one.

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <span>
#include <stdexcept>

#include "greycard/chart_location.h"
#include "greycard/chart_search_pictures.h"
#include "greycard/diagnostics.h"
#include "greycard/mcc_detector.h"

namespace {

using namespace greycard;

constexpr std::size_t kHeader = 24, kMostSamples = 1 << 18;

// Two bytes as a number.
int wordAt(std::span<const std::uint8_t> bytes, std::size_t i) {
  return bytes[i] * 256 + bytes[i + 1];
}

Picture pictureOf(std::span<const std::uint8_t> bytes) {
  const int width = std::max(1, wordAt(bytes, 0)), height = std::max(1, wordAt(bytes, 2));
  const int channels = bytes[4] % 2 == 0 ? 3 : 1, bits = bytes[4] / 2 % 2 == 0 ? 8 : 16;
  const std::size_t samples = static_cast<std::size_t>(width) * static_cast<std::size_t>(height) *
                              static_cast<std::size_t>(channels);
  if (samples > kMostSamples) return {};
  Picture picture(width, height, channels, bits);
  const auto body = bytes.subspan(kHeader);
  for (std::size_t i = 0; i < samples && !body.empty(); ++i)
    picture.samples[i] = static_cast<std::uint16_t>(body[i % body.size()] * (bits == 16 ? 257 : 1));
  return picture;
}

void checkFinite(const ChartDetection& detection) {
  if (detection.found() != detection.reason.empty()) std::abort();
  if (!detection.found()) return;
  for (const Point2& centre : detection.placement.centres)
    if (!std::isfinite(centre.x + centre.y)) std::abort();
}

void search(const Picture& picture, std::span<const std::uint8_t> bytes) {
  DetectOptions options;
  options.methods = static_cast<SearchMethods>(bytes[5] % 3);
  options.mostCharts = 1 + bytes[6] % 4;
  if (bytes[7] % 2 == 1)
    options.regionOfInterest = {static_cast<double>(bytes[8]), static_cast<double>(bytes[9]),
                                static_cast<double>(wordAt(bytes, 10)),
                                static_cast<double>(wordAt(bytes, 12))};
  const auto charts = MCCDetector().detectAll(picture, options);
  for (std::size_t i = 0; i < charts.size(); ++i) {
    checkFinite(charts[i]);
    for (std::size_t j = 0; j < i; ++j)
      if (charts[i].points == charts[j].points) std::abort();
  }
  checkFinite(MCCDetector().detect(picture, options));
  chartSearchStages(picture, options);
}

void place(const Picture& picture, std::span<const std::uint8_t> bytes) {
  ChartCorners corners;
  for (std::size_t k = 0; k < 4; ++k)
    corners.points[k] = {bytes[14 + 2 * k] * picture.width / 128.0 - picture.width / 2.0,
                         bytes[15 + 2 * k] * picture.height / 128.0 - picture.height / 2.0};
  const auto detection = placeChart(picture, corners);
  checkFinite(detection);
  checkPatches(picture, detection.placement.patches);
}

template <typename Job>
void allowing(Job job) {
  try {
    job();
  } catch (const std::invalid_argument&) {
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size < kHeader || size > 32 * 1024) return 0;
  setErrorChannel({});
  const std::span bytes(data, size);
  const Picture picture = pictureOf(bytes);
  allowing([&] { search(picture, bytes); });
  allowing([&] { place(picture, bytes); });
  return 0;
}
