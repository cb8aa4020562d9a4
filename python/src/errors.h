#pragma once

#include <pybind11/pybind11.h>

#include <string_view>

namespace greycard::python {

/// The library's exceptions under their own names, with their texts.
void bindErrors(pybind11::module_& m);

/// A text for people as a str; bytes that are no UTF-8 (of a file's name, say) become U+FFFD.
pybind11::str textForPeople(std::string_view text);

}  // namespace greycard::python
