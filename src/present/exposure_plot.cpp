#include <algorithm>
#include <cmath>
#include <cstddef>
#include <functional>
#include <numeric>
#include <vector>

#include "greycard/present/fitting.h"
#include "svg_plot.h"

namespace greycard::present {
namespace {

// The images that get their names in the plot: those that the rule misses most, as many as there
// is room for.
std::vector<std::size_t> worthNaming(const std::vector<ExposureFigures>& images,
                                     const ExposureEvaluation& evaluation) {
  constexpr std::size_t kRoom = 30;
  const auto missed = [&](std::size_t i) {
    return std::abs(evaluation.target[i] - images[i].newTarget);
  };
  std::vector<std::size_t> order(std::min(images.size(), evaluation.target.size()));
  std::iota(order.begin(), order.end(), std::size_t{0});
  std::ranges::stable_sort(order, std::ranges::greater(), missed);
  order.resize(std::min(order.size(), kRoom));
  return order;
}

std::string plotOf(const std::vector<ExposureFigures>& images, const ExposureEvaluation* before,
                   const ExposureEvaluation& after) {
  SvgPlot plot("Luma targets: wanted and reached", {"wanted target (8-bit codes)", {}, {}},
               {"target of the rule (8-bit codes)", {}, {}});
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
  plot.addLine("reached = wanted", {{bottom, bottom}, {top, top}}, quietColour(),
               SvgPlot::Stroke::Dashed);
  if (before != nullptr) plot.addMarkers("start", started, plotColour(1), SvgPlot::kRing);
  plot.addMarkers(before != nullptr ? "best" : "the rule", reached, plotColour(0));
  for (const std::size_t i : worthNaming(images, after)) plot.addText(reached[i], images[i].name);
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
