#include "greycard/jobs/evaluate_chart.h"

#include <utility>

#include "greycard/color_correction_utils.h"
#include "sample_chart.h"

namespace greycard {

void checkOptions(const EvaluationOptions& options) {
  checkOptions(options.locate);
  SampleLevels levels;
  levels.scale = options.scale;
  checkLevels(levels);
}

ChartEvaluation evaluateChart(const Picture& picture, const EvaluationOptions& options,
                              const std::filesystem::path& photo) {
  MacbethChartData data;
  data.LoadMCCCIELAB(options.light);
  ChartEvaluation result;
  result.photo = photo;
  result.light = options.light;
  result.chart = locateChart(picture, options.locate, photo);
  result.levels = sampleLevels(picture, options.locate.samples);
  result.levels->scale = options.scale;
  const QuadSampling seen = sampleChart(data, picture, result.chart, *result.levels);
  result.measuredMedian = seen.median;
  result.unevenness = seen.unevenness;
  result.sampling = seen.report;

  ColorCorrectionUtils facade;
  facade.CalculateDeltaE(data);
  result.measuredRgb = data.m_RGB;
  result.measuredNoise = data.m_Noise;
  result.measuredLab = facade.m_macbethLab;
  result.referenceLab = data.m_RefLab;
  result.errors = colourErrors(result.referenceLab, result.measuredLab);
  result.warnings = result.chart.warnings();
  const SampleEncoding encoding = result.levels->encoding;
  std::string row = greyRowWarning(neutralRow(result.measuredRgb, result.referenceLab, encoding,
                                              result.sampling.clippedPatches()),
                                   encoding);
  if (!row.empty()) result.warnings.push_back(std::move(row));
  return result;
}

ChartEvaluation evaluateChart(const Photograph& photograph, EvaluationOptions options) {
  options.locate.samples = photograph.samples;
  ChartEvaluation result = evaluateChart(photograph.picture, options, photograph.file);
  result.capture = photograph.capture;
  result.warnings.insert(result.warnings.begin(), photograph.warnings.begin(),
                         photograph.warnings.end());
  return result;
}

}  // namespace greycard
