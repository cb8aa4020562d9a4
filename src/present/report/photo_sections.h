#pragma once

// The photograph and the chart in it, as pieces of a page. All pictures are brought down to the
// size at which they are looked at before anything else is done to them.

#include <functional>
#include <optional>
#include <string>

#include "chart_story.h"

namespace greycard::present {

/// Brings a photograph, or a part of it, to the 8 bits that are looked at.
using Develop = std::function<Picture(const Picture&)>;
/// What the samples of a job's photograph mean; of a result that doesn't tell, what is usual.
SampleMeaning meaningOf(const std::optional<SampleLevels>& levels);
/// As the samples are, light for light, sRGB-encoded.
Develop asPhotographed(const SampleMeaning& samples);

/// The whole photograph before and after.
std::string beforeAndAfter(const Picture& photograph, const Develop& before, const Develop& after);
/// The photograph alone.
std::string photographFigure(const Picture& photograph, const Develop& develop);
/// The chart brought to the front by a homography, beside its colours.
std::string chartFigures(const ChartStory& story, const Picture& photograph,
                         const Develop& develop);
/// The surroundings of the chart with what was sampled of each patch.
std::string sampledFigure(const ChartStory& story, const Picture& photograph,
                          const Develop& develop);

}  // namespace greycard::present
