#include <new>
#include <stdexcept>
#include <utility>

#include "content_hash.h"
#include "figures.h"
#include "greycard/batch/result.h"
#include "greycard/errors.h"
#include "greycard/names.h"
#include "greycard/picture_correction.h"
#include "greycard/present/chart.h"
#include "greycard/version.h"
#include "html_page.h"
#include "job_options.h"

namespace greycard::batch {
namespace {

// Patches are drawn into a larger picture, so that their outlines and numbers leave room for
// colour.
constexpr int kThumbnailSide = 320, kDrawnSide = 2 * kThumbnailSide;

// The photograph as it is, small, with the patches of a chart that there is.
std::string thumbnailOf(const Photograph& photograph, const LocatedChart* chart) {
  constexpr Matrix3 kUnchanged{{{1, 0, 0}, {0, 1, 0}, {0, 0, 1}}};
  const Picture& whole = photograph.picture;
  const Picture small = shrinkPicture(whole, kDrawnSide);
  Picture shown =
      correctPicture(small, sampleLevels(small, photograph.samples), {1.0, 1.0, 1.0}, kUnchanged);
  if (chart != nullptr) {
    const double scale = static_cast<double>(shown.width) / whole.width;
    PatchQuads patches = chart->patches;
    for (PatchQuad& patch : patches)
      for (Point2& corner : patch) corner = {corner.x * scale, corner.y * scale};
    shown = present::annotatePatches(shown, patches);
  }
  return present::jpegAddress(shrinkPicture(shown, kThumbnailSide));
}

void take(const auto& outcome, const Photograph& photograph, Result& result) {
  result.result = present::toJson(outcome);
  result.figures = figuresOf(outcome);
  result.thumbnail = thumbnailOf(photograph, &outcome.chart);
}

// The jobs, by their options. False where the callback cancelled.
bool run(const LocateOptions& options, const Photograph& photograph, const ProgressCallback&,
         Result& result) {
  const ChartSearch search = searchChart(photograph, options);
  take(search, photograph, result);
  result.reason = search.refusal;
  return true;
}

bool run(const ChartFitOptions& options, const Photograph& photograph,
         const ProgressCallback& progress, Result& result) {
  const auto fit = fitChart(photograph, options, progress);
  if (fit) take(*fit, photograph, result);
  return fit.has_value();
}

bool run(const EvaluationOptions& options, const Photograph& photograph, const ProgressCallback&,
         Result& result) {
  take(evaluateChart(photograph, options), photograph, result);
  return true;
}

Result begun(const File& file, const Settings& settings, const JobOptions& options) {
  Result result;
  result.photo = file.photo;
  result.job = settings.job;
  result.version = libraryVersion();
  result.options = options.text;
  result.settingsHash = hashOf(options, settings.job, file.photo);
  return result;
}

// A photograph whose job failed is worth a look too.
void showFailed(const Photograph& photograph, Result& result) try {
  if (result.thumbnail.empty() && isWellFormed(photograph.picture))
    result.thumbnail = thumbnailOf(photograph, nullptr);
} catch (const std::exception&) {
  result.thumbnail.clear();  // without a picture then: levels that make no scale
}

}  // namespace

std::optional<Result> doPhotograph(const File& file, const Settings& settings,
                                   const ProgressCallback& progress) {
  const JobOptions options = jobOptions(settings, file.photo);
  Result result = begun(file, settings, options);
  Photograph photograph;
  try {
    if (progress && !progress(0.0)) return std::nullopt;
    result.contentHash = contentHash(file.photo);
    photograph = readPhotograph(file.photo, {options.locate().samples, options.dump});
    if (progress && !progress(0.0)) return std::nullopt;
    const bool done = std::visit(
        [&](const auto& job) { return run(job, photograph, progress, result); }, options.job);
    if (!done) return std::nullopt;
  } catch (const std::bad_alloc&) {
    return failedResult(file, settings, "not enough memory for this photograph");
  } catch (const std::exception& error) {
    result.reason = printable(error.what());
    result.result.clear();
    result.figures = {};
  }
  if (result.failed()) showFailed(photograph, result);
  return result;
}

Result failedResult(const File& file, const Settings& settings, const std::string& reason) {
  Result result = begun(file, settings, jobOptions(settings, file.photo));
  result.reason = printable(reason);
  return result;
}

}  // namespace greycard::batch
