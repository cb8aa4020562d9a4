#include "best_fit_fields.h"
#include "greycard/present/best_fit.h"
#include "json_reader.h"
#include "json_writer.h"

namespace greycard::present {
namespace {

void check(const MatrixFitResult& result) {
  if (!result.toneCurve.empty() && result.toneCurve.size() < 2)
    refuseField("tone_curve", "a list of two numbers or more, or empty");
  if (!result.uncertainty) return;
  for (const std::size_t size :
       {result.uncertainty->exposure.size(), result.uncertainty->lightRange.size(),
        result.uncertainty->dE2000.size()})
    if (size != result.photographs.size())
      refuseField("standard_errors", "of as many photographs as there are");
}

}  // namespace

std::string toJson(const BestFitOptions& options) {
  return documentOf(options);
}
void fromJson(std::string_view text, BestFitOptions& options) {
  readDocument(text, JsonKind::Options, options);
}

std::string toJson(const MatrixFitResult& result) {
  return documentOf(result);
}
void fromJson(std::string_view text, MatrixFitResult& result) {
  MatrixFitResult fresh;
  readFresh(text, fresh);
  check(fresh);
  result = std::move(fresh);
}

std::string toJson(const BestChartFit& fit) {
  return documentOf(fit);
}
void fromJson(std::string_view text, BestChartFit& fit) {
  BestChartFit fresh;
  readFresh(text, fresh);
  check(fresh.best);
  if (fresh.stated.empty() || fresh.stated.size() != fresh.best.photographs.size())
    refuseField("stated", "a list of a fit for each photograph of best, one or more");
  for (ChartFit& stated : fresh.stated) completeErrors(stated);
  fit = std::move(fresh);
}

}  // namespace greycard::present
