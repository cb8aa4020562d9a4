#include "chart_story.h"

#include "greycard/macbeth_chart_data.h"

namespace greycard::present {

ChartStory storyOf(const ChartFit& fit) {
  return {{fit.fit.m_targetLab,
           {"corrected", fit.correctedLab, fit.after},
           JudgedColours{"before", fit.fit.m_uncorrectedLab, fit.before}},
          fit.measuredRgb,
          fit.measuredNoise,
          fit.unevenness,
          fit.sampling,
          fit.chart};
}

ChartStory storyOf(const ChartEvaluation& evaluation) {
  return {{evaluation.referenceLab, {"measured", evaluation.measuredLab, evaluation.errors}, {}},
          evaluation.measuredRgb,
          evaluation.measuredNoise,
          evaluation.unevenness,
          evaluation.sampling,
          evaluation.chart};
}

std::string numberedPatch(std::size_t patch) {
  return std::to_string(patch + 1) + " " + patchName(static_cast<int>(patch));
}

}  // namespace greycard::present
