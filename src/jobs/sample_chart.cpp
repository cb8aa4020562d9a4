#include "sample_chart.h"

#include "greycard/chart_regions.h"

namespace greycard {

QuadSampling sampleChart(MacbethChartData& data, const Picture& picture, const LocatedChart& chart,
                         const SampleLevels& levels) {
  if (!chart.upright) {
    const QuadSampling seen = sampleQuads(picture, chart.patches, levels, chart.sampledShare);
    data.m_RGB = seen.mean;
    data.m_Noise = seen.deviation;
    return seen;
  }
  const SamplingReport report = data.CollectRGBData(picture, chart.regions, levels);
  QuadSampling seen = sampleQuads(picture, chart.patches, levels, 1.0);
  seen.mean = data.m_RGB;
  seen.deviation = data.m_Noise;
  seen.report = report;
  return seen;
}

}  // namespace greycard
