// Jobs on photographs of the chart: found, measured, judged, fitted, and fits applied.

#include <span>

#include "greycard/jobs/apply_fit.h"
#include "greycard/jobs/chart_samples.h"
#include "greycard/jobs/evaluate_chart.h"
#include "greycard/jobs/fit_chart.h"
#include "greycard/jobs/fit_chart_best.h"
#include "greycard/jobs/fit_profile.h"
#include "greycard/jobs/locate_chart.h"
#include "greycard/jobs/measure_chart.h"
#include "jobs.h"

namespace greycard::python {
namespace {

constexpr const char* kCheckOptions =
    "Refuses options that the job can be done with on no photograph, before there is one. Raises "
    "ValueError, FileError and JobError as the job.";

using Path = std::filesystem::path;

void bindLocateChart(py::module_& m) {
  Struct<LocateOptions>(m, "LocateOptions",
                        "Where to take the chart from: it is looked for unless `regions` or "
                        "`corners` say where it is.")
      .field("samples", &LocateOptions::samples, "What samples mean, where somebody says so.")
      .field("regions", &LocateOptions::regions, "A region file, of either form.")
      .field("corners", &LocateOptions::corners,
             "At patches 1, 6, 24 and 19, in pixels; None when they are not given.")
      .field("cornersOf", &LocateOptions::cornersOf, "What the corners are.")
      .field("method", &LocateOptions::method, "Which searches are asked.")
      .field("within", &LocateOptions::within,
             "The part of the picture in which to look, in pixels, for one chart of several.")
      .field("sampledShare", &LocateOptions::sampledShare,
             "Of each patch's side, the part in the middle that is sampled, above 0 and up to 1.")
      .field("force", &LocateOptions::force, "Go on with a chart that is in doubt.");

  Struct<LocatedChart>(m, "LocatedChart", "The chart in a picture, found or given.")
      .field("patches", &LocatedChart::patches,
             "Corners of the patches; all zero when none was found.")
      .field("regions", &LocatedChart::regions,
             "Upright squares in them, or the rectangles of a file.")
      .field("upright", &LocatedChart::upright,
             "Whether those rectangles are what is to be sampled, whole.")
      .field("sampledShare", &LocatedChart::sampledShare,
             "Else the part of each patch's side that is.")
      .field("detection", &LocatedChart::detection, "None when the patches came from a file.")
      .field("check", &LocatedChart::check, "Of patches that came from a file.")
      .def("found", &LocatedChart::found, "Whether there is a chart at all, be it in doubt.")
      .def("sampled", &LocatedChart::sampled, "The corners of what is to be sampled.")
      .def("doubts", &LocatedChart::doubts,
           "Signs that the patches are not a chart's, each a sentence.")
      .def("warnings", &LocatedChart::warnings,
           "The doubts, each a sentence for the user of a chart that was forced.");

  Struct<ChartSearch>(m, "ChartSearch",
                      "A photograph and the chart in it, or what was seen instead.")
      .field("photo", &ChartSearch::photo, "Names the picture.")
      .field("width", &ChartSearch::width, "Of the photograph, in pixels.")
      .field("height", &ChartSearch::height, "Likewise.")
      .field("chart", &ChartSearch::chart, "Where the chart is.")
      .field("refusal", &ChartSearch::refusal,
             "What locateChart would raise; empty when the chart can be used.")
      .field("capture", &ChartSearch::capture, "Of a raw photograph.")
      .def("require", &ChartSearch::require,
           "Raises NoChart or DoubtfulChart with the refusal, when there is one.");

  constexpr const char* kLocate = R"(Finds the chart, or takes it from where the options say.

Parameters
----------
picture : Picture or array
    uint8 or uint16, height x width x 3 (R, G, B) or height x width.
options : LocateOptions
photo : path
    Names the picture in messages; may be empty.

Raises
------
NoChart
    There is none, as far as can be seen.
DoubtfulChart
    It is in doubt, and not forced.
ValueError
    Levels without meaning, corners that are not a chart's, or both corners and regions.
FileError
    The region file can't be read.)";
  m.def("locateChart", unlocked(&locateChart), py::arg("picture"),
        defaulted<LocateOptions>("options", "LocateOptions()"), py::arg("photo") = Path(), kLocate);
  m.def(
      "searchChart",
      unlocked(py::overload_cast<const Picture&, const LocateOptions&, const Path&>(&searchChart)),
      py::arg("picture"), defaulted<LocateOptions>("options", "LocateOptions()"),
      py::arg("photo") = Path(), "As locateChart, but a refusal is part of the result.");
  m.def("searchChart", unlocked(py::overload_cast<const Photograph&, LocateOptions>(&searchChart)),
        py::arg("photograph"), defaulted<LocateOptions>("options", "LocateOptions()"),
        "Likewise; the photograph tells what its samples mean.");
  Struct<FoundCharts>(m, "FoundCharts", "Every chart in a photograph, surest first.")
      .field("photo", &FoundCharts::photo, "Names the picture.")
      .field("width", &FoundCharts::width, "Of the photograph, in pixels.")
      .field("height", &FoundCharts::height, "Likewise.")
      .field("charts", &FoundCharts::charts, "A ChartDetection each.")
      .field("capture", &FoundCharts::capture, "Of a raw photograph.");
  m.def("searchCharts", unlocked(&searchCharts), py::arg("photograph"),
        defaulted<LocateOptions>("options", "LocateOptions()"),
        "All charts. Raises ValueError as locateChart, and for corners or regions.");
  m.def("surroundings", &surroundings, py::arg("chart"),
        "A part of the picture that holds the chart that was found, for LocateOptions.within.");
  m.def("checkOptions", unlocked(static_cast<void (*)(const LocateOptions&)>(&checkOptions)),
        py::arg("options"), kCheckOptions);
  m.def("detectOptions", &detectOptions, py::arg("picture"), py::arg("options"),
        "What the search is asked by LocateOptions.");
  m.def("patchList", &patchList, py::arg("patches"),
        "As in \"19 (white 9 5), 20 (neutral 8)\", of patches from 0.");
}

void bindMeasureChart(py::module_& m) {
  Struct<MeasuredChart>(m, "MeasuredChart",
                        "A camera's answers to the 24 patches, and what came with them.")
      .field("rgb", &MeasuredChart::rgb, "24 x 3, linear, 0..1, as the camera gave them.")
      .field("matrix", &MeasuredChart::matrix,
             "Fitted to this chart, where a file of a fit tells it.")
      .field("light", &MeasuredChart::light, "Likewise.")
      .field("warnings", &MeasuredChart::warnings, "A sentence each.");
  m.def(
      "measureChart",
      unlocked(py::overload_cast<const Picture&, const LocateOptions&, const Path&>(&measureChart)),
      py::arg("picture"), defaulted<LocateOptions>("options", "LocateOptions()"),
      py::arg("photo") = Path(),
      "Finds and samples the chart in a picture; raises as locateChart.");
  m.def("measureChart",
        unlocked(py::overload_cast<const Photograph&, LocateOptions>(&measureChart)),
        py::arg("photograph"), defaulted<LocateOptions>("options", "LocateOptions()"),
        "Likewise; the photograph tells what its samples mean.");
}

void bindChartSamples(py::module_& m) {
  Struct<ChartSamples>(m, "ChartSamples", "What a camera measured of a chart in a photograph.")
      .field("photo", &ChartSamples::photo, "Names the picture.")
      .field("chart", &ChartSamples::chart, "Where the chart is.")
      .field("levels", &ChartSamples::levels, "What the samples were taken to mean.")
      .field("measuredRgb", &ChartSamples::measuredRgb, "24 x 3, linear, 0..1.")
      .field("measuredNoise", &ChartSamples::measuredNoise, "Standard deviation of a pixel.")
      .field("measuredMedian", &ChartSamples::measuredMedian, "Of a patch's pixels.")
      .field("unevenness", &ChartSamples::unevenness, "Of the patch.")
      .field("sampling", &ChartSamples::sampling, "Which patches ran into the ends of the scale.")
      .field("capture", &ChartSamples::capture, "Of a raw photograph.")
      .field("warnings", &ChartSamples::warnings, "Of the photograph's file.");
  m.def("sampleChart", unlocked(&sampleChart), py::arg("photograph"), py::arg("chart"),
        "Samples the photograph where the chart is: a LocatedChart, found or made by hand. Raises "
        "JobError for a grey photograph, ValueError for patches that can't be sampled.");
}

void bindEvaluateChart(py::module_& m) {
  Struct<EvaluationOptions>(m, "EvaluationOptions", "How a chart is judged as it is.")
      .field("locate", &EvaluationOptions::locate, "Where the chart is taken from.")
      .field("light", &EvaluationOptions::light, "Of the chart.")
      .field("scale", &EvaluationOptions::scale,
             "Factor on the linear samples before they are judged, above 0.");
  Struct<ChartEvaluation>(m, "ChartEvaluation",
                          "A photographed chart, its linear samples taken as linear sRGB, against "
                          "the reference colours of the light.")
      .field("photo", &ChartEvaluation::photo, "Names the picture.")
      .field("light", &ChartEvaluation::light, "Of the chart.")
      .field("chart", &ChartEvaluation::chart, "Where the chart is.")
      .field("levels", &ChartEvaluation::levels, "What the samples were taken to mean.")
      .field("measuredRgb", &ChartEvaluation::measuredRgb, "24 x 3, linear, 0..1.")
      .field("measuredNoise", &ChartEvaluation::measuredNoise, "Standard deviation of a pixel.")
      .field("measuredMedian", &ChartEvaluation::measuredMedian, "Of a patch's pixels.")
      .field("unevenness", &ChartEvaluation::unevenness, "Of the patch.")
      .field("sampling", &ChartEvaluation::sampling,
             "Which patches ran into the ends of the scale.")
      .field("measuredLab", &ChartEvaluation::measuredLab, "24 x 3.")
      .field("referenceLab", &ChartEvaluation::referenceLab, "24 x 3.")
      .field("errors", &ChartEvaluation::errors, "Of measured colours to the reference.")
      .field("warnings", &ChartEvaluation::warnings, "A sentence each.")
      .field("capture", &ChartEvaluation::capture, "Of a raw photograph.");
  m.def("checkOptions", unlocked(static_cast<void (*)(const EvaluationOptions&)>(&checkOptions)),
        py::arg("options"), kCheckOptions);
  m.def("evaluateChart",
        unlocked(py::overload_cast<const Picture&, const EvaluationOptions&, const Path&>(
            &evaluateChart)),
        py::arg("picture"), defaulted<EvaluationOptions>("options", "EvaluationOptions()"),
        py::arg("photo") = Path(),
        "Judges the camera as it is, before any correction is fitted. Raises as locateChart, and "
        "ValueError for a scale that is not above 0.");
  m.def("evaluateChart",
        unlocked(py::overload_cast<const Photograph&, EvaluationOptions>(&evaluateChart)),
        py::arg("photograph"), defaulted<EvaluationOptions>("options", "EvaluationOptions()"),
        "Likewise; the photograph tells what its samples mean.");
}

void bindFitOptions(py::module_& m) {
  Enum<FitFormula>(m, "FitFormula", "The colour difference that a fit minimises.")
      .value("CIE76", FitFormula::CIE76)
      .value("CIE94", FitFormula::CIE94);
  m.def("formulaName", &formulaName, py::arg("formula"), "\"CIE76\" or \"CIE94\".");
  Struct<ChartFitOptions>(m, "ChartFitOptions", "What is fitted to a photographed chart, and how.")
      .field("locate", &ChartFitOptions::locate, "Where the chart is taken from.")
      .field("light", &ChartFitOptions::light, "Of the chart.")
      .field("gamma", &ChartFitOptions::gamma,
             "The camera's tone curve: a name of the catalogue, or a file of 256 numbers.")
      .field("formula", &ChartFitOptions::formula, "The colour difference that is minimised.")
      .field("transform", &ChartFitOptions::transform,
             "ColorCorrectionSettings.m_RGBtoXYZTransform, 0..3.")
      .field("rgbToXyz", &ChartFitOptions::rgbToXyz,
             "Of transform 3: linear RGB to XYZ on the 0..1 scale.")
      .field("xyzToRgb", &ChartFitOptions::xyzToRgb, "Of transform 3: the matrix back.")
      .field("exposure", &ChartFitOptions::exposure, "stated, balanced or number.")
      .field("exposureGain", &ChartFitOptions::exposureGain, "For number, 1e-6 to 1e6.")
      .field("noiseRate", &ChartFitOptions::noiseRate,
             "0..1, weight of noise against colour error.")
      .field("saturation", &ChartFitOptions::saturation,
             "Chroma wanted over the target's, 1.1 for 10 % more; 0.9 and up, or None.")
      .field("targetSaturation", &ChartFitOptions::targetSaturation,
             "Chroma factors of the target: all, red, green, blue patches.")
      .field("targetHue", &ChartFitOptions::targetHue,
             "Hue rotations of the target in degrees: red, green, blue patches.")
      .field("whitePatches", &ChartFitOptions::whitePatches,
             "Chart numbers, 19..22, that white balance uses.")
      .field("referenceLab", &ChartFitOptions::referenceLab, "A file of 24 lines L* a* b*.")
      .field("referenceSRgb", &ChartFitOptions::referenceSRgb, "A file of 24 lines of 8-bit sRGB.")
      .def("settings", &ChartFitOptions::settings,
           "The same as ColorCorrectionSettings. Raises FileError, and ValueError for what "
           "can't be.");
}

void bindChartFit(py::module_& m) {
  Struct<ChartFit>(m, "ChartFit",
                   "Gains and matrix fitted to a photographed chart, with all that tells how good "
                   "they are.")
      .field("photo", &ChartFit::photo, "Names the picture.")
      .field("light", &ChartFit::light, "Of the chart.")
      .field("formula", &ChartFit::formula, "The colour difference that is minimised.")
      .field("gamma", &ChartFit::gamma, "The camera's tone curve.")
      .field("matrix", &ChartFit::matrix,
             "3 x 3; rows sum to 1; matrix @ (R, G, B) of balanced RGB.")
      .field("whiteBalance", &ChartFit::whiteBalance, "R, G, B.")
      .field("exposure", &ChartFit::exposure, "Exposure gain.")
      .field("fit", &ChartFit::fit, "The balanced chart, the reference, and how the search went.")
      .field("chart", &ChartFit::chart, "Where the chart is.")
      .field("levels", &ChartFit::levels, "What the samples were taken to mean.")
      .field("measuredRgb", &ChartFit::measuredRgb, "24 x 3, linear, 0..1.")
      .field("measuredNoise", &ChartFit::measuredNoise, "Standard deviation of a pixel.")
      .field("measuredMedian", &ChartFit::measuredMedian, "Of a patch's pixels.")
      .field("unevenness", &ChartFit::unevenness, "Of the patch.")
      .field("sampling", &ChartFit::sampling, "Which patches ran into the ends of the scale.")
      .field("correctedLab", &ChartFit::correctedLab, "24 x 3, through the matrix.")
      .field("before", &ChartFit::before, "Of balanced colours to the reference.")
      .field("after", &ChartFit::after, "Of corrected colours to the reference.")
      .field("warnings", &ChartFit::warnings, "A sentence each.")
      .field("capture", &ChartFit::capture, "Of a raw photograph.")
      .def("pipeline", &ChartFit::pipeline, "Gains, matrix and tone curve, for correctPicture.")
      .def("shownLab", &ChartFit::shownLab, py::arg("balancedRgb"), py::arg("by"),
           "Balanced RGB through a matrix and this fit's tone curve.");
  constexpr const char* kFit = R"(Finds the chart, samples it, and fits gains and matrix.

Parameters
----------
picture : Picture or array
    uint8 or uint16, height x width x 3 (R, G, B).
options : ChartFitOptions
photo : path
    Names the picture in messages and in the result; may be empty.
progress : callable
    Called now and then with the fraction done, 0..1; False cancels.

Returns
-------
ChartFit or None
    None when the callable cancelled.

Raises
------
JobError
    A grey picture, and as locateChart and cameraGamma.
ValueError, NumericError
    As ColorCorrectionUtils.Optimize.)";
  m.def("checkOptions", unlocked(static_cast<void (*)(const ChartFitOptions&)>(&checkOptions)),
        py::arg("options"), kCheckOptions);
  m.def(
      "fitChart",
      [](const Picture& picture, const ChartFitOptions& options, const Path& photo,
         const ProgressArg& progress) {
        return cancellable(progress, [&picture, options, photo](const ProgressCallback& callback) {
          return fitChart(picture, options, photo, callback);
        });
      },
      py::arg("picture"), defaulted<ChartFitOptions>("options", "ChartFitOptions()"),
      py::arg("photo") = Path(), py::arg("progress") = ProgressArg(), kFit);
  m.def(
      "fitChart",
      [](const Photograph& photograph, const ChartFitOptions& options,
         const ProgressArg& progress) {
        return cancellable(progress, [&photograph, options](const ProgressCallback& callback) {
          return fitChart(photograph, options, callback);
        });
      },
      py::arg("photograph"), defaulted<ChartFitOptions>("options", "ChartFitOptions()"),
      py::arg("progress") = ProgressArg(), "Likewise; the photograph tells what its samples mean.");
  m.def(
      "fitChart",
      [](const ChartSamples& samples, const ChartFitOptions& options, const ProgressArg& progress) {
        return cancellable(progress, [samples, options](const ProgressCallback& callback) {
          return fitChart(samples, options, callback);
        });
      },
      py::arg("samples"), defaulted<ChartFitOptions>("options", "ChartFitOptions()"),
      py::arg("progress") = ProgressArg(), "Likewise of a chart that was sampled.");
  m.def("correctedPhotograph",
        unlocked(py::overload_cast<const Picture&, const ChartFit&, const SampleMeaning&>(
            &correctedPhotograph)),
        py::arg("picture"), py::arg("fit"), defaulted<SampleMeaning>("samples", "SampleMeaning()"),
        "The photograph through the fitted gains, matrix and tone curve.");
}

void bindBestFit(py::module_& m) {
  Struct<ChartPhotograph>(m, "ChartPhotograph",
                          "A photograph of the chart for the best fit, which takes several under "
                          "one light.")
      .field("picture", &ChartPhotograph::picture, "The picture.")
      .field("photo", &ChartPhotograph::photo, "Names it in messages and in the result.")
      .field("weight", &ChartPhotograph::weight, "Above 0.")
      .field("flatField", &ChartPhotograph::flatField,
             "Of the same size: an even surface in the same light; or None.")
      .field("samples", &ChartPhotograph::samples,
             "What the samples mean, where this isn't what the options say for all.")
      .field("flatFieldSamples", &ChartPhotograph::flatFieldSamples, "Likewise.")
      .field("capture", &ChartPhotograph::capture, "Of a raw photograph.")
      .field("warnings", &ChartPhotograph::warnings, "Of the file.");
  m.def("chartPhotograph", &chartPhotograph, py::arg("photograph"), py::arg("weight") = 1.0,
        py::arg("flatField") = py::none(), "The photograph as the fit takes it.");
  Struct<BestFitOptions>(m, "BestFitOptions", "What the best fit is asked.")
      .field("chart", &BestFitOptions::chart,
             "Of the stated fit, which is made beside the best one; light, tone curve, space, "
             "target and patches for white balance hold for both.")
      .field("best", &BestFitOptions::best,
             "Its space, cameraGamma, whitePatches and statedSettings follow from `chart`.");
  Struct<BestChartFit>(m, "BestChartFit",
                       "The best fit to photographs of the chart, and the stated fit to each.")
      .field("options", &BestChartFit::options, "Of the best fit, as it was asked.")
      .field("best", &BestChartFit::best, "The best fit.")
      .field("stated", &BestChartFit::stated, "One for each photograph.")
      .field("warnings", &BestChartFit::warnings,
             "A sentence each; those of the stated fits are theirs.")
      .def("shown", &BestChartFit::shown, py::arg("photograph"),
           "One photograph with gains, matrix and colours of the best fit, as a ChartFit.")
      .def("lightRgb", &BestChartFit::lightRgb, py::arg("photograph"),
           "Measured values through the tone curve, if there is one: 24 x 3, linear.");
  m.def(
      "fitChartBest",
      [](const std::vector<ChartPhotograph>& photographs, const BestFitOptions& options,
         const ProgressArg& progress) {
        return cancellable(progress, [&photographs, options](const ProgressCallback& callback) {
          return fitChartBest(photographs, options, callback);
        });
      },
      py::arg("photographs"), defaulted<BestFitOptions>("options", "BestFitOptions()"),
      py::arg("progress") = ProgressArg(),
      R"(Finds the chart in each photograph, samples it, and makes both fits.

Returns
-------
BestChartFit or None
    None when the callable cancelled.

Raises
------
JobError
    A flat field of another size or one that clips at a patch, and as fitChart.
ValueError
    As MatrixFit, fitChart and FitOptions.follow.)");
  m.def(
      "correctedPhotograph",
      unlocked(
          py::overload_cast<const Picture&, const BestChartFit&, std::size_t, const SampleMeaning&>(
              &correctedPhotograph)),
      py::arg("picture"), py::arg("fit"), py::arg("photograph") = 0,
      defaulted<SampleMeaning>("samples", "SampleMeaning()"),
      "A photograph through tone curve, gains and matrix of the best fit and the camera's gamma.");
  m.def("readPatchWeights", unlocked(&readPatchWeights), py::arg("file"),
        "Weights of the 24 patches from a file of 24 numbers of 0 or above; JobError for others.");
}

void bindProfile(py::module_& m) {
  Struct<LightPhotograph>(m, "LightPhotograph", "A photograph of the chart under one light.")
      .field("photograph", &LightPhotograph::photograph, "With what its samples mean.")
      .field("light", &LightPhotograph::light, "Of the chart.")
      .field("kelvin", &LightPhotograph::kelvin,
             "Colour temperature, where it is known better than by name.");
  Struct<LightFit>(m, "LightFit", "A fit under one light, as fitChart made it.")
      .field("fit", &LightFit::fit, "As fitChart made it.")
      .field("kelvin", &LightFit::kelvin, "As LightPhotograph.kelvin.");
  Enum<KelvinSource>(m, "KelvinSource", "Where a light's colour temperature comes from.")
      .value("given", KelvinSource::given)
      .value("spectrum", KelvinSource::spectrum)
      .value("published", KelvinSource::published)
      .value("gains", KelvinSource::gains)
      .value("stand_in", KelvinSource::stand_in);
  m.attr("kKelvinSourceNames") = py::tuple(py::cast(kKelvinSourceNames));
  Struct<ProfiledLight>(m, "ProfiledLight", "A fit and the colour temperature of its light.")
      .field("fit", &ProfiledLight::fit, "As fitChart made it.")
      .field("kelvin", &ProfiledLight::kelvin, "Colour temperature.")
      .field("source", &ProfiledLight::source, "Where the temperature comes from.")
      .def("mired", &ProfiledLight::mired, "1e6 / kelvin, the scale on which lights lie evenly.");
  Struct<MatrixStep>(m, "MatrixStep",
                     "What happens to the chart's colours when one matrix takes over from its "
                     "neighbour, in CIEDE2000.")
      .field("mired", &MatrixStep::mired, "Between the lights.")
      .field("mean", &MatrixStep::mean, "Mean difference.")
      .field("worst", &MatrixStep::worst, "Largest difference.")
      .field("worstPatch", &MatrixStep::worstPatch, "From 0.")
      .def("per100Mired", &MatrixStep::per100Mired, "The mean for 100 mired.");
  Struct<CameraProfile>(m, "CameraProfile", "A camera under several lights.")
      .field("lights", &CameraProfile::lights, "From the warmest to the coolest.")
      .field("errors", &CameraProfile::errors,
             "CIEDE2000 to the reference, [matrix][light]: a light's chart with its own gains "
             "under each light's matrix.")
      .field("steps", &CameraProfile::steps, "From each light to the next.")
      .field("warnings", &CameraProfile::warnings, "A sentence each.");
  m.attr("kJumpPer100Mired") = kJumpPer100Mired;
  m.def("profileOf", unlocked(&profileOf), py::arg("fits"),
        "Sets the fits, a list of LightFit, side by side. Raises ValueError for no fits and for a "
        "temperature outside 1000..25000 K, JobError for two lights of the same temperature.");
  m.def(
      "fitProfile",
      [](const std::vector<LightPhotograph>& photographs, const ChartFitOptions& options,
         const ProgressArg& progress) {
        return cancellable(progress, [&photographs, options](const ProgressCallback& callback) {
          return fitProfile(photographs, options, callback);
        });
      },
      py::arg("photographs"), defaulted<ChartFitOptions>("options", "ChartFitOptions()"),
      py::arg("progress") = ProgressArg(),
      "Fits each photograph and sets the fits side by side; None when the callable cancelled. "
      "Raises JobError for another transform than 0, and as fitChart and profileOf.");
  Struct<ProfilePoint>(m, "ProfilePoint",
                       "Gains and matrix for a light between those of a profile.")
      .field("kelvin", &ProfilePoint::kelvin, "Colour temperature.")
      .field("matrix", &ProfilePoint::matrix, "3 x 3.")
      .field("whiteBalance", &ProfilePoint::whiteBalance, "R, G, B.")
      .field("exposure", &ProfilePoint::exposure, "Exposure gain.")
      .field("warmer", &ProfilePoint::warmer, "The light it lies above; from 0.")
      .field("cooler", &ProfilePoint::cooler, "The light it lies below; from 0.")
      .field("warmerShare", &ProfilePoint::warmerShare, "1 of the warmer one alone.");
  m.def("profileAt", &profileAt, py::arg("profile"), py::arg("kelvin"),
        "Gains and matrix at a colour temperature; beyond the ends the last light's are kept. "
        "Raises ValueError outside 1000..25000 K and for an empty profile.");
}

void bindApplyFit(py::module_& m) {
  Struct<FittedPipeline>(m, "FittedPipeline",
                         "What a fit makes of any photograph of the same camera.")
      .field("gains", &FittedPipeline::gains, "Exposure gain times white-balance gains.")
      .field("matrix", &FittedPipeline::matrix, "Of balanced RGB.")
      .field("gamma", &FittedPipeline::gamma, "The camera's tone curve.")
      .field("toneCurve", &FittedPipeline::toneCurve,
             "Undone first: see MatrixFitResult.toneCurve; may be empty.");
  m.def("pipelineOf", py::overload_cast<const ChartFit&>(&pipelineOf), py::arg("fit"),
        "The pipeline of a fit.");
  m.def("pipelineOf", py::overload_cast<const BestChartFit&, std::size_t>(&pipelineOf),
        py::arg("fit"), py::arg("photograph") = 0,
        "Likewise, with the exposure gain of that photograph.");
  Struct<ApplyFitOptions>(m, "ApplyFitOptions", "What is done beside a fit's pipeline.")
      .field("gamma", &ApplyFitOptions::gamma, "In place of the fit's tone curve; or None.")
      .field("lut2d", &ApplyFitOptions::lut2d, "Applied to the result; or None.");
  m.def("applyFit", unlocked(&applyFit), py::arg("photograph"), py::arg("pipeline"),
        defaulted<ApplyFitOptions>("options", "ApplyFitOptions()"),
        "The photograph through gains, matrix and tone curve, and the hue/saturation table if "
        "there is one, in 8 bits. Raises JobError for a grey photograph.");
  m.def("resultPaths", &resultPaths, py::arg("photographs"), py::arg("folder"),
        "Where the results of several photographs go: into the folder, each under its "
        "photograph's name with the ending .png. Raises JobError for two of one name.");
  Struct<AppliedFit>(m, "AppliedFit", "What was made of each photograph.")
      .field("photo", &AppliedFit::photo, "Names the picture.")
      .field("output", &AppliedFit::output, "The file of the result.")
      .field("failure", &AppliedFit::failure, "Why there is no output; empty when there is.")
      .field("warnings", &AppliedFit::warnings, "A sentence each.");
  m.def(
      "applyFitToFiles",
      [](const std::vector<std::filesystem::path>& photographs,
         const std::vector<std::filesystem::path>& outputs, const FittedPipeline& pipeline,
         const ApplyFitOptions& options, const PhotographOptions& reading,
         const ProgressArg& progress) {
        return cancellable(progress, [=](const ProgressCallback& callback) {
          return applyFitToFiles(photographs, outputs, pipeline, options, reading, callback);
        });
      },
      py::arg("photographs"), py::arg("outputs"), py::arg("pipeline"),
      defaulted<ApplyFitOptions>("options", "ApplyFitOptions()"),
      defaulted<PhotographOptions>("reading", "PhotographOptions()"),
      py::arg("progress") = ProgressArg(),
      "Reads photographs and writes what the pipeline makes of each to its output; what is wrong "
      "with one doesn't stop the others. A list of AppliedFit; None when the callable cancelled. "
      "Raises ValueError for more or fewer outputs than photographs.");
}

}  // namespace

void bindChartJobs(py::module_& m) {
  bindLocateChart(m);
  bindMeasureChart(m);
  bindChartSamples(m);
  bindEvaluateChart(m);
  bindFitOptions(m);
  bindChartFit(m);
  bindBestFit(m);
  bindProfile(m);
  bindApplyFit(m);
}

}  // namespace greycard::python
