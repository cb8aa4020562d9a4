#include "measured_chart.h"

#include <cmath>
#include <filesystem>
#include <span>
#include <stdexcept>

#include "command.h"
#include "greycard/files.h"
#include "greycard/macbeth_chart_data.h"
#include "job_files.h"
#include "json_input.h"
#include "number_list.h"

namespace greycard::cli {
namespace {

bool looksLikeJson(std::string_view text) {
  const std::size_t first = text.find_first_not_of(" \t\r\n");
  return first != std::string_view::npos && text[first] == '{';
}

// What follows throws plain texts; the callers add the file.
[[noreturn]] void refuse(const std::string& what) {
  throw std::invalid_argument(what);
}

Vector3 tripleFrom(const std::string& name, const Json& json) {
  Vector3 triple{};
  bool fits = json.is_array() && json.size() == triple.size();
  for (std::size_t i = 0; fits && i < triple.size(); ++i) {
    fits = json[i].is_number() && std::isfinite(json[i].get<double>());
    if (fits) triple[i] = json[i].get<double>();
  }
  if (!fits) refuse(name + " must be a list of 3 finite numbers");
  return triple;
}

Matrix3 matrixFrom(const Json& json) {
  if (!json.is_array() || json.size() != 3) refuse("matrix must be 3 lists of 3 numbers");
  Matrix3 matrix{};
  for (std::size_t r = 0; r < matrix.size(); ++r)
    matrix[r] = tripleFrom("matrix[" + std::to_string(r) + "]", json[r]);
  return matrix;
}

MeasuredChart chartFromJson(const Json& json) {
  if (!json.contains("patches"))
    refuse("patches is missing; greycard ccm PHOTO --json FILE writes one");
  const Json& patches = json["patches"];
  if (!patches.is_array() || patches.size() != kPatchCount)
    refuse("patches must be a list of 24 patches");
  MeasuredChart chart;
  for (std::size_t i = 0; i < kPatchCount; ++i) {
    const std::string name = "patches[" + std::to_string(i) + "]";
    if (!patches[i].is_object() || !patches[i].contains("rgb")) refuse(name + ".rgb is missing");
    chart.rgb[i] = tripleFrom(name + ".rgb", patches[i]["rgb"]);
  }
  if (json.contains("matrix")) chart.matrix = matrixFrom(json["matrix"]);
  if (json.contains("light") && json["light"].is_string()) chart.light = json["light"];
  return chart;
}

MeasuredChart chartFromPhotograph(const ChartSource& source) {
  const Picture picture = readPicture(source.photo);
  const LocatedChart located = locateChart(source, picture);
  MacbethChartData data;
  const SamplingReport sampling =
      data.CollectRGBData(picture, located.regions, source.levels(picture));
  MeasuredChart chart{data.m_RGB, std::nullopt, {}, chartWarnings(located)};
  if (const auto clipped = sampling.clippedPatches(); !clipped.empty())
    chart.warnings.push_back("clipped in the photograph: patches " + patchList(clipped));
  return chart;
}

Matrix3 matrixOf(std::span<const double> numbers) {
  if (numbers.size() != 9)
    refuse("a matrix is 9 numbers, and here are " + std::to_string(numbers.size()));
  Matrix3 matrix{};
  for (std::size_t i = 0; i < numbers.size(); ++i) matrix[i / 3][i % 3] = numbers[i];
  return matrix;
}

}  // namespace

MeasuredChart measuredChart(const ChartSource& source) {
  const std::string text = readWholeFile(source.photo);
  if (!looksLikeJson(text)) return chartFromPhotograph(source);
  try {
    return chartFromJson(parsedJson(text));
  } catch (const std::invalid_argument& error) {
    throw JobError(quoted(source.photo) + " is no measured chart: " + error.what());
  }
}

Matrix3 matrixOption(const std::string& option, const std::string& numbersOrFile) {
  if (!namesFile(numbersOrFile)) {
    try {
      return matrixOf(finiteNumbers(numbersOrFile));
    } catch (const std::invalid_argument& error) {
      throw UsageError(option + " " + numbersOrFile +
                       " is neither a file nor a matrix: " + error.what());
    }
  }
  const std::filesystem::path file = numbersOrFile;
  const std::string text = readWholeFile(file);
  try {
    if (!looksLikeJson(text)) return matrixOf(finiteNumbers(text));
    const Json json = parsedJson(text);
    if (!json.contains("matrix")) refuse("matrix is missing");
    return matrixFrom(json["matrix"]);
  } catch (const std::invalid_argument& error) {
    throw JobError(quoted(file) + " is no colour-correction matrix: " + error.what());
  }
}

}  // namespace greycard::cli
