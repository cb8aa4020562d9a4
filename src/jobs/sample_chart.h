#pragma once

#include "greycard/jobs/locate_chart.h"
#include "greycard/macbeth_chart_data.h"
#include "greycard/quad_sampler.h"

namespace greycard {

/// Samples the chart into the data's m_RGB and m_Noise: rectangles of a region file as
/// CollectRGBData does, the middles of patches as sampleQuads.
/// \return all that was seen; the first two tables are those of the data.
/// \throws as these, the data untouched
QuadSampling sampleChart(MacbethChartData& data, const Picture& picture, const LocatedChart& chart,
                         const SampleLevels& levels);

}  // namespace greycard
