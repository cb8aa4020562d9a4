// greycard gamma hdr10 and hlg: curves of 257 codes of 10 bits over linear 12-bit inputs.

#include <filesystem>
#include <iostream>
#include <memory>

#include "command.h"
#include "curve_options.h"
#include "gamma_commands.h"
#include "greycard/files.h"
#include "greycard/number_text.h"
#include "greycard/present/gamma.h"
#include "option_checks.h"
#include "text_output.h"
#include "text_table.h"

namespace greycard::cli {
namespace {

struct StandardOptions : CommonOptions {
  StandardCurveOptions curve;
  std::filesystem::path output;
  CurvePlotOptions plot;

  void addTo(CLI::App& app) {
    app.add_option("-o,--output", output, "File for the 257 codes, one a line")->type_name("FILE");
    plot.addTo(app);
  }
};

void print(const StandardCurve& curve) {
  const bool inNits = curve.kind == StandardCurveKind::HDR10;
  TextTable text(
      {{"input (12 bits)"}, {inNits ? "light (cd/m2)" : "light (0..1)"}, {"output (10 bits)"}});
  for (std::size_t i = 0; i < curve.table.size(); ++i)
    text.addRow({std::to_string(curve.inputs[i]),
                 fixed(curve.light(curve.inputs[i]), inNits ? 3 : 5),
                 std::to_string(curve.table[i])});
  std::cout << text.text();
}

void run(StandardOptions& options) {
  options.files.output("--output", options.output);
  options.plot.nameFiles(options.files);
  options.files.output("--json", options.json);
  const StandardCurve curve = standardCurve(options.curve);
  if (!options.output.empty()) options.files.write(options.output, codesText(curve));
  options.plot.write(options.files,
                     [&](const auto& against) { return present::curvePlot(curve, against); });
  options.writeJson(present::toJson(curve));
  if (options.printsText() && options.output.empty()) print(curve);
}

}  // namespace

void addGammaHdr10(CLI::App& gamma) {
  const auto options = std::make_shared<StandardOptions>();
  CLI::App& app = addSubCommand(
      gamma, "hdr10",
      "The perceptual quantiser (SMPTE ST 2084): 257 output codes of 10 bits for linear inputs of\n"
      "12 bits whose full scale is the peak luminance",
      "greycard gamma hdr10 --nits 1000 --plot pq.svg --against HLG", *options);
  app.add_option("--nits", options->curve.nits, "Peak luminance in cd/m2, 1 to 10000")
      ->capture_default_str()
      ->type_name("N")
      ->check(wholeNumbersFrom(1, 10000));
  options->addTo(app);
  setJob(app, options, run);
}

void addGammaHlg(CLI::App& gamma) {
  const auto options = std::make_shared<StandardOptions>();
  options->curve.kind = StandardCurveKind::HLG;
  CLI::App& app = addSubCommand(
      gamma, "hlg",
      "The hybrid log-gamma curve (ITU-R BT.2100): 257 output codes of 10 bits for linear inputs\n"
      "of 12 bits",
      "greycard gamma hlg --plot hlg.svg --against VGammaSRGB", *options);
  options->addTo(app);
  setJob(app, options, run);
}

}  // namespace greycard::cli
