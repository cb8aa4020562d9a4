#include "photo_sections.h"

#include <algorithm>
#include <opencv2/imgproc.hpp>

#include "greycard/picture_correction.h"
#include "greycard/present/chart.h"
#include "html_page.h"
#include "picture_canvas.h"
#include "swatch_chart.h"

namespace greycard::present {
namespace {

// Pixels of the longer side in the page.
constexpr int kPhotographSide = 840, kSurroundingsSide = 900, kChartSide = 1000;

struct Window {
  int left, top, width, height;
};

// The patches with a share of their extent around them, as far as the picture goes.
Window aroundPatches(const PatchQuads& patches, const Picture& picture, double margin) {
  double left = picture.width, top = picture.height, right = 0.0, bottom = 0.0;
  for (const PatchQuad& patch : patches)
    for (const Point2& corner : patch) {
      left = std::min(left, corner.x);
      top = std::min(top, corner.y);
      right = std::max(right, corner.x);
      bottom = std::max(bottom, corner.y);
    }
  const double around = margin * std::max(right - left, bottom - top);
  const auto inside = [](double value, int end) {
    return static_cast<int>(std::clamp(value, 0.0, static_cast<double>(end)));
  };
  const int x0 = inside(left - around, picture.width - 1),
            y0 = inside(top - around, picture.height - 1);
  return {x0, y0, inside(right + around, picture.width - 1) - x0 + 1,
          inside(bottom + around, picture.height - 1) - y0 + 1};
}

// The part of the picture in the window with at most that many pixels on its longer side, and the
// patches in it.
struct Part {
  Picture picture;
  PatchQuads patches;
};

Part partOf(const Picture& picture, const Window& window, PatchQuads patches, int longestSide) {
  Picture part(window.width, window.height, picture.channels, picture.bits);
  for (int y = 0; y < window.height; ++y)
    std::copy_n(picture.pixel(window.left, window.top + y), window.width * picture.channels,
                part.pixel(0, y));
  part = shrinkPicture(part, longestSide);
  const double scale = static_cast<double>(part.width) / window.width;
  for (PatchQuad& patch : patches)
    for (Point2& corner : patch)
      corner = {(corner.x - window.left) * scale, (corner.y - window.top) * scale};
  return {std::move(part), patches};
}

// The chart as seen from the front, its outer patches' corners where the swatches have theirs.
Picture fromTheFront(const Picture& picture, const PatchQuads& patches) {
  const auto point = [](const Point2& at) {
    return cv::Point2f(static_cast<float>(at.x), static_cast<float>(at.y));
  };
  const cv::Point2f seen[] = {point(patches[0][0]), point(patches[kChartColumns - 1][1]),
                              point(patches[kPatchCount - 1][2]),
                              point(patches[kPatchCount - kChartColumns][3])};
  const SwatchLayout layout;
  const float left = static_cast<float>(layout.gap), top = left;
  const float right = static_cast<float>(layout.width() - layout.gap),
              bottom = static_cast<float>(layout.height() - layout.gap);
  const cv::Point2f wanted[] = {{left, top}, {right, top}, {right, bottom}, {left, bottom}};
  cv::Mat front;
  cv::warpPerspective(canvasOf(picture), front, cv::getPerspectiveTransform(seen, wanted),
                      cv::Size(layout.width(), layout.height()), cv::INTER_LINEAR,
                      cv::BORDER_REPLICATE);
  return pictureOf(front);
}

}  // namespace

SampleMeaning meaningOf(const std::optional<SampleLevels>& levels) {
  if (!levels) return {};
  return {levels->encoding, levels->blackLevel, levels->whiteLevel};
}

Develop asPhotographed(const SampleMeaning& samples) {
  return [samples](const Picture& picture) {
    constexpr Matrix3 kUnchanged{{{1, 0, 0}, {0, 1, 0}, {0, 0, 1}}};
    return correctPicture(picture, sampleLevels(picture, samples), {1.0, 1.0, 1.0}, kUnchanged);
  };
}

std::string beforeAndAfter(const Picture& photograph, const Develop& before, const Develop& after) {
  const Picture small = shrinkPicture(photograph, kPhotographSide);
  return htmlSideBySide(
      {htmlFigure(htmlPhotograph(before(small), "The photograph before correction"), "Before"),
       htmlFigure(htmlPhotograph(after(small), "The photograph after correction"), "After")},
      true);
}

std::string photographFigure(const Picture& photograph, const Develop& develop) {
  return htmlFigure(
      htmlPhotograph(develop(shrinkPicture(photograph, kPhotographSide)), "The photograph"),
      "As photographed");
}

std::string chartFigures(const ChartStory& story, const Picture& photograph,
                         const Develop& develop) {
  const PatchQuads& patches = story.chart.patches;
  const Part chart =
      partOf(photograph, aroundPatches(patches, photograph, 0.05), patches, kChartSide);
  return htmlSideBySide(
      {htmlFigure(htmlPhotograph(fromTheFront(develop(chart.picture), chart.patches),
                                 "The chart from the front"),
                  "The chart as photographed, brought to the front"),
       swatchFigure(story)},
      true);
}

std::string sampledFigure(const ChartStory& story, const Picture& photograph,
                          const Develop& develop) {
  const Part part = partOf(photograph, aroundPatches(story.chart.patches, photograph, 0.3),
                           story.chart.sampled(), kSurroundingsSide);
  return htmlFigure(
      htmlPhotograph(annotatePatches(develop(part.picture), part.patches), "What was sampled"),
      "What was sampled of each patch");
}

}  // namespace greycard::present
