// greycard.core.present: what people look at, as pages, plots, tables and pictures.

#include "greycard/present/best_fit.h"
#include "greycard/present/chart.h"
#include "greycard/present/comparison.h"
#include "greycard/present/fitting.h"
#include "greycard/present/gamma.h"
#include "greycard/present/lut2d.h"
#include "greycard/present/noise.h"
#include "greycard/present/plot_picture.h"
#include "jobs.h"

namespace greycard::python {
namespace {

using MaybeProvenance = std::optional<present::Provenance>;
using Against = std::optional<CurveTables>;

// A page about a result. \param fields  the arguments' names but for the provenance
template <typename... Args, typename... Names>
void bindPage(py::module_& m, const char* name, std::string (*page)(Args...), const char* doc,
              const Names&... names) {
  m.def(name, unlocked(page), py::arg(names)..., py::arg("provenance") = py::none(), doc);
}

void bindPages(py::module_& m) {
  constexpr const char* kPage =
      "A page for people as one HTML file, without script, for light and dark screens and paper.";
  bindPage(m, "fitReport",
           py::overload_cast<const ChartFit&, const Picture&, const MaybeProvenance&>(
               &present::fitReport),
           kPage, "fit", "photograph");
  bindPage(m, "fitReport",
           py::overload_cast<const BestChartFit&, const Picture&, const MaybeProvenance&>(
               &present::fitReport),
           kPage, "fit", "photograph");
  bindPage(m, "evaluationReport", &present::evaluationReport, kPage, "evaluation", "photograph");
  bindPage(m, "comparisonReport", &present::comparisonReport, kPage, "comparison");
  bindPage(m, "exposureReport",
           py::overload_cast<const ExposureJob&, const ExposureFit&, const MaybeProvenance&>(
               &present::exposureReport),
           kPage, "job", "fit");
  bindPage(m, "exposureReport",
           py::overload_cast<const ExposureJob&, const ExposureTrial&, const MaybeProvenance&>(
               &present::exposureReport),
           kPage, "job", "trial");
  bindPage(m, "wbMapReport", &present::wbMapReport, kPage, "mapping");
  bindPage(m, "skinReport", &present::skinReport, kPage, "skin");
  bindPage(m, "sigmaReport", &present::sigmaReport, kPage, "estimate");
}

void bindPlots(py::module_& m) {
  constexpr const char* kPlot = "As an SVG element.";
  m.def("exposurePlot", py::overload_cast<const ExposureFit&>(&present::exposurePlot),
        py::arg("fit"), kPlot);
  m.def("exposurePlot", py::overload_cast<const ExposureTrial&>(&present::exposurePlot),
        py::arg("trial"), kPlot);
  m.def("skinPlot", &present::skinPlot, py::arg("skin"), kPlot);
  m.def("sigmaPlot", &present::sigmaPlot, py::arg("estimate"), kPlot);
  m.def("lut2dWheel", &present::lut2dWheel, py::arg("table"), py::arg("name") = "",
        "The table as a wheel in SVG: each node in its colour with an arrow to where it moves.");
  constexpr const char* kCurve =
      "As SVG; another curve can be drawn behind in dashes (comparisonCurve).";
  m.def("curvePlot", py::overload_cast<const ShownCurve&, const Against&>(&present::curvePlot),
        py::arg("curve"), py::arg("against") = py::none(), kCurve);
  m.def("curvePlot", py::overload_cast<const CurveTables&, const Against&>(&present::curvePlot),
        py::arg("curve"), py::arg("against") = py::none(), kCurve);
  m.def(
      "curvePlot",
      py::overload_cast<const GammaCurve&, const ShownCurve&, const Against&>(&present::curvePlot),
      py::arg("curve"), py::arg("shown"), py::arg("against") = py::none(), kCurve);
  m.def("curvePlot",
        py::overload_cast<const CurveImportReport&, const Against&>(&present::curvePlot),
        py::arg("report"), py::arg("against") = py::none(), kCurve);
  m.def("curvePlot",
        py::overload_cast<const ControlPointReduction&, const Against&>(&present::curvePlot),
        py::arg("reduction"), py::arg("against") = py::none(), kCurve);
  m.def("curvePlot", py::overload_cast<const StandardCurve&, const Against&>(&present::curvePlot),
        py::arg("curve"), py::arg("against") = py::none(), kCurve);
  m.def("curvePlot",
        py::overload_cast<const DeGammaResult&, const CurveTables&, const Against&>(
            &present::curvePlot),
        py::arg("result"), py::arg("curve"), py::arg("against") = py::none(), kCurve);
}

void bindTables(py::module_& m) {
  constexpr const char* kCsv = "A line of titles, then a line for each row.";
  m.def("sigmaCsv", &present::sigmaCsv, py::arg("estimate"), kCsv);
  m.def("skinCsv", &present::skinCsv, py::arg("skin"), kCsv);
  m.def("wbMapCsv", &present::wbMapCsv, py::arg("mapping"), kCsv);
}

void bindPictures(py::module_& m) {
  m.def("annotateRegions", unlocked(&present::annotateRegions), py::arg("picture"),
        py::arg("regions"), "An 8-bit copy with the outline of each region and its number.");
  m.def("annotatePatches", unlocked(&present::annotatePatches), py::arg("picture"),
        py::arg("patches"), py::arg_v("outliers", std::vector<int>(), "()"),
        "Likewise of patches given by their corners; those in `outliers`, numbers 1..24, are "
        "crossed out.");
  m.def("annotateDetection", unlocked(&present::annotateDetection), py::arg("picture"),
        py::arg("detection"), "Likewise of the outcome of a search.");
  m.def("annotateDetections", unlocked(&present::annotateDetections), py::arg("picture"),
        py::arg("charts"), "Likewise of all charts that were found.");
  m.def("sigmaMap", unlocked(&present::sigmaMap), py::arg("estimate"),
        "The local sigma of every pixel as colours. Raises ValueError for an estimate without.");
  m.def(
      "labelledComparison",
      [](const AppliedLut2d& applied) {
        return withoutLock([&] { return present::labelledComparison(applied); });
      },
      py::arg("applied"), "Before and after side by side, with their names above.");
  m.def("drawsPlotPictures", &present::drawsPlotPictures,
        "Whether this build can draw plots as pictures (librsvg).");
  m.def(
      "plotPicture",
      [](const std::string& svg, double scale) {
        return withoutLock([&] { return present::plotPicture(svg, scale); });
      },
      py::arg("svg"), py::arg("scale") = 2.0,
      "A plot of this library as an R, G, B picture of 8 bits on white. Raises JobError where "
      "drawsPlotPictures is false, ValueError for what is no SVG.");
}

}  // namespace

void bindPresentPages(py::module_& m) {
  bindPages(m);
  bindPlots(m);
  bindTables(m);
  bindPictures(m);
}

}  // namespace greycard::python
