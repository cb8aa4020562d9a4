#include "sample_chart.h"

#include "greycard/chart_regions.h"
#include "greycard/errors.h"
#include "greycard/files.h"
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

ChartSamples sampleChart(const Picture& picture, const LocatedChart& chart,
                         const SampleLevels& levels, const std::filesystem::path& photo) {
  MacbethChartData data;
  const QuadSampling seen = sampleChart(data, picture, chart, levels);
  return {photo,        chart,       levels,          data.m_RGB,
          data.m_Noise, seen.median, seen.unevenness, seen.report};
}

void requireColours(const Picture& picture, const std::filesystem::path& photo) {
  if (picture.channels == 1)
    throw JobError((photo.empty() ? "this" : quoted(photo)) +
                   " is a grey picture, which holds no colours to fit; give one in colour");
}

ChartSamples sampleChart(const Photograph& photograph, const LocatedChart& chart) {
  const Picture& picture = photograph.picture;
  requireColours(picture, photograph.file);
  ChartSamples samples =
      sampleChart(picture, chart, sampleLevels(picture, photograph.samples), photograph.file);
  samples.capture = photograph.capture;
  samples.warnings = photograph.warnings;
  return samples;
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
