#pragma once

// What a page about one chart tells, whichever job it comes from: a view of the job's result.

#include <optional>
#include <string>

#include "greycard/colour_errors.h"
#include "greycard/jobs/evaluate_chart.h"
#include "greycard/jobs/fit_chart.h"
#include "greycard/picture.h"

namespace greycard::present {

/// Colours of the chart in L*a*b*, and how far they are from the reference.
struct JudgedColours {
  std::string name;  ///< "corrected"
  const PatchTable& lab;
  const ColourErrors& errors;
};

struct ColourStory {
  const PatchTable& referenceLab;
  JudgedColours result;
  std::optional<JudgedColours> before;
};

/// Colours, and how they were measured.
struct ChartStory : ColourStory {
  const PatchTable &measuredRgb, &noise, &unevenness;
  const SamplingReport& sampling;
  const LocatedChart& chart;
};

ChartStory storyOf(const ChartFit& fit);
ChartStory storyOf(const ChartEvaluation& evaluation);

/// "4 foliage". \param patch  counted from 0
std::string numberedPatch(std::size_t patch);

}  // namespace greycard::present
