#include "chart_fields.h"
#include "greycard/present/chart.h"
#include "json_reader.h"
#include "json_writer.h"

namespace greycard::present {
namespace {

void complete(ChartEvaluation& evaluation) {
  evaluation.errors = colourErrors(evaluation.referenceLab, evaluation.measuredLab);
}

}  // namespace

std::string toJson(const LocateOptions& options) {
  return documentOf(options);
}
void fromJson(std::string_view text, LocateOptions& options) {
  readDocument(text, JsonKind::Options, options);
}
std::string toJson(const ChartSearch& search) {
  return documentOf(search);
}
void fromJson(std::string_view text, ChartSearch& search) {
  readFresh(text, search);
}
std::string toJson(const FoundCharts& found) {
  return documentOf(found);
}
void fromJson(std::string_view text, FoundCharts& found) {
  readFresh(text, found);
}

std::string toJson(const ChartFitOptions& options) {
  return documentOf(options);
}
void fromJson(std::string_view text, ChartFitOptions& options) {
  readDocument(text, JsonKind::Options, options);
}
std::string toJson(const ChartFit& fit) {
  return documentOf(fit);
}
void fromJson(std::string_view text, ChartFit& fit) {
  readFresh(text, fit);
  completeErrors(fit);
}

std::string toJson(const EvaluationOptions& options) {
  return documentOf(options);
}
void fromJson(std::string_view text, EvaluationOptions& options) {
  readDocument(text, JsonKind::Options, options);
}
std::string toJson(const ChartEvaluation& evaluation) {
  return documentOf(evaluation);
}
void fromJson(std::string_view text, ChartEvaluation& evaluation) {
  readFresh(text, evaluation);
  complete(evaluation);
}

}  // namespace greycard::present
