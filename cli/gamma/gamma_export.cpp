// greycard gamma export: a curve as a curve file.

#include <memory>

#include "curve_output.h"
#include "gamma_commands.h"
#include "option_checks.h"

namespace greycard::cli {
namespace {

struct ExportOptions : CurveOutput {
  std::string name;
};

void run(ExportOptions& options) {
  nameCurveFile(options.files, "the curve file", options.name);
  options.nameFiles();
  options.write(*curveFromOption(options.name));
}

}  // namespace

void addGammaExport(CLI::App& gamma) {
  const auto options = std::make_shared<ExportOptions>();
  CLI::App& app =
      addSubCommand(gamma, "export", "A curve as the text file that other tools read",
                    "greycard gamma export VOutdoor --size 256 --bits 10 -o outdoor.txt", *options);
  app.add_option("curve", options->name,
                 "A curve of the catalogue, HDR10, HLG, or a file of a curve to convert")
      ->required()
      ->transform(inputFile())
      ->type_name("NAME|FILE");
  options->addTo(app);
  setJob(app, options, run);
}

}  // namespace greycard::cli
