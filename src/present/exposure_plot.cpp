#include <algorithm>

#include "greycard/present/fitting.h"
#include "svg_plot.h"

namespace greycard::present {
namespace {

std::string plotOf(const std::vector<ExposureFigures>& images, const ExposureEvaluation* before,
                   const ExposureEvaluation& after) {
  SvgPlot plot("Luma targets: wanted and reached", {"wanted target (bins)", {}, {}},
               {"target of the rule (bins)", {}, {}});
  double top = images.empty() ? 0.0 : images.front().newTarget, bottom = top;
  const auto take = [&](double target) {
    top = std::max(top, target);
    bottom = std::min(bottom, target);
  };
  const auto points = [&](const ExposureEvaluation& evaluation) {
    std::vector<Point2> list;
    for (std::size_t i = 0; i < std::min(images.size(), evaluation.target.size()); ++i) {
      list.push_back({images[i].newTarget, evaluation.target[i]});
      take(evaluation.target[i]);
    }
    return list;
  };
  for (const ExposureFigures& image : images) take(image.newTarget);
  const auto reached = points(after);
  const auto started = before != nullptr ? points(*before) : std::vector<Point2>();
  plot.useEqualScales();
  plot.addLine("reached = wanted", {{bottom, bottom}, {top, top}}, "#888888",
               SvgPlot::Stroke::Dashed);
  if (before != nullptr) plot.addMarkers("before", started, plotColour(1), SvgPlot::Marker::Ring);
  plot.addMarkers(before != nullptr ? "after (best)" : "the rule", reached, plotColour(0));
  return plot.svg();
}

}  // namespace

std::string exposurePlot(const ExposureFit& fit) {
  return plotOf(fit.images, &fit.start, fit.best);
}

std::string exposurePlot(const ExposureTrial& trial) {
  return plotOf(trial.images, nullptr, trial.manual);
}

}  // namespace greycard::present
