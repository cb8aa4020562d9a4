#include "greycard/mcc_detector.h"

#include "bindings.h"
#include "greycard/chart_location.h"
#include "greycard/chart_search_pictures.h"

namespace greycard::python {
namespace {

void bindDetectionEnums(py::module_& m) {
  Enum<ChartStage>(m, "ChartStage", "How far a detection came.")
      .value("Picture", ChartStage::Picture, "the picture could not be loaded, or is empty")
      .value("Contours", ChartStage::Contours, "no outline between dark and light")
      .value("Quads", ChartStage::Quads, "no outline is large, convex and square enough")
      .value("Grid", ChartStage::Grid, "the patches found span no area")
      .value("Colours", ChartStage::Colours, "a grid of patches, but not a whole chart")
      .value("Done", ChartStage::Done, "a grid was fitted");
  Enum<ChartMethod>(m, "ChartMethod", "What placed a chart.")
      .value("None_", ChartMethod::None, "nothing did")
      .value("Lattice", ChartMethod::Lattice, "the lattice search")
      .value("Stated", ChartMethod::Stated, "the search that runDetector uses")
      .value("Corners", ChartMethod::Corners, "corners that the caller gave");
  Enum<ChartRefusal>(m, "ChartRefusal", "Why no chart was found.")
      .value("None_", ChartRefusal::None, "one was found")
      .value("Picture", ChartRefusal::Picture, "there is no picture")
      .value("TooSmall", ChartRefusal::TooSmall, "the picture can't hold a chart")
      .value("NoPatches", ChartRefusal::NoPatches, "next to nothing looks like a patch")
      .value("NoGrid", ChartRefusal::NoGrid, "patches, but no regular grid of them")
      .value("OtherColours", ChartRefusal::OtherColours, "a grid without the chart's colours")
      .value("Covered", ChartRefusal::Covered, "too much is covered, in glare or in shadow")
      .value("Cut", ChartRefusal::Cut, "an edge of the picture cuts the chart")
      .value("Mirrored", ChartRefusal::Mirrored, "a chart in a mirrored picture");
  Enum<SearchMethods>(m, "SearchMethods", "Which searches are asked.")
      .value("Both", SearchMethods::Both, "the lattice search, and the stated where it refuses")
      .value("Lattice", SearchMethods::Lattice, "the lattice search alone")
      .value("Stated", SearchMethods::Stated, "the stated search alone");
  m.def("chartStageName", &chartStageName, py::arg("stage"),
        "\"picture\", \"contours\", \"quads\", \"grid\", \"colours\" or \"done\".");
  m.def("chartMethodName", &chartMethodName, py::arg("method"),
        "\"none\", \"lattice\", \"stated\" or \"corners\".");
  m.def("chartRefusalName", &chartRefusalName, py::arg("refusal"),
        "The reason in a word, such as \"too_small\".");
}

void bindDetectionStructs(py::module_& m) {
  Struct<ChartPlacement>(m, "ChartPlacement", "Where a chart is, and what speaks for it.")
      .field("centres", &ChartPlacement::centres, "24 x 2: of the patches, in chart order.")
      .field("patches", &ChartPlacement::patches, "24 x 4 x 2: their corners.")
      .field("mapping", &ChartPlacement::mapping, "The chart's plane to the picture.")
      .field("orientationDeg", &ChartPlacement::orientationDeg,
             "Of the first row, clockwise from the x axis; 0 to below 360.")
      .field("pitch", &ChartPlacement::pitch, "Mean distance of neighbouring centres, pixels.")
      .field("gate", &ChartPlacement::gate, "What must reach DetectOptions.smallestGate.")
      .field("supportingPatches", &ChartPlacement::supportingPatches,
             "Patches seen as flat regions at their places, of 24.")
      .field("outliers", &ChartPlacement::outliers,
             "Patches unlike the chart's, by number 1..24, ascending.");

  Struct<ChartDetection>(m, "ChartDetection", "Outcome of a search for the chart.")
      .field("stage", &ChartDetection::stage, "The stage that failed, or Done.")
      .field("reason", &ChartDetection::reason, "Why it failed, what to try; empty when Done.")
      .field("method", &ChartDetection::method, "What placed the chart.")
      .field("refusal", &ChartDetection::refusal, "Why there is none.")
      .field("quads", &ChartDetection::quads, "Patch candidates in the picture.")
      .field("quadsUsed", &ChartDetection::quadsUsed, "Those that the grid hangs on.")
      .field("points", &ChartDetection::points,
             "24 x 2: patch centres in whole pixels; all zero unless Done.")
      .field("regions", &ChartDetection::regions, "24 x 4: what the region file holds.")
      .field("size", &ChartDetection::size, "Half the mean patch side, whole pixels.")
      .field("error", &ChartDetection::error,
             "Sum of squared differences to the chart's 8-bit sRGB colours.")
      .field("doubts", &ChartDetection::doubts, "Signs that the grid is not on the chart.")
      .field("placement", &ChartDetection::placement, "Where the chart is; of use when Done.")
      .field("candidate", &ChartDetection::candidate,
             "Where nothing was found: the grid that came nearest to a chart, or None.")
      .field("candidateRegions", &ChartDetection::candidateRegions,
             "Where nothing was found: boxes of all places that look like a patch.")
      .def("found", &ChartDetection::found, "Whether there is a chart.")
      .def("trustworthy", &ChartDetection::trustworthy, "Found, and without doubts.");

  Struct<DetectOptions>(m, "DetectOptions", "What to look for, and how hard.")
      .field("methods", &DetectOptions::methods, "Which searches are asked.")
      .field("regionOfInterest", &DetectOptions::regionOfInterest,
             "The part of the picture to look at, in pixels; None for all of it.")
      .field("levels", &DetectOptions::levels, "What the samples mean; None to try.")
      .field("smallestGate", &DetectOptions::smallestGate, "0..1.")
      .field("mostCharts", &DetectOptions::mostCharts, "Of detectAll, 1 and up.")
      .field("finestPixels", &DetectOptions::finestPixels,
             "Pixels of the finest picture that the lattice search looks at.");
}

// Without a path a search has nothing to do, as with an empty one.
bool run(const MCCDetector& detector, const std::optional<std::filesystem::path>& image,
         const std::optional<std::filesystem::path>& save) {
  return withoutLock([&] {
    return detector.runDetector(image.value_or(std::filesystem::path()),
                                save.value_or(std::filesystem::path()));
  });
}

void bindDetectorClass(py::module_& m) {
  using Levels = std::optional<SampleLevels>;
  const auto options = [] { return py::arg_v("options", DetectOptions(), "DetectOptions()"); };
  py::class_<MCCDetector>(m, "MCCDetector",
                          R"(Finds a 24-patch colour chart (4 rows of 6) in a photograph.

Holds no state: any number of searches may run at a time.

Examples
--------
>>> import numpy, greycard.core as core
>>> found = core.MCCDetector().detect(numpy.zeros((400, 600, 3), numpy.uint8))
>>> found.found(), found.refusal
(False, <ChartRefusal.NoPatches: 3>)
)")
      .def(py::init())
      .def(
          "runDetector", &run, py::arg("imagePath"), py::arg("SavePath"),
          "Finds the chart and writes its region file. False when imagePath is empty or None; True "
          "otherwise, even when no chart was found: judge success by the file.")
      .def(
          "detect",
          [](const MCCDetector& self, const Picture& picture, DetectOptions wanted) {
            return withoutLock([&] { return self.detect(picture, wanted); });
          },
          py::arg("picture"), options(),
          R"(Finds the chart and says how it went. Of several charts the first that is sure.

Raises
------
ValueError
    Levels that are not finite or not in order, a region of interest without a pixel in the picture,
    a limit out of its range.
)")
      .def(
          "detect",
          [](const MCCDetector& self, const Picture& picture, Levels levels) {
            return withoutLock([&] { return self.detect(picture, levels); });
          },
          py::arg("picture"), py::arg("levels"))
      .def(
          "detectAll",
          [](const MCCDetector& self, const Picture& picture, DetectOptions wanted) {
            return withoutLock([&] { return self.detectAll(picture, wanted); });
          },
          py::arg("picture"), options(),
          "Every chart in the picture, surest first, without overlaps; raises as detect.")
      .def(
          "detectFile",
          [](const MCCDetector& self, const std::filesystem::path& path, DetectOptions wanted) {
            return withoutLock([&] { return self.detectFile(path, wanted); });
          },
          py::arg("path"), options(),
          "The same as detect for a picture file; one that can't be read ends at "
          "ChartStage.Picture.")
      .def(
          "detectFile",
          [](const MCCDetector& self, const std::filesystem::path& path, Levels levels) {
            return withoutLock([&] { return self.detectFile(path, levels); });
          },
          py::arg("path"), py::arg("levels"));

  Struct<StagePicture>(m, "StagePicture", "A picture of one stage of the search.")
      .field("name", &StagePicture::name, "\"1_working\", ...: fit for a file name.")
      .def_property_readonly(
          "picture", [](const StagePicture& self) { return self.picture; },
          "A copy: 8-bit R, G, B.");
  m.def(
      "chartSearchStages",
      [](const Picture& picture, DetectOptions wanted) {
        return withoutLock([&] { return chartSearchStages(picture, wanted); });
      },
      py::arg("picture"), options(),
      "What the lattice search saw on its way: for finding out why a chart was not found. Raises "
      "as "
      "MCCDetector.detect.");
}

void bindPlacing(py::module_& m) {
  Enum<CornerKind>(m, "CornerKind", "What four given corners are.")
      .value("PatchField", CornerKind::PatchField, "outer corners of patches 1, 6, 24 and 19")
      .value("PatchCentres", CornerKind::PatchCentres, "centres of patches 1, 6, 24 and 19");
  Struct<ChartCorners>(m, "ChartCorners", "Four corners of a chart in a picture.")
      .field("points", &ChartCorners::points,
             "4 x 2: at patches 1, 6, 24 and 19, in pixels; they may lie outside the picture.")
      .field("kind", &ChartCorners::kind, "What the points are.")
      .field("refine", &ChartCorners::refine,
             "Moves the chart to the patches seen where at least 9 are near their places.");
  m.def(
      "checkCorners", &checkCorners, py::arg("points"),
      "Raises ValueError when the corners are not finite, not convex, or do not go round clockwise "
      "in the picture.");
  m.def(
      "placeChart",
      [](const Picture& picture, ChartCorners corners, DetectOptions wanted) {
        return withoutLock([&] { return placeChart(picture, corners, wanted); });
      },
      py::arg("picture"), py::arg("corners"),
      py::arg_v("options", DetectOptions(), "DetectOptions()"),
      R"(The chart with these corners. Always placed, as the caller says so.

Raises
------
ValueError
    Corners that are not finite, not convex, or don't go round clockwise; levels as in detect.
)");
  Struct<PatchCheck>(m, "PatchCheck", "What is seen at 24 given places.")
      .field("likeness", &PatchCheck::likeness, "Of the colours to the chart's, at most 1.")
      .field("outliers", &PatchCheck::outliers, "Patches unlike the chart's, by number 1..24.")
      .field("doubts", &PatchCheck::doubts, "Signs that these are not the patches of a chart.")
      .def("trustworthy", &PatchCheck::trustworthy, "Without doubts.");
  m.def(
      "checkPatches",
      [](const Picture& picture, const PatchQuads& patches, DetectOptions wanted) {
        return withoutLock([&] { return checkPatches(picture, patches, wanted); });
      },
      py::arg("picture"), py::arg("patches"),
      py::arg_v("options", DetectOptions(), "DetectOptions()"),
      "The checks that a detection goes through, for patches (24 x 4 x 2) that were given. Raises "
      "ValueError for corners of no convex quadrilateral.");
}

}  // namespace

void bindDetector(py::module_& m) {
  bindDetectionEnums(m);
  bindDetectionStructs(m);
  bindDetectorClass(m);
  bindPlacing(m);
}

}  // namespace greycard::python
