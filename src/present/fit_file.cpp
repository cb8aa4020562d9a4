#include "greycard/present/fit_file.h"

#include <stdexcept>

#include "greycard/errors.h"
#include "greycard/files.h"
#include "greycard/present/best_fit.h"
#include "greycard/present/chart.h"
#include "json_text.h"

namespace greycard::present {

AnyFit fitFromJson(std::string_view text) {
  const Json document = parsedJson(text);
  if (document.is_object() && document.contains("stated")) {
    BestChartFit fit;
    fromJson(text, fit);
    if (fit.stated.empty()) throw std::invalid_argument("stated must be a list of fits");
    return fit;
  }
  ChartFit fit;
  fromJson(text, fit);
  return fit;
}

AnyFit readFit(const std::filesystem::path& file) {
  const std::string text = readWholeFile(file);
  try {
    return fitFromJson(text);
  } catch (const std::invalid_argument& error) {
    throw JobError(quoted(file) + " is no fit, as greycard ccm --json writes it: " + error.what());
  }
}

ChartFit chartFitOf(const AnyFit& fit) {
  if (const auto* best = std::get_if<BestChartFit>(&fit)) return best->shown(0);
  return std::get<ChartFit>(fit);
}

}  // namespace greycard::present
