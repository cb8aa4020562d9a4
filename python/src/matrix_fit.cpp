#include "greycard/matrix_fit.h"

#include <stdexcept>

#include "bindings.h"
#include "greycard/fit_options.h"

namespace greycard::python {
namespace {

template <std::size_t N>
py::tuple names(const std::array<const char*, N>& known) {
  py::tuple all(N);
  for (std::size_t i = 0; i < N; ++i) all[i] = py::str(known[i]);
  return all;
}

void bindFitEnums(py::module_& m) {
  Enum<FitDifference>(m, "FitDifference", "Colour difference that a fit makes small.")
      .value("ciede2000", FitDifference::ciede2000, "ISO/CIE 11664-6")
      .value("cie94", FitDifference::cie94, "CIE 116-1995, graphic arts")
      .value("cie76", FitDifference::cie76, "Euclidean in L*a*b*")
      .value("cam16Ucs", FitDifference::cam16Ucs, "Euclidean in CAM16-UCS");
  Enum<FitEntries>(m, "FitEntries", "Free entries of the matrix.")
      .value("six", FitEntries::six, "each row sums to 1, so balanced greys stay grey")
      .value("nine", FitEntries::nine, "all");
  Enum<FitWhiteBalance>(m, "FitWhiteBalance", "Where the white-balance gains come from.")
      .value("stated", FitWhiteBalance::stated, "FitOptions.whitePatches")
      .value("fitted", FitWhiteBalance::fitted, "the fit");
  Enum<FitToneCurve>(m, "FitToneCurve", "The curve from measured values to light.")
      .value("none", FitToneCurve::none, "measured values are proportional to light")
      .value("given", FitToneCurve::given, "FitOptions.givenCurve")
      .value("power", FitToneCurve::power, "x^g")
      .value("powerOffset", FitToneCurve::powerOffset, "((x + o) / (1 + o))^g")
      .value("blackWhite", FitToneCurve::blackWhite,
             "the sRGB transfer between a black and a white point")
      .value("monotone", FitToneCurve::monotone, "through the greys");
  Enum<FitLight>(m, "FitLight", "The light over the chart's surface.")
      .value("even", FitLight::even, "the same everywhere")
      .value("plane", FitLight::plane, "1 + c0 x + c1 y")
      .value("quadratic", FitLight::quadratic, "with c2 x^2 + c3 x y + c4 y^2");
  Enum<PatchWeightPreset>(m, "PatchWeightPreset", "Weights of the patches.")
      .value("even", PatchWeightPreset::even, "1 for every patch")
      .value("neutrals", PatchWeightPreset::neutrals, "4 for patches 19 to 24")
      .value("skin", PatchWeightPreset::skin, "6 for patches 1 and 2")
      .value("foliageAndSky", PatchWeightPreset::foliageAndSky,
             "6 for patches 3 and 4, 3 for patches 11, 13 and 14");
  m.attr("kFitExposureNames") = names(kFitExposureNames);
  m.attr("kFitDifferenceNames") = names(kFitDifferenceNames);
  m.attr("kFitWhiteBalanceNames") = names(kFitWhiteBalanceNames);
  m.attr("kFitToneCurveNames") = names(kFitToneCurveNames);
  m.attr("kFitLightNames") = names(kFitLightNames);
  m.def("patchWeights", &patchWeights, py::arg("preset"), "The 24 weights of a preset.");
  m.def(
      "patchWeightPresetFromName",
      [](const std::string& name) { return patchWeightPresetFromName(name); }, py::arg("name"),
      "\"even\", \"neutrals\", \"skin\" or \"foliage-sky\"; None for any other text.");
}

void bindOptions(py::module_& m) {
  Struct<FitOptions> options(m, "FitOptions", R"(What a fit is to find, and how.

Everything has a default; MatrixFit refuses what can't be.

Examples
--------
>>> import greycard.core as core
>>> core.FitOptions(entries=core.FitEntries.six, norm=core.FitOptions.kMean).norm
1.0
)");
  options.field("difference", &FitOptions::difference, "What is made small.")
      .field("norm", &FitOptions::norm,
             "The exponent p of (sum of w dE^p / sum of w)^(1/p): 1 to 16.")
      .field("patchWeights", &FitOptions::patchWeights,
             "24, 0 to 1e6 each; a patch of weight 0 takes no part.")
      .field("entries", &FitOptions::entries, "Free entries of the matrix.")
      .field("exposure", &FitOptions::exposure, "Where the exposure gain comes from.")
      .field("exposureGain", &FitOptions::exposureGain, "For FitExposure.number, 1e-6 to 1e6.")
      .field("whiteBalance", &FitOptions::whiteBalance, "Where the gains come from.")
      .field("whitePatches", &FitOptions::whitePatches,
             "0-based rows of greys, 18 to 21. None stands for gains of 1.")
      .field("rowNoiseLimits", &FitOptions::rowNoiseLimits,
             "3: the largest noise amplification of each row: 0.6 or more.")
      .field("tradeOffSteps", &FitOptions::tradeOffSteps,
             "Rows of the table of error against noise, up to 100.")
      .field("toneCurve", &FitOptions::toneCurve, "The curve from measured values to light.")
      .field("givenCurve", &FitOptions::givenCurve,
             "Light for sRGB-encoded values at equal steps over 0..1, rising.")
      .field("light", &FitOptions::light, "The light over the chart.")
      .field("rgbToXyz", &FitOptions::rgbToXyz,
             "3 x 3: linear RGB of the result to XYZ on the 0..1 scale; sRGB at first.")
      .field("cameraGamma", &FitOptions::cameraGamma,
             "Gamma tables of R, G and B, or three empty ones for the sRGB transfer.")
      .field("uncertainty", &FitOptions::uncertainty, "Standard errors from the measured noise.")
      .field("heldOut", &FitOptions::heldOut, "Errors of patches that took no part.")
      .field("compareStated", &FitOptions::compareStated, "The stated fit on the same samples.")
      .field("statedSettings", &FitOptions::statedSettings,
             "How; a copy. None stands for the defaults under D65.");
  options.def(
      "follow",
      [](FitOptions& self, const ColorCorrectionSettings& settings,
         const std::array<std::vector<std::int32_t>, 3>& gamma) { self.follow(settings, gamma); },
      py::arg("settings"), py::arg("gamma"),
      "Takes over what the stated fit is told. Raises ValueError for m_RGBtoXYZTransform 2.");
  options.attr("kMean") = FitOptions::kMean;
  options.attr("kRootMeanSquare") = FitOptions::kRootMeanSquare;
  options.attr("kSoftMaximum") = FitOptions::kSoftMaximum;
  options.attr("kUnlimited") = FitOptions::kUnlimited;
}

void bindSamples(py::module_& m) {
  Struct<FitPhotograph>(m, "FitPhotograph", "One photograph of the chart.")
      .field("rgb", &FitPhotograph::rgb, "24 x 3: measured R, G, B, 0..1.")
      .field("noise", &FitPhotograph::noise, "24 x 3: standard deviation of a pixel's R, G, B.")
      .field("pixels", &FitPhotograph::pixels, "24: averaged per patch; 0 counts as 1.")
      .field("clipped", &FitPhotograph::clipped, "24 of bool: patches that take no part.")
      .field("weight", &FitPhotograph::weight, "Of the photograph, above 0.")
      .field("flatField", &FitPhotograph::flatField,
             "24 x 3, or None: R, G, B of an even surface in the same light, linear.")
      .def(py::init<const MacbethChartData&, const SamplingReport&>(), py::arg("chart"),
           py::arg("report"), "A chart as it was sampled.");
  Struct<MatrixFitSamples>(m, "MatrixFitSamples",
                           "What is fitted: up to 64 photographs under one light.")
      .field("photographs", &MatrixFitSamples::photographs, "A list; assign it whole.")
      .field("referenceLab", &MatrixFitSamples::referenceLab,
             "24 x 3: relative to the white of FitOptions.rgbToXyz.");
}

void bindFigures(py::module_& m) {
  Struct<FitFigures>(m, "FitFigures", "Colour errors of the patches that took part.")
      .field("objective", &FitFigures::objective, "What was made small.")
      .field("mean2000", &FitFigures::mean2000, "CIEDE2000.")
      .field("rms2000", &FitFigures::rms2000, "CIEDE2000.")
      .field("percentile95", &FitFigures::percentile95, "Of CIEDE2000.")
      .field("max2000", &FitFigures::max2000, "CIEDE2000.")
      .field("meanLevelled", &FitFigures::meanLevelled,
             "Mean CIEDE2000 when the common brightness is right.")
      .field("mean76", &FitFigures::mean76, "CIE76.")
      .field("mean94", &FitFigures::mean94, "CIE94.")
      .field("meanCam16", &FitFigures::meanCam16, "CAM16-UCS.")
      .field("meanL", &FitFigures::meanL, "Mean |dL*|.")
      .field("meanC", &FitFigures::meanC, "Mean |dC*|.")
      .field("meanH", &FitFigures::meanH, "Mean |dH*|.")
      .field("metamerismIndex", &FitFigures::metamerismIndex, "After ISO 17321-1.");
  Struct<HeldOutFigures>(m, "HeldOutFigures", "CIEDE2000 of patches that took no part.")
      .field("mean", &HeldOutFigures::mean, "Of all.")
      .field("percentile95", &HeldOutFigures::percentile95, "Of all.");
  Struct<FitUncertainty>(m, "FitUncertainty", "Standard errors from the measured noise.")
      .field("matrix", &FitUncertainty::matrix, "3 x 3: of each entry.")
      .field("gains", &FitUncertainty::gains, "3: of the white-balance gains.")
      .field("curve", &FitUncertainty::curve, "2: of the numbers of the tone curve.")
      .field("exposure", &FitUncertainty::exposure, "Per photograph.")
      .field("lightRange", &FitUncertainty::lightRange, "Per photograph, in per cent.")
      .field("dE2000", &FitUncertainty::dE2000, "Per photograph, 24 each.");
  Struct<FittedPhotograph>(m, "FittedPhotograph", "What the fit says about one photograph.")
      .field("exposure", &FittedPhotograph::exposure, "Its gain.")
      .field("lab", &FittedPhotograph::lab, "24 x 3: corrected.")
      .field("dE2000", &FittedPhotograph::dE2000, "24: also of patches that took no part.")
      .field("split", &FittedPhotograph::split, "24 x 3: dL*, dC*, dH*: result less reference.")
      .field("light", &FittedPhotograph::light, "24: light at the patches.")
      .field("lightRange", &FittedPhotograph::lightRange, "In per cent.")
      .field("lightCoefficients", &FittedPhotograph::lightCoefficients, "c0 .. of FitLight.")
      .field("leftOut", &FittedPhotograph::leftOut,
             "24 texts: why a patch took no part; empty if it did.")
      .field("figures", &FittedPhotograph::figures, "Of this photograph.")
      .field("stated", &FittedPhotograph::stated, "Of the stated fit, or None.")
      .field("statedRefusal", &FittedPhotograph::statedRefusal, "Why there is no stated fit.");
  Struct<FitTradeOff>(m, "FitTradeOff", "A row of the table of error against noise.")
      .field("limit", &FitTradeOff::limit, "Of all three rows of the matrix.")
      .field("rowNoise", &FitTradeOff::rowNoise, "3.")
      .field("figures", &FitTradeOff::figures, "Of that fit.");
}

void bindResult(py::module_& m) {
  using Result = MatrixFitResult;
  Struct<Result>(m, "MatrixFitResult", R"(A fit, and how far to believe it.

A measured value x of a channel becomes light u = curve(x) / light at the patch;
linear RGB = matrix * (exposure * gains * u).)")
      .field("matrix", &Result::matrix, "3 x 3.")
      .field("gains", &Result::gains, "3: white balance, R, G, B.")
      .field("rowNoise", &Result::rowNoise, "3: noise amplification of the rows.")
      .field("conditionNumber", &Result::conditionNumber, "Of the matrix.")
      .field("toneCurve", &Result::toneCurve,
             "Light for the sRGB-encoded values 0, 1/255, .. 1; empty without a curve.")
      .field("curveNumbers", &Result::curveNumbers, "2: g; g and o; b and w.")
      .field("greyResidual", &Result::greyResidual,
             "Above kGreysDisagree the curve is not to be believed; None without one.")
      .field("photographs", &Result::photographs, "What the fit says about each.")
      .field("figures", &Result::figures, "Over all photographs.")
      .field("metamerismBasis", &Result::metamerismBasis, "What the index rests on.")
      .field("leaveOneOut", &Result::leaveOneOut, "None when not asked for or too little is left.")
      .field("sixFold", &Result::sixFold, "None when not asked for or too little is left.")
      .field("uncertainty", &Result::uncertainty, "None when not asked for or not determined.")
      .field("tradeOff", &Result::tradeOff, "From the noisiest row of the fit down to 0.6.")
      .field("starts", &Result::starts, "Searches.")
      .field("bestStart", &Result::bestStart, "Which of them (from 0) gave the result.")
      .field("evaluations", &Result::evaluations, "Of the cost, in all searches.")
      .field("converged", &Result::converged, "Else the search was stopped.")
      .field("notes", &Result::notes, "What a reader should know, in sentences.")
      .attr("kGreysDisagree") = Result::kGreysDisagree;
}

}  // namespace

void bindMatrixFit(py::module_& m) {
  bindFitEnums(m);
  bindOptions(m);
  bindSamples(m);
  bindFigures(m);
  bindResult(m);
  m.def(
      "curveLight",
      [](const std::vector<double>& toneCurve, double measured) {
        if (toneCurve.size() < 2)
          throw std::invalid_argument("a tone curve has two values or more");
        return curveLight(toneCurve, measured);
      },
      py::arg("toneCurve"), py::arg("measured"),
      R"(Light of a linear measured value by a curve as MatrixFitResult.toneCurve has it.

Examples
--------
>>> import greycard.core as core
>>> core.curveLight([0.0, 1.0], 0.0)
0.0
)");
  py::class_<MatrixFit>(m, "MatrixFit",
                        R"(Fits a colour-correction matrix by the least colour error.

Equal samples and options give equal results to the bit. An object may be used by several threads.

Raises
------
ValueError
    One sentence about the first option that can't be.

Examples
--------
>>> import greycard.core as core
>>> chart = core.MacbethChartData()
>>> chart.LoadMCCCIELAB(core.illum_D65)
True
>>> photograph = core.FitPhotograph()
>>> for row, lab in enumerate(chart.m_RefLab):
...     photograph.rgb[row] = core.ImageUtilsEx.CIELabTosRGB(lab).clip(0.01, 1) ** 2.2
>>> samples = core.MatrixFitSamples(photographs=[photograph], referenceLab=chart.m_RefLab)
>>> core.MatrixFit().fit(samples).figures.mean2000 < 1.5
True
)")
      .def(py::init<FitOptions>(), py::arg_v("options", FitOptions(), "FitOptions()"))
      .def(
          "fit",
          [](const MatrixFit& self, MatrixFitSamples samples, const ProgressArg& progress) {
            return cancellable(progress, [&](const ProgressCallback& callback) {
              return self.fit(samples, callback);
            });
          },
          py::arg("samples"), py::arg("progress") = ProgressArg(),
          R"(Takes around a millisecond for one photograph, ten with all that tells how far to believe it.

Parameters
----------
progress : callable, optional
    Called before each search and at the end with the fraction done; returning False cancels.

Returns
-------
MatrixFitResult or None
    None when the callback cancelled.

Raises
------
ValueError
    It names photograph, patch and channel of a value that can't be fitted, or says what is missing.
)");
}

}  // namespace greycard::python
