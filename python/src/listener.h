#pragma once

#include <pybind11/pybind11.h>

#include <memory>
#include <string_view>
#include <utility>

#include "errors.h"

namespace greycard::python {

/// A listener in Python for the library's texts, called in any thread. Its last holder takes the
/// interpreter lock to let it go; what it raises goes where the exceptions of destructors go.
class Listener {
 public:
  explicit Listener(pybind11::object callable)
      : callable_(new pybind11::object(std::move(callable)), [](pybind11::object* held) {
          const pybind11::gil_scoped_acquire acquire;
          delete held;
        }) {}

  template <typename... Args>
  void operator()(const Args&... args) const {
    const pybind11::gil_scoped_acquire acquire;
    try {
      (*callable_)(asPython(args)...);
    } catch (pybind11::error_already_set& error) {
      error.restore();
      PyErr_WriteUnraisable(callable_->ptr());
    }
  }

 private:
  static int asPython(int level) { return level; }
  static pybind11::str asPython(std::string_view text) { return textForPeople(text); }

  std::shared_ptr<pybind11::object> callable_;
};

}  // namespace greycard::python
