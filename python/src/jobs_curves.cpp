// Jobs on tone curves: shown, made, exchanged as files, turned into tables.

#include "greycard/jobs/build_curve_lut.h"
#include "greycard/jobs/curve_files.h"
#include "greycard/jobs/degamma_colour.h"
#include "greycard/jobs/make_curve.h"
#include "greycard/jobs/reduce_curve.h"
#include "greycard/jobs/show_curve.h"
#include "greycard/jobs/standard_curve.h"
#include "jobs.h"

namespace greycard::python {
namespace {

using Path = std::filesystem::path;

void bindShowCurve(py::module_& m) {
  Struct<CatalogueCurve>(m, "CatalogueCurve", "What a catalogue says of one curve.")
      .field("name", &CatalogueCurve::name, "Of the curve.")
      .field("entries", &CatalogueCurve::entries, "Of its (red) table.")
      .field("unified", &CatalogueCurve::unified, "One table serves all channels.")
      .field("immutable", &CatalogueCurve::immutable, "Whether it refuses changes.");
  Struct<GammaCatalogueListing>(m, "GammaCatalogueListing", "The curves of a catalogue.")
      .field("curves", &GammaCatalogueListing::curves, "In the catalogue's order.");
  m.def("listCurves", &listCurves, py::arg("catalogue"), "What a GammaCurveModel holds.");
  Struct<ShowCurveOptions>(m, "ShowCurveOptions", "Which part of a curve is shown.")
      .field("channel", &ShowCurveOptions::channel, "Of the curve.")
      .field("points", &ShowCurveOptions::points,
             "Samples of a curve without control points, 2..256.");
  Struct<ShownCurve>(m, "ShownCurve", "One channel of a curve.")
      .field("name", &ShownCurve::name, "Of the curve.")
      .field("channel", &ShownCurve::channel, "Of the curve.")
      .field("unified", &ShownCurve::unified, "One table serves all channels.")
      .field("immutable", &ShownCurve::immutable, "Whether it refuses changes.")
      .field("table", &ShownCurve::table, "Codes of 14 bits.")
      .field("pointsAreSamples", &ShownCurve::pointsAreSamples,
             "Of the table, as the curve has no control points of its own.")
      .field("points", &ShownCurve::points, "Control points.");
  m.def("showCurve", &showCurve, py::arg("curve"),
        defaulted<ShowCurveOptions>("options", "ShowCurveOptions()"),
        "One channel of a GammaCurve. Raises JobError for a curve without a table, ValueError for "
        "points outside 2..256.");
}

void bindMakeCurve(py::module_& m) {
  m.def("powerCurve", &powerCurve, py::arg("denominator"),
        "Output = input^(1 / denominator), a GammaCurve called \"power2.2\" after its denominator. "
        "Raises ValueError for one outside 0.1..10.");
  m.def(
      "mergedCurve",
      [](const std::string& name, const GammaCurve& red, const GammaCurve& green,
         const GammaCurve& blue) { return mergedCurve(name, red, green, blue); },
      py::arg("name"), py::arg("red"), py::arg("green"), py::arg("blue"),
      "One curve with the red table of the first, the green one of the second and the blue one of "
      "the third. Raises JobError for a curve without a table.");
  m.def("invertedCurve", &invertedCurve, py::arg("curve"),
        "What undoes a curve, by straight lines between its entries. Raises JobError for a curve "
        "without a table, and for one that falls somewhere.");
}

void bindReduceCurve(py::module_& m) {
  Struct<ControlPointReduction>(m, "ControlPointReduction",
                                "Control points made of a curve's table.")
      .field("name", &ControlPointReduction::name, "Of the curve.")
      .field("channel", &ControlPointReduction::channel, "Of the curve.")
      .field("points", &ControlPointReduction::points, "Control points.")
      .field("largestDeviation", &ControlPointReduction::largestDeviation,
             "Of the curve through the points from the table, in codes.")
      .field("largestDeviationIndex", &ControlPointReduction::largestDeviationIndex,
             "Where that is.")
      .field("table", &ControlPointReduction::table, "Codes.")
      .field("tableThroughPoints", &ControlPointReduction::tableThroughPoints,
             "Codes of the curve through the points.")
      .field("withinPercent", &ControlPointReduction::withinPercent,
             "As it was asked of fewestPointsOf.");
  m.def("reduceToControlPoints", &reduceToControlPoints, py::arg("curve"),
        py::arg_v("channel", CurveChannel::All, "CurveChannel.All"),
        "As an editor starts from them. Raises JobError for a curve without a table.");
  m.def(
      "fewestPointsOf",
      [](const GammaCurve& curve, double percent, CurveChannel channel) {
        const GammaCurve own(curve.Name(), curve);  // which no other thread can meet
        return withoutLock([&] { return fewestPointsOf(own, percent, channel); });
      },
      py::arg("curve"), py::arg("percent"),
      py::arg_v("channel", CurveChannel::All, "CurveChannel.All"),
      "Few points whose curve stays within so many percent of full scale. Raises JobError for a "
      "curve without a table of 1024 entries, and when 32 points are not enough.");
}

void bindCurveTables(py::module_& m) {
  Enum<LutKind>(m, "LutKind", "The shapes of gamma_lut.h.")
      .value("Plain", LutKind::Plain)
      .value("Of14Bits", LutKind::Of14Bits)
      .value("Norm", LutKind::Norm)
      .value("To12Bits", LutKind::To12Bits);
  m.attr("kLutKindNames") = py::tuple(py::cast(kLutKindNames));
  Struct<CurveLutOptions>(m, "CurveLutOptions", "Which look-up table is made of a curve.")
      .field("kind", &CurveLutOptions::kind, "Which one.")
      .field("channel", &CurveLutOptions::channel, "Of the curve.")
      .field("bits", &CurveLutOptions::bits,
             "Bits that the curve is shifted to first, 8 or 14; None for what the kind expects.");
  Struct<CurveLut>(m, "CurveLut", "A look-up table made of one channel of a curve.")
      .field("name", &CurveLut::name, "Of the curve.")
      .field("channel", &CurveLut::channel, "Of the curve.")
      .field("kind", &CurveLut::kind, "Which one.")
      .field("curveBits", &CurveLut::curveBits, "Of the codes that the values were made from.")
      .field("values", &CurveLut::values, "256, or 4096 of To12Bits.");
  m.def("buildCurveLut", &buildCurveLut, py::arg("curve"),
        defaulted<CurveLutOptions>("options", "CurveLutOptions()"),
        "Raises JobError for a curve of other than 1024 entries, ValueError for bits other than 8 "
        "and 14, and for 14 where the kind is To12Bits.");
  m.def("lutText", &lutText, py::arg("lut"), "The values for a file, one a line.");

  Enum<StandardCurveKind>(m, "StandardCurveKind",
                          "The perceptual quantiser of SMPTE ST 2084, and the hybrid "
                          "log-gamma curve of ITU-R BT.2100.")
      .value("HDR10", StandardCurveKind::HDR10)
      .value("HLG", StandardCurveKind::HLG);
  m.attr("kStandardCurveNames") = py::tuple(py::cast(kStandardCurveNames));
  Struct<StandardCurveOptions>(m, "StandardCurveOptions", "Which standard curve.")
      .field("kind", &StandardCurveOptions::kind, "Which one.")
      .field("nits", &StandardCurveOptions::nits, "Peak luminance of HDR10 in cd/m2, 1..10000.");
  Struct<StandardCurve> standard(m, "StandardCurve",
                                 "A curve of 257 output codes over linear inputs.");
  standard.attr("kInputBits") = +StandardCurve::kInputBits;
  standard.attr("kOutputBits") = +StandardCurve::kOutputBits;
  standard.field("kind", &StandardCurve::kind, "Which one.")
      .field("peak", &StandardCurve::peak, "Light at full-scale input: cd/m2 of HDR10, 1 of HLG.")
      .field("inputs", &StandardCurve::inputs, "Codes of 12 bits: 0, 16, ... 4080, 4095.")
      .field("table", &StandardCurve::table, "Codes of 10 bits.")
      .def("light", &StandardCurve::light, py::arg("input"),
           "Light at an input, from 0 to the peak.");
  m.def("standardCurve", &standardCurve,
        defaulted<StandardCurveOptions>("options", "StandardCurveOptions()"),
        "Raises ValueError for a peak luminance outside 1..10000.");
  m.def("codesText", &codesText, py::arg("curve"), "The output codes for a file, one a line.");

  Struct<DeGammaResult>(m, "DeGammaResult", "The inputs behind an encoded colour.")
      .field("name", &DeGammaResult::name, "Of the curve.")
      .field("colour", &DeGammaResult::colour, "R, G, B, 0..255.")
      .field("positions", &DeGammaResult::positions,
             "Where the curve gives that colour, as entry numbers 1 to 256 of the tables; not a "
             "number where a flat stretch of the curve gives no single input.")
      .field("tables", &DeGammaResult::tables, "Of R, G, B: 256 entries of 10 bits.")
      .attr("kTableUnitsPerLevel") = DeGammaResult::kTableUnitsPerLevel;
  m.def("degammaColour", &degammaColour, py::arg("curve"), py::arg("colour"),
        "DeGamma.runDeGamma with each channel's table of the curve. Raises JobError for a curve of "
        "other than 1024 entries, ValueError for a level outside 0..255.");
}

void bindCurveFiles(py::module_& m) {
  Struct<CurveFileForm>(m, "CurveFileForm", "The shape of a curve file.")
      .field("values", &CurveFileForm::values, "Of a table: 64, 256, 512 or 1024.")
      .field("bits", &CurveFileForm::bits, "Of a value: 8, 10, 12 or 14.");
  Struct<CurveExport>(m, "CurveExport", "A curve and the file that it was written to.")
      .field("curve", &CurveExport::curve, "Its tables and points.")
      .field("file", &CurveExport::file, "Names it.")
      .field("form", &CurveExport::form, "Of the file.");
  Struct<CurveFileTable>(m, "CurveFileTable", "One table of numbers as it stood in a curve file.")
      .field("channel", &CurveFileTable::channel, "Red also of a table for all channels.")
      .field("values", &CurveFileTable::values, "How many numbers.")
      .field("bits", &CurveFileTable::bits, "0 for an unusable table and for fractions.");
  Struct<ImportedCurve>(m, "ImportedCurve", "What a curve file held.")
      .field("curve", &ImportedCurve::curve, "Its tables and points.")
      .field("file", &ImportedCurve::file, "Names it.")
      .field("fileTables", &ImportedCurve::fileTables, "As they stood in the file.")
      .field("notes", &ImportedCurve::notes, "What was left out or may surprise, in file order.");
  Struct<RefusedCurveFile>(m, "RefusedCurveFile", "A file that gives no curve.")
      .field("file", &RefusedCurveFile::file, "Names it.")
      .field("reason", &RefusedCurveFile::reason, "One sentence with file, line and column.")
      .field("notes", &RefusedCurveFile::notes, "What else there is to say, a line each.");
  Struct<CurveImportReport>(m, "CurveImportReport", "What files of curves gave.")
      .field("curves", &CurveImportReport::curves, "One for each file that gives one.")
      .field("refused", &CurveImportReport::refused, "The others.");
  m.def("curveFileText", &curveFileText, py::arg("curve"),
        defaulted<CurveFileForm>("form", "CurveFileForm()"),
        "A curve as a curve file's text. Raises JobError when the curve has no table that could be "
        "written, ValueError for a form other than the above.");
  m.def("exportCurve", &exportCurve, py::arg("curve"), py::arg("file"),
        defaulted<CurveFileForm>("form", "CurveFileForm()"),
        "Writes a curve file; raises as curveFileText, and FileError.");
  m.def(
      "importCurves",
      [](GammaCurveModel& catalogue, const std::vector<Path>& files,
         const CurveImportOptions& options) { return importCurves(catalogue, files, options); },
      py::arg("catalogue"), py::arg("files"),
      defaulted<CurveImportOptions>("options", "CurveImportOptions()"),
      "Reads files of curves into the catalogue, where the curves are found by the names that the "
      "report tells.");
}

}  // namespace

void bindCurveJobs(py::module_& m) {
  bindShowCurve(m);
  bindMakeCurve(m);
  bindReduceCurve(m);
  bindCurveTables(m);
  bindCurveFiles(m);
}

}  // namespace greycard::python
