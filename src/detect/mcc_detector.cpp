#include "greycard/mcc_detector.h"

#include <utility>

#include "fit_doubts.h"
#include "greycard/errors.h"
#include "macbeth.h"
#include "search_image.h"

namespace greycard {
namespace {

std::string reasonOf(ChartStage stage, int quads) {
  switch (stage) {
    case ChartStage::Picture:
      return "the picture is empty or its size and samples disagree; load a picture first";
    case ChartStage::Contours:
      return "nothing in the picture is enclosed by something darker; photograph the chart "
             "sharply, "
             "evenly lit and with its whole dark frame in view";
    case ChartStage::Quads:
      return "no outline is large, convex and square enough to be a patch; photograph the chart "
             "straight from the front and larger, each patch above 1/2400 of the picture";
    case ChartStage::Grid:
      return "the " + std::to_string(quads) +
             " patch candidates span no area, so no 4 x 6 grid can be hung on them; photograph the "
             "chart larger, evenly lit and straight from the front";
    case ChartStage::Done:
      break;
  }
  return {};
}

ChartDetection failure(ChartStage stage, std::string reason) {
  ChartDetection detection;
  detection.stage = stage;
  detection.reason = std::move(reason);
  return detection;
}

void fill(ChartDetection& detection, const ColorChecker& checker) {
  auto point = detection.points.begin();
  for (const auto& centre : checker.points) *point++ = {centre[0], centre[1]};
  detection.regions = patchRegions(checker);
  detection.size = checker.size;
  detection.error = checker.error;
}

}  // namespace

const char* chartStageName(ChartStage stage) {
  switch (stage) {
    case ChartStage::Picture:
      return "picture";
    case ChartStage::Contours:
      return "contours";
    case ChartStage::Quads:
      return "quads";
    case ChartStage::Grid:
      return "grid";
    case ChartStage::Done:
      return "done";
  }
  return "";
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

ChartDetection MCCDetector::detect(const Picture& picture,
                                   const std::optional<SampleLevels>& levels) const {
  if (!isWellFormed(picture)) return failure(ChartStage::Picture, reasonOf(ChartStage::Picture, 0));
  const auto image = searchImage(picture, levels);
  const auto search = search_macbeth(image);
  auto detection = failure(search.stage, reasonOf(search.stage, search.quads));
  detection.quads = search.quads;
  detection.quadsUsed = search.quadsUsed;
  if (search.stage == ChartStage::Done) {
    fill(detection, *search.checker);
    detection.doubts = fitDoubts(*search.checker, image);
  }
  return detection;
}

ChartDetection MCCDetector::detectFile(const std::filesystem::path& path,
                                       const std::optional<SampleLevels>& levels) const {
  try {
    return detect(readPicture(path), levels);
  } catch (const FileError& error) {
    return failure(ChartStage::Picture, error.what());
  }
}

}  // namespace greycard
