#include <cstring>

#include "bindings.h"
#include "greycard/version.h"
#include "job_bindings.h"

namespace greycard::python {
namespace {

// Structs lie in memory as the headers had them that this was compiled with.
void checkLibrary() {
  const char* const loaded = libraryVersion();
  if (std::strcmp(loaded, GREYCARD_VERSION) == 0) return;
  throw py::import_error(std::string("greycard.core was built with greycard ") + GREYCARD_VERSION +
                         " but the library that was loaded is " + loaded +
                         ": install the library and the module of one version");
}

}  // namespace
}  // namespace greycard::python

PYBIND11_MODULE(_core, m) {
  using namespace greycard::python;
  checkLibrary();

  m.doc() = "The library's classes and functions under their C++ names.";
  // What is bound belongs, for people and for pickle, to the package that shows it.
  const py::object ownName = m.attr("__name__");
  m.attr("__name__") = "greycard.core";
  bindErrors(m);
  bindSupport(m);
  bindTypes(m);
  bindPicture(m);
  bindColour(m);
  bindChartPlaces(m);
  bindSampling(m);
  bindDetector(m);
  bindGammaCurve(m);
  bindCorrection(m);
  bindMatrixFit(m);
  bindLut2d(m);
  bindNoise(m);
  bindExposure(m);
  bindCalibration(m);
  bindJobs(m);
  m.attr("__name__") = ownName;
}
