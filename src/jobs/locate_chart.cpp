#include "greycard/jobs/locate_chart.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <stdexcept>
#include <utility>

#include "greycard/chart_regions.h"
#include "greycard/errors.h"
#include "greycard/files.h"
#include "greycard/macbeth_chart_data.h"
#include "greycard/quad_sampler.h"

namespace greycard {
namespace {

LocatedChart fromDetection(ChartDetection detection) {
  LocatedChart chart;
  chart.patches = detection.placement.patches;
  chart.regions = detection.regions;
  chart.detection = std::move(detection);
  return chart;
}

LocatedChart fromFile(const Picture& picture, const std::filesystem::path& path,
                      const DetectOptions& options) {
  const PatchRegionFile file = readRegionFile(path);
  LocatedChart chart;
  chart.patches = file.quads;
  chart.regions = file.regions;
  chart.upright = file.upright;
  chart.check = checkPatches(picture, file.quads, options);
  return chart;
}

bool isGiven(const LocateOptions& options) {
  return options.corners || !options.regions.empty();
}

void checkPlace(const LocateOptions& options) {
  if (options.corners && !options.regions.empty())
    throw std::invalid_argument(
        "the chart's place comes from a region file or from corners, not from both");
  if (options.within && isGiven(options))
    throw std::invalid_argument(
        "a part of the picture to look in is of no use where the chart's place is given");
}

void requireOrder(double black, double white) {
  if (!(white > black))
    throw std::invalid_argument("the white level must be above the black level");
}

LocatedChart chartOf(const Picture& picture, const LocateOptions& options) {
  checkPlace(options);
  const DetectOptions detect = detectOptions(picture, options);
  if (!options.regions.empty()) return fromFile(picture, options.regions, detect);
  if (options.corners)
    return fromDetection(placeChart(picture, {*options.corners, options.cornersOf}, detect));
  return fromDetection(MCCDetector().detect(picture, detect));
}

std::string joined(const std::vector<std::string>& sentences) {
  std::string text;
  for (const std::string& sentence : sentences) text += (text.empty() ? "" : "; ") + sentence;
  return text;
}

// "the chart found in photo.jpg": what a doubt is about.
std::string subject(const LocatedChart& chart, const std::string& inPhoto) {
  if (chart.check) return "the regions given for the chart" + inPhoto;
  if (chart.detection->method == ChartMethod::Corners)
    return "the corners given for the chart" + inPhoto;
  return "the chart found" + inPhoto;
}

}  // namespace

SampleEncoding defaultEncoding(int bits) {
  return bits == 16 ? SampleEncoding::linear : SampleEncoding::sRGB;
}

SampleLevels sampleLevels(const Picture& picture, const SampleMeaning& meaning) {
  const SampleEncoding encoding = meaning.encoding.value_or(defaultEncoding(picture.bits));
  SampleLevels levels =
      picture.bits == 16 ? SampleLevels::sixteenBit(encoding) : SampleLevels::eightBit(encoding);
  levels.blackLevel = meaning.blackLevel.value_or(levels.blackLevel);
  levels.whiteLevel = meaning.whiteLevel.value_or(levels.whiteLevel);
  requireOrder(levels.blackLevel, levels.whiteLevel);
  return levels;
}

void checkOptions(const LocateOptions& options) {
  checkPlace(options);
  checkSampledShare(options.sampledShare);
  if (options.samples.blackLevel && options.samples.whiteLevel)
    requireOrder(*options.samples.blackLevel, *options.samples.whiteLevel);
  if (options.corners) checkCorners(*options.corners);
  if (!options.regions.empty()) readRegionFile(options.regions);
}

DetectOptions detectOptions(const Picture& picture, const LocateOptions& options) {
  return {.methods = options.method,
          .regionOfInterest = options.within,
          .levels = sampleLevels(picture, options.samples)};
}

PatchQuads LocatedChart::sampled() const {
  return upright ? patches : sampledMiddles(patches, sampledShare);
}

const std::vector<std::string>& LocatedChart::doubts() const {
  static const std::vector<std::string> kNone;
  if (check) return check->doubts;
  return detection ? detection->doubts : kNone;
}

std::vector<std::string> LocatedChart::warnings() const {
  std::vector<std::string> warnings;
  for (const std::string& doubt : doubts())
    warnings.push_back((check ? "the chart may not be where the regions are: "
                              : "the chart may not be where it was found: ") +
                       doubt);
  return warnings;
}

void ChartSearch::require() const {
  if (refusal.empty()) return;
  if (!chart.found())
    throw NoChart(refusal, chart.detection ? chart.detection->refusal : ChartRefusal::Picture);
  throw DoubtfulChart(refusal);
}

ChartSearch searchChart(const Picture& picture, const LocateOptions& options,
                        const std::filesystem::path& photo) {
  ChartSearch search{photo, picture.width, picture.height, chartOf(picture, options), {}};
  search.chart.sampledShare = options.sampledShare;
  const LocatedChart& chart = search.chart;
  const std::string inPhoto = photo.empty() ? "" : " in " + quoted(photo);
  if (!chart.found())
    search.refusal = "no chart found" + inPhoto + ": " + chart.detection->reason;
  else if (!chart.doubts().empty() && !options.force)
    search.refusal = subject(chart, inPhoto) + " can't be right: " + joined(chart.doubts());
  return search;
}

ChartSearch searchChart(const Photograph& photograph, LocateOptions options) {
  options.samples = photograph.samples;
  ChartSearch search = searchChart(photograph.picture, options, photograph.file);
  search.capture = photograph.capture;
  return search;
}

LocatedChart locateChart(const Picture& picture, const LocateOptions& options,
                         const std::filesystem::path& photo) {
  ChartSearch search = searchChart(picture, options, photo);
  search.require();
  return std::move(search.chart);
}

FoundCharts searchCharts(const Photograph& photograph, LocateOptions options) {
  if (isGiven(options))
    throw std::invalid_argument("all charts are looked for; corners and regions are of no use");
  options.samples = photograph.samples;
  const Picture& picture = photograph.picture;
  return {photograph.file, picture.width, picture.height,
          MCCDetector().detectAll(picture, detectOptions(picture, options)), photograph.capture};
}

PatchRegion surroundings(const ChartDetection& chart) {
  constexpr double kLargest = std::numeric_limits<double>::max();
  Point2 least{kLargest, kLargest}, most{-kLargest, -kLargest};
  for (const PatchQuad& patch : chart.placement.patches)
    for (const Point2& corner : patch) {
      least = {std::min(least.x, corner.x), std::min(least.y, corner.y)};
      most = {std::max(most.x, corner.x), std::max(most.y, corner.y)};
    }
  const double margin = 0.5 * chart.placement.pitch;
  const double left = std::floor(std::max(0.0, least.x - margin));
  const double top = std::floor(std::max(0.0, least.y - margin));
  return {left, top, std::ceil(most.x + margin) - left, std::ceil(most.y + margin) - top};
}

std::string patchList(const std::vector<int>& patches) {
  std::string list;
  for (const int patch : patches)
    list += (list.empty() ? "" : ", ") + std::to_string(patch + 1) + " (" + patchName(patch) + ")";
  return list;
}

}  // namespace greycard
