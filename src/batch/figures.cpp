#include "figures.h"

#include "greycard/present/chart.h"

namespace greycard::batch {
namespace {

void tellErrors(const ErrorColumn& errors, Figures& figures) {
  figures.meanError = errors.mean;
  figures.worstError = errors.worst;
  figures.worstPatch = errors.worstPatch;
}

template <typename Outcome>
Figures figuresOfJson(std::string_view result) {
  Outcome outcome;
  present::fromJson(result, outcome);
  return figuresOf(outcome);
}

}  // namespace

Figures figuresOf(const ChartSearch& search) {
  Figures figures;
  if (search.refusal.empty()) figures.warnings = search.chart.warnings();
  return figures;
}

Figures figuresOf(const ChartFit& fit) {
  Figures figures;
  figures.light = fit.light;
  tellErrors(fit.after.ciede2000, figures);
  figures.whiteBalance = fit.whiteBalance;
  figures.exposure = fit.exposure;
  figures.matrix = fit.matrix;
  figures.warnings = fit.warnings;
  return figures;
}

Figures figuresOf(const ChartEvaluation& evaluation) {
  Figures figures;
  figures.light = evaluation.light;
  tellErrors(evaluation.errors.ciede2000, figures);
  figures.warnings = evaluation.warnings;
  return figures;
}

Figures figuresOf(Job job, std::string_view result) {
  switch (job) {
    case Job::chart:
      return figuresOfJson<ChartSearch>(result);
    case Job::ccm:
      return figuresOfJson<ChartFit>(result);
    case Job::evaluate:
      return figuresOfJson<ChartEvaluation>(result);
  }
  return {};
}

}  // namespace greycard::batch
