#include "lattice/lattice_search.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <span>
#include <utility>

#include "lattice/contrast_map.h"
#include "search_image.h"
#include "window/patch_side.h"
#include "window/refine_window.h"

namespace greycard {
namespace {

using Kind = LatticeAttempt::Kind;

constexpr std::array kThresholds{12, 24, 6, 40};  // of contrast, in this order
constexpr std::array kSmoothedThresholds{12, 6};
constexpr int kCoarsestSide = 600;             // of the first working picture
constexpr std::size_t kMostDoubled = 160'000;  // working pixels
constexpr double kCalm = 0.5;                  // share of pixels that noise leaves below 12
constexpr double kWorthRefining = 0.35;        // gate
constexpr double kSure = 0.82;
constexpr int kSureSupporting = 14, kFewestSupporting = 9, kFewestFlat = 18;

// A working picture that was searched.
struct Level {
  WorkingPicture picture;
  bool noisy = false;
};

// Whether a point of the picture lies in the chart's patch field.
bool covers(const ChartWindow& chart, const Point2& p) {
  const std::array<Point2, 4> field{chart.map(0.0, 0.0), chart.map(6.0, 0.0), chart.map(6.0, 4.0),
                                    chart.map(0.0, 4.0)};
  for (std::size_t k = 0; k < 4; ++k) {
    const auto &from = field[k], &to = field[(k + 1) % 4];
    if ((to.x - from.x) * (p.y - from.y) - (to.y - from.y) * (p.x - from.x) < 0.0) return false;
  }
  return true;
}

// Whether a patch of one lies in the field of the other.
bool overlap(const ChartWindow& a, const ChartWindow& b) {
  for (int patch = 0; patch < kPatchCount; ++patch) {
    const double u = patch % 6 + 0.5, v = patch / 6 + 0.5;
    if (covers(b, a.map(u, v)) || covers(a, b.map(u, v))) return true;
  }
  return false;
}

class Search {
 public:
  Search(const Picture& picture, const PixelWindow& window,
         const std::optional<SampleLevels>& levels, const LatticeLimits& limits)
      : pictures_(picture, window, levels), limits_(limits), lens_(lensOf(picture)) {
    attempt_.levels = levels;
  }

  LatticeSearch run() {
    const int longer = std::max(pictures_.window().width, pictures_.window().height);
    const int shorter = std::min(pictures_.window().width, pictures_.window().height);
    if (shorter >= kSmallestChartSide) {
      const int coarsest = std::min((longer + kCoarsestSide - 1) / kCoarsestSide, shorter);
      searchAll(coarsest, std::min(finestFactor(), coarsest));
    }
    accept();
    return std::move(result_);
  }

 private:
  // Most charts are found in the coarsest working picture; finer ones are for small patches, a
  // coarser one for blur, smoothed ones for noise.
  void searchAll(int coarsest, int finest) {
    std::vector<Level> levels;
    const auto searchLevel = [&](WorkingPicture picture) {
      search(picture, Kind::reduced);
      levels.push_back({std::move(picture), calmShare(contrast_, kThresholds[0]) < kCalm});
    };
    searchLevel(pictures_.reduced(coarsest));
    if (done()) return;
    for (auto finer = between(coarsest, finest); !finer.empty() && !done(); finer.pop_back())
      searchLevel(std::move(finer.back()));
    if (!done()) search(halved(levels.front().picture), Kind::halved);
    const auto& last = levels.back().picture;
    if (!done() && last.planeSize() <= kMostDoubled)
      searchSmoothed(doubled(last), Kind::doubledSmoothed);
    for (auto& level : levels)
      if (!done() && level.noisy) searchSmoothed(std::move(level.picture), Kind::smoothed);
  }

  // The finest working picture and those between it and the coarsest, each of half the size.
  std::vector<WorkingPicture> between(int coarsest, int finest) const {
    std::vector<WorkingPicture> finer;
    if (finest >= coarsest) return finer;
    finer.push_back(pictures_.reduced(finest));
    while (2.0 * finer.back().factor < coarsest) finer.push_back(halved(finer.back()));
    return finer;
  }

  // The smallest that keeps the working picture within the limit.
  int finestFactor() const {
    const double pixels = static_cast<double>(pictures_.window().width) * pictures_.window().height;
    const auto most = static_cast<double>(std::max<std::int64_t>(1, limits_.finestPixels));
    return std::max(1, static_cast<int>(std::ceil(std::sqrt(pixels / most))));
  }

  bool done() const { return static_cast<int>(sure_.size()) >= limits_.mostCharts; }

  void searchSmoothed(WorkingPicture picture, Kind kind) {
    smooth(picture);
    search(picture, kind);
  }

  void search(const WorkingPicture& picture, Kind kind) {
    contrastMap(picture, contrast_);
    const std::span<const int> plain(kThresholds), smooth(kSmoothedThresholds);
    const bool isSmoothed = kind == Kind::smoothed || kind == Kind::doubledSmoothed;
    attempt_.kind = kind;
    attempt_.factor = static_cast<int>(kind == Kind::halved            ? 0.5 * picture.factor
                                       : kind == Kind::doubledSmoothed ? 2.0 * picture.factor
                                                                       : picture.factor);
    for (const int threshold : isSmoothed ? smooth : plain) {
      if (done()) return;
      attempt_.threshold = threshold;
      searchAt(picture);
    }
  }

