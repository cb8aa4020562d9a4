#include "chart_fields.h"
#include "greycard/present/chart.h"
#include "json_reader.h"
#include "json_writer.h"

namespace greycard::present {
namespace {

// Differences and warnings are made of the other fields.
void complete(ChartFit& fit) {
  fit.before = colourErrors(fit.fit.m_targetLab, fit.fit.m_uncorrectedLab);
  fit.after = colourErrors(fit.fit.m_targetLab, fit.correctedLab);
}
void complete(ChartEvaluation& evaluation) {
  evaluation.errors = colourErrors(evaluation.referenceLab, evaluation.measuredLab);
}

template <typename Result>
void readResult(std::string_view text, Result& result) {
  Result read;
  readDocument(text, JsonKind::Result, read);
  if constexpr (requires { complete(read); }) complete(read);
  result = std::move(read);
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
  readResult(text, search);
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
  readResult(text, fit);
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
  readResult(text, evaluation);
}

}  // namespace greycard::present
