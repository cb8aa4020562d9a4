// greycard gamma hdr10: the perceptual quantiser up to a peak luminance.

#include <memory>

#include "gamma_commands.h"
#include "greycard/gamma_curve_model.h"
#include "option_checks.h"
#include "standard_curve.h"

namespace greycard::cli {
namespace {

struct Hdr10Options : StandardCurveOptions {
  int nits = 10000;
};

void run(const Hdr10Options& options) {
  GammaCurveModel model(false);
  const std::string peak = std::to_string(options.nits) + " cd/m\u00b2";
  deliverStandardCurve(
      options, *model.GenerateHDRCurve(options.nits), "HDR10 (PQ) up to " + peak,
      {"Linear light (cd/m\u00b2)", "light (cd/m2)", static_cast<double>(options.nits), 3});
}

}  // namespace

void addGammaHdr10(CLI::App& gamma) {
  const auto options = std::make_shared<Hdr10Options>();
  CLI::App& app = addSubCommand(
      gamma, "hdr10",
      "The perceptual quantiser (SMPTE ST 2084): 257 output codes of 10 bits for linear inputs of\n"
      "12 bits whose full scale is the peak luminance",
      "greycard gamma hdr10 --nits 1000 --plot pq.svg --against HLG", *options);
  app.add_option("--nits", options->nits, "Peak luminance in cd/m2, 1 to 10000")
      ->capture_default_str()
      ->type_name("N")
      ->check(wholeNumbersFrom(1, 10000));
  options->addTo(app);
  app.callback([options] { run(*options); });
}

}  // namespace greycard::cli
