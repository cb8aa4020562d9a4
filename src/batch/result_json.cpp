#include <stdexcept>
#include <utility>

#include "batch_fields.h"
#include "content_hash.h"
#include "figures.h"
#include "greycard/batch/result.h"
#include "greycard/errors.h"
#include "greycard/files.h"
#include "greycard/version.h"
#include "job_options.h"
#include "json_reader.h"
#include "json_writer.h"

namespace greycard::batch {
namespace {

using present::Json;

// A document in the document, as the text that it was written from.
std::string innerDocument(const Json& json, const char* name) {
  if (!json.contains(name)) return {};
  if (!json[name].is_object()) present::refuseField(name, "an object");
  return present::jsonText(json[name]);
}

}  // namespace

std::string toJson(const Result& result) {
  present::JsonWriter writer;
  describe(writer, result);
  Json json = writer.json();
  json["options"] = present::parsedJson(result.options);
  if (!result.result.empty()) json["result"] = present::parsedJson(result.result);
  json["thumbnail"] = result.thumbnail;
  return present::jsonText(json);
}

void fromJson(std::string_view text, Result& result) {
  const Json json = present::parsedJson(text);
  Result filled;
  present::JsonReader reader(json, present::JsonKind::Result);
  describe(reader, filled);
  reader("thumbnail", filled.thumbnail);
  filled.options = innerDocument(json, "options");
  filled.result = innerDocument(json, "result");
  if (filled.options.empty()) throw std::invalid_argument("options is missing");
  if (filled.result.empty() && !filled.failed()) throw std::invalid_argument("result is missing");
  try {
    if (!filled.result.empty()) filled.figures = figuresOf(filled.job, filled.result);
  } catch (const std::invalid_argument& error) {
    throw std::invalid_argument(std::string("result.") + error.what());
  }
  result = std::move(filled);
}

void writeResult(const std::filesystem::path& file, const Result& result) {
  writeWholeFile(file, toJson(result));
}

Result readResult(const std::filesystem::path& file) {
  const std::string text = readWholeFile(file);
  Result result;
  try {
    fromJson(text, result);
  } catch (const std::invalid_argument& error) {
    throw JobError(quoted(file) + " is no result of a batch: " + error.what());
  }
  return result;
}

std::optional<Result> doneResult(const std::filesystem::path& resultFile, const File& file,
                                 const Settings& settings) {
  const JobOptions options = jobOptions(settings, file.photo);
  try {
    Result result = readResult(resultFile);
    if (result.version == libraryVersion() && !result.contentHash.empty() &&
        result.settingsHash == hashOf(options, settings.job, file.photo) &&
        result.contentHash == contentHash(file.photo))
      return result;
  } catch (const FileError&) {  // neither there nor whole: to be done
  } catch (const JobError&) {
  }
  return std::nullopt;
}

bool isDone(const std::filesystem::path& resultFile, const File& file, const Settings& settings) {
  return doneResult(resultFile, file, settings).has_value();
}

}  // namespace greycard::batch
