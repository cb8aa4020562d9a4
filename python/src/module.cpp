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

// What Python does of itself for pickle's oldest protocols makes an instance of pybind11's base
// class, which ends the process. Enumerators go by their number; what is no struct is refused.
void completePickling(py::handle scope, const py::object& byNumber, const py::object& refused) {
  for (const auto& [name, value] : py::dict(scope.attr("__dict__"))) {
    const bool isBound = py::isinstance<py::type>(value) && !PyExceptionClass_Check(value.ptr());
    const bool isPart = isBound || py::isinstance<py::module_>(value);
    if (isBound && !value.attr("__dict__").contains("__reduce__"))
      py::setattr(value, "__reduce__", py::hasattr(value, "__members__") ? byNumber : refused);
    if (isPart && name.cast<std::string>().substr(0, 1) != "_")
      completePickling(value, byNumber, refused);
  }
}
void completePickling(const py::module_& m) {
  const py::handle method(reinterpret_cast<PyObject*>(&PyInstanceMethod_Type));
  const py::cpp_function byNumber(
      [](const py::object& self) {
        return py::make_tuple(py::type::of(self), py::make_tuple(py::int_(self)));
      },
      py::name("__reduce__"));
  const py::cpp_function refused(
      [](const py::object& self) -> py::object {
        throw py::type_error("a " + py::type::of(self).attr("__name__").cast<std::string>() +
                             " can't be pickled");
      },
      py::name("__reduce__"));
  completePickling(m, method(byNumber), method(refused));
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
  completePickling(m);
  m.attr("__name__") = ownName;
}
