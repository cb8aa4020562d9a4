#include "calls.h"

namespace greycard::python {
namespace {

// Ctrl-C is to end a search within 100 ms, of which the search's own step takes a part.
constexpr std::chrono::milliseconds kBetweenLooks{20};

}  // namespace

Progress::Progress(const ProgressArg& progress)
    : callable_(progress.callable), lastLook_(std::chrono::steady_clock::now()) {}

ProgressCallback Progress::callback() {
  return [this](double fraction) { return goesOn(fraction); };
}

void Progress::raise() const {
  if (raised_) std::rethrow_exception(raised_);
}

bool Progress::goesOn(double fraction) {
  if (raised_) return false;
  const auto now = std::chrono::steady_clock::now();
  if (callable_.is_none() && now - lastLook_ < kBetweenLooks) return true;
  lastLook_ = now;

  const py::gil_scoped_acquire acquire;
  try {
    if (PyErr_CheckSignals() != 0) throw py::error_already_set();
    if (callable_.is_none()) return true;
    const py::object answer = callable_(fraction);
    if (answer.is_none()) return true;
    const int goesOn = PyObject_IsTrue(answer.ptr());
    if (goesOn < 0) throw py::error_already_set();
    return goesOn == 1;
  } catch (...) {
    raised_ = std::current_exception();
    return false;
  }
}

}  // namespace greycard::python
