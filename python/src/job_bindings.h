#pragma once

// The bindings of jobs, of what presents their results, and of files for other programs.

#include <pybind11/pybind11.h>

namespace greycard::python {

/// All of them. What they take and give of other subjects must be bound already.
void bindJobs(pybind11::module_& m);

void bindJobErrors(pybind11::module_& m);
void bindPhotographs(pybind11::module_& m);
void bindChartJobs(pybind11::module_& m);
void bindCurveJobs(pybind11::module_& m);
void bindFittingJobs(pybind11::module_& m);
void bindPictureJobs(pybind11::module_& m);
void bindPresentJson(pybind11::module_& m);
void bindPresentPages(pybind11::module_& m);
void bindExchange(pybind11::module_& m);
void bindBatch(pybind11::module_& m);

}  // namespace greycard::python
