#include "sample_chart.h"

#include "greycard/chart_regions.h"
#include "greycard/number_text.h"

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

std::string greyRowWarning(const NeutralRow& row, SampleEncoding encoding) {
  constexpr double kWorthTelling = 3.0;  // L*
  if (!(row.largest > kWorthTelling)) return {};
  const bool isSRgb = encoding == SampleEncoding::sRGB;
  std::string advice = "check --black, --white and --encoding";
  if (row.otherwise <= kWorthTelling)
    advice = std::string("it would not with --encoding ") + (isSRgb ? "linear" : "srgb");
  else if (isSRgb)
    advice =
        "the photograph is tone-mapped, which no matrix undoes: try --fit best --estimate-curve, "
        "or take one that isn't";
  return std::string("the grey row leaves the assumed tone curve (") +
         (isSRgb ? "srgb" : "linear") + ") by up to " + fixed(row.largest, 1) + " L* at patch " +
         std::to_string(row.patch + 1) + "; " + advice;
}

}  // namespace greycard
