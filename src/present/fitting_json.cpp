#include <stdexcept>

#include "fitting_fields.h"
#include "greycard/errors.h"
#include "greycard/files.h"
#include "greycard/present/fitting.h"
#include "json_reader.h"
#include "json_writer.h"

namespace greycard::present {

std::string toJson(const ExposureJob& job) {
  return documentOf(job);
}
void fromJson(std::string_view text, ExposureJob& job) {
  readDocument(text, JsonKind::Options, job);
}
std::string toJson(const SearchOptions& options) {
  return documentOf(options);
}
void fromJson(std::string_view text, SearchOptions& options) {
  readDocument(text, JsonKind::Options, options);
}
std::string toJson(const ExposureFit& fit) {
  return documentOf(fit);
}
void fromJson(std::string_view text, ExposureFit& fit) {
  readFresh(text, fit);
}
std::string toJson(const ExposureTrial& trial) {
  return documentOf(trial);
}
void fromJson(std::string_view text, ExposureTrial& trial) {
  readFresh(text, trial);
}

ExposureJob readExposureJob(const std::filesystem::path& file) {
  const std::string text = readWholeFile(file);
  try {
    ExposureJob job;
    fromJson(text, job);
    job.check();
    for (ExposureImage& image : job.images) {
      if (!image.picture) continue;
      if (!image.name) image.name = image.picture->string();
      image.picture = file.parent_path() / *image.picture;
    }
    return job;
  } catch (const std::invalid_argument& error) {
    throw JobError(quoted(file) + " is no exposure fit: " + error.what());
  }
}

std::string toJson(const LumaMatchOptions& options) {
  return documentOf(options);
}
void fromJson(std::string_view text, LumaMatchOptions& options) {
  readDocument(text, JsonKind::Options, options);
}
std::string toJson(const LumaMatch& match) {
  return documentOf(match);
}
void fromJson(std::string_view text, LumaMatch& match) {
  readFresh(text, match);
}

std::string toJson(const WhiteBalanceOptions& options) {
  return documentOf(options);
}
void fromJson(std::string_view text, WhiteBalanceOptions& options) {
  readDocument(text, JsonKind::Options, options);
}
std::string toJson(const WhiteBalanceMapping& mapping) {
  return documentOf(mapping);
}
void fromJson(std::string_view text, WhiteBalanceMapping& mapping) {
  readFresh(text, mapping);
}

std::string toJson(const SkinOptions& options) {
  return documentOf(options);
}
void fromJson(std::string_view text, SkinOptions& options) {
  readDocument(text, JsonKind::Options, options);
}
std::string toJson(const SkinCalibration& skin) {
  return documentOf(skin);
}
void fromJson(std::string_view text, SkinCalibration& skin) {
  readFresh(text, skin);
}

}  // namespace greycard::present
