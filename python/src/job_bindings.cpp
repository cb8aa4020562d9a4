#include "job_bindings.h"

#include <string>

namespace greycard::python {
namespace {

namespace py = pybind11;

// A module for a namespace of the library, which "import greycard.core.<name>" finds.
py::module_ namespaceModule(py::module_& m, const char* name, const char* doc) {
  py::module_ part = m.def_submodule(name, doc);
  const std::string fullName = std::string("greycard.core.") + name;
  part.attr("__name__") = fullName;
  py::module_::import("sys").attr("modules")[fullName.c_str()] = part;
  return part;
}

}  // namespace

void bindJobs(py::module_& m) {
  bindJobErrors(m);
  bindPhotographs(m);
  bindChartJobs(m);
  bindCurveJobs(m);
  bindFittingJobs(m);
  bindPictureJobs(m);
  py::module_ present =
      namespaceModule(m, "present", "Results as JSON both ways, as pages, plots and pictures.");
  bindPresentJson(present);
  bindPresentPages(present);
  py::module_ exchange = namespaceModule(m, "exchange", "Files that other programs read.");
  bindExchange(exchange);
  py::module_ batch = namespaceModule(m, "batch", "One job on many photographs.");
  bindBatch(batch);
}

}  // namespace greycard::python
