// The searches for the chart beside a 5 x 5 Gaussian of the same picture and, the stated one,
// beside the OpenCV calls that it can't do without; on a drawn chart, on the photographs in the
// folder that GREYCARD_PHOTOS names, and on each with its charts painted over or without any.
//
//   detect             MCCDetector::detect, from the picture in memory to doubts
//   gaussian           cv::GaussianBlur, 5 x 5, of the 8-bit B, G, R matrix
//   sample             sampleQuads of the chart that was found, from the picture in memory
//   stated             the stated search alone, from the picture in memory to doubts
//   stated_primitives  the OpenCV calls that it needs, and nothing else
//   search             the part of it from an 8-bit B, G, R matrix to the grid
//   search_primitives  the OpenCV calls of that part
//   mcc                OpenCV's own chart detector on the same matrix, where its package is
//   installed

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <opencv2/imgproc.hpp>
#include <string>
#include <utility>
#include <vector>
#ifdef GREYCARD_BENCH_MCC
#include <opencv2/mcc.hpp>
#endif

#include "chart_renderer.h"
#include "greycard/diagnostics.h"
#include "greycard/mcc_detector.h"
#include "greycard/quad_sampler.h"
#include "macbeth.h"
#include "quads.h"
#include "search_image.h"
#include "threshold_mask.h"

