#include "greycard/patch_sampler.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <stdexcept>
#include <string>

#include "code_values.h"
#include "greycard/macbeth_chart_data.h"
#include "picture_view.h"
#include "text.h"

namespace greycard {
namespace {

// The pixels of a region: columns left..right - 1 of rows top..bottom - 1.
struct PixelBox {
  int left, top, right, bottom;
  std::size_t pixels() const {
    return static_cast<std::size_t>(right - left) * static_cast<std::size_t>(bottom - top);
  }
};

// First pixel whose centre is not before the edge, within 0..size.
int firstFrom(double edge, int size) {
  return static_cast<int>(std::clamp(std::ceil(edge), 0.0, static_cast<double>(size)));
}

std::string shown(const PatchRegion& region) {
  return "(left " + formatGeneral(region.left) + ", top " + formatGeneral(region.top) + ", " +
         formatGeneral(region.width) + " x " + formatGeneral(region.height) + ")";
}

PixelBox boxOf(const PatchRegion& region, std::size_t patch, const Picture& picture) {
  const auto refuse = [&](const std::string& why) {
    throw std::invalid_argument("patch " + std::to_string(patch + 1) + ": its region " +
                                shown(region) + why);
  };
  for (const double v : {region.left, region.top, region.width, region.height})
    if (!std::isfinite(v)) refuse(" is not finite");
  const PixelBox box{firstFrom(region.left, picture.width), firstFrom(region.top, picture.height),
                     firstFrom(region.left + region.width, picture.width),
                     firstFrom(region.top + region.height, picture.height)};
  if (box.left >= box.right || box.top >= box.bottom)
    refuse(" has no pixel inside the picture of " + std::to_string(picture.width) + " x " +
           std::to_string(picture.height));
  return box;
}

struct ChannelSample {
  double mean = 0.0, deviation = 0.0;
  ChannelClipping clipping;
};

class ChannelSampler {
 public:
  ChannelSampler(const Picture& picture, const SampleLevels& levels)
      : picture_(picture), levels_(levels), values_(linearValues(levels, picture)) {}

  // Two passes, so that a small deviation around a large mean keeps its digits.
  ChannelSample sample(const PixelBox& box, int channel) const {
    std::size_t atCeiling = 0, atFloor = 0;
    double sum = 0.0;
    forEachCode(box, channel, [&](std::size_t code) {
      sum += values_[code];
      atCeiling += static_cast<double>(code) >= levels_.whiteLevel;
      atFloor += static_cast<double>(code) <= levels_.blackLevel;
    });
    const double n = static_cast<double>(box.pixels()), mean = sum / n;
    double squares = 0.0;
    forEachCode(box, channel, [&](std::size_t code) {
      const double d = values_[code] - mean;
      squares += d * d;
    });
    return {mean,
            n > 1.0 ? std::sqrt(squares / (n - 1.0)) : 0.0,
            {static_cast<double>(atCeiling) / n, static_cast<double>(atFloor) / n}};
  }

 private:
  template <typename Use>
  void forEachCode(const PixelBox& box, int channel, Use use) const {
    const std::size_t largest = values_.size() - 1;
    const auto index = [&](int pixel) {
      return static_cast<std::size_t>(pixel * picture_.channels);
    };
    for (int y = box.top; y < box.bottom; ++y) {
      const auto row =
          samplesOf(picture_).run(static_cast<std::size_t>(y), index(box.left), index(box.right));
      for (auto i = static_cast<std::size_t>(channel); i < row.size(); i += index(1))
        use(std::min<std::size_t>(row[i], largest));
    }
  }

  const Picture& picture_;
  const SampleLevels& levels_;
  const std::vector<double> values_;
};

}  // namespace

bool SamplingReport::clips(int patch) const {
  return std::ranges::any_of(clipping.at(static_cast<std::size_t>(patch)), [](const auto& c) {
    return c.ceiling > kClippedAbove || c.floor > kClippedAbove;
  });
}

std::vector<int> SamplingReport::clippedPatches() const {
  std::vector<int> patches;
  for (int patch = 0; patch < kPatchCount; ++patch)
    if (clips(patch)) patches.push_back(patch);
  return patches;
}

SamplingReport MacbethChartData::CollectRGBData(const Picture& picture, const PatchRegions& regions,
                                                const SampleLevels& levels) {
  checkPicture(picture);
  const ChannelSampler sampler(picture, levels);
  std::array<PixelBox, kPatchCount> boxes;
  for (std::size_t patch = 0; patch < boxes.size(); ++patch)
    boxes[patch] = boxOf(regions[patch], patch, picture);

  SamplingReport report;
  for (std::size_t patch = 0; patch < boxes.size(); ++patch) {
    report.pixels[patch] = boxes[patch].pixels();
    for (std::size_t c = 0; c < 3; ++c) {
      const int channel = picture.channels == 1 ? 0 : static_cast<int>(c);
      const auto sample = sampler.sample(boxes[patch], channel);
      m_RGB[patch][c] = sample.mean;
      m_Noise[patch][c] = sample.deviation;
      report.clipping[patch][c] = sample.clipping;
    }
  }
  return report;
}

}  // namespace greycard
