#include "ae_job.h"

#include <algorithm>
#include <cmath>
#include <stdexcept>

#include "command.h"
#include "greycard/files.h"
#include "transition.h"

namespace greycard::cli {
namespace {

constexpr double kCdfEndTolerance = 1e-6;

ExposureHistograms histogramsOf(const std::filesystem::path& path,
                                const std::optional<int>& whiteLevel) {
  const Picture picture = readPicture(path);
  return exposureHistograms(picture, whiteLevel.value_or(picture.ceiling()));
}

template <std::size_t Size>
void readIfThere(const Json& json, const char* name, std::array<double, Size>& values) {
  if (json.contains(name)) readNumbers(name, json[name], values);
}

double numberOr(const std::string& prefix, const Json& json, const char* name, double otherwise) {
  return json.contains(name) ? numberFrom(prefix + name, json[name]) : otherwise;
}

ChannelHistograms tableFrom(const std::string& name, const Json& json) {
  if (!json.is_array() || json.size() != 3) refuseField(name, "3 lists of 256 numbers");
  ChannelHistograms table;
  for (std::size_t c = 0; c < table.size(); ++c)
    readNumbers(name + "[" + std::to_string(c) + "]", json[c], table[c]);
  return table;
}

// The histograms and the luma that they show.
ExposureHistograms inlineHistograms(const std::string& prefix, const Json& image) {
  if (!image.contains("hist_CDF") || !image.contains("hist_RGB"))
    throw std::invalid_argument(prefix + "picture is missing, and " + prefix + "hist_CDF with " +
                                prefix + "hist_RGB too; give the one or the others");
  ExposureHistograms histograms;
  histograms.hist_CDF = tableFrom(prefix + "hist_CDF", image["hist_CDF"]);
  histograms.hist_RGB = tableFrom(prefix + "hist_RGB", image["hist_RGB"]);
  for (std::size_t c = 0; c < 3; ++c) {
    const auto& cdf = histograms.hist_CDF[c];
    if (!std::is_sorted(cdf.begin(), cdf.end()) || cdf.front() < 0.0 ||
        std::abs(cdf.back() - 1.0) > kCdfEndTolerance)
      refuseField(prefix + "hist_CDF[" + std::to_string(c) + "]",
                  "a cumulative histogram: from 0 or above, never falling, to 1");
  }
  const auto& mean = histograms.hist_RGB;
  histograms.luma = 0.299 * mean[0].back() + 0.587 * mean[1].back() + 0.114 * mean[2].back();
  return histograms;
}

std::optional<int> whiteLevelOf(const std::string& prefix, const Json& image) {
  if (!image.contains("white_level")) return std::nullopt;
  const double level = numberFrom(prefix + "white_level", image["white_level"]);
  if (level != std::floor(level) || level < 1.0 || level > 65535.0)
    refuseField(prefix + "white_level", "a whole number from 1 to 65535");
  return static_cast<int>(level);
}

std::string textFrom(const std::string& name, const Json& json) {
  if (!json.is_string()) refuseField(name, "a text");
  return json.get<std::string>();
}

void addImage(AeJob& job, const std::string& prefix, const Json& image,
              const std::filesystem::path& folder, JobFiles& files) {
  if (!image.is_object()) refuseField(prefix.substr(0, prefix.size() - 1), "an object");
  refuseUnknownFields(
      prefix, image,
      {"name", "picture", "white_level", "hist_CDF", "hist_RGB", "Weight", "newTarget", "curr_luma",
       "cur_target", "max_pushup_mean", "max_pushdown_mean", "max_dark_mean"});
  if (!image.contains("newTarget"))
    throw std::invalid_argument(prefix + "newTarget is missing: the luma target wanted");
  std::string name = "image " + std::to_string(job.images() + 1);
  ExposureHistograms histograms;
  if (image.contains("picture")) {
    if (image.contains("hist_CDF") || image.contains("hist_RGB"))
      throw std::invalid_argument(prefix + "picture and histograms exclude each other");
    name = textFrom(prefix + "picture", image["picture"]);
    const auto white = whiteLevelOf(prefix, image);
    files.input(prefix + "picture", folder / name);
    histograms = histogramsOf(folder / name, white);
  } else {
    if (image.contains("white_level"))
      throw std::invalid_argument(prefix + "white_level is for a picture, and none is named");
    histograms = inlineHistograms(prefix, image);
  }
  job.names.push_back(image.contains("name") ? textFrom(prefix + "name", image["name"]) : name);
  job.hist_CDF.push_back(histograms.hist_CDF);
  job.hist_RGB.push_back(histograms.hist_RGB);
  job.newTarget.push_back(numberFrom(prefix + "newTarget", image["newTarget"]));
  job.Weight.push_back(numberOr(prefix, image, "Weight", 1.0));
  job.curr_luma.push_back(numberOr(prefix, image, "curr_luma", histograms.luma));
  job.cur_target.push_back(numberOr(prefix, image, "cur_target", job.curr_luma.back()));
  job.max_pushup_mean.push_back(numberOr(prefix, image, "max_pushup_mean", 0.0));
  job.max_pushdown_mean.push_back(numberOr(prefix, image, "max_pushdown_mean", 0.0));
  job.max_dark_mean.push_back(numberOr(prefix, image, "max_dark_mean", 0.0));
}

AeJob jobFrom(const Json& json, const std::filesystem::path& folder, JobFiles& files) {
  if (!json.is_object()) throw std::invalid_argument("it must hold one object");
  refuseUnknownFields("", json,
                      {"lowerBound", "upperBound", "initialBound", "initial_parameter",
                       "parameters_enable", "max_drc_gain", "ADRC_Enable", "images"});
  AeJob job;
  readIfThere(json, "lowerBound", job.lowerBound);
  readIfThere(json, "upperBound", job.upperBound);
  readIfThere(json, "initialBound", job.initialBound);
  job.initial_parameter = job.initialBound;
  readIfThere(json, "initial_parameter", job.initial_parameter);
  readIfThere(json, "parameters_enable", job.parameters_enable);
  job.max_drc_gain = numberOr("", json, "max_drc_gain", job.max_drc_gain);
  job.ADRC_Enable = numberOr("", json, "ADRC_Enable", job.ADRC_Enable);
  if (!json.contains("images")) return job;
  if (!json["images"].is_array() || json["images"].size() > kGaMaxImages)
    refuseField("images", "a list of at most " + std::to_string(kGaMaxImages) + " objects");
  for (const Json& image : json["images"])
    addImage(job, "images[" + std::to_string(job.images()) + "].", image, folder, files);
  return job;
}

}  // namespace

GaParameters AeJob::inUse(const GaParameters& x) const {
  GaParameters values;
  for (std::size_t k = 0; k < kGaParameters; ++k) values[k] = fits(k) ? x[k] : initial_parameter[k];
  return values;
}

void AeJob::addPicture(const std::filesystem::path& path, double target,
                       const std::optional<int>& whiteLevel) {
  const ExposureHistograms histograms = histogramsOf(path, whiteLevel);
  names.push_back(path.filename().string());
  hist_CDF.push_back(histograms.hist_CDF);
  hist_RGB.push_back(histograms.hist_RGB);
  newTarget.push_back(target);
  Weight.push_back(1.0);
  curr_luma.push_back(histograms.luma);
  cur_target.push_back(histograms.luma);
  for (auto* kept : {&max_pushup_mean, &max_pushdown_mean, &max_dark_mean}) kept->push_back(0.0);
}

AeJob readAeJob(const std::filesystem::path& path, JobFiles& files) {
  const std::string text = readWholeFile(path);
  try {
    return jobFrom(parsedJson(text), path.parent_path(), files);
  } catch (const std::invalid_argument& error) {
    throw JobError(quoted(path) + " is no exposure fit: " + error.what());
  }
}

}  // namespace greycard::cli
