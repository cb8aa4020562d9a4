#include "window/chart_window.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <utility>

#include "window/lattice_places.h"
#include "window/patch_edges.h"

namespace greycard {
namespace {

constexpr int kColumns = 6, kRows = 4;
constexpr int kFewestWindowNodes = 7, kFewestInside = 10;
constexpr double kNodeShare = 0.6;
constexpr double kUnevenPlaceShare = 0.07,
                 kUnevenPlaceLevels = 5.0;  // of the brightest place, and at least

// What the gate takes off the score: for each patch that lacks to enough of a kind, and so on.
constexpr int kEnoughSupporting = 14, kEnoughFlat = 22, kPardonedOutliers = 1, kPardonedEdges = 2;
constexpr double kPerSupporting = 0.015, kPerFlat = 0.02, kPerOutlier = 0.05;
constexpr double kPerMissingEdge = 0.04, kPerBrokenLine = 0.2;
constexpr double kNotDarkening = 0.05;
constexpr double kNotDarkeningGrey = 0.12;  // where lightness is all there is

// Where a window's patches lie: row r, column c at origin + c along + r down.
struct Placing {
  int originI, originJ, alongI, alongJ, downI, downJ;

  std::pair<int, int> place(std::size_t patch) const {
    const int column = static_cast<int>(patch) % kColumns, row = static_cast<int>(patch) / kColumns;
    return {originI + column * alongI + row * downI, originJ + column * alongJ + row * downJ};
  }
  // The same places read from the other end.
  Placing turned() const {
    const auto [i, j] = place(kPatchCount - 1);
    return {i, j, -alongI, -alongJ, -downI, -downJ};
  }
};

// The two ways to lay columns and rows along the lattice, without their half turns.
constexpr std::array<Placing, 2> kUpright{{{0, 0, 1, 0, 0, 1}, {0, 0, 0, 1, -1, 0}}};
constexpr std::array<Placing, 2> kMirrored{{{0, 0, 0, 1, 1, 0}, {0, 0, 1, 0, 0, -1}}};

// What is seen along one row or column.
struct WindowLine {
  int places = 0, seen = 0, unlike = 0;
};

// Rows and columns where no patch is seen or half of the places are unlike the chart's: the window
// reaches beyond the chart, or it is covered.
int brokenLines(const ChartWindow& window) {
  std::array<WindowLine, kRows + kColumns> lines;
  for (std::size_t patch = 0; patch < kPatchCount; ++patch) {
    const bool unlike = window.colour.deviations[patch] > 1.0;
    for (const std::size_t line : {patch / kColumns, kRows + patch % kColumns}) {
      ++lines[line].places;
      lines[line].seen += window.supported[patch] && !unlike;
      lines[line].unlike += unlike;
    }
  }
  return static_cast<int>(std::count_if(lines.begin(), lines.end(), [](const WindowLine& line) {
    return line.seen == 0 || 2 * line.unlike >= line.places;
  }));
}

double gateOf(const ChartWindow& window) {
  const auto lacking = [](int count, int enough) { return std::max(0, enough - count); };
  const int outliers = static_cast<int>(window.outliers().size());
  const double notDarkening = window.colour.colourless ? kNotDarkeningGrey : kNotDarkening;
  return window.colour.score - kPerSupporting * lacking(window.supporting, kEnoughSupporting) -
         kPerFlat * lacking(window.flat, kEnoughFlat) -
         kPerOutlier * std::max(0, outliers - kPardonedOutliers) -
         kPerBrokenLine * (brokenLines(window) + lacking(window.inside, kPatchCount)) -
         kPerMissingEdge * std::max(0, window.missingEdges - kPardonedEdges) -
         (window.colour.neutralsDarken ? 0.0 : notDarkening);
}

// Of a chart with a part outside the picture: how well the rest fits.
double cutGateOf(const ChartWindow& window) {
  return window.colour.score - kPerOutlier * static_cast<double>(window.outliers().size());
}

// Everything that follows from samples and support.
void judge(ChartWindow& window, const WorkingPicture& picture, double hopeless) {
  window.grey = picture.planes == 1;
  window.gain = picture.gain;
  WindowColours colours;
  colours.grey = window.grey;
  colours.recognised = window.supported;
  double brightest = 0.0;
  for (std::size_t patch = 0; patch < kPatchCount; ++patch) {
    const auto& mean = window.samples[patch].mean;
    colours.values[patch] = mean;
    colours.visible[patch] = window.samples[patch].inside;
    brightest = std::max({brightest, mean[0], mean[1], mean[2]});
  }
  const double allowed = std::max(kUnevenPlaceLevels, kUnevenPlaceShare * brightest);
  for (std::size_t patch = 0; patch < kPatchCount; ++patch) {
    window.inside += window.samples[patch].inside;
    window.supporting += window.supported[patch];
    window.flat += window.samples[patch].inside && window.samples[patch].scatter <= allowed;
  }
  window.colour = scoreChart(colours, hopeless);
  window.gate = gateOf(window);
}

class WindowSearch {
 public:
  WindowSearch(LatticePlaces& places, const WorkingPicture& picture, WindowKind kind,
               double smallestGate)
      : places_(places),
        picture_(picture),
        cut_(kind == WindowKind::cut),
        smallestGate_(smallestGate),
        fewestNodes_(std::max<double>(
            kFewestWindowNodes, kNodeShare * std::min(places.nodeCount(), int{kPatchCount}))) {}

