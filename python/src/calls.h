#pragma once

// Long calls: without the interpreter lock, and cancellable from Python.
//
// While a call runs without the lock, other threads may change any Python object. What it reads is
// therefore passed by value (pictures, whose memory stays in place, by reference), and what it
// changes is a copy that takes the object's place when the lock is back.

#include <pybind11/pybind11.h>

#include <chrono>
#include <exception>
#include <utility>

#include "greycard/types.h"

namespace greycard::python {

namespace py = pybind11;

/// Runs a call without the interpreter lock. The call touches no Python object.
template <typename Call>
auto withoutLock(Call&& call) {
  const py::gil_scoped_release release;
  return std::forward<Call>(call)();
}

/// A parameter `progress`: None, or a callable that gets the fraction done and cancels by returning
/// False.
struct ProgressArg {
  py::object callable = py::none();
};

/// Between a search's ProgressCallback and Python: takes the interpreter lock for the caller's
/// callable and, callable or not, often enough for Ctrl-C. What either raises cancels the search.
class Progress {
 public:
  explicit Progress(const ProgressArg& progress);

  /// For the search; refers to this object.
  ProgressCallback callback();
  /// Raises what the callable raised, or KeyboardInterrupt.
  void raise() const;

 private:
  bool goesOn(double fraction);

  py::object callable_;
  std::chrono::steady_clock::time_point lastLook_;
  std::exception_ptr raised_;
};

/// Runs search(ProgressCallback) without the interpreter lock.
/// \throws what the callable raised or KeyboardInterrupt, after the search has come back
template <typename Search>
auto cancellable(const ProgressArg& callable, Search&& search) {
  Progress progress(callable);
  try {
    auto result = withoutLock([&] { return std::forward<Search>(search)(progress.callback()); });
    progress.raise();
    return result;
  } catch (...) {
    progress.raise();
    throw;
  }
}

}  // namespace greycard::python

namespace pybind11::detail {

template <>
struct type_caster<greycard::python::ProgressArg> {
  PYBIND11_TYPE_CASTER(greycard::python::ProgressArg,
                       const_name("Optional[Callable[[float], Optional[bool]]]"));
  bool load(handle source, bool) {
    if (!source.is_none() && PyCallable_Check(source.ptr()) == 0) return false;
    value.callable = reinterpret_borrow<object>(source);
    return true;
  }
  static handle cast(const greycard::python::ProgressArg& progress, return_value_policy, handle) {
    return progress.callable.inc_ref();
  }
};

}  // namespace pybind11::detail
