#include "chart_source.h"

#include "command.h"
#include "greycard/chart_regions.h"
#include "greycard/files.h"
#include "greycard/macbeth_chart_data.h"
#include "option_checks.h"

namespace greycard::cli {
namespace {

// The middle of each region: three quarters of a patch wide, a region reaches over the patch's edge
// when the chart lies near 45 degrees.
PatchRegions insideAtAnyTurn(PatchRegions regions) {
  constexpr double kShare = 2.0 / 3.0;
  for (PatchRegion& region : regions)
    region = {region.left + 0.5 * (1.0 - kShare) * region.width,
              region.top + 0.5 * (1.0 - kShare) * region.height, kShare * region.width,
              kShare * region.height};
  return regions;
}

}  // namespace

void ChartSource::addTo(CLI::App& app, bool regionsFromFile) {
  app.add_option("photo", photo, "Photograph of a 24-patch chart (PNG, TIFF, JPEG, ...)")
      ->required()
      ->type_name("PHOTO");
  if (regionsFromFile)
    app.add_option("--regions", regions,
                   "Take the patches from this region file instead of looking for the chart")
        ->type_name("FILE");
  addSampleOptions(app);
}

void ChartSource::addSampleOptions(CLI::App& app) {
  app.add_option("--encoding", encoding,
                 "What samples mean: srgb (default for 8 bits) or linear (default for 16 bits)")
      ->check(CLI::IsMember({"srgb", "linear"}))
      ->type_name("NAME");
  app.add_option("--black", blackLevel, "Sample value without light (default 0)")
      ->check(anyFiniteNumber())
      ->type_name("LEVEL");
  app.add_option("--white", whiteLevel,
                 "Sample value of full scale (default 255 or 65535; 4095 for 12 bits)")
      ->check(anyFiniteNumber())
      ->type_name("LEVEL");
  app.add_flag("--force", force, "Go on with a fit of the chart that is in doubt");
}

void ChartSource::nameFiles(JobFiles& files) const {
  files.input("the photograph", photo);
  files.input("--regions", regions);
}

SampleLevels ChartSource::levels(const Picture& picture) const {
  SampleLevels levels = picture.bits == 16 ? SampleLevels::sixteenBit(SampleEncoding::linear)
                                           : SampleLevels::eightBit(SampleEncoding::sRGB);
  if (encoding)
    levels.encoding = *encoding == "srgb" ? SampleEncoding::sRGB : SampleEncoding::linear;
  levels.blackLevel = blackLevel.value_or(levels.blackLevel);
  levels.whiteLevel = whiteLevel.value_or(levels.whiteLevel);
  if (!(levels.whiteLevel > levels.blackLevel)) throw UsageError("--white must be above --black");
  return levels;
}

LocatedChart locateChart(const ChartSource& source, const Picture& picture) {
  if (!source.regions.empty()) return {readRegions(source.regions), std::nullopt};

  ChartDetection detection = MCCDetector().detect(picture, source.levels(picture));
  const std::string inPhoto = " in " + quoted(source.photo);
  if (!detection.found()) throw JobError("no chart found" + inPhoto + ": " + detection.reason);
  if (!detection.trustworthy() && !source.force)
    throw JobError("the chart found" + inPhoto + " can't be right: " + detection.doubts.front() +
                   " (--force goes on all the same)");
  return {insideAtAnyTurn(detection.regions), std::move(detection)};
}

std::vector<std::string> chartWarnings(const LocatedChart& chart) {
  std::vector<std::string> warnings;
  if (!chart.detection) return warnings;
  for (const std::string& doubt : chart.detection->doubts)
    warnings.push_back("the chart may not be where it was found: " + doubt);
  return warnings;
}

std::string patchList(const std::vector<int>& patches) {
  std::string list;
  for (const int patch : patches)
    list += (list.empty() ? "" : ", ") + std::to_string(patch + 1) + " (" + patchName(patch) + ")";
  return list;
}

Json chartJson(const LocatedChart& chart) {
  Json json;
  if (chart.detection) {
    const ChartDetection& detection = *chart.detection;
    json["trustworthy"] = detection.trustworthy();
    json["doubts"] = detection.doubts;
    json["quads"] = detection.quads;
    json["quads_used"] = detection.quadsUsed;
    json["size_px"] = detection.size;
    json["orientation_error"] = detection.error;
    json["centres"] = detection.points;
  }
  json["regions"] = chart.detection ? chart.detection->regions : chart.regions;
  json["sampled_regions"] = chart.regions;
  return json;
}

}  // namespace greycard::cli
