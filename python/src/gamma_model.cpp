#include <filesystem>
#include <stdexcept>
#include <utility>

#include "bindings.h"
#include "calls.h"
#include "curves.h"
#include "greycard/camera_gamma.h"
#include "greycard/curve_import.h"
#include "greycard/curve_source.h"
#include "greycard/fewest_points.h"
#include "greycard/files.h"
#include "greycard/gamma_curve_model.h"
#include "greycard/gamma_lut.h"

namespace greycard::python {
namespace {

using Text = std::optional<std::string>;
using Int = std::int32_t;
using Model = py::class_<GammaCurveModel>;

constexpr std::int64_t kLongestCurve = 1 << 24;

OptionalText optional(const Text& text) {
  return OptionalText(text);
}

void bindImportResults(py::module_& m) {
  Struct<GammaImportNote>(m, "GammaImportNote", "A remark on one place of a curve file.")
      .field("line", &GammaImportNote::line, "From 1; 0 when it is about the whole file.")
      .field("token", &GammaImportNote::token, "The word it is about; may be empty.")
      .field("text", &GammaImportNote::text, "One sentence without the file's name and line.")
      .field("column", &GammaImportNote::column, "Of the word in its line, from 1, or None.");
  Struct<GammaImport> import(m, "GammaImport", "What an import made of a curve file.");
  Struct<GammaImport::Table>(import, "Table", "One table of numbers as it stood in the file.")
      .field("numbers", &GammaImport::Table::numbers, "How many.")
      .field("bits", &GammaImport::Table::bits, "8, 10, 12 or 14; 0 for an unusable table.");
  import.field("curve", &GammaImport::curve, "In the catalogue now; None when refused.")
      .field("refusal", &GammaImport::refusal, "Why there is no curve; None when there is one.")
      .field("notes", &GammaImport::notes, "What was left out or may surprise, in file order.")
      .field("tables", &GammaImport::tables, "Red (or all channels), green, blue.");
}

void bindSettings(Model& bound) {
  bound.def("GammaBitSize", &GammaCurveModel::GammaBitSize, "Bit depth of table values.")
      .def("SetGammaBitSize", &GammaCurveModel::SetGammaBitSize, py::arg("bits"))
      .def("RGBGamma", &GammaCurveModel::RGBGamma, "Whether curves may have a table per channel.")
      .def("SetRGBGamma", &GammaCurveModel::SetRGBGamma, py::arg("perChannel"))
      .def("XScale", &GammaCurveModel::XScale, "Table index per unit of a control point's X.")
      .def("SetXScale", &GammaCurveModel::SetXScale, py::arg("scale"))
      .def("YScale", &GammaCurveModel::YScale, "Table value per unit of a control point's Y.")
      .def("SetYScale", &GammaCurveModel::SetYScale, py::arg("scale"))
      .def("MaxY", &GammaCurveModel::MaxY, "Highest table value.")
      .def("SetMaxY", &GammaCurveModel::SetMaxY, py::arg("maxY"));
}

void bindCatalogue(Model& bound) {
  bound
      .def("GetGammaCurveByIndex", &GammaCurveModel::GetGammaCurveByIndex, py::arg("index"),
           "The curve at a catalogue position; None outside 0..count - 1.")
      .def(
          "GetGammaCurveByName",
          [](const GammaCurveModel& self, const Text& name) {
            return self.GetGammaCurveByName(optional(name));
          },
          py::arg("name"), "The curve of that name, or None.")
      .def("GetNames", &GammaCurveModel::GetNames, "The names in catalogue order.")
      .def(
          "GetCurrent",
          [](const GammaCurveModel& self, const Text& level) {
            return self.GetCurrent(optional(level));
          },
          py::arg("lightLevel"), "Always None: no light level has a name of its own.")
      .def(
          "GetCurrentCurve",
          [](const GammaCurveModel& self, const Text& level) {
            return self.GetCurrentCurve(optional(level));
          },
          py::arg("lightLevel"), "The light level is used as a curve's name.")
      .def(
          "AddGammaCurve",
          [](GammaCurveModel& self, const std::string& name) { return self.AddGammaCurve(name); },
          py::arg("name"), "Appends a mutable, dirty curve of zeros. None when the name is taken.")
      .def(
          "AddGammaCurve",
          [](GammaCurveModel& self, const std::string& name, double denominator, Int maxY) {
            return self.AddGammaCurve(name, denominator, maxY);
          },
          py::arg("name"), py::arg("denominator"), py::arg("maxY"),
          "Appends a power-law curve (GetReferenceCurve).")
      .def(
          "AddGammaCurve",
          [](GammaCurveModel& self, const std::string& name, const Text& source) {
            return self.AddGammaCurve(name, optional(source));
          },
          py::arg("name"), py::arg("source"), "Appends an editable copy of the curve `source`.")
      .def(
          "DeleteGammaCurve",
          [](GammaCurveModel& self, const Text& name) {
            return self.DeleteGammaCurve(optional(name));
          },
          py::arg("name"), "False when there is no such curve or it is immutable.")
      .def("DeletedNames", &GammaCurveModel::DeletedNames, "Names deleted since the last commit.");
}

void bindSession(Model& bound) {
  bound
      .def("CommitSession", &GammaCurveModel::CommitSession,
           "Forgets the deleted names and makes every curve clean. Nothing is stored.")
      .def(
          "SaveGammaCurve",
          [](const GammaCurveModel& self, const Text& name) {
            return self.SaveGammaCurve(optional(name));
          },
          py::arg("name"), "Whether the curve exists and has a table that could be written.")
      .def(
          "SaveGammaCurveAs",
          [](const GammaCurveModel& self, const Text& name, const Text& section) {
            return self.SaveGammaCurveAs(optional(name), optional(section));
          },
          py::arg("name"), py::arg("sectionName"))
      .def(
          "LoadGammaCurve",
          [](GammaCurveModel& self, const std::string& name) { return self.LoadGammaCurve(name); },
          py::arg("name"), "None: the session store is empty.")
      .def("GetSectionNames", &GammaCurveModel::GetSectionNames, "Deliberately empty.")
      .def(
          "GetFromSession",
          [](const GammaCurveModel& self, const Text& section, const Text& item) {
            return self.GetFromSession(optional(section), optional(item));
          },
          py::arg("sectionName"), py::arg("itemName"), "Deliberately empty.")
      .def(
          "SaveToSession",
          [](GammaCurveModel& self, const Text& section, const Text& item, const Text& data) {
            self.SaveToSession(optional(section), optional(item), optional(data));
          },
          py::arg("sectionName"), py::arg("itemName"), py::arg("data"), "Deliberately empty.")
      .def(
          "DeleteFromSession",
          [](GammaCurveModel& self, const Text& section) {
            self.DeleteFromSession(optional(section));
          },
          py::arg("sectionName"), "Deliberately empty.");
}

void bindMaking(Model& bound) {
  bound
      .def(
          "CreateCurve",
          [](GammaCurveModel& self, const std::string& name, const GammaTablePtr& r,
             const GammaTablePtr& g, const GammaTablePtr& b, const ControlPointListPtr& cpR,
             const ControlPointListPtr& cpG, const ControlPointListPtr& cpB) {
            return self.CreateCurve(name, r, g, b, cpR, cpG, cpB);
          },
          py::arg("name"), py::arg("gammaR"), py::arg("gammaG"), py::arg("gammaB"), py::arg("cpR"),
          py::arg("cpG"), py::arg("cpB"),
          "A mutable, dirty curve that is not in the catalogue, holding the caller's tables and "
          "lists themselves. None without a red table.")
      .def(
          "CreateCurve",
          [](GammaCurveModel& self, const std::string& name, const Text& r, const Text& g,
             const Text& b, const Text& cp, const Text& cpG, const Text& cpB) {
            return self.CreateCurve(name, optional(r), optional(g), optional(b), optional(cp),
                                    optional(cpG), optional(cpB));
          },
          py::arg("name"), py::arg("table"), py::arg("tableG"), py::arg("tableB"), py::arg("cp"),
          py::arg("cpG"), py::arg("cpB"), "The same from texts.")
      .def(
          "CreateCurve",
          [](GammaCurveModel& self, const std::string& name, In<Int> r, In<Int> g, In<Int> b,
             In<Int> cpR, In<Int> cpG, In<Int> cpB) {
            return self.CreateCurve(name, r.read("listR"), g.read("listG"), b.read("listB"),
                                    cpR.read("cpR"), cpG.read("cpG"), cpB.read("cpB"));
          },
          py::arg("name"), py::arg("listR"), py::arg("listG"), py::arg("listB"), py::arg("cpR"),
          py::arg("cpG"), py::arg("cpB"),
          "The same from lists of numbers; an empty one counts as absent.")
      .def("GenerateHDRCurve", &GammaCurveModel::GenerateHDRCurve, py::arg("MN"),
           "The perceptual quantiser up to a peak luminance in cd/m2, 1..10000: 257 codes of 10 "
           "bits, not in the catalogue.")
      .def("GenerateHLGCurve", &GammaCurveModel::GenerateHLGCurve,
           "The hybrid log-gamma curve in the same form.")
      .def(
          "CreateGammaTable",
          [](const GammaCurveModel& self, const Text& text) {
            return self.CreateGammaTable(optional(text));
          },
          py::arg("sGamma"), "A new table of 1024 entries by MakeGammaTable; None when it fails.")
      .def(
          "CreateGammaTable",
          [](const GammaCurveModel& self, const GammaTablePtr& source) {
            return self.CreateGammaTable(source);
          },
          py::arg("aSrc"), "The same; `aSrc` may be rescaled in place.")
      .def(
          "CreateGammaTable",
          [](const GammaCurveModel& self, In<Int> numbers) {
            return self.CreateGammaTable(numbers.read("list"));
          },
          py::arg("list"), "The same from a copy of the numbers.");
}

void bindFiles(Model& bound) {
  bound
      .def("ImportFromFile", &GammaCurveModel::ImportFromFile, py::arg("fileName"),
           "Reads a curve file into a new curve of the catalogue, named as the file. None when it "
           "gives no red table; raises FileError when it can't be read.")
      .def("ImportWithReport", &GammaCurveModel::ImportWithReport, py::arg("fileName"),
           "The same, telling why there is no curve and what was left out.")
      .def(
          "ImportText",
          [](GammaCurveModel& self, const std::string& name, std::string text) {
            return self.ImportText(name, std::move(text));
          },
          py::arg("name"), py::arg("text"), "The same from a text in memory.");
}

std::optional<std::vector<Int>> makeTable(const GammaCurveModel& self, InOut<Int> source) {
  std::vector<Int> made(GammaLUT::kEntries);
  if (!self.MakeGammaTable(source.change("aSrc"), made)) return std::nullopt;
  return made;
}

std::vector<Int> referenceCurve(const GammaCurveModel& self, double denominator,
                                std::int64_t entries, Int maxY) {
  if (entries < 0 || entries > kLongestCurve)
    throw std::invalid_argument("entries is " + std::to_string(entries) + ", not 0 to " +
                                std::to_string(kLongestCurve));
  std::vector<Int> curve(static_cast<std::size_t>(entries));
  self.GetReferenceCurve(denominator, curve, maxY);
  return curve;
}

std::optional<std::pair<std::vector<double>, std::vector<double>>> fewerPoints(
    GammaCurveModel& self, int ninterp, In<double> pinx, In<double> piny) {
  const auto x = pinx.read("pinx"), y = piny.read("piny");
  std::vector<double> outX(x.size()), outY(y.size());
  constexpr int kNothing = -1;
  int count = kNothing;
  self.FindMinimumControlPoints(ninterp, x, y, outX, outY, count);
  if (count == kNothing) return std::nullopt;
  outX.resize(static_cast<std::size_t>(count));
  outY.resize(static_cast<std::size_t>(count));
  return std::pair(std::move(outX), std::move(outY));
}

void bindArithmetic(Model& bound) {
  bound
      .def(
          "MakeGammaTable", &makeTable, py::arg("aSrc"),
          R"(A table of 64, 256, 512 or 1024 entries of 8, 10, 12 or 14 bits as 1024 of GammaBitSize.

Parameters
----------
aSrc : ndarray of int32
    Rescaled in place when its depth differs.

Returns
-------
ndarray of int32, or None
    None for any other length, or a GammaBitSize outside 0..31.
)")
      .def("GetReferenceCurve", &referenceCurve, py::arg("denominator"), py::arg("entries"),
           py::arg("maxY"), "trunc((i / (n - 1))^(1 / denominator) * maxY) of n entries.")
      .def("FindMinimumControlPoints", &fewerPoints, py::arg("ninterp"), py::arg("pinx"),
           py::arg("piny"),
           R"(Reduces control points to a subset whose spline stays within 4 units.

Returns
-------
x, y, or None
    None with 5 or fewer points, of which nothing can be left out.

Raises
------
ValueError
    Arrays of different lengths, more than 512 points, or ninterp out of range.
NumericError
    The spline is evaluated between two points of equal x.
)");
}

template <typename T, std::size_t N, bool (*generate)(std::span<T, N>, std::span<const Int>)>
std::optional<std::array<T, N>> generated(In<Int> curve) {
  std::array<T, N> made{};
  if (!generate(made, curve.read("pGammaLUT"))) return std::nullopt;
  return made;
}

void bindShapes(py::module_& m) {
  const auto curve = py::arg("pGammaLUT");
  m.def("GenerateGammaLUT255", &generated<double, 256, &GenerateGammaLUT255>, curve,
        "Every fourth of 1024 entries; None for another number of them, like the next three.");
  m.def("GenerateGammaLUT255_14bit", &generated<double, 256, &GenerateGammaLUT255_14bit>, curve,
        "Every fourth entry of a 14-bit curve divided by 62.4.");
  m.def("GenerateGammaLUTNorm", &generated<double, 256, &GenerateGammaLUTNorm>, curve,
        "Every fourth entry of an 8-bit curve divided by 255.");
  m.def("GenerateGammaLUT12bit", &generated<std::int16_t, 4096, &GenerateGammaLUT12bit>, curve,
        "An 8-bit curve as 4096 12-bit output codes; the last is 0.");
}

void bindImports(py::module_& m) {
  Struct<CurveImportOptions>(m, "CurveImportOptions", "How a curve is read.")
      .field("fromPoints", &CurveImportOptions::fromPoints,
             "Tables are computed anew from the file's control points.");
  m.def(
      "importAnyCurve",
      [](GammaCurveModel& catalogue, const std::string& name, std::string text,
         const CurveImportOptions& options) {
        const auto read = withoutLock([&] { return CurveReading(std::move(text)); });
        return importAnyCurve(catalogue, name, read, options);
      },
      py::arg("catalogue"), py::arg("name"), py::arg("text"),
      py::arg_v("options", CurveImportOptions(), "CurveImportOptions()"),
      R"(Reads a tone curve as people and programs keep it into a new curve of the catalogue.

The form is told by the content: a curve file, .cube, columns, JSON, YAML, C, plain numbers.

Examples
--------
>>> import greycard.core as core
>>> found = core.importAnyCurve(core.GammaCurveModel(False), "ramp", "0 0.25 0.5 0.75 1")
>>> found.curve.Name(), found.curve.DataSize()
('ramp', 1024)
)");
  m.def(
      "importAnyCurveFile",
      [](GammaCurveModel& catalogue, const std::filesystem::path& file,
         const CurveImportOptions& options) {
        const auto read = withoutLock([&] { return CurveReading(readWholeFile(file)); });
        return importAnyCurve(catalogue, file.stem().string(), read, options);
      },
      py::arg("catalogue"), py::arg("file"),
      py::arg_v("options", CurveImportOptions(), "CurveImportOptions()"),
      "The same of a file, after which the curve is named. Raises FileError.");

  m.def("noteText", &noteText, py::arg("file"), py::arg("note"),
        "The note with its file, line, column and word, as one line.");
  Struct<SourcedCurve>(m, "SourcedCurve", "A curve, and what its file held that may surprise.")
      .field("curve", &SourcedCurve::curve, "The curve.")
      .field("notes", &SourcedCurve::notes, "A line each.");
  Struct<ComparisonCurve>(m, "ComparisonCurve", "A curve to show beside others.")
      .field("curve", &ComparisonCurve::curve, "Called as it was asked for.")
      .field("notes", &ComparisonCurve::notes, "A line each.");
  m.def(
      "curveByNameOrFile",
      [](const std::string& name) { return withoutLock([&] { return curveByNameOrFile(name); }); },
      py::arg("nameOrFile"),
      "A curve of the catalogue by its name, \"HDR10\", \"HLG\", or the curve of a file. Raises "
      "JobError that lists the names when it is neither; CurveFileRefused; FileError.");
  m.def(
      "comparisonCurve",
      [](const std::string& name) { return withoutLock([&] { return comparisonCurve(name); }); },
      py::arg("nameOrFile"), "The same, with \"HDR10\" and \"HLG\" as they are.");
}

CameraGamma::Tables in14Bits(const CameraGamma& self) {
  if (self.bits < 8 || self.bits > 14)
    throw std::invalid_argument("bits is " + std::to_string(self.bits) + ", not 8, 10, 12 or 14");
  return self.in14Bits();
}

void bindCameraGamma(py::module_& m) {
  Struct<CameraGamma>(m, "CameraGamma", "A camera's tone curve: three tables of 256 codes.")
      .field("name", &CameraGamma::name, "Of the catalogue, or of the file.")
      .field("bits", &CameraGamma::bits, "8, 10, 12 or 14, of the codes.")
      .field("tables", &CameraGamma::tables, "R, G, B.")
      .def("in14Bits", &in14Bits, "The codes shifted to 14 bits.");
  m.def(
      "cameraGamma",
      [](const std::string& name) { return withoutLock([&] { return cameraGamma(name); }); },
      py::arg("nameOrFile"),
      "A curve of the catalogue by its name, or a file of 256 whole numbers. Raises JobError when "
      "it "
      "is neither; FileError.");
  m.attr("kMostFewestPoints") = kMostFewestPoints;
  m.def(
      "fewestControlPoints",
      [](const std::vector<Int>& table, double codes) {
        return withoutLock([&] { return fewestControlPoints(table, codes); });
      },
      py::arg("table"), py::arg("codes"),
      "The fewest control points whose curve is nowhere farther than `codes` from the table of "
      "1024 "
      "entries of 14 bits; None when 32 points are not enough.");
}

}  // namespace

void bindGammaModel(py::module_& m, py::class_<GammaCurveModel>& bound) {
  Enum<GammaCurveID>(m, "GammaCurveID", "One value per built-in curve, in catalogue order.")
      .value("ID_GAMMA_NORMAL", GammaCurveID::ID_GAMMA_NORMAL)
      .value("ID_GAMMA_LOWLIGHT", GammaCurveID::ID_GAMMA_LOWLIGHT)
      .value("ID_GAMMA_OUTDOOR", GammaCurveID::ID_GAMMA_OUTDOOR)
      .value("ID_GAMMA_OUTDOOR_HIGH_CONTRAST", GammaCurveID::ID_GAMMA_OUTDOOR_HIGH_CONTRAST)
      .value("ID_GAMMA_OUTDOOR_MORE_DETAIL", GammaCurveID::ID_GAMMA_OUTDOOR_MORE_DETAIL)
      .value("ID_GAMMA_BACKLIGHT", GammaCurveID::ID_GAMMA_BACKLIGHT)
      .value("ID_GAMMA_NORMAL_MEDIUM_DETAIL", GammaCurveID::ID_GAMMA_NORMAL_MEDIUM_DETAIL)
      .value("ID_GAMMA_OUTDOOR_MEDIUM_DETAIL", GammaCurveID::ID_GAMMA_OUTDOOR_MEDIUM_DETAIL)
      .value("ID_GAMMA_SRGB", GammaCurveID::ID_GAMMA_SRGB)
      .value("ID_GAMMA_NEXUS5", GammaCurveID::ID_GAMMA_NEXUS5)
      .value("ID_GAMMA_HDR", GammaCurveID::ID_GAMMA_HDR);
  bindImportResults(m);
  bound.def(py::init<bool>(), py::arg("bAutoPopulate"));
  bindSettings(bound);
  bindCatalogue(bound);
  bindSession(bound);
  bindMaking(bound);
  bindFiles(bound);
  bindArithmetic(bound);
  bindShapes(m);
  bindImports(m);
  bindCameraGamma(m);
}

}  // namespace greycard::python
