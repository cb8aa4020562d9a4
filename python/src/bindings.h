#pragma once

// One call per subject: it binds the subject's classes and functions to the module, those that
// another one needs as a default or a base first.

#include <pybind11/pybind11.h>

#include "arrays.h"
#include "calls.h"
#include "errors.h"
#include "fields.h"

namespace greycard::python {

void bindSupport(py::module_& m);
void bindPicture(py::module_& m);
void bindTypes(py::module_& m);
void bindColour(py::module_& m);
void bindChartPlaces(py::module_& m);
void bindSampling(py::module_& m);
void bindDetector(py::module_& m);
void bindCorrection(py::module_& m);
void bindMatrixFit(py::module_& m);
void bindGammaCurve(py::module_& m);
void bindLut2d(py::module_& m);
void bindNoise(py::module_& m);
void bindExposure(py::module_& m);
void bindCalibration(py::module_& m);

}  // namespace greycard::python
