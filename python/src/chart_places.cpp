#include "bindings.h"
#include "greycard/chart_location.h"
#include "greycard/chart_regions.h"
#include "greycard/patch_quads.h"

namespace greycard::python {
namespace {

void bindQuads(py::module_& m) {
  m.def(
      "quadsOf", [](const PatchRegions& regions) { return quadsOf(regions); }, py::arg("regions"),
      R"(The corners of upright rectangles.

Parameters
----------
regions : 24 x 4
    Left, top, width and height of each patch in pixels.

Returns
-------
24 x 4 x 2
    x and y of the upper left, upper right, lower right and lower left corner.

Examples
--------
>>> import numpy, greycard.core as core
>>> core.quadsOf(numpy.full((24, 4), 10.0))[0].tolist()
[[10.0, 10.0], [20.0, 10.0], [20.0, 20.0], [10.0, 20.0]]
)");

  Struct<ChartMapping>(m, "ChartMapping", R"(Where the chart's plane is seen in the picture.

The plane's unit is the pitch, the distance of neighbouring patches; its origin is the outer corner of
the cell of patch 1. Patch row r, column c has its centre at (c + 0.5, r + 0.5).)")
      .field("homography", &ChartMapping::homography,
             "3 x 3: (x w, y w, w) = homography * (u, v, 1), without lens distortion.")
      .field("radial", &ChartMapping::radial,
             "What is at distance r from the lens centre would be at r (1 + radial r^2).")
      .field("lensCentre", &ChartMapping::lensCentre, "The picture's centre.")
      .field("lensRadius", &ChartMapping::lensRadius, "Half the picture's diagonal.")
      .def("toPicture", &ChartMapping::toPicture, py::arg("plane"),
           "Where a point of the plane is seen, lens distortion included.");
}

void bindRegionFiles(py::module_& m) {
  m.def("readRegions", &readRegions, py::arg("path"),
        R"(The 24 regions of a region file: lines "left,top,width,height" in pixels, in chart order.

Returns
-------
24 x 4
    Left, top, width, height.

Raises
------
FileError
    It names the file, the line and the word that is wrong.
)");
  m.def(
      "parseRegions",
      [](const std::string& text, const std::string& name) { return parseRegions(text, name); },
      py::arg("text"), py::arg("name"),
      "The same for the text of a region file; `name` stands for the file in messages.");
  m.def(
      "formatRegions", [](const PatchRegions& regions) { return formatRegions(regions); },
      py::arg("regions"), "The regions as the text of a region file, in whole pixels.");
  m.def("writeRegions", &writeRegions, py::arg("path"), py::arg("regions"),
        "Writes the region file under a temporary name and renames it. Raises FileError.");

  Struct<PatchRegionFile>(m, "PatchRegionFile", "A region file of either form.")
      .field("upright", &PatchRegionFile::upright, "The first form: rectangles.")
      .field("regions", &PatchRegionFile::regions,
             "24 x 4 of the first form; all zero for the second.")
      .field("quads", &PatchRegionFile::quads,
             "24 x 4 x 2 of the second form; the rectangles' corners for the first.");
  m.def("readRegionFile", &readRegionFile, py::arg("path"),
        "The 24 regions of a region file of either form, told apart by its first line. Raises "
        "FileError as readRegions.");
  m.def(
      "parseRegionFile",
      [](const std::string& text, const std::string& name) { return parseRegionFile(text, name); },
      py::arg("text"), py::arg("name"), "The same for a text.");
  m.def(
      "formatQuads", [](const PatchQuads& quads) { return formatQuads(quads); }, py::arg("quads"),
      "The corners (24 x 4 x 2) as the text of a region file of the second form, in hundredths of "
      "a "
      "pixel.");
  m.def("writeQuads", &writeQuads, py::arg("path"), py::arg("quads"),
        "Writes the second form under a temporary name and renames it. Raises FileError.");
}

}  // namespace

void bindChartPlaces(py::module_& m) {
  bindQuads(m);
  bindRegionFiles(m);
}

}  // namespace greycard::python
