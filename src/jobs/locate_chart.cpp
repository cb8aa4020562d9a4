#include "greycard/jobs/locate_chart.h"

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

LocatedChart chartOf(const Picture& picture, const LocateOptions& options) {
  const DetectOptions detect{.methods = options.method,
                             .levels = sampleLevels(picture, options.samples)};
  if (options.corners && !options.regions.empty())
    throw std::invalid_argument(
        "the chart's place comes from a region file or from corners, not from both");
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

SampleLevels sampleLevels(const Picture& picture, const SampleMeaning& meaning) {
  SampleLevels levels = picture.bits == 16 ? SampleLevels::sixteenBit(SampleEncoding::linear)
                                           : SampleLevels::eightBit(SampleEncoding::sRGB);
  levels.encoding = meaning.encoding.value_or(levels.encoding);
  levels.blackLevel = meaning.blackLevel.value_or(levels.blackLevel);
  levels.whiteLevel = meaning.whiteLevel.value_or(levels.whiteLevel);
  if (!(levels.whiteLevel > levels.blackLevel))
    throw std::invalid_argument("the white level must be above the black level");
  return levels;
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

std::string patchList(const std::vector<int>& patches) {
  std::string list;
  for (const int patch : patches)
    list += (list.empty() ? "" : ", ") + std::to_string(patch + 1) + " (" + patchName(patch) + ")";
  return list;
}

}  // namespace greycard
