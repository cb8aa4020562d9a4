#include "greycard/jobs/locate_chart.h"

#include <stdexcept>

#include "greycard/chart_regions.h"
#include "greycard/errors.h"
#include "greycard/files.h"
#include "greycard/macbeth_chart_data.h"

namespace greycard {
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

std::vector<std::string> LocatedChart::warnings() const {
  std::vector<std::string> warnings;
  if (!detection) return warnings;
  for (const std::string& doubt : detection->doubts)
    warnings.push_back("the chart may not be where it was found: " + doubt);
  return warnings;
}

LocatedChart locateChart(const Picture& picture, const LocateOptions& options,
                         const std::filesystem::path& photo) {
  if (!options.regions.empty()) return {readRegions(options.regions), std::nullopt};

  ChartDetection detection = MCCDetector().detect(picture, sampleLevels(picture, options.samples));
  const std::string inPhoto = photo.empty() ? "" : " in " + quoted(photo);
  if (!detection.found()) throw JobError("no chart found" + inPhoto + ": " + detection.reason);
  if (!detection.trustworthy() && !options.force)
    throw DoubtfulChart("the chart found" + inPhoto +
                        " can't be right: " + detection.doubts.front());
  return {insideAtAnyTurn(detection.regions), std::move(detection)};
}

ChartSearch searchChart(const Picture& picture, const LocateOptions& options,
                        const std::filesystem::path& photo) {
  return {photo, picture.width, picture.height, locateChart(picture, options, photo)};
}

std::string patchList(const std::vector<int>& patches) {
  std::string list;
  for (const int patch : patches)
    list += (list.empty() ? "" : ", ") + std::to_string(patch + 1) + " (" + patchName(patch) + ")";
  return list;
}

}  // namespace greycard
