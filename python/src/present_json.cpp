// greycard.core.present: options and results as JSON, and how they came about.

#include <span>

#include "greycard/present/best_fit.h"
#include "greycard/present/chart.h"
#include "greycard/present/comparison.h"
#include "greycard/present/fit_file.h"
#include "greycard/present/fitting.h"
#include "greycard/present/gamma.h"
#include "greycard/present/lut2d.h"
#include "greycard/present/measured_chart.h"
#include "greycard/present/noise.h"
#include "greycard/present/photograph.h"
#include "greycard/present/profile.h"
#include "greycard/present/provenance.h"
#include "greycard/present/simulate.h"
#include "greycard/present/verdict.h"
#include "jobs.h"
#include "search_options.h"

namespace greycard::python {
namespace {

using present::ChartComparison;
using present::JudgedChart;

constexpr const char* kToJson = "The options or the result as JSON.";
constexpr const char* kFromJson = R"(Takes over what JSON holds.

Of options a field that is left out keeps its value; results are read as toJson wrote them. The
value is changed in place, or left as it was when the text is refused.

Raises
------
ValueError
    A sentence that begins with the field, also for a field that is unknown.)";

// Both ways, for each of the types.
template <typename... Types>
void bindJsonOf(py::module_& m) {
  const auto bindOne = [&m]<typename T>(std::type_identity<T>) {
    m.def(
        "toJson", [](const T& value) { return present::toJson(value); }, py::arg("value"), kToJson);
    m.def(
        "fromJson",
        [](const std::string& text, T& value) {
          T read = value;
          present::fromJson(text, read);
          value = std::move(read);
        },
        py::arg("text"), py::arg("value"), kFromJson);
  };
  (bindOne(std::type_identity<Types>{}), ...);
}

void bindJson(py::module_& m) {
  bindJsonOf<LocateOptions, ChartSearch, FoundCharts, ChartFitOptions, ChartFit, EvaluationOptions,
             ChartEvaluation, BestFitOptions, MatrixFitResult, BestChartFit, ChartComparison>(m);
  bindJsonOf<ExposureJob, ExposureFit, ExposureTrial, LumaMatchOptions, LumaMatch,
             WhiteBalanceOptions, WhiteBalanceMapping, SkinOptions, SkinCalibration>(m);
  bindJsonOf<CurveTables, GammaCatalogueListing, ShowCurveOptions, ShownCurve, CurveLutOptions,
             CurveLut, CurveFileForm, CurveExport, CurveImportReport, ControlPointReduction,
             StandardCurveOptions, StandardCurve, DeGammaResult>(m);
  bindJsonOf<Lut2DConfig, Lut2dIdentityOptions, Lut2dDragOptions, Lut2dDragReport, Lut2dSummary,
             Lut2dApplyOptions, Lut2dApplyReport, Lut2dInverseReport>(m);
  bindJsonOf<FlatFieldOptions, SigmaEstimate, PhotographInfo, CameraProfile, ProfilePoint,
             SimulationSettings, SimulatedChart, FlatFieldSettings, SimulatedFlatField>(m);
  m.def(
      "toJson", [](const HeldOptions& value) { return present::toJson(value.with({})); },
      py::arg("value"), kToJson);
  m.def(
      "fromJson",
      [](const std::string& text, HeldOptions& value) {
        SearchOptions read = value.with({});
        present::fromJson(text, read);
        const ProgressArg progress = value.progress;
        value = HeldOptions::of(read);
        value.progress = progress;
      },
      py::arg("text"), py::arg("value"), kFromJson);
  m.def(
      "toJson",
      [](const std::vector<AppliedFit>& applied) {
        return present::toJson(std::span<const AppliedFit>(applied));
      },
      py::arg("applied"), "A list under \"photographs\".");
}

void bindProvenance(py::module_& m) {
  using present::Provenance;
  Struct<Provenance>(m, "Provenance", "How a result came about, for those who want to repeat it.")
      .field("version", &Provenance::version, "Of the library.")
      .field("created", &Provenance::created, "Date and time in UTC, ISO 8601.")
      .field("commandLine", &Provenance::commandLine,
             "What was run; empty where there was no command.")
      .field("options", &Provenance::options,
             "Name of each option that differs from its default, and its value as JSON.");
  m.def("provenanceNow", &present::provenanceNow, py::arg("commandLine") = "",
        "Of a run that begins now; SOURCE_DATE_EPOCH of the environment is the time instead.");
  m.def(
      "changedOptions",
      [](const std::string& options, const std::string& defaults) {
        return present::changedOptions(options, defaults);
      },
      py::arg("options"), py::arg("defaults"),
      R"(The fields of the first object that the second has not, or has otherwise.

Examples
--------
>>> from greycard.core import present
>>> present.changedOptions('{"light": "A", "scale": 1}', '{"light": "D65", "scale": 1}')
[('light', '"A"')]
)");
  m.def("plainValue", &present::plainValue, py::arg("json"),
        "A value of Provenance.options for people.");
  m.def(
      "stamped",
      [](const std::string& result, const Provenance& provenance) {
        return present::stamped(result, provenance);
      },
      py::arg("result"), py::arg("provenance"),
      "The result as toJson writes it with where it came from before its fields. Raises ValueError "
      "for what no toJson has written.");
}

void bindFitFiles(py::module_& m) {
  m.def(
      "fitFromJson", [](const std::string& text) { return present::fitFromJson(text); },
      py::arg("text"),
      "A ChartFit or a BestChartFit. Raises ValueError with a sentence that begins with the "
      "field.");
  m.def("readFit", unlocked(&present::readFit), py::arg("file"),
        "Likewise of a file. Raises FileError, and JobError that names a file which holds no fit.");
  m.def("chartFitOf", &present::chartFitOf, py::arg("fit"),
        "The fit as one of a single photograph: of a best fit the first one.");
  m.def("readFittedPipeline", unlocked(&present::readFittedPipeline), py::arg("file"),
        "A fit's file as a pipeline for other photographs. Raises FileError and JobError.");
  m.def("readMeasuredChart", unlocked(&present::readMeasuredChart), py::arg("file"),
        defaulted<LocateOptions>("options", "LocateOptions()"), py::arg("dump") = py::none(),
        "The chart that a file tells of: a photograph, or a result in JSON. Raises JobError or "
        "FileError that names the file.");
  m.def(
      "matrixFromNumbers", [](const std::string& text) { return present::matrixFromNumbers(text); },
      py::arg("text"), "A matrix from nine numbers, row by row. Raises ValueError.");
  m.def(
      "readMatrix", unlocked(&present::readMatrix), py::arg("file"),
      "A matrix from a file of nine numbers, or from a fit's JSON. Raises JobError or FileError.");
  m.def("readExposureJob", unlocked(&present::readExposureJob), py::arg("file"),
        "The job of a JSON file; its pictures are not read yet. Raises FileError and JobError.");
  m.def("readLut2d", unlocked(&present::readLut2d), py::arg("file"),
        "The hue/saturation table of a JSON file. Raises FileError and JobError.");
}

void bindComparison(py::module_& m) {
  Struct<JudgedChart>(m, "JudgedChart", "The colours of a chart as a result tells them.")
      .field("file", &JudgedChart::file, "Of the result.")
      .field("photo", &JudgedChart::photo, "Which the result is about.")
      .field("kind", &JudgedChart::kind, "\"fit\", \"best fit\" or \"evaluation\".")
      .field("light", &JudgedChart::light, "Of the chart.")
      .field("lab", &JudgedChart::lab, "24 x 3.")
      .field("referenceLab", &JudgedChart::referenceLab, "24 x 3.")
      .field("errors", &JudgedChart::errors, "Of lab to referenceLab.")
      .field("matrix", &JudgedChart::matrix, "Of a fit.")
      .field("whiteBalance", &JudgedChart::whiteBalance, "Likewise.");
  m.def("readJudgedChart", unlocked(&present::readJudgedChart), py::arg("file"),
        "Reads a fit or an evaluation in JSON. Raises FileError and JobError.");
  Struct<ChartComparison> comparison(m, "ChartComparison", "Two results side by side.");
  comparison.def(py::init<JudgedChart, JudgedChart>(), py::arg("a"), py::arg("b"));
  comparison.field("a", &ChartComparison::a, "The first.")
      .field("b", &ChartComparison::b, "The second.")
      .field("between", &ChartComparison::between, "Of the colours of b to those of a.")
      .def("shareReference", &ChartComparison::shareReference,
           "Whether both aim at the same colours.");

  Enum<present::ColourGrade>(m, "ColourGrade", "How good the colours of a chart are.")
      .value("Good", present::ColourGrade::Good)
      .value("Fair", present::ColourGrade::Fair)
      .value("Poor", present::ColourGrade::Poor);
  m.attr("kColourGradeNames") = py::tuple(py::cast(present::kColourGradeNames));
  m.attr("kNoticedDifference") = present::kNoticedDifference;
  m.attr("kTwiceNoticed") = present::kTwiceNoticed;
  Struct<present::ColourVerdict>(m, "ColourVerdict", "What to say of the colours of a chart.")
      .field("mean", &present::ColourVerdict::mean, "Mean CIEDE2000.")
      .field("percentile95", &present::ColourVerdict::percentile95,
             "On straight lines between the sorted values.")
      .field("grade", &present::ColourVerdict::grade, "Good, Fair or Poor.");
  m.def("colourVerdict", &present::colourVerdict, py::arg("errors"),
        "Of an ErrorColumn by CIEDE2000.");
}

}  // namespace

void bindPresentJson(py::module_& m) {
  bindProvenance(m);
  bindComparison(m);
  bindFitFiles(m);
  bindJson(m);
}

}  // namespace greycard::python
