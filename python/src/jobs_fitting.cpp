// Jobs that fit what isn't a colour matrix: exposure rules, lightnesses, white-balance points,
// skin.

#include "greycard/jobs/calibrate_skin.h"
#include "greycard/jobs/fit_exposure.h"
#include "greycard/jobs/map_white_balance.h"
#include "greycard/jobs/match_luma.h"
#include "jobs.h"
#include "search_options.h"

namespace greycard::python {
namespace {

void bindExposureJob(py::module_& m) {
  m.attr("kExposureParameterNames") = py::tuple(py::cast(kExposureParameterNames));
  Struct<ExposureImage>(m, "ExposureImage",
                        "One image that the rule is to meet a target for: a picture, or its "
                        "histograms. None stands for what isn't given.")
      .field("name", &ExposureImage::name, "In results; else the picture's file name.")
      .field("picture", &ExposureImage::picture, "A file of which the histograms are made.")
      .field("whiteLevel", &ExposureImage::whiteLevel,
             "Sample of the picture's full scale, 1..65535; else 255 or 65535.")
      .field("hist_CDF", &ExposureImage::hist_CDF, "Instead of a picture, with hist_RGB.")
      .field("hist_RGB", &ExposureImage::hist_RGB, "With hist_CDF.")
      .field("Weight", &ExposureImage::Weight, "Of the squared error, 0 or above.")
      .field("newTarget", &ExposureImage::newTarget, "Luma target wanted, 0..255; must be there.")
      .field("curr_luma", &ExposureImage::curr_luma,
             "Measured now; else the mean luma of the histograms.")
      .field("cur_target", &ExposureImage::cur_target, "Set now; else curr_luma.")
      .field("max_pushup_mean", &ExposureImage::max_pushup_mean, "Kept, not used.")
      .field("max_pushdown_mean", &ExposureImage::max_pushdown_mean, "Kept, not used.")
      .field("max_dark_mean", &ExposureImage::max_dark_mean, "Kept, not used.");
  Struct<ExposureJob>(m, "ExposureJob", "A fit of the luma-target rule (NLoptHelper.GA).")
      .field("lowerBound", &ExposureJob::lowerBound, "12 parameters.")
      .field("upperBound", &ExposureJob::upperBound, "12 parameters.")
      .field("initialBound", &ExposureJob::initialBound, "Where the search starts.")
      .field("initial_parameter", &ExposureJob::initial_parameter,
             "Values of the parameters that are not fitted, or evaluated without a search; else "
             "initialBound.")
      .field("parameters_enable", &ExposureJob::parameters_enable, "9 flags.")
      .field("max_drc_gain", &ExposureJob::max_drc_gain, "As in GA.")
      .field("ADRC_Enable", &ExposureJob::ADRC_Enable, "As in GA.")
      .field("images", &ExposureJob::images, "At most 299.")
      .def(
          "fits",
          [](const ExposureJob& job, std::size_t parameter) {
            if (parameter >= kGaParameters)
              throw py::index_error("parameter: " + std::to_string(parameter) +
                                    "; the rule has 12, counted from 0");
            return job.fits(parameter);
          },
          py::arg("parameter"), "Whether the parameter, from 0, is fitted.")
      .def("fitsAny", &ExposureJob::fitsAny, "Whether any is.")
      .def(
          "fixedParameters", [](const ExposureJob& job) { return job.fixedParameters(); },
          "initial_parameter, or else initialBound.")
      .def("inUse", &ExposureJob::inUse, py::arg("x"),
           "The values that the rule works with at x: those of x where they are fitted.")
      .def("check", &ExposureJob::check,
           "Looks at the images as they are given; no picture is read. Raises ValueError with a "
           "sentence that begins with the field.");
}

void bindExposureFit(py::module_& m) {
  Struct<ExposureFigures>(m, "ExposureFigures", "An image as the rule worked with it.")
      .field("name", &ExposureFigures::name, "Of the curve.")
      .field("Weight", &ExposureFigures::Weight, "Of the squared error.")
      .field("curr_luma", &ExposureFigures::curr_luma, "Measured now.")
      .field("cur_target", &ExposureFigures::cur_target, "Set now.")
      .field("newTarget", &ExposureFigures::newTarget, "Wanted.");
  Struct<ExposureEvaluation>(m, "ExposureEvaluation",
                             "What the rule makes of the images with some parameters. A list has "
                             "an entry for each image.")
      .field("parameters", &ExposureEvaluation::parameters,
             "In use: those not fitted with their fixed value.")
      .field("target", &ExposureEvaluation::target, "Colour whose L* is wanted.")
      .field("fourTargets", &ExposureEvaluation::fourTargets,
             "Larger and smaller of the targets A and B, then the upper and the lower dark target.")
      .field("pushUp", &ExposureEvaluation::pushUp, "Statistic.")
      .field("pushDown", &ExposureEvaluation::pushDown, "Statistic.")
      .field("dark", &ExposureEvaluation::dark, "Statistic.")
      .field("error", &ExposureEvaluation::error, "Weighted mean square of target - newTarget.")
      .field("meanError", &ExposureEvaluation::meanError, "Mean |target - newTarget|.");
  Struct<ExposureFit>(m, "ExposureFit", "How a search went, and what it found.")
      .field("resultCode", &ExposureFit::resultCode, "NLopt's: see stopReason.")
      .field("least", &ExposureFit::least, "The least error that the search found, or infinite.")
      .field("evaluations", &ExposureFit::evaluations, "Of the rule.")
      .field("seconds", &ExposureFit::seconds, "That the search took.")
      .field("seed", &ExposureFit::seed, "Of the random numbers.")
      .field("bestKeepsConstraints", &ExposureFit::bestKeepsConstraints, "See GaReport.")
      .field("images", &ExposureFit::images, "As the rule worked with them.")
      .field("start", &ExposureFit::start, "Where the search starts.")
      .field("best", &ExposureFit::best, "The best fit.")
      .field("returned", &ExposureFit::returned, "With the parameters that GA gives back.")
      .def("returnsBest", &ExposureFit::returnsBest)
      .def("evaluationsPerSecond", &ExposureFit::evaluationsPerSecond);
  Struct<ExposureTrial>(m, "ExposureTrial", "The rule evaluated as it stands.")
      .field("images", &ExposureTrial::images, "As the rule worked with them.")
      .field("manual", &ExposureTrial::manual, "The rule as it stands.");
  m.def("exposureSearch", &exposureSearch,
        "A search that ends after half a million evaluations and by no clock.");
  m.def(
      "fitExposure",
      [](const ExposureJob& job, const HeldOptions& options) {
        return cancellable(options.progress, [job, options](const ProgressCallback& callback) {
          return fitExposure(job, options.with(callback));
        });
      },
      py::arg("job"), py::arg_v("options", exposureSearch(), "exposureSearch()"),
      R"(Reads the pictures and searches.

Parameters
----------
job : ExposureJob
options : SearchOptions
    Its progress is called now and then with the fraction done, 0..1; False ends the search with
    result code -5.

Raises
------
ValueError
    As ExposureJob.check and NLoptHelper.GA.
FileError
    A picture can't be read.)");
  m.def("evaluateExposure", unlocked(&evaluateExposure), py::arg("job"),
        "Reads the pictures and evaluates fixedParameters(); raises as fitExposure.");
}

void bindLumaMatch(py::module_& m) {
  Struct<LumaMatchOptions>(m, "LumaMatchOptions", "Two colours, encoded sRGB, 0..255.")
      .field("test", &LumaMatchOptions::test, "Colour to scale.")
      .field("target", &LumaMatchOptions::target, "Colour whose L* is wanted.")
      .field("search", &LumaMatchOptions::search, "When it gives up.");
  Struct<LumaMatch>(m, "LumaMatch",
                    "The factor on an encoded sRGB colour that gives it the L* of another colour.")
      .field("factor", &LumaMatch::factor, "0..10.")
      .field("testL", &LumaMatch::testL, "L* of the test colour.")
      .field("scaledL", &LumaMatch::scaledL, "L* of factor * test.")
      .field("targetL", &LumaMatch::targetL, "L* of the target.")
      .def("reached", &LumaMatch::reached, "Whether the target's L* is met to 0.01.");
  m.def("matchLuma", unlocked(&matchLuma), py::arg("options"),
        "Raises ValueError as NLoptHelper.findMinSearch.");
}

void bindWhiteBalance(py::module_& m) {
  Struct<WhiteBalanceOptions>(m, "WhiteBalanceOptions", "Points (R/G, B/G) of two sensors.")
      .field("from_", &WhiteBalanceOptions::from,
             "Three references of the source sensor (`from` in C++, a keyword here).")
      .field("to", &WhiteBalanceOptions::to, "Their counterparts.")
      .field("points", &WhiteBalanceOptions::points, "Of the source sensor, to be mapped.");
  Struct<WhiteBalanceMapping>(m, "WhiteBalanceMapping",
                              "White-balance points of one sensor in another sensor's plane.")
      .field("from_", &WhiteBalanceMapping::from, "Three references of the source sensor.")
      .field("to", &WhiteBalanceMapping::to, "Their counterparts.")
      .field("transform", &WhiteBalanceMapping::transform,
             "Carries the references onto their counterparts.")
      .field("points", &WhiteBalanceMapping::points, "Control points.")
      .def("spansPlane", &WhiteBalanceMapping::spansPlane,
           "False when the references lie on one line.")
      .def("largestResidual", &WhiteBalanceMapping::largestResidual,
           "Largest difference of a coordinate of a mapped reference from its target.")
      .def("meetsTargets", &WhiteBalanceMapping::meetsTargets,
           "Whether the references are mapped onto their targets but for rounding.");
  m.def("mapWhiteBalance", &mapWhiteBalance, py::arg("options"),
        "Raises JobError when the references lie on one line, or almost.");
  m.def("whiteBalancePoint", &whiteBalancePoint, py::arg("text"),
        "The point of a text of two numbers. Raises ValueError with a part of a sentence.");
  m.def("readWhiteBalancePoints", unlocked(&readWhiteBalancePoints), py::arg("file"),
        "The points of a file, one a line. Raises FileError, and JobError that names file and "
        "line.");
}

void bindSkin(py::module_& m) {
  m.attr("kSkinLights") = py::tuple(py::cast(kSkinLights));
  m.attr("kSkinVariants") = py::tuple(py::cast(kSkinVariants));
  Struct<SkinOptions>(m, "SkinOptions", "With what skin colours are processed.")
      .field("matrix", &SkinOptions::matrix,
             "Colour correction for all three lights; None: what came with the chart under T84.")
      .field("matrixFrom", &SkinOptions::matrixFrom, "Names that matrix in the result.")
      .field("gamma", &SkinOptions::gamma, "The camera's tone curve, whose green serves all.");
  Struct<SkinSet>(m, "SkinSet", "What one filter of SkinColorHelper let through.")
      .field("points", &SkinSet::points, "Refused ones are (0, 0, 0).")
      .field("accepted", &SkinSet::accepted, "How many points.")
      .field("hueNotFinite", &SkinSet::hueNotFinite, "Points whose h is not finite.")
      .field("acceptedUnder", &SkinSet::acceptedUnder, "Of each of kSkinLights.")
      .field("h", &SkinSet::h, "Least and largest finite value, or None.")
      .field("s", &SkinSet::s, "Likewise.")
      .field("y", &SkinSet::y, "Likewise.")
      .def(
          "holds",
          [](const SkinSet& set, std::size_t point) {
            if (point >= set.points.size())
              throw py::index_error("point: " + std::to_string(point) + " of " +
                                    std::to_string(set.points.size()));
            return set.holds(point);
          },
          py::arg("point"), "Whether the filter let the point through.");
  Struct<SkinCalibration>(m, "SkinCalibration", "Where skin falls in a camera's processed colours.")
      .field("charts", &SkinCalibration::charts, "The files of the charts.")
      .field("gammaName", &SkinCalibration::gammaName, "The tone curve.")
      .field("matrixFrom", &SkinCalibration::matrixFrom, "Where the matrix comes from.")
      .field("matrix", &SkinCalibration::matrix, "3 x 3.")
      .field("upper", &SkinCalibration::upper, "What the upper filter let through.")
      .field("lower", &SkinCalibration::lower, "What the lower filter let through.")
      .field("colours", &SkinCalibration::colours, "R, G, B, encoded.")
      .field("warnings", &SkinCalibration::warnings, "A sentence each.");
  m.def("calibrateSkin", unlocked(&calibrateSkin), py::arg("charts"),
        defaulted<SkinOptions>("options", "SkinOptions()"),
        py::arg_v("files", SkinChartFiles{}, "('', '', '')"),
        R"(Where skin falls, of the charts under D65, A and T84.

Raises
------
JobError
    There is no matrix, and as cameraGamma.
ValueError
    What is not finite.)");
}

}  // namespace

void bindFittingJobs(py::module_& m) {
  bindExposureJob(m);
  bindExposureFit(m);
  bindLumaMatch(m);
  bindWhiteBalance(m);
  bindSkin(m);
}

}  // namespace greycard::python
