#include "greycard/mcc_detector.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <utility>

#include "detect_options.h"
#include "greycard/errors.h"
#include "lattice/lattice_search.h"
#include "macbeth.h"
#include "result/chart_placement.h"
#include "result/refusal.h"
#include "result/stated_search.h"

namespace greycard {
namespace {

constexpr std::int64_t kMostStatedPixels = 500'000;  // where it is the second to be asked
constexpr const char* kNoPicture =
    "the picture is empty or its size and samples disagree; load a picture first";

ChartDetection failure(ChartStage stage, std::string reason) {
  ChartDetection detection;
  detection.stage = stage;
  detection.reason = std::move(reason);
  return detection;
}

LatticeLimits limitsOf(const DetectOptions& options, int mostCharts) {
  return {options.smallestGate, mostCharts, options.finestPixels};
}

std::vector<ChartDetection> detectionsOf(const LatticeSearch& search, double smallestGate) {
  std::vector<ChartDetection> detections;
  for (const auto& chart : search.charts) {
    detections.push_back(detectionOf(chart, ChartMethod::Lattice, smallestGate));
    detections.back().quads = search.regions;
  }
  return detections;
}

// The reduction at which the stated search costs little beside the lattice search that refused.
int affordableFactor(const PixelWindow& window, const DetectOptions& options) {
  const double pixels = static_cast<double>(window.width) * window.height;
  const auto most = static_cast<double>(std::min(options.finestPixels, kMostStatedPixels));
  const int shorter = std::min(window.width, window.height);
  return std::clamp(static_cast<int>(std::ceil(std::sqrt(pixels / most))), 1, shorter);
}

// What the stated search says where the lattice search refused: a chart only if it leaves no doubt
// and the colours at its places pass as the lattice search's must.
ChartDetection refusedOrStated(const Picture& picture, const PixelWindow& window,
                               const LatticeSearch& search, const DetectOptions& options) {
  auto stated = detectStated(picture, window, options.levels, affordableFactor(window, options));
  if (stated.trustworthy() && stated.placement.gate >= options.smallestGate) return stated;
  auto refused = refusalOf(picture, window, search, limitsOf(options, 1));
  if (!stated.found() || refused.candidate) return refused;
  refused.candidate = std::move(stated.placement);
  refused.doubts = std::move(stated.doubts);
  return refused;
}

}  // namespace

const char* chartStageName(ChartStage stage) {
  constexpr std::array kNames{"picture", "contours", "quads", "grid", "colours", "done"};
  const auto index = static_cast<std::size_t>(stage);
  return index < kNames.size() ? kNames[index] : "";
}

const char* chartMethodName(ChartMethod method) {
  constexpr std::array kNames{"none", "lattice", "stated", "corners"};
  const auto index = static_cast<std::size_t>(method);
  return index < kNames.size() ? kNames[index] : "";
}

const char* chartRefusalName(ChartRefusal refusal) {
  constexpr std::array kNames{"none",          "picture", "too_small", "no_patches", "no_grid",
                              "other_colours", "covered", "cut",       "mirrored"};
  const auto index = static_cast<std::size_t>(refusal);
  return index < kNames.size() ? kNames[index] : "";
}

bool MCCDetector::runDetector(const std::filesystem::path& imagePath,
                              const std::filesystem::path& SavePath) const {
  if (imagePath.empty()) return false;
  find_macbeth(imagePath, SavePath);
  return true;
}

bool MCCDetector::runDetector(const char* imagePath, const char* SavePath) const {
  const auto path = [](const char* text) { return std::filesystem::path(text ? text : ""); };
  return runDetector(path(imagePath), path(SavePath));
}

ChartDetection MCCDetector::detect(const Picture& picture, const DetectOptions& options) const {
  if (!isWellFormed(picture)) return failure(ChartStage::Picture, kNoPicture);
  const auto window = checkedWindow(picture, options);
  if (options.methods == SearchMethods::Stated)
    return detectStated(picture, window, options.levels, 1);
  const auto limits = limitsOf(options, 1);
  const auto search = searchLattices(picture, window, options.levels, limits);
  if (!search.charts.empty()) return detectionsOf(search, options.smallestGate).front();
  return options.methods == SearchMethods::Both ? refusedOrStated(picture, window, search, options)
                                                : refusalOf(picture, window, search, limits);
}

ChartDetection MCCDetector::detect(const Picture& picture,
                                   const std::optional<SampleLevels>& levels) const {
  return detect(picture, DetectOptions{.levels = levels});
}

std::vector<ChartDetection> MCCDetector::detectAll(const Picture& picture,
                                                   const DetectOptions& options) const {
  std::vector<ChartDetection> charts;
  if (!isWellFormed(picture)) return charts;
  const auto window = checkedWindow(picture, options);
  if (options.methods != SearchMethods::Stated) {
    const auto search =
        searchLattices(picture, window, options.levels, limitsOf(options, options.mostCharts));
    charts = detectionsOf(search, options.smallestGate);
    if (!charts.empty() || options.methods == SearchMethods::Lattice) return charts;
  }
  const bool alone = options.methods == SearchMethods::Stated;
  auto stated =
      detectStated(picture, window, options.levels, alone ? 1 : affordableFactor(window, options));
  const bool passes = alone ? stated.found()
                            : stated.trustworthy() && stated.placement.gate >= options.smallestGate;
  if (passes) charts.push_back(std::move(stated));
  return charts;
}

ChartDetection MCCDetector::detectFile(const std::filesystem::path& path,
                                       const DetectOptions& options) const {
  try {
    return detect(readPicture(path), options);
  } catch (const FileError& error) {
    return failure(ChartStage::Picture, error.what());
  }
}

ChartDetection MCCDetector::detectFile(const std::filesystem::path& path,
                                       const std::optional<SampleLevels>& levels) const {
  return detectFile(path, DetectOptions{.levels = levels});
}

}  // namespace greycard
