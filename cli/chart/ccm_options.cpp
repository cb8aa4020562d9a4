#include "ccm_options.h"

#include <algorithm>
#include <stdexcept>
#include <tuple>

#include "greycard/errors.h"
#include "greycard/files.h"
#include "greycard/number_text.h"
#include "greycard/present/fit_file.h"
#include "light_option.h"
#include "matrix_option.h"
#include "option_checks.h"

namespace greycard::cli {
namespace {

void addFitOptions(CLI::App& app, CcmOptions& options) {
  CLI::Option_group& fit = *app.add_option_group("Fit");
  addLightOption(fit, options.light);
  fit.add_option("--gamma", options.fit.gamma,
                 "The camera's tone curve: a name of the catalogue (greycard gamma list) or a file "
                 "of 256 numbers of 8, 10, 12 or 14 bits, as the largest tells")
      ->capture_default_str()
      ->type_name("NAME|FILE");
  fit.add_option("--delta-e", options.deltaE, "Colour difference to minimise: cie76 or cie94")
      ->check(oneOf({"cie76", "cie94"}))
      ->capture_default_str()
      ->type_name("NAME");
  fit.add_option(
         "--transform", options.fit.transform,
         "RGB to XYZ: 0 sRGB, 1 Adobe RGB (1998), 2 sRGB, the matrix then multiplied by that from "
         "BT.709 to BT.2020 primaries (ITU-R BT.2087), 3 custom")
      ->check(wholeNumbersFrom(0, 3))
      ->capture_default_str()
      ->type_name("0..3");
  for (const auto& [name, matrix, what] :
       {std::tuple{"--rgb-to-xyz", &options.rgbToXyz, "Of transform 3: its RGB to XYZ (0..1)"},
        std::tuple{"--xyz-to-rgb", &options.xyzToRgb, "Of transform 3: the matrix back"}})
    fit.add_option(name, *matrix, std::string(what) + ", nine numbers row by row or a file of them")
        ->type_name("LIST|FILE");
  fit.add_option("--exposure", options.exposure,
                 "Exposure gain: stated (default), balanced (so that white balance leaves the "
                 "second grey at its reference; default with --fit best), free (with --fit best "
                 "only), or a number")
      ->check(namesOrNumbers({"stated", "balanced", "free"}, 1e-6, 1e6))
      ->type_name("NAME|GAIN");
  fit.add_option("--noise-rate", options.fit.noiseRate, "Weight of noise against colour error")
      ->check(numbersFrom(0.0, 1.0))
      ->capture_default_str()
      ->type_name("0..1");
  fit.add_option("--white-patches", options.fit.whitePatches,
                 "Chart numbers of the patches for white balance, as in 20,21,22")
      ->delimiter(',')
      ->check(wholeNumbersFrom(19, 22))
      ->capture_default_str()
      ->type_name("LIST");
}

void addTargetOptions(CLI::App& app, CcmOptions& options) {
  CLI::Option_group& target = *app.add_option_group("Target");
  CLI::Option* lab = target.add_option("--reference-lab", options.fit.referenceLab,
                                       "Reference colours: 24 lines of L* a* b*");
  lab->type_name("FILE");
  target
      .add_option("--reference-srgb", options.fit.referenceSRgb,
                  "Reference colours: 24 lines of 8-bit sRGB")
      ->type_name("FILE")
      ->excludes(lab);
  target
      .add_option("--saturation", options.fit.saturation,
                  "Chroma wanted over the target's, 1.1 for 10 % more; a longer search")
      ->check(numbersFrom(0.9, 3.0))
      ->type_name("FACTOR");
  target
      .add_option("--sat", options.targetSaturation,
                  "Chroma factors of the target: all, red, green, blue patches (all counts when "
                  "the four are equal)")
      ->check(numbersFrom(0.0, 10.0))
      ->delimiter(',')
      ->expected(4)
      ->capture_default_str()
      ->type_name("A,R,G,B");
  target
      .add_option("--hue", options.targetHue,
                  "Hue rotations of the target in degrees: red, green, blue patches")
      ->check(numbersFrom(-360.0, 360.0))
      ->delimiter(',')
      ->expected(3)
      ->capture_default_str()
      ->type_name("R,G,B");
}

// Of either kind of fit.
template <typename Options>
void setExposure(const std::string& text, Options& options) {
  if (const auto gain = numberOf<double>(text)) {
    options.exposure = FitExposure::number;
    options.exposureGain = *gain;
  } else if (!text.empty()) {
    const auto name = std::ranges::find(kFitExposureNames, text);
    options.exposure = static_cast<FitExposure>(name - kFitExposureNames.begin());
  }
}

}  // namespace

void CcmOptions::addTo(CLI::App& app) {
  source.addTo(app);
  addFitOptions(app, *this);
  addTargetOptions(app, *this);
  best.addTo(app);
  app.add_option("--from", from,
                 "Fit nothing: take gains, matrix and tone curve from a fit that ccm --json wrote, "
                 "for --corrected and exports")
      ->transform(inputFile())
      ->type_name("FILE");
  app.add_option("--report", report, "Report as one HTML file")->type_name("FILE");
  app.add_option("--corrected", corrected, "The photograph through gains, matrix and tone curve")
      ->type_name("FILE");
  exports.addTo(app, exchange::MaterialKind::Fit);
  app.add_option("--kelvin", kelvin,
                 "Colour temperature of the light for exports, where its name tells none")
      ->check(numbersFrom(1000.0, 25000.0))
      ->type_name("K");
  app.add_option("--other-light", otherLights,
                 "The camera under another light, as ccm --json wrote it, for exports that hold "
                 "several; may be given again")
      ->type_name("FILE");
}

ChartFitOptions CcmOptions::fitOptions() const {
  if (exposure == "free" && !best.asked())
    throw UsageError("--exposure free is for --fit best; add that, or give another");
  ChartFitOptions options = fit;
  options.locate = source.options();
  options.light = lightFromOption(light);
  options.formula = deltaE == "cie76" ? FitFormula::CIE76 : FitFormula::CIE94;
  std::ranges::copy(targetSaturation, options.targetSaturation.begin());
  std::ranges::copy(targetHue, options.targetHue.begin());
  if (options.transform == 3 && (rgbToXyz.empty() || xyzToRgb.empty()))
    throw UsageError("--transform 3 is a space of your own: add --rgb-to-xyz and --xyz-to-rgb");
  if (options.transform != 3 && !(rgbToXyz.empty() && xyzToRgb.empty()))
    throw UsageError("--rgb-to-xyz and --xyz-to-rgb are for --transform 3");
  if (!rgbToXyz.empty()) options.rgbToXyz = matrixFromOption("--rgb-to-xyz", rgbToXyz);
  if (!xyzToRgb.empty()) options.xyzToRgb = matrixFromOption("--xyz-to-rgb", xyzToRgb);
  if (!best.asked()) setExposure(exposure, options);
  return options;
}

BestFitOptions CcmOptions::bestFitOptions() const {
  BestFitOptions options{fitOptions(), best.fitOptions()};
  setExposure(exposure, options.best);
  return options;
}

void CcmOptions::nameExports() {
  for (const auto& file : otherLights) files.input("--other-light", file);
  exports.nameFiles(files, 1 + otherLights.size());
  if (!exports.any() && (kelvin || !otherLights.empty()))
    throw UsageError("--kelvin and --other-light are for --export and --update");
  if (exports.any() && best.undoesCurve())
    throw UsageError(
        "--export: these formats have no place for the photograph's own tone curve; leave out "
        "--estimate-curve and --curve");
  if (fit.transform != 0 && exports.asksFor({"icc", "icc2", "dcp"}))
    throw UsageError("--export: a profile needs a matrix to sRGB primaries; leave out --transform");
}

void CcmOptions::writeExports(const ChartFit& chartFit) {
  if (!exports.any()) return;
  exchange::FittedCamera camera{{exchange::fittedLight(chartFit, kelvin)}};
  for (const auto& file : otherLights) {
    camera.lights.push_back(exchange::fittedLight(present::chartFitOf(present::readFit(file))));
  }
  exports.write(files, camera);
}

}  // namespace greycard::cli
