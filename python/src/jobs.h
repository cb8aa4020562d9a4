#pragma once

// What the bindings of jobs have in common.

#include <type_traits>

#include "arrays.h"
#include "bindings.h"
#include "calls.h"
#include "greycard/photograph.h"
#include "job_bindings.h"

namespace greycard::python {

/// What a job reads without the interpreter lock: a copy, but of pictures, whose memory stays.
template <typename T>
using JobArgument = std::conditional_t<std::is_same_v<std::remove_cvref_t<T>, Picture> ||
                                           std::is_same_v<std::remove_cvref_t<T>, Photograph>,
                                       const std::remove_cvref_t<T>&, std::remove_cvref_t<T>>;

/// How it is handed on: a copy is of no more use here.
template <typename T>
using HandedOn = std::conditional_t<std::is_reference_v<JobArgument<T>>, JobArgument<T>, T&&>;

/// The function as a call that runs without the interpreter lock.
template <typename R, typename... Args>
auto unlocked(R (*function)(Args...)) {
  return [function](JobArgument<Args>... args) {
    return withoutLock([&] { return function(static_cast<HandedOn<Args>>(args)...); });
  };
}

/// An argument whose default is a default-made T. \param shown  as a signature shows it, for good
template <typename T>
pybind11::arg_v defaulted(const char* name, const char* shown) {
  return {name, T{}, shown};
}

}  // namespace greycard::python
