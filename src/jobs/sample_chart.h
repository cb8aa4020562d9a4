#pragma once

#include <filesystem>
#include <string>

#include "greycard/jobs/chart_samples.h"
#include "greycard/jobs/locate_chart.h"
#include "greycard/macbeth_chart_data.h"
#include "greycard/neutral_row.h"
#include "greycard/quad_sampler.h"

namespace greycard {

/// Samples the chart into the data's m_RGB and m_Noise: rectangles of a region file as
/// CollectRGBData does, the middles of patches as sampleQuads.
/// \return all that was seen; the first two tables are those of the data.
/// \throws as these, the data untouched
QuadSampling sampleChart(MacbethChartData& data, const Picture& picture, const LocatedChart& chart,
                         const SampleLevels& levels);

/// Likewise of a picture. \param photo  names it in the result
ChartSamples sampleChart(const Picture& picture, const LocatedChart& chart,
                         const SampleLevels& levels, const std::filesystem::path& photo);

/// \throws JobError for a grey picture, whose colours nothing can be fitted to
void requireColours(const Picture& picture, const std::filesystem::path& photo);

/// A sentence where the grey row is more than 3 L* off (neutralRow), with the way of sampling that
/// would mend it; else an empty text.
std::string greyRowWarning(const NeutralRow& row, SampleEncoding encoding);

}  // namespace greycard
