#include "greycard/batch/summary.h"
#include "greycard/number_text.h"

namespace greycard::batch {
namespace {

// RFC 4180, 2.5 to 2.7.
std::string cell(const std::string& text) {
  if (text.find_first_of(",\"\r\n") == std::string::npos) return text;
  std::string quoted = "\"";
  for (const char c : text) quoted += c == '"' ? std::string("\"\"") : std::string(1, c);
  return quoted + "\"";
}

std::string cell(const std::optional<double>& number) {
  return number ? exact(*number) : std::string();
}

std::string cells(const std::optional<Vector3>& numbers) {
  if (!numbers) return ",,";
  return exact((*numbers)[0]) + "," + exact((*numbers)[1]) + "," + exact((*numbers)[2]);
}

}  // namespace

std::string resultsCsv(std::span<const Result> results) {
  std::string csv =
      "photo,status,light,mean_de2000,worst_de2000,worst_patch,gain_r,gain_g,gain_b,exposure,"
      "m11,m12,m13,m21,m22,m23,m31,m32,m33,warnings,reason\n";
  for (const Result& result : results) {
    const Figures& figures = result.figures;
    csv += cell(result.photo.string()) + (result.failed() ? ",failed," : ",done,");
    if (figures.light) csv += illumName(*figures.light);
    csv += "," + cell(figures.meanError) + "," + cell(figures.worstError) + ",";
    if (figures.worstPatch) csv += std::to_string(*figures.worstPatch + 1);
    csv += "," + cells(figures.whiteBalance) + "," + cell(figures.exposure);
    for (std::size_t row = 0; row < 3; ++row)
      csv += "," + cells(figures.matrix ? std::optional((*figures.matrix)[row]) : std::nullopt);
    csv += "," + std::to_string(figures.warnings.size()) + "," + cell(result.reason) + "\n";
  }
  return csv;
}

}  // namespace greycard::batch