  void searchAt(const WorkingPicture& picture) {
    auto regions = flatRegions(contrast_, attempt_.threshold, picture);
    std::erase_if(regions, [this](const FlatRegion& region) {
      return std::any_of(sure_.begin(), sure_.end(),
                         [&](const ChartWindow& chart) { return covers(chart, region.centre); });
    });
    const auto lattices = growLattices(regions);
    int nodes = 0;
    for (const auto& lattice : lattices)
      if (!lattice.endless) nodes = std::max(nodes, static_cast<int>(lattice.nodes.size()));
    const bool furthest =
        candidates_.empty() &&
        (nodes > result_.nodes ||
         (nodes == result_.nodes && static_cast<int>(regions.size()) > result_.regions));
    if (furthest) note(static_cast<int>(regions.size()), nodes);
    for (const auto& lattice : lattices) {
      if (lattice.endless || done()) continue;
      for (const auto& window :
           chartWindows(lattice, regions, picture, lens_, WindowKind::whole, kWorthRefining)) {
        if (wasRefined(window)) continue;
        auto refined = refineWindow(picture, contrast_, kThresholds, window);
        if (refined.gate >= limits_.smallestGate)
          refined.halfSide = halfPatchSide(picture, refined.map);
        take(refined, static_cast<int>(regions.size()), static_cast<int>(lattice.nodes.size()));
        if (limits_.mostCharts == 1) break;
      }
    }
  }

  // Whether a window at this place that looked as good has been refined, to no avail.
  bool wasRefined(const ChartWindow& window) {
    const auto same = [&](const ChartWindow& other) {
      return other.gate >= window.gate && overlap(window, other);
    };
    if (std::any_of(refined_.begin(), refined_.end(), same)) return true;
    refined_.push_back(window);
    return false;
  }

  void note(int regions, int nodes) {
    result_.furthest = attempt_;
    result_.regions = regions;
    result_.nodes = nodes;
  }

  void take(const ChartWindow& window, int regions, int nodes) {
    const auto overlaps = [&](const ChartWindow& other) { return overlap(window, other); };
    if (std::any_of(sure_.begin(), sure_.end(), overlaps)) return;
    const bool best = sure_.empty() && (candidates_.empty() || window.gate > bestGate_);
    if (best) {
      note(regions, nodes);
      bestGate_ = window.gate;
    }
    if (window.gate >= kSure && window.supporting >= kSureSupporting && isAcceptable(window))
      sure_.push_back(window);
    candidates_.push_back(window);
  }

  bool isAcceptable(const ChartWindow& window) const {
    return window.gate >= limits_.smallestGate && window.inside == kPatchCount &&
           window.supporting >= kFewestSupporting && window.flat >= kFewestFlat;
  }

  void accept() {
    std::stable_sort(candidates_.begin(), candidates_.end(),
                     [](const auto& a, const auto& b) { return a.gate > b.gate; });
    for (const auto& candidate : candidates_) {
      auto& charts = result_.charts;
      const bool taken = std::any_of(charts.begin(), charts.end(), [&](const ChartWindow& chart) {
        return overlap(candidate, chart);
      });
      if (taken) continue;
      if (!isAcceptable(candidate)) {
        if (!result_.best) result_.best = candidate;
      } else if (static_cast<int>(charts.size()) < limits_.mostCharts) {
        charts.push_back(candidate);
      }
    }
  }

  WorkingPictures pictures_;
  ContrastMap contrast_;
  LatticeLimits limits_;
  LensFrame lens_;
  LatticeAttempt attempt_;
  std::vector<ChartWindow> refined_;            // as they were before
  std::vector<ChartWindow> candidates_, sure_;  // as they are after
  double bestGate_ = 0.0;
  LatticeSearch result_;
};

double bestGateOf(const LatticeSearch& search) {
  if (!search.charts.empty()) return 1.0 + search.charts.front().gate;
  return search.best ? search.best->gate : 0.0;
}

}  // namespace

LatticeSearch searchLattices(const Picture& picture, const PixelWindow& window,
                             const std::optional<SampleLevels>& levels,
                             const LatticeLimits& limits) {
  auto result = Search(picture, window, levels, limits).run();
  const bool sure = !result.charts.empty() && result.charts.front().gate >= kSure;
  if (levels || picture.bits != 16 || sure) return result;
  auto linear = searchLevels(picture, levels);
  linear.encoding = SampleEncoding::linear;
  auto again = Search(picture, window, linear, limits).run();
  return bestGateOf(again) > bestGateOf(result) ? again : result;
}

WorkingPicture workingPicture(const WorkingPictures& pictures, const LatticeAttempt& attempt) {
  auto picture = pictures.reduced(attempt.factor);
  if (attempt.kind == Kind::halved) picture = halved(picture);
  if (attempt.kind == Kind::doubledSmoothed) picture = doubled(picture);
  if (attempt.kind == Kind::smoothed || attempt.kind == Kind::doubledSmoothed) smooth(picture);
  return picture;
}

}  // namespace greycard
