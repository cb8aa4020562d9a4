#include "greycard/gamma_curve.h"

#include <algorithm>
#include <stdexcept>

#include "bindings.h"
#include "curves.h"
#include "greycard/curve_tables.h"
#include "greycard/gamma_curve_model.h"

namespace greycard::python {
namespace {

using Text = std::optional<std::string>;
using Int = std::int32_t;

OptionalText optional(const Text& text) {
  return OptionalText(text);
}

std::size_t indexOf(py::ssize_t index, std::size_t size) {
  const auto length = static_cast<py::ssize_t>(size);
  const py::ssize_t fromStart = index < 0 ? index + length : index;
  if (fromStart < 0 || fromStart >= length)
    throw py::index_error("there is no entry " + std::to_string(index) + " of " +
                          std::to_string(length));
  return static_cast<std::size_t>(fromStart);
}

py::array entriesOf(const TableHandle& table) {
  auto* const held = new TableHandle(table);
  const py::capsule owner(held, [](void* gone) { delete static_cast<TableHandle*>(gone); });
  return py::array(py::dtype::of<Int>(), Shape{static_cast<py::ssize_t>(table.shared->size())},
                   table.shared->data(), owner);
}

// No call of the library changes the length of a table, nor can Python: views of it stay good.
void bindTable(py::module_& m) {
  py::class_<TableHandle>(m, "GammaTable", R"(Output codes by input index, shared with a curve.

The entries are int32 and live: numpy.asarray(table) is a view of them.

Examples
--------
>>> import numpy, greycard.core as core
>>> table = core.GammaTable(range(1024))
>>> curve = core.GammaCurve("mine", core.GammaCurveModel(True))
>>> curve.SetGammaTable(core.ColorChannel.All, table)
>>> table[5] = 7
>>> numpy.asarray(curve.Data())[4:7]
array([4, 7, 6], dtype=int32)
)")
      .def(py::init([](const py::object& entries) {
             return TableHandle{std::make_shared<GammaTable>(vectorFrom<Int>(entries, "entries"))};
           }),
           py::arg("entries"))
      .def("__len__", [](const TableHandle& self) { return self.shared->size(); })
      .def("__getitem__",
           [](const TableHandle& self, py::ssize_t index) {
             return (*self.shared)[indexOf(index, self.shared->size())];
           })
      .def("__setitem__",
           [](const TableHandle& self, py::ssize_t index, Int code) {
             (*self.shared)[indexOf(index, self.shared->size())] = code;
           })
      .def(
          "__array__",
          [](const TableHandle& self, const py::object& dtype) -> py::object {
            py::array entries = entriesOf(self);
            return dtype.is_none() ? py::object(entries)
                                   : py::object(entries.attr("astype")(dtype));
          },
          py::arg("dtype") = py::none())
      .def("__repr__", [](const TableHandle& self) {
        return "GammaTable of " + std::to_string(self.shared->size()) + " entries";
      });
}

void bindPoints(py::module_& m) {
  Struct<ControlPoint>(m, "ControlPoint",
                       "A point that a tone curve passes through, in downsampled units.")
      .field("X", &ControlPoint::X, "Table index over the model's XScale.")
      .field("Y", &ControlPoint::Y, "Table value over the model's YScale.");
  py::class_<PointsHandle>(m, "ControlPointList", R"(Control points, shared with a curve.

A list of ControlPoint: entries are read as copies and assigned whole.

Examples
--------
>>> import greycard.core as core
>>> points = core.ControlPointList([core.ControlPoint(X=0, Y=0)])
>>> points.append(core.ControlPoint(X=255, Y=255))
>>> [(point.X, point.Y) for point in points]
[(0, 0), (255, 255)]
)")
      .def(py::init([](const ControlPointList& points) {
             return PointsHandle{std::make_shared<ControlPointList>(points)};
           }),
           py::arg("points") = ControlPointList())
      .def("__len__", [](const PointsHandle& self) { return self.shared->size(); })
      .def("__getitem__",
           [](const PointsHandle& self, py::ssize_t index) {
             return (*self.shared)[indexOf(index, self.shared->size())];
           })
      .def("__setitem__",
           [](const PointsHandle& self, py::ssize_t index, const ControlPoint& point) {
             (*self.shared)[indexOf(index, self.shared->size())] = point;
           })
      .def("__delitem__",
           [](const PointsHandle& self, py::ssize_t index) {
             const auto at = static_cast<py::ssize_t>(indexOf(index, self.shared->size()));
             self.shared->erase(self.shared->begin() + at);
           })
      .def(
          "append",
          [](const PointsHandle& self, const ControlPoint& point) {
            self.shared->push_back(point);
          },
          py::arg("point"))
      .def("clear", [](const PointsHandle& self) { self.shared->clear(); })
      .def("__repr__", [](const PointsHandle& self) {
        return "ControlPointList of " + std::to_string(self.shared->size()) + " points";
      });
}

// The points of the channel's table; nothing that the library would refuse is made room for.
std::optional<std::pair<std::vector<Int>, std::vector<Int>>> downsampled(const GammaCurve& curve,
                                                                         ColorChannel channel,
                                                                         std::int64_t count) {
  std::size_t longest = 0;
  for (const GammaTablePtr& table : {curve.DataR(), curve.DataG(), curve.DataB()})
    if (table) longest = std::max(longest, table->size());
  if (count < 0 || static_cast<std::size_t>(count) > longest) return std::nullopt;
  std::vector<Int> x(static_cast<std::size_t>(count)), y(x.size());
  if (!curve.GetDataDownsampled(channel, x, y)) return std::nullopt;
  return std::pair(std::move(x), std::move(y));
}

using Curve = py::class_<GammaCurve, GammaCurvePtr>;

void bindReaders(Curve& bound) {
  bound.def("Name", &GammaCurve::Name, "The name in the catalogue.")
      .def("IsUnified", &GammaCurve::IsUnified, "Whether one table serves all channels.")
      .def("SetIsUnified", &GammaCurve::SetIsUnified, py::arg("unified"),
           "Refused when immutable or while the model's RGBGamma is false.")
      .def("IsImmutable", &GammaCurve::IsImmutable, "Whether mutators are refused.")
      .def("SetIsImmutable", &GammaCurve::SetIsImmutable, py::arg("immutable"),
           "One way: False is ignored.")
      .def("IsDirty", &GammaCurve::IsDirty, "Changed since the last commit.")
      .def("SetIsDirty", &GammaCurve::SetIsDirty, py::arg("dirty"))
      .def("IsEditable", &GammaCurve::IsEditable,
           "Mutable, and a copy or with at least one (red) control point.")
      .def("Data", &GammaCurve::Data, "The red table, shared; None when absent.")
      .def("DataR", &GammaCurve::DataR)
      .def("DataG", &GammaCurve::DataG)
      .def("DataB", &GammaCurve::DataB)
      .def("DataSize", &GammaCurve::DataSize, "Entries of the red table; 0 when absent.")
      .def("ControlPoints", &GammaCurve::ControlPoints, "The red list, shared; None when absent.")
      .def("ControlPointsR", &GammaCurve::ControlPointsR)
      .def("ControlPointsG", &GammaCurve::ControlPointsG)
      .def("ControlPointsB", &GammaCurve::ControlPointsB);
}

void bindWriters(Curve& bound) {
  const auto color = py::arg("color");
  bound
      .def(
          "SetCurveData",
          [](GammaCurve& self, ColorChannel channel, const Text& text) {
            self.SetCurveData(channel, optional(text));
          },
          color, py::arg("sgamma"),
          "Converts the numbers of the text into the channel's table. Refused when immutable.")
      .def(
          "SetCurveData",
          [](GammaCurve& self, ColorChannel channel, const GammaTablePtr& table) {
            self.SetCurveData(channel, table);
          },
          color, py::arg("aCurveData"), "The same with a table, which may be rescaled in place.")
      .def(
          "SetCurveData",
          [](GammaCurve& self, ColorChannel channel, In<Int> data) {
            self.SetCurveData(channel, data.read("data"));
          },
          color, py::arg("data"), "The same with a copy of numbers, even if immutable.")
      .def(
          "SetCurveData",
          [](GammaCurve& self, const GammaTablePtr& table) { self.SetCurveData(table); },
          py::arg("curveData"), "The same for all channels.")
      .def(
          "SetCurveData",
          [](GammaCurve& self, In<Int> data) { self.SetCurveData(data.read("data")); },
          py::arg("data"))
      .def("SetGammaTable", &GammaCurve::SetGammaTable, color, py::arg("curveData"),
           "Makes the caller's table itself the channel's: no copy, no check, no conversion.")
      .def(
          "SetControlPoints",
          [](GammaCurve& self, ColorChannel channel, const ControlPointListPtr& points) {
            self.SetControlPoints(channel, points);
          },
          color, py::arg("points"),
          "Makes the caller's list itself the channel's. Refused when immutable.")
      .def(
          "SetControlPoints",
          [](GammaCurve& self, ColorChannel channel, const std::string& text) {
            self.SetControlPoints(channel, OptionalText(text));
          },
          color, py::arg("scp"), "Stores the list of the text's numbers.")
      .def(
          "SetControlPoints",
          [](GammaCurve& self, ColorChannel channel, In<Int> x, In<Int> y) {
            self.SetControlPoints(channel, x.read("px"), y.read("py"));
          },
          color, py::arg("px"), py::arg("py"),
          "Clears the channel's list in place and refills it. Raises ValueError when px and py "
          "differ in length.")
      .def("CalculateCurve", &GammaCurve::CalculateCurve,
           "Recomputes the tables from the control points. Raises NumericError for a single point "
           "or two of equal X.")
      .def("GenerateControlPoints", &GammaCurve::GenerateControlPoints, color,
           "Replaces the channel's points by a few that reproduce its table's first stretch.")
      .def("CommitHeader", py::overload_cast<Int>(&GammaCurve::CommitHeader), py::arg("id"),
           "Deliberately empty.")
      .def("CommitHeader", py::overload_cast<Int, Int, Int>(&GammaCurve::CommitHeader),
           py::arg("idR"), py::arg("idG"), py::arg("idB"))
      .def(
          "CommitNameToSession",
          [](GammaCurve& self, const Text& level) { self.CommitNameToSession(optional(level)); },
          py::arg("lightLevel"), "Deliberately empty.");
}

void bindTexts(Curve& bound) {
  bound
      .def("GetDataDownsampled", &downsampled, py::arg("color"), py::arg("points"),
           "The channel's table as px and py of that many points; None where C++ returns false.")
      .def(
          "GetDataDownsampled",
          [](const GammaCurve& self, std::int64_t count) {
            return downsampled(self, ColorChannel::All, count);
          },
          py::arg("points"))
      .def("GetDataAsString",
           py::overload_cast<ColorChannel, Int, Int>(&GammaCurve::GetDataAsString, py::const_),
           py::arg("color"), py::arg("tableSize"), py::arg("bitSize"),
           "The channel's table as the block of a curve file, or None.")
      .def("GetDataAsString",
           py::overload_cast<ColorChannel>(&GammaCurve::GetDataAsString, py::const_),
           py::arg("color"), "Every entry as \" value\", or None.")
      .def("GetControlPointsAsString", &GammaCurve::GetControlPointsAsString, py::arg("color"),
           "Every point as \" X,Y\", or None.")
      .def("GetFileText", &GammaCurve::GetFileText, py::arg("tableSize"), py::arg("bitSize"),
           "The curve as the text of a curve file, or None.")
      .def("ExportToFile", &GammaCurve::ExportToFile, py::arg("fileName"), py::arg("tableSize"),
           py::arg("bitSize"),
           "Writes that text to a file. False where there is none or it can't be written.")
      .def_static(
          "StringToIntArray",
          [](const Text& text) { return GammaCurve::StringToIntArray(optional(text)); },
          py::arg("s"), "The whole numbers between spaces and commas, or None.")
      .def_static(
          "CreatePointArray",
          [](const Text& text) { return GammaCurve::CreatePointArray(optional(text)); },
          py::arg("s"), "The pairs X, Y, X, Y, ... as points; None for less than a pair.")
      .def_static(
          "CreatePointArray",
          [](In<Int> numbers) { return GammaCurve::CreatePointArray(numbers.read("numbers")); },
          py::arg("numbers"))
      .def_static(
          "DataToArray", [](In<Int> data) { return GammaCurve::DataToArray(data.read("data")); },
          py::arg("data"), "A copy of the numbers; None for none.");
}

void bindTables(py::module_& m) {
  m.attr("kCurveBits") = kCurveBits;
  m.attr("kCurveMax") = kCurveMax;
  m.attr("kCurveChannelNames") = py::make_tuple("all", "red", "green", "blue");
  Enum<CurveChannel>(m, "CurveChannel", "A channel of a curve as a user names it.")
      .value("All", CurveChannel::All, "the same as Red")
      .value("Red", CurveChannel::Red)
      .value("Green", CurveChannel::Green)
      .value("Blue", CurveChannel::Blue);
  const auto channel = [] { return py::arg_v("channel", CurveChannel::All, "CurveChannel.All"); };
  m.def(
      "curveTable",
      [](const GammaCurve& curve, CurveChannel wanted) {
        return arrayOf(curveTable(curve, wanted));
      },
      py::arg("curve"), channel(), "A copy of the channel's table; empty when it is absent.");
  m.def(
      "wantedTable",
      [](const GammaCurve& curve, CurveChannel wanted) {
        return arrayOf(wantedTable(curve, wanted));
      },
      py::arg("curve"), channel(), "The same of a curve that must have one. Raises JobError.");
  m.def(
      "curvePoints",
      [](const GammaCurve& curve, CurveChannel wanted) {
        const auto points = curvePoints(curve, wanted);
        return std::vector<ControlPoint>(points.begin(), points.end());
      },
      py::arg("curve"), channel(), "The channel's control points; empty when they are absent.");
  Struct<CurveTables> tables(m, "CurveTables", "A curve as a value: copies of tables and points.");
  Struct<CurveTables::Channel>(tables, "Channel", "One channel of a curve.")
      .field("table", &CurveTables::Channel::table, "Codes of kCurveBits bits.")
      .field("points", &CurveTables::Channel::points, "Control points.");
  tables.field("name", &CurveTables::name, "Of the curve.")
      .field("unified", &CurveTables::unified, "One table serves all channels.")
      .field("channels", &CurveTables::channels, "Red (or all), green, blue.");
  m.def("curveTables", &curveTables, py::arg("curve"),
        "The curve as a value. Raises JobError for a curve with a table missing.");
}

}  // namespace

void bindGammaCurve(py::module_& m) {
  bindTable(m);
  bindPoints(m);
  Enum<ColorChannel>(m, "ColorChannel", "All and Red name the same storage.")
      .value("All", ColorChannel::All)
      .value("Red", ColorChannel::Red)
      .value("Green", ColorChannel::Green)
      .value("Blue", ColorChannel::Blue);
  // Declared before either has a call, for the signatures.
  py::class_<GammaCurveModel> model(m, "GammaCurveModel", R"(The catalogue of named tone curves.

Names are unique, exact and case-sensitive. Operations refuse silently, by None or False. A curve
stays valid for whoever holds it, also after its deletion or the model's end.

Examples
--------
>>> import greycard.core as core
>>> model = core.GammaCurveModel(True)
>>> len(model.GetNames()), model.GetGammaCurveByIndex(0).DataSize()
(11, 1024)
>>> copy = model.AddGammaCurve("mine", model.GetNames()[0])
>>> copy.IsEditable(), model.AddGammaCurve("mine")
(True, None)
)");
  Curve bound(m, "GammaCurve", R"(One named tone curve: tables, and control points behind them.

Tables and point lists are shared: SetGammaTable and SetControlPoints keep the caller's own object. Not
for use from two threads at once, nor together with another curve of the same model.
)");
  bound
      .def(py::init([](const std::string& name, GammaCurveModel& parent) {
             return std::make_shared<GammaCurve>(name, parent);
           }),
           py::arg("name"), py::arg("parent"), "1024 zeros, without control points.")
      .def(py::init([](const std::string& name, GammaCurveModel& parent, In<Int> data) {
             return std::make_shared<GammaCurve>(name, parent, data.read("data"));
           }),
           py::arg("name"), py::arg("parent"), py::arg("data"), "A built-in curve.")
      .def(py::init([](const std::string& name, const GammaCurve& source) {
             return std::make_shared<GammaCurve>(name, source);
           }),
           py::arg("name"), py::arg("source"), "A mutable, dirty copy.");
  bindReaders(bound);
  bindWriters(bound);
  bindTexts(bound);
  bindTables(m);
  bindGammaModel(m, model);
}

}  // namespace greycard::python
