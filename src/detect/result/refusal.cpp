#include "result/refusal.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <string>
#include <utility>

#include "lattice/contrast_map.h"
#include "lattice/plane_map.h"
#include "result/chart_doubts.h"
#include "result/chart_placement.h"
#include "text.h"
#include "window/patch_side.h"
#include "window/refine_window.h"

namespace greycard {
namespace {

constexpr std::array kRefusalThresholds{12, 24, 6};
constexpr int kFewestPatches = 7;
constexpr double kSureOfCut = 0.80;  // likeness of the patches in view
constexpr int kCutSupporting = 8;
constexpr double kLikeAChart = 0.60;  // likeness from which a refused grid is taken for a chart
constexpr int kMostUnlike = 12;
constexpr const char* kAdvice =
    "photograph the chart larger, sharp, evenly lit and whole, or give its corners";

std::string places(int count, const char* what) {
  return std::to_string(count) + " " + what + (count == 1 ? "" : "s");
}

std::string at(const Point2& p) {
  return "(" + formatFixed(p.x, 0) + ", " + formatFixed(p.y, 0) + ")";
}

Point2 middleOf(const ChartWindow& window) {
  return window.map(3.0, 2.0);
}

// The rectangle with the region's second moments along x and y.
PatchRegion boxOf(const FlatRegion& region) {
  const double halfWidth = std::sqrt(3.0 * region.xx), halfHeight = std::sqrt(3.0 * region.yy);
  return {region.centre.x - halfWidth, region.centre.y - halfHeight, 2.0 * halfWidth,
          2.0 * halfHeight};
}

// One more look at the working picture that came furthest.
class Diagnosis {
 public:
  Diagnosis(const Picture& picture, const PixelWindow& window, const LatticeSearch& search,
            const LatticeLimits& limits)
      : search_(search),
        limits_(limits),
        pictures_(picture, window, search.furthest.levels),
        working_(workingPicture(pictures_, search.furthest)),
        lens_(lensOf(picture)) {
    contrastMap(working_, contrast_);
    regions_ = flatRegions(contrast_, search.furthest.threshold, working_);
    for (auto& lattice : growLattices(regions_))
      if (!lattice.endless) lattices_.push_back(std::move(lattice));
  }

  ChartDetection make() {
    for (const auto& region : regions_) result_.candidateRegions.push_back(boxOf(region));
    result_.quads = static_cast<int>(regions_.size());
    if (!isMirrored() && !isCut() && !isWindow() && !isLattice()) callNothing();
    return std::move(result_);
  }

 private:
  void refuse(ChartStage stage, ChartRefusal refusal, std::string reason) {
    result_.stage = stage;
    result_.refusal = refusal;
    result_.reason = std::move(reason);
  }

  void propose(ChartWindow window) {
    window.halfSide = halfPatchSide(working_, window.map);
    result_.candidate = placementOf(window);
    result_.quadsUsed = window.supporting;
    result_.doubts =
        chartDoubts(window, limits_.smallestGate, shortestSide(result_.candidate->patches));
  }

  // The surest window of this kind on any lattice.
  std::optional<ChartWindow> bestOf(WindowKind kind, double smallestGate) const {
    std::optional<ChartWindow> best;
    for (const auto& lattice : lattices_) {
      auto windows = chartWindows(lattice, regions_, working_, lens_, kind, smallestGate);
      if (!windows.empty() && (!best || windows.front().gate > best->gate)) best = windows.front();
    }
    return best;
  }

  // The window on most of any lattice's nodes, whatever its colours; of equals the surest.
  std::optional<ChartWindow> fullest() const {
    std::optional<ChartWindow> best;
    for (const auto& lattice : lattices_)
      for (const auto& window :
           chartWindows(lattice, regions_, working_, lens_, WindowKind::whole, -HUGE_VAL))
        if (!best || window.supporting > best->supporting) best = window;
    return best;
  }

  bool isMirrored() {
    const auto rough = bestOf(WindowKind::mirrored, 0.5 * limits_.smallestGate);
    if (!rough) return false;
    const auto window = refineWindow(working_, contrast_, kRefusalThresholds, *rough);
    if (window.gate < limits_.smallestGate) return false;
    propose(window);
    refuse(ChartStage::Colours, ChartRefusal::Mirrored,
           "the chart round " + at(middleOf(window)) +
               " is mirrored: its patches follow each other as in a mirror; flip the picture");
    return true;
  }

  bool isCut() {
    const auto window = bestOf(WindowKind::cut, kSureOfCut);
    if (!window || window->supporting < kCutSupporting) return false;
    propose(*window);
    refuse(ChartStage::Colours, ChartRefusal::Cut,
           "the picture's " + cuttingEdge(*window) + " edge cuts the chart: only " +
               std::to_string(window->inside) +
               " of its 24 patches are in view; photograph the whole " + "chart");
    return true;
  }

