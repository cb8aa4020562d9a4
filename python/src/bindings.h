#pragma once

// One call per subject: it binds the subject's classes and functions to the module.

#include <pybind11/pybind11.h>

#include "arrays.h"
#include "errors.h"
#include "fields.h"

namespace greycard::python {

void bindSupport(py::module_& m);
void bindPicture(py::module_& m);
void bindTypes(py::module_& m);

}  // namespace greycard::python
