#include "greycard/types.h"

#include "bindings.h"

namespace greycard::python {

void bindTypes(py::module_& m) {
  m.attr("kChartRows") = kChartRows;
  m.attr("kChartColumns") = kChartColumns;
  m.attr("kPatchCount") = kPatchCount;

  Struct<Point2>(m, "Point2", R"(A point in a picture in pixels.

x to the right, y downward, the centre of the top-left pixel is (0, 0).

Examples
--------
>>> import greycard.core as core
>>> core.Point2(x=3, y=4)
Point2(x=3.0, y=4.0)
)")
      .field("x", &Point2::x, "Pixels to the right.")
      .field("y", &Point2::y, "Pixels downward.");

  Struct<PatchRegion>(m, "PatchRegion", "An upright rectangle in a picture, in pixels.")
      .field("left", &PatchRegion::left, "x of the left edge.")
      .field("top", &PatchRegion::top, "y of the top edge.")
      .field("width", &PatchRegion::width, "Pixels to the right.")
      .field("height", &PatchRegion::height, "Pixels downward.");
}

}  // namespace greycard::python
