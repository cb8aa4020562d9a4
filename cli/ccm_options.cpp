#include "ccm_options.h"

#include <algorithm>

#include "light_option.h"
#include "option_checks.h"

namespace greycard::cli {
namespace {

void addFitOptions(CLI::App& app, CcmOptions& options) {
  CLI::Option_group& fit = *app.add_option_group("Fit");
  addLightOption(fit, options.light);
  fit.add_option("--gamma", options.gamma,
                 "The camera's tone curve: a name of the catalogue (greycard gamma list) or a file "
                 "of 256 numbers of 8, 10, 12 or 14 bits, as the largest tells")
      ->capture_default_str()
      ->type_name("NAME|FILE");
  fit.add_option("--delta-e", options.deltaE, "Colour difference to minimise: cie76 or cie94")
      ->check(CLI::IsMember({"cie76", "cie94"}))
      ->capture_default_str()
      ->type_name("NAME");
  fit.add_option(
         "--transform", options.transform,
         "RGB to XYZ: 0 sRGB, 1 Adobe RGB (1998), 2 sRGB with the matrix taken from BT.2020 "
         "to BT.709 primaries, 3 custom")
      ->check(wholeNumbersFrom(0, 3))
      ->capture_default_str()
      ->type_name("0..3");
  fit.add_option("--noise-rate", options.noiseRate, "Weight of noise against colour error")
      ->check(numbersFrom(0.0, 1.0))
      ->capture_default_str()
      ->type_name("0..1");
  fit.add_option("--white-patches", options.whitePatches,
                 "Chart numbers of the patches for white balance, as in 20,21,22")
      ->delimiter(',')
      ->check(wholeNumbersFrom(19, 22))
      ->capture_default_str()
      ->type_name("LIST");
}

void addTargetOptions(CLI::App& app, CcmOptions& options) {
  CLI::Option_group& target = *app.add_option_group("Target");
  CLI::Option* lab = target.add_option("--reference-lab", options.referenceLab,
                                       "Reference colours: 24 lines of L* a* b*");
  lab->type_name("FILE");
  target
      .add_option("--reference-srgb", options.referenceSRgb,
                  "Reference colours: 24 lines of 8-bit sRGB")
      ->type_name("FILE")
      ->excludes(lab);
  target
      .add_option("--saturation", options.saturation,
                  "Chroma wanted over the target's, 1.1 for 10 % more; a longer search")
      ->check(numbersFrom(0.9, 3.0))
      ->type_name("FACTOR");
  target
      .add_option("--sat", options.saturationAdjustments,
                  "Chroma factors of the target: all, red, green, blue patches (all counts when "
                  "the four are equal)")
      ->check(numbersFrom(0.0, 10.0))
      ->delimiter(',')
      ->expected(4)
      ->capture_default_str()
      ->type_name("A,R,G,B");
  target
      .add_option("--hue", options.hueAdjustments,
                  "Hue rotations of the target in degrees: red, green, blue patches")
      ->check(numbersFrom(-360.0, 360.0))
      ->delimiter(',')
      ->expected(3)
      ->capture_default_str()
      ->type_name("R,G,B");
}

}  // namespace

void CcmOptions::addTo(CLI::App& app) {
  source.addTo(app, true);
  addFitOptions(app, *this);
  addTargetOptions(app, *this);
  app.add_option("--report", report, "Report as one HTML file")->type_name("FILE");
  app.add_option("--corrected", corrected, "The photograph through gains, matrix and tone curve")
      ->type_name("FILE");
}

ColorCorrectionSettings CcmOptions::settings() const {
  ColorCorrectionSettings settings(0, lightFromOption(light), transform);
  settings.m_nDeltaEMode = deltaE == "cie76" ? 0 : 1;
  settings.m_fNoiseRate = noiseRate;
  if (saturation) settings.m_fSaturation = *saturation;

  ColorCorrectionAdvancedSettings& advanced = settings.m_advanced;
  advanced.m_fSat_all = saturationAdjustments[0];
  advanced.m_fSat_R = saturationAdjustments[1];
  advanced.m_fSat_G = saturationAdjustments[2];
  advanced.m_fSat_B = saturationAdjustments[3];
  advanced.m_fHue_R = hueAdjustments[0];
  advanced.m_fHue_G = hueAdjustments[1];
  advanced.m_fHue_B = hueAdjustments[2];
  const auto chosen = [this](int patch) {
    return std::find(whitePatches.begin(), whitePatches.end(), patch) != whitePatches.end();
  };
  advanced.m_bWhitePatch19 = chosen(19);
  advanced.m_bWhitePatch20 = chosen(20);
  advanced.m_bWhitePatch21 = chosen(21);
  advanced.m_bWhitePatch22 = chosen(22);

  if (!referenceLab.empty()) settings.m_macbethData.readReferenceLab(referenceLab);
  if (!referenceSRgb.empty()) settings.m_macbethData.readReferenceSRgb(referenceSRgb);
  return settings;
}

}  // namespace greycard::cli
