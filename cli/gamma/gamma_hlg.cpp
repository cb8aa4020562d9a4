// greycard gamma hlg: the hybrid log-gamma curve.

#include <memory>

#include "gamma_commands.h"
#include "greycard/gamma_curve_model.h"
#include "standard_curve.h"

namespace greycard::cli {

void addGammaHlg(CLI::App& gamma) {
  const auto options = std::make_shared<StandardCurveOptions>();
  CLI::App& app = addSubCommand(
      gamma, "hlg",
      "The hybrid log-gamma curve (ITU-R BT.2100): 257 output codes of 10 bits for linear inputs\n"
      "of 12 bits",
      "greycard gamma hlg --plot hlg.svg --against VGammaSRGB", *options);
  options->addTo(app);
  app.callback([options] {
    GammaCurveModel model(false);
    deliverStandardCurve(*options, *model.GenerateHLGCurve(), "Hybrid log-gamma",
                         {"Scene light (part of its peak)", "light (0..1)", 1.0, 5});
  });
}

}  // namespace greycard::cli