  // Every placing with these directions, and its half turn.
  void tryAll(Placing placing) {
    for (placing.originJ = 0; placing.originJ < places_.rows(); ++placing.originJ)
      for (placing.originI = 0; placing.originI < places_.columns(); ++placing.originI)
        if (isPossible(placing)) {
          take(placing);
          take(placing.turned());
        }
  }

  std::vector<ChartWindow> sorted() {
    std::stable_sort(windows_.begin(), windows_.end(),
                     [](const auto& a, const auto& b) { return a.gate > b.gate; });
    return std::move(windows_);
  }

 private:
  bool isPossible(const Placing& placing) {
    const auto [lastI, lastJ] = placing.place(kPatchCount - 1);
    if (std::min(lastI, lastJ) < 0 || lastI >= places_.columns() || lastJ >= places_.rows())
      return false;  // the first place is in the table anyway
    int nodes = 0;
    for (std::size_t patch = 0; patch < kPatchCount; ++patch) {
      const auto [i, j] = placing.place(patch);
      nodes += places_.isNode(i, j);
    }
    if (nodes < fewestNodes_) return false;
    int inside = 0;
    for (std::size_t patch = 0; patch < kPatchCount; ++patch) {
      const auto [i, j] = placing.place(patch);
      inside += places_.sample(i, j).inside;
      if (!cut_ && inside <= static_cast<int>(patch)) return false;
    }
    return cut_ ? inside >= kFewestInside && inside < kPatchCount : true;
  }

  void take(const Placing& placing) {
    ChartWindow window;
    for (std::size_t patch = 0; patch < kPatchCount; ++patch) {
      const auto [i, j] = placing.place(patch);
      window.samples[patch] = places_.sample(i, j);
      window.supported[patch] = places_.isNode(i, j);
    }
    judge(window, picture_, smallestGate_);
    if (cut_) window.gate = cutGateOf(window);
    if (window.gate < smallestGate_) return;
    // Patch (0, 0) has its centre at (0.5, 0.5) of the chart's plane.
    const Point2 along{static_cast<double>(placing.alongI), static_cast<double>(placing.alongJ)};
    const Point2 down{static_cast<double>(placing.downI), static_cast<double>(placing.downJ)};
    const Point2 origin{places_.first().x + placing.originI - 0.5 * (along.x + down.x),
                        places_.first().y + placing.originJ - 0.5 * (along.y + down.y)};
    window.map = places_.map().relabelled(origin, along, down);
    windows_.push_back(std::move(window));
  }

  LatticePlaces& places_;
  const WorkingPicture& picture_;
  bool cut_;
  double smallestGate_, fewestNodes_;
  std::vector<ChartWindow> windows_;
};

}  // namespace

std::vector<int> ChartWindow::outliers() const {
  std::vector<int> patches;
  for (int patch = 0; patch < kPatchCount; ++patch)
    if (colour.deviations[static_cast<std::size_t>(patch)] > 1.0) patches.push_back(patch);
  return patches;
}

ChartWindow judgeWindow(const WorkingPicture& picture, const PlaneMap& map,
                        const std::array<bool, kPatchCount>& supported) {
  ChartWindow window;
  window.map = map;
  window.supported = supported;
  for (std::size_t patch = 0; patch < kPatchCount; ++patch)
    window.samples[patch] = samplePlace(picture, map, static_cast<double>(patch % kColumns) + 0.5,
                                        static_cast<double>(patch / kColumns) + 0.5);
  window.missingEdges = missingEdges(picture, map);
  judge(window, picture, -HUGE_VAL);
  return window;
}

ChartWindow judgeSamples(const WorkingPicture& picture,
                         const std::array<PlaceSample, kPatchCount>& samples) {
  ChartWindow window;
  window.samples = samples;
  window.supported.fill(true);
  judge(window, picture, -HUGE_VAL);
  return window;
}

std::vector<ChartWindow> chartWindows(const RegionLattice& lattice,
                                      const std::vector<FlatRegion>& regions,
                                      const WorkingPicture& picture, const LensFrame& lens,
                                      WindowKind kind, double smallestGate) {
  LatticePlaces places(lattice, regions, picture, lens);
  if (!places.usable()) return {};
  WindowSearch search(places, picture, kind, smallestGate);
  // The lattice turns clockwise from i to j, as the chart does from columns to rows.
  for (const auto& placing : kind == WindowKind::mirrored ? kMirrored : kUpright)
    search.tryAll(placing);
  return search.sorted();
}

}  // namespace greycard
