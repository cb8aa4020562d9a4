// greycard gamma export: a curve as a curve file.

#include <filesystem>
#include <iostream>
#include <memory>

#include "command.h"
#include "curve_options.h"
#include "gamma_commands.h"
#include "greycard/files.h"
#include "greycard/names.h"
#include "greycard/present/gamma.h"
#include "text_output.h"

namespace greycard::cli {
namespace {

struct ExportOptions : CommonOptions {
  std::string name;
  CurveFileForm form;
  std::filesystem::path output;
  CurvePlotOptions plot;
};

void run(ExportOptions& options) {
  nameCurveFile(options.files, "the curve file", options.name);
  options.files.output("--output", options.output);
  options.plot.nameFiles(options.files);
  options.files.output("--json", options.json);
  const GammaCurvePtr curve = curveFromOption(options.name);
  const CurveExport exported{curveTables(*curve), options.output, options.form};
  options.files.write(options.output, curveFileText(*curve, options.form),
                      ": " + printable(curve->Name()) +
                          (exported.curve.unified ? ", one table of " : ", three tables of ") +
                          std::to_string(options.form.values) + " values of " +
                          std::to_string(options.form.bits) + " bits");
  options.plot.write(options.files, [&](const auto& against) {
    return present::curvePlot(exported.curve, against);
  });
  options.writeJson(present::toJson(exported));
}

}  // namespace

void addGammaExport(CLI::App& gamma) {
  const auto options = std::make_shared<ExportOptions>();
  CLI::App& app =
      addSubCommand(gamma, "export", "A curve as the text file that other tools read",
                    "greycard gamma export VOutdoor --size 256 --bits 10 -o outdoor.txt", *options);
  app.add_option("curve", options->name, "A curve of the catalogue, or a curve file to convert")
      ->required()
      ->type_name("NAME|FILE");
  addCurveFileForm(app, options->form);
  app.add_option("-o,--output", options->output, "Curve file to write")
      ->required()
      ->type_name("FILE");
  options->plot.addTo(app);
  setJob(app, options, run);
}

}  // namespace greycard::cli
