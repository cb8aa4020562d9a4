#include <algorithm>
#include <utility>

#include "bindings.h"
#include "greycard/exposure_histogram.h"
#include "greycard/nlopt_helper.h"
#include "search_options.h"

namespace greycard::python {
namespace {

using Numbers = std::vector<double>;
using Histograms = std::vector<ChannelHistograms>;

// GaTask with memory of its own, for Python to fill.
struct HeldTask {
  Numbers lowerBound, upperBound, initialBound;
  int imageCount = 0;
  Numbers Weight, newTarget, curr_luma, cur_target;
  double max_drc_gain = 0.0, ADRC_Enable = 0.0;
  Histograms hist_RGB, hist_CDF;
  Numbers initial_parameter, parameters_enable;
  bool isManual = false;

  GaTask task() const {
    return {lowerBound, upperBound, initialBound,      imageCount,        Weight,
            newTarget,  curr_luma,  cur_target,        max_drc_gain,      ADRC_Enable,
            hist_RGB,   hist_CDF,   initial_parameter, parameters_enable, isManual};
  }
};
void bindHistograms(py::module_& m) {
  m.attr("kHistogramBins") = kHistogramBins;
  Struct<ExposureHistograms>(m, "ExposureHistograms",
                             R"(The two cumulative histograms that the luma-target rule reads.

With p[j] the share of a channel's pixels in bin j, hist_CDF[k] is p[0] + ... + p[k] and hist_RGB[k] is
0 p[0] + 1 p[1] + ... + k p[k].)")
      .field("hist_CDF", &ExposureHistograms::hist_CDF, "3 x 256.")
      .field("hist_RGB", &ExposureHistograms::hist_RGB, "3 x 256.")
      .field("luma", &ExposureHistograms::luma, "Mean of luma601 over the pixels, in bins.");
  m.def(
      "exposureHistograms",
      [](const Picture& picture, int whiteLevel) {
        return withoutLock([&] { return exposureHistograms(picture, whiteLevel); });
      },
      py::arg("picture"), py::arg("whiteLevel"),
      R"(The histograms of a picture; 255 makes bins of the codes of an 8-bit one.

Raises
------
ValueError
    A white level outside 1..65535.

Examples
--------
>>> import numpy, greycard.core as core
>>> core.exposureHistograms(numpy.full((2, 2, 3), 40, numpy.uint8), 255).hist_RGB[0, 255]
40.0
)");
}

void bindTask(py::module_& m) {
  m.attr("kGaParameters") = kGaParameters;
  m.attr("kGaEnableFlags") = kGaEnableFlags;
  m.attr("kGaMaxImages") = kGaMaxImages;
  m.attr("kGaReferenceParameters") = arrayOf(kGaReferenceParameters);
  m.attr("kGaEnableFlagOf") = arrayOf(kGaEnableFlagOf);
  Struct<HeldOptions>(m, "SearchOptions", "When a search gives up, and what makes it repeatable.")
      .field("seed", &HeldOptions::seed, "The same seed gives the same numbers.")
      .field("maxSeconds", &HeldOptions::maxSeconds, "0 = no limit.")
      .field("maxEvaluations", &HeldOptions::maxEvaluations, "Of the objective; 0 = no limit.")
      .field("progress", &HeldOptions::progress,
             "Called every 64 evaluations with the fraction of the nearer limit that is used up; "
             "False stops the search with result code -5.")
      .attr("kDefaultSeed") = py::int_(std::uint32_t{SearchOptions::kDefaultSeed});
  using Task = HeldTask;
  Struct<Task>(m, "GaTask", "What GA fits the rule to: N images, and the limits of the search.")
      .field("lowerBound", &Task::lowerBound, "12.")
      .field("upperBound", &Task::upperBound, "12.")
      .field("initialBound", &Task::initialBound, "12: the start, within the bounds.")
      .field("imageCount", &Task::imageCount, "N, 1 to 299.")
      .field("Weight", &Task::Weight, "N: 0 or above, not all 0.")
      .field("newTarget", &Task::newTarget, "N: the luma target wanted.")
      .field("curr_luma", &Task::curr_luma, "N: the luma measured now.")
      .field("cur_target", &Task::cur_target, "N: the luma target set now.")
      .field("max_drc_gain", &Task::max_drc_gain, "Limit of the compression gain.")
      .field("ADRC_Enable", &Task::ADRC_Enable, "Not 0 = compression on.")
      .field("hist_RGB", &Task::hist_RGB, "N of 3 x 256: see ExposureHistograms.")
      .field("hist_CDF", &Task::hist_CDF, "N of 3 x 256.")
      .field("initial_parameter", &Task::initial_parameter,
             "12: the value of each parameter whose group is not enabled.")
      .field("parameters_enable", &Task::parameters_enable, "9: not 0 = the group is fitted.")
      .field("isManual", &Task::isManual, "Evaluates initial_parameter once, without a search.");
}

void bindResult(py::module_& m) {
  Struct<GaReport>(m, "GaReport", "How a GA run went.")
      .field("best", &GaReport::best, "12: the best point found.")
      .field("bestKeepsConstraints", &GaReport::bestKeepsConstraints,
             "Whether it keeps the constraints.")
      .field("evaluations", &GaReport::evaluations, "Of the objective.")
      .field("seconds", &GaReport::seconds, "By the clock.");
  Struct<GaImageResult>(m, "GaImageResult", "What the rule makes of one image.")
      .field("fourTargets", &GaImageResult::fourTargets,
             "4: the larger and the smaller of the targets A and B, the dark targets.")
      .field("safeTarget", &GaImageResult::safeTarget, "The target.")
      .field("shortTarget", &GaImageResult::shortTarget, "The same.")
      .field("longTarget", &GaImageResult::longTarget, "The same.")
      .field("pushUp", &GaImageResult::pushUp, "Statistic: a mean bin.")
      .field("pushDown", &GaImageResult::pushDown, "Statistic: a mean bin.")
      .field("dark", &GaImageResult::dark, "Statistic: a mean bin.");
  Struct<GaResult>(m, "GaResult", "Results of a GA run.")
      .field("parameters", &GaResult::parameters, "12.")
      .field("resultCode", &GaResult::resultCode, "See stopReason; None in a manual run.")
      .field("error", &GaResult::error, "The least error found.")
      .field("meanTargetError", &GaResult::meanTargetError, "Mean |target - wanted target|.")
      .field("images", &GaResult::images, "One each.")
      .field("report", &GaResult::report, "How the run went.");
  m.def(
      "stopReason", [](int code) { return std::string(stopReason(code)); }, py::arg("resultCode"),
      "A result code in words.");
}

GaResult run(const NLoptHelper& self, const HeldTask& given, const HeldOptions& options) {
  const HeldTask task = given;
  return cancellable(options.progress, [&](const ProgressCallback& callback) {
    return self.GA(task.task(), options.with(callback));
  });
}

// What the long form has beside a task: read, and given back in this order.
struct LongForm {
  std::vector<std::array<double, 4>> fourTargets;
  Numbers safe, shortTarget, longTarget, pushUp, pushDown, dark;
  std::optional<int> endCondition;
  double averageTargetError = 0.0, error = 0.0;
  GaReport report;
};

py::tuple runLongForm(const NLoptHelper& self, HeldTask task, const Numbers& pushUpMean,
                      const Numbers& pushDownMean, const Numbers& darkMean,
                      const HeldOptions& options) {
  const auto images = static_cast<std::size_t>(std::clamp(task.imageCount, 0, kGaMaxImages));
  LongForm out;
  for (Numbers* const filled :
       {&out.safe, &out.shortTarget, &out.longTarget, &out.pushUp, &out.pushDown, &out.dark})
    filled->resize(images);
  const GaParameters found = cancellable(options.progress, [&](const ProgressCallback& callback) {
    constexpr int kUntouched = 0;
    int code = kUntouched;
    const GaParameters parameters =
        self.GA(task.lowerBound, task.upperBound, task.initialBound, task.imageCount, task.Weight,
                task.newTarget, task.curr_luma, task.cur_target, task.max_drc_gain,
                task.ADRC_Enable, task.hist_RGB, task.hist_CDF, pushUpMean, pushDownMean, darkMean,
                task.initial_parameter, task.parameters_enable, task.isManual, out.fourTargets,
                out.safe, out.shortTarget, out.longTarget, out.pushUp, out.pushDown, out.dark, code,
                out.averageTargetError, out.error, options.with(callback), &out.report);
    if (code != kUntouched) out.endCondition = code;
    return parameters;
  });
  return py::make_tuple(found, out.fourTargets, out.safe, out.shortTarget, out.longTarget,
                        out.pushUp, out.pushDown, out.dark, out.endCondition,
                        out.averageTargetError, out.error, out.report);
}

void bindHelper(py::module_& m) {
  const auto options = [] { return py::arg_v("options", HeldOptions(), "SearchOptions()"); };
  py::class_<NLoptHelper>(m, "NLoptHelper",
                          R"(Tunes an auto-exposure luma-target rule and matches lightness.

Nothing is shared between calls: any number may run at once, each in its thread.

Examples
--------
>>> import greycard.core as core
>>> round(core.NLoptHelper().findMinSearch([50, 50, 50], [100, 100, 100]), 3)
2.0
)")
      .def(py::init())
      .def("GA", &run, py::arg("task"), options(),
           R"(Fits the twelve parameters of the luma-target rule.

Raises
------
ValueError
    It names the argument that is too short, out of its range or not finite, before anything runs.
)")
      .def(
          "GA",
          [](const NLoptHelper& self, Numbers lowerBound, Numbers upperBound, Numbers initialBound,
             int imageCount, Numbers weight, Numbers newTarget, Numbers currentLuma,
             Numbers currentTarget, double maxDrcGain, double adrcEnable, Histograms histRgb,
             Histograms histCdf, const Numbers& pushUpMean, const Numbers& pushDownMean,
             const Numbers& darkMean, Numbers initial, Numbers enable, bool isManual,
             const HeldOptions& wanted) {
            return runLongForm(
                self,
                {std::move(lowerBound), std::move(upperBound), std::move(initialBound), imageCount,
                 std::move(weight), std::move(newTarget), std::move(currentLuma),
                 std::move(currentTarget), maxDrcGain, adrcEnable, std::move(histRgb),
                 std::move(histCdf), std::move(initial), std::move(enable), isManual},
                pushUpMean, pushDownMean, darkMean, wanted);
          },
          py::arg("lowerBound"), py::arg("upperBound"), py::arg("initialBound"),
          py::arg("imageCount"), py::arg("Weight"), py::arg("newTarget"), py::arg("curr_luma"),
          py::arg("cur_target"), py::arg("max_drc_gain"), py::arg("ADRC_Enable"),
          py::arg("hist_RGB"), py::arg("hist_CDF"), py::arg("max_pushup_mean"),
          py::arg("max_pushdown_mean"), py::arg("max_dark_mean"), py::arg("initial_parameter"),
          py::arg("parameters_enable"), py::arg("isManual"), options(),
          R"(The same one by one.

Returns
-------
tuple
    The parameters, fourTargets, histBasedSafeTarget, histBasedShortTarget, histBasedLongTarget,
    final_sat_pushup_pos, final_sat_pushdown_pos, final_dark_pos, opt_endCond (None in a manual run),
    avg_targeterror, errorValue, report.
)")
      .def(
          "findMinSearch",
          [](const NLoptHelper& self, const Vector3& test, const Vector3& target,
             const HeldOptions& wanted) {
            return cancellable(wanted.progress, [&](const ProgressCallback& callback) {
              return self.findMinSearch(test, target, wanted.with(callback));
            });
          },
          py::arg("testRGB"), py::arg("targetRGB"), options(),
          "The factor, 0 to 10, on the encoded test colour (0..255) that gives it the L* of the "
          "target colour. Raises ValueError for a value that is not finite.")
      .def("test", &NLoptHelper::test, py::call_guard<py::gil_scoped_release>(),
           "A self-check of the library; the result goes to the debug log.");
}

}  // namespace

void bindExposure(py::module_& m) {
  bindHistograms(m);
  bindTask(m);
  bindResult(m);
  bindHelper(m);
}

}  // namespace greycard::python
