#include <pybind11/stl.h>

#include "bindings.h"
#include "calls.h"
#include "greycard/diagnostics.h"
#include "greycard/files.h"
#include "greycard/names.h"
#include "greycard/number_text.h"
#include "greycard/version.h"
#include "listener.h"

namespace greycard::python {
namespace {

template <typename Sink>
void replace(void (*channel)(Sink), const py::object& callable) {
  if (!callable.is_none() && PyCallable_Check(callable.ptr()) == 0)
    refuseType(callable, "sink", "None or a callable");
  Sink sink;
  if (!callable.is_none()) sink = Listener(callable);
  withoutLock([&] { channel(std::move(sink)); });
}

void bindDiagnostics(py::module_& m) {
  m.def(
      "setOutputChannel", [](const py::object& sink) { replace(&setOutputChannel, sink); },
      py::arg("sink"),
      R"(Replaces the output channel of the diagnostics, standard output until then.

Parameters
----------
sink : callable or None
    Gets each text, in the thread that wrote it; None silences the channel.
)");
  m.def(
      "setErrorChannel", [](const py::object& sink) { replace(&setErrorChannel, sink); },
      py::arg("sink"), "The same for the error channel, standard error until then.");
  m.def(
      "setDebugLog", [](const py::object& sink) { replace(&setDebugLog, sink); }, py::arg("sink"),
      "Replaces the listener of the debugger log, none until then: sink(level, category, text).");
  // Listeners go before the interpreter does.
  py::module_::import("atexit").attr("register")(py::cpp_function([] {
    const py::gil_scoped_release release;
    setOutputChannel({});
    setErrorChannel({});
    setDebugLog({});
  }));
}

void bindNumberText(py::module_& m) {
  m.def(
      "finiteNumbers", [](const std::string& text) { return finiteNumbers(text); }, py::arg("text"),
      "The numbers of a text with blanks, commas or line ends between them. Raises ValueError "
      "about "
      "the first word that is not a finite number.");
  const auto checked = [](int value, int least, int most, const char* name) {
    if (value < least || value > most)
      throw std::invalid_argument(std::string(name) + " is " + std::to_string(value) + ", not " +
                                  std::to_string(least) + " to " + std::to_string(most));
    return value;
  };
  m.def(
      "fixed",
      [checked](double value, int decimals) {
        return fixed(value, checked(decimals, 0, 60, "decimals"));
      },
      py::arg("value"), py::arg("decimals"),
      R"(The number with a fixed count of decimals, 0 to 60; what is not finite becomes "-".

Examples
--------
>>> import greycard.core as core
>>> core.fixed(-0.001, 2)
'0.00'
)");
  m.def(
      "general",
      [checked](double value, int digits) {
        return general(value, checked(digits, 1, 17, "digits"));
      },
      py::arg("value"), py::arg("digits"),
      "The number with that many significant digits, 1 to 17; what is not finite becomes \"-\".");
  m.def(
      "exact", [](double value) { return exact(value); }, py::arg("value"),
      "The shortest text that reads back to the same bits, for files.");
}

void bindNames(py::module_& m) {
  using Names = std::vector<std::string>;
  m.def(
      "closestName",
      [](const std::string& name, const Names& known) -> std::optional<std::string> {
        const std::string* const closest = closestName(name, known);
        return closest == nullptr ? std::nullopt : std::optional(*closest);
      },
      py::arg("name"), py::arg("known"),
      R"(The known name that is nearest to a mistyped one; None where none is near.

Examples
--------
>>> import greycard.core as core
>>> core.closestName("vnormal", ["VNormal", "VOutdoor"])
'VNormal'
)");
  m.def(
      "unknownName",
      [](const std::string& kind, const std::string& name, const Names& known) {
        return unknownName(kind, name, known);
      },
      py::arg("kind"), py::arg("name"), py::arg("known"),
      "One sentence about a name that is not among the known ones.");
  m.def(
      "equalIgnoringCase",
      [](const std::string& a, const std::string& b) { return equalIgnoringCase(a, b); },
      py::arg("a"), py::arg("b"), "Whether the texts differ at most in the case of ASCII letters.");
  m.def(
      "listed", [](const Names& names) { return listed(names); }, py::arg("names"),
      "The names with commas between them.");
  m.def("printable", &printable, py::arg("text"),
        "A text without its control characters, which become ?.");
}

void bindFiles(py::module_& m) {
  m.def(
      "readWholeFile",
      [](const std::filesystem::path& path) {
        return py::bytes(withoutLock([&] { return readWholeFile(path); }));
      },
      py::arg("path"),
      "The whole file as bytes: at most 4 GiB, or 1 GiB of a pipe or a device. Raises FileError.");
  m.def(
      "writeWholeFile",
      [](const std::filesystem::path& path, const py::bytes& bytes) {
        const std::string_view view(bytes);
        withoutLock([&] { writeWholeFile(path, view); });
      },
      py::arg("path"), py::arg("bytes"),
      "Writes the bytes under a temporary name in the same folder and renames it, so that no "
      "reader "
      "ever sees half a file. Raises FileError.");
  m.def(
      "quoted", [](const std::filesystem::path& path) { return textForPeople(quoted(path)); },
      py::arg("path"), "The path for a message: UTF-8, in quotes.");
}

}  // namespace

void bindSupport(py::module_& m) {
  m.attr("GREYCARD_VERSION") = GREYCARD_VERSION;
  m.def("libraryVersion", &libraryVersion, "The version of the library that is running.");
  bindDiagnostics(m);
  bindNumberText(m);
  bindNames(m);
  bindFiles(m);
}

}  // namespace greycard::python
