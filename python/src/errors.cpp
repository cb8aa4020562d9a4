#include "errors.h"

#include <pybind11/stl.h>

#include <string>

#include "greycard/curve_source.h"
#include "greycard/errors.h"

namespace greycard::python {

namespace py = pybind11;

namespace {

// The classes live as long as the interpreter, which the module never leaves; the references are
// never given back.
struct Exceptions {
  py::handle numeric, shape, calibration, file, job, unknownName, curveFileRefused;
};
Exceptions& exceptions() {
  static Exceptions known;
  return known;
}

py::handle make(py::module_& m, const char* name, py::handle bases, const char* doc) {
  const std::string fullName = m.attr("__name__").cast<std::string>() + "." + name;
  const py::handle made = PyErr_NewExceptionWithDoc(fullName.c_str(), doc, bases.ptr(), nullptr);
  if (!made) throw py::error_already_set();
  m.add_object(name, made);
  return made;
}

void raise(py::handle type, const std::exception& error) {
  PyErr_SetObject(type.ptr(), textForPeople(error.what()).ptr());
}

void raiseRefused(const CurveFileRefused& error) {
  const py::object made = exceptions().curveFileRefused(textForPeople(error.what()));
  py::list notes;
  for (const std::string& note : error.notes()) notes.append(textForPeople(note));
  made.attr("notes") = notes;
  PyErr_SetObject(exceptions().curveFileRefused.ptr(), made.ptr());
}

void translate(std::exception_ptr thrown) {
  const Exceptions& known = exceptions();
  try {
    std::rethrow_exception(thrown);
  } catch (const CurveFileRefused& error) {
    raiseRefused(error);
  } catch (const UnknownName& error) {
    raise(known.unknownName, error);
  } catch (const JobError& error) {
    raise(known.job, error);
  } catch (const FileError& error) {
    raise(known.file, error);
  } catch (const NumericError& error) {
    raise(known.numeric, error);
  } catch (const ShapeError& error) {
    raise(known.shape, error);
  } catch (const CalibrationError& error) {
    raise(known.calibration, error);
  } catch (const std::filesystem::filesystem_error& error) {
    raise(PyExc_OSError, error);
  }
}

}  // namespace

py::str textForPeople(std::string_view text) {
  PyObject* const made =
      PyUnicode_DecodeUTF8(text.data(), static_cast<py::ssize_t>(text.size()), "replace");
  if (made == nullptr) throw py::error_already_set();
  return py::reinterpret_steal<py::str>(made);
}

void bindErrors(py::module_& m) {
  Exceptions& known = exceptions();
  known.numeric = make(m, "NumericError", PyExc_RuntimeError,
                       "Failure of a numerical kernel: no convergence, a singular matrix, an "
                       "interval without width, not a number.");
  known.shape = make(m, "ShapeError", PyExc_ValueError, "A matrix or vector of the wrong shape.");
  known.calibration =
      make(m, "CalibrationError", PyExc_ValueError, "An input that a calibration can't work with.");
  known.file = make(m, "FileError", PyExc_OSError,
                    "A file that can't be read, understood or written; the text names it.");
  known.job =
      make(m, "JobError", PyExc_RuntimeError,
           "A job that can't be done with what it was given: what went wrong, what to try.");
  known.unknownName =
      make(m, "UnknownName", py::make_tuple(known.job, py::handle(PyExc_ValueError)),
           "A name that nothing known has; the text tells the nearest one.");
  known.curveFileRefused = make(m, "CurveFileRefused", known.job,
                                "A curve file gives no curve. `notes` lists what else there is to "
                                "say about the file, a line each.");
  py::register_exception_translator(translate);
}

}  // namespace greycard::python