  // The edge beyond which the patches out of view lie farthest.
  std::string cuttingEdge(const ChartWindow& window) const {
    double beyond[4] = {};
    const auto& area = pictures_.window();
    for (int patch = 0; patch < kPatchCount; ++patch) {
      if (window.samples[static_cast<std::size_t>(patch)].inside) continue;
      const auto p = window.map(patch % 6 + 0.5, patch / 6 + 0.5);
      const double past[4] = {area.left - p.x, p.x - (area.left + area.width), area.top - p.y,
                              p.y - (area.top + area.height)};
      for (int k = 0; k < 4; ++k) beyond[k] = std::max(beyond[k], past[k]);
    }
    const char* names[] = {"left", "right", "upper", "lower"};
    return names[std::max_element(beyond, beyond + 4) - beyond];
  }

  bool isWindow() {
    if (!search_.best) return false;
    call(*search_.best);
    return true;
  }

  // A grid that is not accepted: a chart with something the matter, or something else.
  void call(const ChartWindow& window) {
    propose(window);
    const auto unlike = static_cast<int>(window.outliers().size());
    const bool chart = window.colour.score >= kLikeAChart && unlike <= kMostUnlike;
    chart ? callCovered(window) : callOther(window);
  }

  void callCovered(const ChartWindow& window) {
    std::string reason = "what looks like a chart round " + at(middleOf(window)) +
                         " can't be relied on: " + std::to_string(window.supporting) +
                         " of its 24 patches were recognised";
    std::vector<int> numbers;
    for (const int patch : window.outliers()) numbers.push_back(patch + 1);
    if (!numbers.empty())
      reason += ", and " + patchWords(numbers) + (numbers.size() == 1 ? " is" : " are") +
                " unlike the chart's";
    refuse(ChartStage::Colours, ChartRefusal::Covered,
           reason + "; uncover all of it, keep glare and hard shadows off it, or give its corners");
  }

  void callOther(const ChartWindow& window) {
    refuse(ChartStage::Colours, ChartRefusal::OtherColours,
           "a regular grid of " + std::to_string(std::max(window.supporting, search_.nodes)) +
               " patches was found round " + at(middleOf(window)) +
               ", but its colours are not the chart's (likeness " +
               formatFixed(window.colour.score, 2) + ", a chart gives above " +
               formatFixed(limits_.smallestGate, 2) + "); " + kAdvice);
  }

  // A lattice of which no window is like a chart.
  bool isLattice() {
    const auto largest = std::max_element(
        lattices_.begin(), lattices_.end(),
        [](const auto& a, const auto& b) { return a.nodes.size() < b.nodes.size(); });
    if (largest == lattices_.end()) return false;
    if (const auto window = fullest()) {
      call(refineWindow(working_, contrast_, kRefusalThresholds, *window));
      return true;
    }
    Point2 middle;
    for (const auto& node : largest->nodes) {
      const auto& centre = regions_[static_cast<std::size_t>(node.region)].centre;
      middle.x += centre.x / static_cast<double>(largest->nodes.size());
      middle.y += centre.y / static_cast<double>(largest->nodes.size());
    }
    refuse(ChartStage::Colours, ChartRefusal::OtherColours,
           "a regular grid of " + std::to_string(largest->nodes.size()) +
               " patches was found round " + at(middle) +
               ", but no 4 x 6 of them in the picture; " + kAdvice);
    return true;
  }

  void callNothing() {
    const auto count = static_cast<int>(regions_.size());
    if (count < kFewestPatches) {
      refuse(count == 0 ? ChartStage::Contours : ChartStage::Quads, ChartRefusal::NoPatches,
             "no regular grid of patches was found: " +
                 (count == 0 ? "nothing in the picture looks"
                             : "only " + places(count, "place") + " in the picture " +
                                   (count == 1 ? "looks" : "look")) +
                 " like a patch, flat with an edge all round; " + kAdvice);
      return;
    }
    refuse(ChartStage::Grid, ChartRefusal::NoGrid,
           "no regular grid of patches was found among the " + places(count, "place") +
               " in the picture that look like a patch; " + kAdvice);
  }

  const LatticeSearch& search_;
  const LatticeLimits& limits_;
  WorkingPictures pictures_;
  WorkingPicture working_;
  LensFrame lens_;
  ContrastMap contrast_;
  std::vector<FlatRegion> regions_;
  std::vector<RegionLattice> lattices_;
  ChartDetection result_;
};

}  // namespace

ChartDetection refusalOf(const Picture& picture, const PixelWindow& window,
                         const LatticeSearch& search, const LatticeLimits& limits) {
  if (search.furthest.threshold != 0) return Diagnosis(picture, window, search, limits).make();
  ChartDetection result;
  const bool small = std::min(window.width, window.height) < kSmallestChartSide;
  result.stage = ChartStage::Contours;
  result.refusal = small ? ChartRefusal::TooSmall : ChartRefusal::NoPatches;
  result.reason =
      small ? std::to_string(window.width) + " x " + std::to_string(window.height) +
                  " pixels are too few to hold a chart, whose patches need a pitch of 8 pixels; "
                  "take a larger picture"
            : std::string(
                  "no regular grid of patches was found: nothing in the picture looks like a "
                  "patch, flat with an edge all round; ") +
                  kAdvice;
  return result;
}

}  // namespace greycard
