// What the lattice search makes of rendered charts and of pictures without one, as a text beside
// this file. Where there is a chart, the renderer's truth is the judge.

#include <gtest/gtest.h>

#include "chart_renderer.h"
#include "corpus/corpus_case.h"
#include "golden.h"
#include "greycard/chart_location.h"
#include "greycard/chart_search_pictures.h"
#include "greycard/diagnostics.h"
#include "greycard/mcc_detector.h"

namespace greycard {
namespace {

const DetectOptions kLatticeAlone{.methods = SearchMethods::Lattice};

std::string numbers(const std::string& name, const std::vector<double>& values) {
  return goldenLine("  " + name, values, 9);
}

std::string placed(const ChartPlacement& placement) {
  std::string text = numbers("gate, pitch, direction",
                             {placement.gate, placement.pitch, placement.orientationDeg}) +
                     "  seen " + std::to_string(placement.supportingPatches) + ", outliers";
  for (const int patch : placement.outliers) text += " " + std::to_string(patch);
  text += "\n";
  for (const std::size_t i : {0U, 5U, 14U, 23U}) {
    text += numbers("centre", {placement.centres[i].x, placement.centres[i].y});
    for (const Point2& corner : placement.patches[i])
      text += numbers("corner", {corner.x, corner.y});
  }
  return text;
}

std::string told(const ChartDetection& detection) {
  std::string text = std::string("  ") + chartStageName(detection.stage) + ", " +
                     chartMethodName(detection.method) + ", " +
                     chartRefusalName(detection.refusal) + "\n  " + detection.reason + "\n";
  for (const std::string& doubt : detection.doubts) text += "  " + doubt + "\n";
  if (detection.found()) {
    text += placed(detection.placement);
    const PatchRegion& last = detection.regions[23];
    text += numbers("region", {last.left, last.top, last.width, last.height}) +
            numbers("error", {detection.error, detection.size});
  } else if (detection.candidate) {
    text += "candidate\n" + placed(*detection.candidate);
  }
  if (!detection.found() && detection.method == ChartMethod::Lattice) {
    EXPECT_EQ(detection.quads, static_cast<int>(detection.candidateRegions.size()));
  }
  text += "  candidates " + std::to_string(detection.candidateRegions.size()) + "\n";
  for (std::size_t i = 0; i < detection.candidateRegions.size(); i += 7) {
    const PatchRegion& seen = detection.candidateRegions[i];
    text += numbers("candidate", {seen.left, seen.top, seen.width, seen.height});
  }
  return text;
}

Picture greyOf(const Picture& picture) {
  Picture grey(picture.width, picture.height, 1, picture.bits);
  for (std::size_t i = 0; i < grey.samples.size(); ++i)
    grey.samples[i] = picture.samples[3 * i + 1];
  return grey;
}

Picture linear16(const Picture& picture) {
  Picture deep(picture.width, picture.height, picture.channels, 16);
  for (std::size_t i = 0; i < deep.samples.size(); ++i) {
    const double code = picture.samples[i] / 255.0;
    deep.samples[i] = static_cast<std::uint16_t>(65535.0 * code * code);
  }
  return deep;
}

TEST(GoldenSearch, OfRenderedCharts) {
  std::string text;
  for (const int number : {2, 31, 75, 98, 121, 150, 190, 213}) {
    const CorpusCase scene = renderedCase(number);
    const ChartDetection detection = MCCDetector().detect(scene.picture, kLatticeAlone);
    EXPECT_TRUE(detection.found()) << number << " " << detection.reason;
    EXPECT_LT(worstError(scene, detection.placement.centres), 0.1) << number;
    text += "rendered " + scene.name + "\n" + told(detection);
    if (number > 100) continue;
    text += " grey\n" + told(MCCDetector().detect(greyOf(scene.picture), kLatticeAlone));
    text += " linear\n" + told(MCCDetector().detect(linear16(scene.picture), kLatticeAlone));
  }
  expectGolden("detect/golden/search_rendered.txt", text);
}

TEST(GoldenSearch, OfPicturesWithoutAChart) {
  std::string text;
  for (int number = 0; number < kChartlessCount; number += 9) {
    const CorpusCase scene = chartlessCase(number);
    const ChartDetection detection = MCCDetector().detect(scene.picture, kLatticeAlone);
    EXPECT_FALSE(detection.found()) << number;
    text += scene.group + " " + scene.name + "\n" + told(detection);
  }
  // A chart cut, one half covered, and in a mirror.
  const CorpusCase whole = renderedCase(2);
  const Picture& picture = whole.picture;
  Picture cut = picture, covered = picture, mirrored = picture;
  const auto row = static_cast<int>(whole.charts[0][9].y);
  const auto column = static_cast<int>(whole.charts[0][9].x);
  for (int y = 0; y < picture.height; ++y)
    for (int x = 0; x < picture.width; ++x) {
      if (y > row) std::fill_n(covered.pixel(x, y), 3, std::uint16_t{90});
      std::copy_n(picture.pixel(picture.width - 1 - x, y), 3, mirrored.pixel(x, y));
    }
  cut = Picture(column, picture.height, 3, 8);
  for (int y = 0; y < picture.height; ++y)
    std::copy_n(picture.pixel(0, y), 3 * column, cut.pixel(0, y));
  for (const Picture& spoilt : {cut, covered, mirrored})
    text += "spoilt\n" + told(MCCDetector().detect(spoilt, kLatticeAlone));
  expectGolden("detect/golden/search_chartless.txt", text);
}

// More and more patches under cards of another colour; one edge after the other of the picture
// through the chart; what the search looks at on the way.
TEST(GoldenSearch, OfSpoiltCharts) {
  std::string text;
  Picture covered = renderChart({.pitch = 60, .turnDegrees = 20, .tiltX = 0.02});
  const auto centres = trueCentres({.pitch = 60, .turnDegrees = 20, .tiltX = 0.02});
  for (int k = 0; k < 16; ++k) {
    const int patch = k * 7 % 24, x = static_cast<int>(centres[static_cast<std::size_t>(patch)].x),
              y = static_cast<int>(centres[static_cast<std::size_t>(patch)].y);
    paint(covered, x - 20, y - 20, x + 20, y + 20, 40 + k * 61 % 200);
    text += "covered " + std::to_string(k + 1) + "\n" +
            told(MCCDetector().detect(covered, kLatticeAlone));
  }
  for (const auto& [x, y] : {std::pair{150.0, 300.0},
                             {650.0, 300.0},
                             {400.0, 90.0},
                             {400.0, 510.0},
                             {110.0, 90.0},
                             {0.0, 300.0}})
    text += "cut\n" + told(MCCDetector().detect(renderChart({.x = x, .y = y}), kLatticeAlone));
  for (const Picture& picture : {covered, greyOf(covered)})
    for (const StagePicture& stage : chartSearchStages(picture, kLatticeAlone)) {
      text += stage.name + " " + std::to_string(traceOf(stage.picture.samples)) + "\n";
    }
  expectGolden("detect/golden/search_spoilt.txt", text);
}

std::string told(const PatchCheck& check) {
  std::string text = numbers("likeness", {check.likeness}) + "  outliers";
  for (const int patch : check.outliers) text += " " + std::to_string(patch);
  text += "\n";
  for (const std::string& doubt : check.doubts) text += "  " + doubt + "\n";
  return text;
}

// Centres that are a tenth of the pitch off, patches that are moved more and more, grey pictures.
TEST(GoldenSearch, OfGivenCharts) {
  setErrorChannel([](std::string_view) {});
  std::string text;
  for (const int number : {2, 31, 98, 121, 150}) {
    const CorpusCase scene = renderedCase(number);
    const Centres& truth = scene.charts[0];
    ChartCorners corners;
    corners.kind = CornerKind::PatchCentres;
    for (std::size_t k = 0; k < 4; ++k) {
      const Point2& centre = truth[std::array<std::size_t, 4>{0, 5, 23, 18}[k]];
      corners.points[k] = {centre.x + 0.1 * scene.pitch, centre.y - 0.05 * scene.pitch};
    }
    for (const Picture& picture : {scene.picture, greyOf(scene.picture)}) {
      const ChartDetection placed = placeChart(picture, corners);
      EXPECT_LT(worstError(scene, placed.placement.centres), 0.25) << number;
      text += "given " + scene.name + "\n" + told(placed);
      PatchQuads patches = placed.placement.patches;
      for (int step = 0; step < 4; ++step) {
        text += told(checkPatches(picture, patches));
        for (PatchQuad& patch : patches)
          for (Point2& corner : patch) corner.x += 0.13 * scene.pitch;
      }
    }
    text += "stated " + scene.name + "\n" +
            told(MCCDetector().detect(scene.picture, {.methods = SearchMethods::Stated}));
  }
  setErrorChannel({});
  expectGolden("detect/golden/search_given.txt", text);
}

}  // namespace
}  // namespace greycard
