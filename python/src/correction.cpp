#include "bindings.h"
#include "greycard/color_correction_settings.h"
#include "greycard/color_correction_utils.h"
#include "greycard/picture_correction.h"

namespace greycard::python {
namespace {

void bindSettings(py::module_& m) {
  using Advanced = ColorCorrectionAdvancedSettings;
  Struct<Advanced>(m, "ColorCorrectionAdvancedSettings",
                   "Adjustments of the target colours, and the patches for white balance.")
      .field("m_fSat_all", &Advanced::m_fSat_all,
             "Chroma factor of all patches; counts only when equal to the next three.")
      .field("m_fSat_R", &Advanced::m_fSat_R, "Of patches 9, 15, 17.")
      .field("m_fSat_G", &Advanced::m_fSat_G, "Of patches 4, 6, 11, 14.")
      .field("m_fSat_B", &Advanced::m_fSat_B, "Of patches 3, 8, 13, 18.")
      .field("m_fHue_R", &Advanced::m_fHue_R, "Hue rotation in degrees of patches 9, 15, 17.")
      .field("m_fHue_G", &Advanced::m_fHue_G, "Of patches 4, 11, 14.")
      .field("m_fHue_B", &Advanced::m_fHue_B, "Of patches 3, 6, 8, 13, 18.")
      .field("m_bWhitePatch19", &Advanced::m_bWhitePatch19, "Takes part in white balance.")
      .field("m_bWhitePatch20", &Advanced::m_bWhitePatch20, "Takes part in white balance.")
      .field("m_bWhitePatch21", &Advanced::m_bWhitePatch21, "Takes part in white balance.")
      .field("m_bWhitePatch22", &Advanced::m_bWhitePatch22, "Takes part in white balance.");

  Enum<FitExposure>(m, "FitExposure", "Where the exposure gain comes from.")
      .value("stated", FitExposure::stated, "before white balance, whose gain of G adds to it")
      .value("balanced", FitExposure::balanced, "the same on the balanced patch")
      .value("number", FitExposure::number, "as given")
      .value("free", FitExposure::free, "the fit, for each photograph; of a MatrixFit only");

  Struct<GammaLUT>(m, "GammaLUT", "One curve of 1024 entries per channel, with a title.")
      .field("m_pLUTr", &GammaLUT::m_pLUTr, "1024 of int32.")
      .field("m_pLUTg", &GammaLUT::m_pLUTg, "1024 of int32.")
      .field("m_pLUTb", &GammaLUT::m_pLUTb, "1024 of int32.")
      .def_property_readonly(
          "m_szTitle", [](const GammaLUT& self) { return textForPeople(self.m_szTitle.data()); },
          "The title; SetTitle sets it.")
      .def(
          "SetTitle",
          [](GammaLUT& self, const std::optional<std::string>& title) {
            return self.SetTitle(title ? title->c_str() : nullptr);
          },
          py::arg("psz"),
          "Copies a title of at most 7 characters. False for a longer one or None; the title is "
          "then "
          "empty.")
      .attr("kEntries") = GammaLUT::kEntries;
  m.attr("GammaLUT").attr("kLongestTitle") = GammaLUT::kLongestTitle;
}

void bindSettingsClass(py::module_& m) {
  using Settings = ColorCorrectionSettings;
  py::class_<Settings> bound(m, "ColorCorrectionSettings", R"(What a colour correction is to do.

Parameters
----------
headerVersion : int
    Not kept.
illum : Illum
    The light; its built-in reference colours go into m_macbethData.
transformtype : int
    See m_RGBtoXYZTransform.

Examples
--------
>>> import greycard.core as core
>>> settings = core.ColorCorrectionSettings(0, core.illum_A, 0)
>>> settings.m_fNoiseRate = 0.05
>>> settings.m_advanced.m_bWhitePatch19 = True
)");
  bound
      .def(py::init<std::int32_t, Illum, std::int32_t>(), py::arg("headerVersion"),
           py::arg("illum"), py::arg("transformtype"))
      .def("__copy__", [](const Settings& self) { return Settings(self); })
      .def(
          "__deepcopy__", [](const Settings& self, const py::dict&) { return Settings(self); },
          py::arg("memo"));
  field(bound, "m_illum", &Settings::m_illum, "The light.");
  field(bound, "m_RGBtoXYZTransform", &Settings::m_RGBtoXYZTransform,
        "Colour space of the corrected RGB: 0 sRGB, 1 Adobe RGB (1998), 2 sRGB then to BT.2020, 3 "
        "m_CustRGB2XYZ and m_CustXYZ2sRGB.");
  field(bound, "m_fNoiseRate", &Settings::m_fNoiseRate,
        "0..1, weight of noise after correction against the colour error.");
  field(bound, "m_fSaturation", &Settings::m_fSaturation,
        "Chroma to reach, 1.1 for 10 % more; below 0.9 there is no saturation search.");
  field(bound, "m_nHueAccuracy", &Settings::m_nHueAccuracy, "For the host.");
  field(bound, "m_nDeltaEMode", &Settings::m_nDeltaEMode,
        "0 minimises CIE76, any other value CIE94.");
  field(bound, "m_fWBGain", &Settings::m_fWBGain, "3: for the host.");
  field(bound, "m_gamma", &Settings::m_gamma, "For the host.");
  field(bound, "m_fCCMatrix", &Settings::m_fCCMatrix, "3 x 3: for the host.");
  field(bound, "m_fBias", &Settings::m_fBias, "3: for the host.");
  field(bound, "m_advanced", &Settings::m_advanced, "Targets and white balance.");
  field(bound, "m_macbethData", &Settings::m_macbethData, "The chart.");
  field(bound, "m_CustRGB2XYZ", &Settings::m_CustRGB2XYZ,
        "3 x 3: linear RGB to XYZ on the 0..1 scale.");
  field(bound, "m_CustXYZ2sRGB", &Settings::m_CustXYZ2sRGB, "3 x 3: its inverse.");
  field(bound, "m_exposure", &Settings::m_exposure, "Where the exposure gain comes from.");
  field(bound, "m_exposureGain", &Settings::m_exposureGain, "For FitExposure.number.");
}

void bindResults(py::module_& m) {
  Struct<ColorPipeline>(m, "ColorPipeline", "All that takes a camera's linear RGB to colours.")
      .field("m_gains", &ColorPipeline::m_gains, "3: exposure gain times white-balance gains.")
      .field("m_ccm", &ColorPipeline::m_ccm, "3 x 3: m_ccm * column.")
      .field("m_gamma", &ColorPipeline::m_gamma, "R, G, B: 256 values each over 0..1.");
  m.def("checkFitSettings", &checkFitSettings, py::arg("settings"),
        "Refuses what can't be fitted whatever is measured. Raises ValueError that names the "
        "setting.");
  using Report = ColorFitReport;
  Struct<Report>(m, "ColorFitReport", "What a colour-matrix fit worked on and how it went.")
      .field("m_balancedRGB", &Report::m_balancedRGB,
             "24 x 3: measured RGB times exposure and white-balance gains, not clipped.")
      .field("m_uncorrectedLab", &Report::m_uncorrectedLab,
             "24 x 3: of the balanced chart with the identity for a matrix.")
      .field("m_targetLab", &Report::m_targetLab, "24 x 3: what the fit aimed at.")
      .field("m_startError", &Report::m_startError,
             "Mean CIE76 error of the linear least-squares start matrix.")
      .field("m_firstCost", &Report::m_firstCost, "Of the start matrix.")
      .field("m_lastCost", &Report::m_lastCost, "Of the result.")
      .field("m_powellRuns", &Report::m_powellRuns, "Minimisations.")
      .field("m_evaluations", &Report::m_evaluations, "Of the cost, in all runs.")
      .field("m_stopReason", &Report::m_stopReason, "Why the run that gave the result stopped.")
      .field("m_chromaChange", &Report::m_chromaChange,
             "Chroma of patches 1 to 18 against the target's: 0.1 is 10 % more.")
      .field("m_chromaChangeWanted", &Report::m_chromaChangeWanted,
             "None without a saturation search.")
      .field("m_hueWeight", &Report::m_hueWeight, "kH of CIE94 that the result was found with.")
      .field("m_saturationPressure", &Report::m_saturationPressure,
             "g that the result was found with.");
}

void copyTables(ColorCorrectionUtils& to, const ColorCorrectionUtils& from) {
  to.SetGammaTable(from.m_nGammaTableR, from.m_nGammaTableG, from.m_nGammaTableB);
}

// In another object, whose results are taken over with the lock: nothing is half written for
// another thread, or after a cancelled fit.
bool optimize(ColorCorrectionUtils& self, const ColorCorrectionSettings& params,
              std::int32_t headerID, const ProgressArg& progress) {
  ColorCorrectionUtils fit;
  copyTables(fit, self);
  const ColorCorrectionSettings settings = params;
  const bool done = cancellable(progress, [&](const ProgressCallback& callback) {
    return fit.Optimize(settings, headerID, callback);
  });
  if (!done) return false;
  self.m_macbethLab = fit.m_macbethLab;
  self.m_ccm = fit.m_ccm;
  self.m_wbGain = fit.m_wbGain;
  self.m_gain = fit.m_gain;
  self.m_fit = std::move(fit.m_fit);
  return true;
}

// The optimiser is lent to an object of the call's own; until it is back, opEx is as after Dispose.
PatchTable optimizeStepwise(ColorCorrectionUtils& opEx) {
  ColorCorrectionUtils borrower;
  borrower.Dispose();
  borrower.m_pMatrixOp.swap(opEx.m_pMatrixOp);
  PatchTable lab{};
  const std::span<double, 3 * kPatchCount> numbers(lab[0].data(), 3 * kPatchCount);
  try {
    withoutLock([&] { ColorCorrectionUtils::Color_correction_3illum(borrower, numbers); });
  } catch (...) {
    borrower.m_pMatrixOp.swap(opEx.m_pMatrixOp);
    throw;
  }
  borrower.m_pMatrixOp.swap(opEx.m_pMatrixOp);
  return lab;
}

void bindUtils(py::module_& m) {
  using Utils = ColorCorrectionUtils;
  py::class_<Utils> bound(m, "ColorCorrectionUtils", R"(Colour correction from one chart.

Set the camera's gamma tables, call Optimize with the settings, read the results from the fields. An
object works for one thread at a time; two objects may work in two threads.

Examples
--------
>>> import numpy, greycard.core as core
>>> utils = core.ColorCorrectionUtils()
>>> ramp = numpy.linspace(0, 16383, 256).astype(int)
>>> utils.SetGammaTable(ramp, ramp, ramp)
>>> settings = core.ColorCorrectionSettings(0, core.illum_D65, 0)
>>> settings.m_macbethData.m_RGB[:] = numpy.linspace(0.9, 0.05, 72).reshape(24, 3)
>>> utils.Optimize(settings, 0)
True
>>> utils.m_ccm.sum(axis=1).round(6).tolist()
[1.0, 1.0, 1.0]
)");
  bound.def(py::init())
      .def(
          "SetGammaTable",
          [](Utils& self, In<std::int32_t> r, In<std::int32_t> g, In<std::int32_t> b) {
            self.SetGammaTable(r.read("GammaTableR"), g.read("GammaTableG"), b.read("GammaTableB"));
          },
          py::arg("GammaTableR"), py::arg("GammaTableG"), py::arg("GammaTableB"),
          "Copies the camera's gamma tables: 14-bit values at 256 equal steps of linear input.")
      .def("GetGammaCurveForID", &Utils::GetGammaCurveForID, py::arg("headerID"),
           "The curve \"VOutdoor\" of m_gammaModel, whatever the id.")
      .def_static("SetColorMatrixOpt", &Utils::SetColorMatrixOpt, py::arg("opEx"),
                  py::arg("params"), py::arg("ID"),
                  "Fills opEx's own optimiser from the settings and sets its m_gain.")
      .def_static("Color_correction_3illum", &optimizeStepwise, py::arg("opEx"),
                  "Runs opEx's own optimiser as it is filled; returns L*a*b* (24 x 3). Raises "
                  "ValueError after Dispose.")
      .def("Optimize", &optimize, py::arg("params"), py::arg("headerID"),
           py::arg("progress") = ProgressArg(),
           R"(Fits matrix and gains to the measured chart and leaves them in the fields.

Parameters
----------
progress : callable, optional
    Gets the fraction done, 0..1; returning False cancels.

Returns
-------
bool
    False when it was cancelled; the fields are as before then and after an exception.

Raises
------
ValueError
    It names what can't be fitted, with patch and channel.
NumericError
    The search doesn't come to an end.
)")
      .def("CalculateDeltaE", &Utils::CalculateDeltaE, py::arg("pMacbethData"),
           "The measured chart, taken as linear sRGB, in L*a*b* in m_macbethLab: no correction.")
      .def_static(
          "loadRefLab", [](const PatchTable& def) { return def; }, py::arg("table"),
          "Copies a table.")
      .def("Pipeline", &Utils::Pipeline,
           "The results of the last Optimize, with the gamma tables as they are now.")
      .def("ShownLab", &Utils::ShownLab, py::arg("balancedRgb"), py::arg("ccm"),
           "L*a*b* (24 x 3) of balanced RGB (24 x 3) through any matrix, as Optimize judges it.")
      .def("Dispose", &Utils::Dispose, "Releases the optimiser of the step-by-step calls.")
      .def_readonly("m_gammaModel", &Utils::m_gammaModel, "The catalogue of curves.");
  field(bound, "m_macbethLab", &Utils::m_macbethLab, "24 x 3: after correction.");
  field(bound, "m_ccm", &Utils::m_ccm, "3 x 3: balanced RGB to corrected RGB, m_ccm * column.");
  field(bound, "m_wbGain", &Utils::m_wbGain, "3: R, G, B.");
  field(bound, "m_gain", &Utils::m_gain, "Exposure gain.");
  field(bound, "m_fit", &Utils::m_fit, "Of the last Optimize.");
  field(bound, "m_nGammaTableR", &Utils::m_nGammaTableR, "A copy of the red table.");
  field(bound, "m_nGammaTableG", &Utils::m_nGammaTableG, "A copy of the green table.");
  field(bound, "m_nGammaTableB", &Utils::m_nGammaTableB, "A copy of the blue table.");
}

Picture corrected(const Picture& picture, SampleLevels levels, const Vector3& gains,
                  const Matrix3& matrix, const std::array<std::vector<double>, 3>& curves,
                  const std::vector<double>& lightCurve) {
  return withoutLock([&] {
    return correctPicture(picture, levels, gains, matrix, {curves[0], curves[1], curves[2]},
                          lightCurve);
  });
}

}  // namespace

void bindCorrection(py::module_& m) {
  bindSettings(m);
  bindSettingsClass(m);
  bindResults(m);
  bindUtils(m);
  m.def("correctPicture", &corrected, py::arg("picture"), py::arg("levels"), py::arg("gains"),
        py::arg("matrix"),
        py::arg_v("curves", std::array<std::vector<double>, 3>{}, "([], [], [])"),
        py::arg_v("lightCurve", std::vector<double>(), "[]"),
        R"(Brings a photograph to 8 bits with colours corrected.

Linear value (levels), gains per channel, then matrix * (R, G, B), clipped to 0..1, then the curve.

Parameters
----------
gains : 3
    Exposure gain times white-balance gain per channel.
matrix : 3 x 3
    Colour-correction matrix.
curves : three arrays
    Output 0..1 at equal steps over 0..1 for R, G, B; an empty one stands for the sRGB transfer.
lightCurve : array
    What linear values go through first: MatrixFitResult.toneCurve.

Raises
------
ValueError
    Levels that make no scale, a curve of one value or with one that is not finite, gains times
    matrix not finite or above 1e6.
)");
}

}  // namespace greycard::python
