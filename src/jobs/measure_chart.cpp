#include "greycard/jobs/measure_chart.h"

#include "greycard/macbeth_chart_data.h"
#include "sample_chart.h"

namespace greycard {

MeasuredChart measureChart(const Picture& picture, const LocateOptions& options,
                           const std::filesystem::path& photo) {
  const LocatedChart located = locateChart(picture, options, photo);
  MacbethChartData data;
  const SamplingReport sampling =
      sampleChart(data, picture, located, sampleLevels(picture, options.samples)).report;
  MeasuredChart chart{data.m_RGB, std::nullopt, std::nullopt, located.warnings()};
  if (const auto clipped = sampling.clippedPatches(); !clipped.empty())
    chart.warnings.push_back("clipped in the photograph: patches " + patchList(clipped));
  return chart;
}

MeasuredChart measureChart(const Photograph& photograph, LocateOptions options) {
  options.samples = photograph.samples;
  MeasuredChart chart = measureChart(photograph.picture, options, photograph.file);
  chart.warnings.insert(chart.warnings.begin(), photograph.warnings.begin(),
                        photograph.warnings.end());
  return chart;
}

}  // namespace greycard