namespace greycard {
namespace {

struct Subject {
  Picture picture;
  cv::Mat image;
};

void detectCase(benchmark::State& state, const Subject& subject) {
  for (auto _ : state) benchmark::DoNotOptimize(MCCDetector().detect(subject.picture));
}

void statedCase(benchmark::State& state, const Subject& subject) {
  const DetectOptions options{.methods = SearchMethods::Stated};
  for (auto _ : state) benchmark::DoNotOptimize(MCCDetector().detect(subject.picture, options));
}

void gaussianCase(benchmark::State& state, const Subject& subject) {
  cv::Mat blurred;
  for (auto _ : state) {
    cv::GaussianBlur(subject.image, blurred, {5, 5}, 0.0);
    benchmark::DoNotOptimize(blurred.data);
  }
}

void sampleCase(benchmark::State& state, const Subject& subject) {
  const auto detection = MCCDetector().detect(subject.picture);
  if (!detection.found()) return state.SkipWithError("no chart to sample");
  const auto levels = SampleLevels::eightBit(SampleEncoding::sRGB);
  for (auto _ : state)
    benchmark::DoNotOptimize(sampleQuads(subject.picture, detection.placement.patches, levels));
}

void searchCase(benchmark::State& state, const Subject& subject) {
  for (auto _ : state) benchmark::DoNotOptimize(search_macbeth(subject.image));
}

cv::Mat primitiveMask(const cv::Mat& image) {
  const int block = thresholdBlockSize(image.size()), side = thresholdElementSize(block);
  cv::Mat planes[3], dark[3];
  cv::split(image, planes);
  for (int i = 0; i < 3; ++i)
    cv::adaptiveThreshold(planes[i], dark[i], 255.0, cv::ADAPTIVE_THRESH_MEAN_C,
                          cv::THRESH_BINARY_INV, block, 6.0);
  cv::bitwise_or(dark[0], dark[1], dark[0]);
  cv::bitwise_or(dark[0], dark[2], dark[0]);
  cv::morphologyEx(dark[0], dark[0], cv::MORPH_OPEN,
                   cv::getStructuringElement(cv::MORPH_RECT, {side, side}));
  return dark[0];
}

void callPrimitives(const cv::Mat& image) {
  Contour polygon;
  std::vector<Contour> contours;
  std::vector<cv::Vec4i> hierarchy;
  cv::findContours(primitiveMask(image), contours, hierarchy, cv::RETR_CCOMP,
                   cv::CHAIN_APPROX_SIMPLE);
  const int minimum = minimumQuadSize(image.size());
  for (std::size_t i = 0; i < contours.size(); ++i) {
    if (hierarchy[i][3] < 0 || cv::boundingRect(contours[i]).area() < minimum) continue;
    for (int accuracy = 2; accuracy <= 7; ++accuracy) {
      cv::approxPolyDP(contours[i], polygon, accuracy, true);
      cv::approxPolyDP(polygon, polygon, accuracy, true);
      if (polygon.size() == 4) break;
    }
    if (polygon.size() == 4) benchmark::DoNotOptimize(cv::minAreaRect(polygon));
  }
}

void searchPrimitivesCase(benchmark::State& state, const Subject& subject) {
  for (auto _ : state) callPrimitives(subject.image);
}

void statedPrimitivesCase(benchmark::State& state, const Subject& subject) {
  const cv::Mat samples(subject.image.size(), CV_16UC3,
                        const_cast<std::uint16_t*>(subject.picture.samples.data()));
  for (auto _ : state) {
    cv::Mat rgb, bgr;
    samples.convertTo(rgb, CV_8U);
    cv::cvtColor(rgb, bgr, cv::COLOR_RGB2BGR);
    callPrimitives(bgr);
  }
}

#ifdef GREYCARD_BENCH_MCC
void mccCase(benchmark::State& state, const Subject& subject) {
  for (auto _ : state) {
    const auto detector = cv::mcc::CCheckerDetector::create();
    benchmark::DoNotOptimize(detector->process(subject.image, cv::mcc::MCC24, 1));
  }
}
#endif

void addCases(const std::string& name, Picture picture, bool hasChart) {
  const auto subject = std::make_shared<Subject>();
  subject->image = searchImage(picture, std::nullopt);
  subject->picture = std::move(picture);
  const auto add = [&](const char* kind, void (*run)(benchmark::State&, const Subject&)) {
    benchmark::RegisterBenchmark((name + "/" + kind).c_str(), [subject,
                                                               run](benchmark::State& state) {
      run(state, *subject);
    })->Unit(benchmark::kMillisecond);
  };
  add("detect", detectCase);
  add("gaussian", gaussianCase);
  if (hasChart) add("sample", sampleCase);
  add("stated", statedCase);
  add("stated_primitives", statedPrimitivesCase);
  add("search", searchCase);
  add("search_primitives", searchPrimitivesCase);
#ifdef GREYCARD_BENCH_MCC
  add("mcc", mccCase);
#endif
}

// The picture with everything that was found in it painted over.
Picture withoutCharts(Picture picture) {
  for (const auto& chart : MCCDetector().detectAll(picture)) {
    double left = picture.width, top = picture.height, right = 0, bottom = 0;
    for (const auto& patch : chart.placement.patches)
      for (const auto& p : patch) {
        left = std::min(left, p.x), top = std::min(top, p.y);
        right = std::max(right, p.x), bottom = std::max(bottom, p.y);
      }
    const int x = std::max(0, static_cast<int>(left)), y = std::max(0, static_cast<int>(top));
    paint(picture, x, y, std::clamp(static_cast<int>(right), x, picture.width),
          std::clamp(static_cast<int>(bottom), y, picture.height), 128);
  }
  return picture;
}

const bool added = [] {
  setErrorChannel({});
  ChartPose pose{
      .width = 1600, .height = 1200, .pitch = 150.0, .turnDegrees = 7.0, .x = 800, .y = 600};
  addCases("drawn", renderChart(pose), true);
  addCases("large",
           renderChart({.width = 4000, .height = 3000, .pitch = 400.0, .x = 2000, .y = 1500}),
           true);
  const char* folder = std::getenv("GREYCARD_PHOTOS");
  if (!folder || !*folder) return true;
  for (const auto& entry : std::filesystem::directory_iterator(folder))
    if (entry.path().extension() == ".jpg") {
      const auto name = entry.path().stem().string();
      auto picture = readPicture(entry.path());
      addCases("without_" + name, withoutCharts(picture), false);
      addCases(name, std::move(picture), true);
    }
  return true;
}();

}  // namespace
}  // namespace greycard
