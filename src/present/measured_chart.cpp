#include "greycard/present/measured_chart.h"

#include <algorithm>
#include <cmath>
#include <stdexcept>
#include <string>

#include "greycard/errors.h"
#include "greycard/files.h"
#include "greycard/number_text.h"
#include "json_reader.h"

namespace greycard::present {
namespace {

bool looksLikeJson(std::string_view text) {
  const std::size_t first = text.find_first_not_of(" \t\r\n");
  return first != std::string_view::npos && text[first] == '{';
}

// What follows throws plain texts; the callers add the file.
[[noreturn]] void refuse(const std::string& what) {
  throw std::invalid_argument(what);
}

void checkFinite(const std::string& name, const Vector3& values) {
  if (!std::ranges::all_of(values, [](double value) { return std::isfinite(value); }))
    refuseField(name, "a list of 3 finite numbers");
}

Matrix3 matrixFrom(const Json& json) {
  if (!json.contains("matrix")) refuse("matrix is missing");
  Matrix3 matrix{};
  JsonReader(json, JsonKind::Result)("matrix", matrix);
  for (std::size_t r = 0; r < matrix.size(); ++r)
    checkFinite("matrix[" + std::to_string(r) + "]", matrix[r]);
  return matrix;
}

MeasuredChart chartFrom(const Json& json) {
  if (!json.contains("patches"))
    refuse("patches is missing; greycard ccm PHOTO --json FILE writes one");
  MeasuredChart chart;
  JsonReader reader(json, JsonKind::Result);
  reader.rows("patches", kPatchCount, [&](JsonReader& row, std::size_t i) {
    row("rgb", chart.rgb[i]);
    checkFinite("patches[" + std::to_string(i) + "].rgb", chart.rgb[i]);
  });
  if (json.contains("matrix")) chart.matrix = matrixFrom(json);
  if (json.contains("light") && json["light"].is_string())
    chart.light = illumFromName(json["light"].get<std::string>());
  return chart;
}

}  // namespace

MeasuredChart readMeasuredChart(const std::filesystem::path& file, const LocateOptions& options,
                                const std::optional<DumpLayout>& dump) {
  const std::string text = readWholeFile(file);
  if (!looksLikeJson(text))
    return measureChart(readPhotograph(file, {options.samples, dump}), options);
  try {
    return chartFrom(parsedJson(text));
  } catch (const std::invalid_argument& error) {
    throw JobError(quoted(file) + " is no measured chart: " + error.what());
  }
}

Matrix3 matrixFromNumbers(std::string_view text) {
  const auto numbers = finiteNumbers(text);
  if (numbers.size() != 9)
    refuse("a matrix is 9 numbers, and here are " + std::to_string(numbers.size()));
  Matrix3 matrix{};
  for (std::size_t i = 0; i < numbers.size(); ++i) matrix[i / 3][i % 3] = numbers[i];
  return matrix;
}

Matrix3 readMatrix(const std::filesystem::path& file) {
  const std::string text = readWholeFile(file);
  try {
    return looksLikeJson(text) ? matrixFrom(parsedJson(text)) : matrixFromNumbers(text);
  } catch (const std::invalid_argument& error) {
    throw JobError(quoted(file) + " is no colour-correction matrix: " + error.what());
  }
}

}  // namespace greycard::present
