#include "exposure_images.h"

#include <algorithm>
#include <cmath>
#include <stdexcept>

#include "greycard/luma.h"
#include "greycard/number_text.h"
#include "greycard/photograph.h"

namespace greycard {
namespace {

constexpr double kCdfEndTolerance = 1e-6;
constexpr double kLargestTarget = 255.0;  // bins

[[noreturn]] void refuse(const std::string& what) {
  throw std::invalid_argument(what);
}

void checkCumulative(const std::string& name, std::span<const double> cdf) {
  // Written so that NaN is refused too.
  if (!std::is_sorted(cdf.begin(), cdf.end()) || !(cdf.front() >= 0.0) ||
      !(std::abs(cdf.back() - 1.0) <= kCdfEndTolerance))
    refuse(name + " must be a cumulative histogram: from 0 or above, never falling, to 1");
}

void checkImage(const std::string& prefix, const ExposureImage& image) {
  if (!image.newTarget) refuse(prefix + "newTarget is missing: the luma target wanted");
  if (!(*image.newTarget >= 0.0 && *image.newTarget <= kLargestTarget))
    refuse(prefix + "newTarget is " + exact(*image.newTarget) +
           "; a luma target is a number from 0 to 255");
  if (image.picture) {
    if (image.hist_CDF || image.hist_RGB)
      refuse(prefix + "picture and histograms exclude each other");
    if (image.whiteLevel && (*image.whiteLevel < 1 || *image.whiteLevel > 65535))
      refuse(prefix + "white_level must be a whole number from 1 to 65535");
    return;
  }
  if (image.whiteLevel) refuse(prefix + "white_level is for a picture, and none is named");
  if (!image.hist_CDF || !image.hist_RGB)
    refuse(prefix + "picture is missing, and " + prefix + "hist_CDF with " + prefix +
           "hist_RGB too; give the one or the others");
  for (std::size_t c = 0; c < image.hist_CDF->size(); ++c)
    checkCumulative(prefix + "hist_CDF[" + std::to_string(c) + "]", (*image.hist_CDF)[c]);
}

ExposureHistograms histogramsOf(const ExposureImage& image) {
  if (image.picture) {
    const Picture picture = readPhotograph(*image.picture).picture;
    return exposureHistograms(picture, image.whiteLevel.value_or(picture.ceiling()));
  }
  const ChannelHistograms& mean = *image.hist_RGB;
  return {*image.hist_CDF, mean, luma601({mean[0].back(), mean[1].back(), mean[2].back()})};
}

}  // namespace

bool ExposureJob::fits(std::size_t parameter) const {
  return parameters_enable[kGaEnableFlagOf[parameter]] != 0.0;
}

bool ExposureJob::fitsAny() const {
  return std::ranges::any_of(parameters_enable, [](double flag) { return flag != 0.0; });
}

const GaParameters& ExposureJob::fixedParameters() const {
  return initial_parameter ? *initial_parameter : initialBound;
}

GaParameters ExposureJob::inUse(const GaParameters& x) const {
  GaParameters values = fixedParameters();
  for (std::size_t k = 0; k < kGaParameters; ++k)
    if (fits(k)) values[k] = x[k];
  return values;
}

void ExposureJob::check() const {
  for (std::size_t i = 0; i < images.size(); ++i)
    checkImage("images[" + std::to_string(i) + "].", images[i]);
}

ExposureImages::ExposureImages(const ExposureJob& job) {
  job.check();
  for (const ExposureImage& image : job.images) add(image);
}

void ExposureImages::add(const ExposureImage& image) {
  const ExposureHistograms histograms = histogramsOf(image);
  hist_CDF.push_back(histograms.hist_CDF);
  hist_RGB.push_back(histograms.hist_RGB);
  newTarget.push_back(*image.newTarget);
  Weight.push_back(image.Weight);
  curr_luma.push_back(image.curr_luma.value_or(histograms.luma));
  cur_target.push_back(image.cur_target.value_or(curr_luma.back()));
  const std::string name = image.picture ? image.picture->filename().string()
                                         : "image " + std::to_string(figures.size() + 1);
  figures.push_back({image.name.value_or(name), image.Weight, curr_luma.back(), cur_target.back(),
                     *image.newTarget});
}

}  // namespace greycard
