// greycard gamma import: what curve files hold.

#include <filesystem>
#include <iostream>
#include <memory>
#include <vector>

#include "command.h"
#include "curve_options.h"
#include "gamma_commands.h"
#include "greycard/names.h"
#include "greycard/present/gamma.h"
#include "option_checks.h"
#include "text_output.h"
#include "text_table.h"

namespace greycard::cli {
namespace {

struct ImportOptions : CommonOptions {
  std::vector<std::string> inputs;
  std::vector<std::filesystem::path> exports;
  CurveFileForm form;
  CurvePlotOptions plot;
};

void nameFiles(ImportOptions& options) {
  if (!options.exports.empty() && options.exports.size() != options.inputs.size())
    throw UsageError("--export takes as many files as are imported");
  for (const std::string& input : options.inputs) options.files.input("a curve file", input);
  for (const auto& path : options.exports) options.files.output("--export", path);
  options.plot.nameFiles(options.files);
  options.files.output("--json", options.json);
}

CurveImportReport importAll(GammaCurveModel& catalogue, const ImportOptions& options) try {
  const std::vector<std::filesystem::path> files(options.inputs.begin(), options.inputs.end());
  return importCurves(catalogue, files);
} catch (const CurveFileRefused& refusal) {
  printNotes(refusal.notes());
  throw;
}

std::string tableText(const CurveFileTable& table) {
  return std::to_string(table.values) + " x " + std::to_string(table.bits) + " bits";
}

void printText(const CurveImportReport& report) {
  using enum TextTable::Align;
  TextTable text({{"curve", Left}, {"channels", Left}, {"in the file", Left}, {"points"}});
  for (const ImportedCurve& imported : report.curves) {
    const CurveTables& curve = imported.curve;
    std::string tables, points;
    for (std::size_t c = 0; c < (curve.unified ? 1 : curve.channels.size()); ++c) {
      tables += (c == 0 ? "" : ", ") + tableText(imported.fileTables.at(c));
      points += (c == 0 ? "" : ", ") + std::to_string(curve.channels[c].points.size());
    }
    text.addRow({printable(curve.name), curve.unified ? "together" : "separate", tables, points});
  }
  std::cout << text.text();
  for (const ImportedCurve& imported : report.curves)
    for (const GammaImportNote& note : imported.notes)
      std::cout << "note: " << noteText(imported.file, note) << '\n';
}

void run(ImportOptions& options) {
  nameFiles(options);
  GammaCurveModel catalogue(true);
  const CurveImportReport report = importAll(catalogue, options);
  for (std::size_t i = 0; i < options.exports.size(); ++i) {
    const auto& curve = *catalogue.GetGammaCurveByName(report.curves[i].curve.name);
    options.files.write(options.exports[i], curveFileText(curve, options.form));
  }
  options.plot.write(options.files,
                     [&](const auto& against) { return present::curvePlot(report, against); });
  options.writeJson(present::toJson(report));
  if (options.printsText()) printText(report);
}

}  // namespace

void addGammaImport(CLI::App& gamma) {
  const auto options = std::make_shared<ImportOptions>();
  CLI::App& app = addSubCommand(
      gamma, "import",
      "What curve files hold, and what of it could not be used; also converts them.\n"
      "A plot of several files shows the red (or common) table of each.",
      "greycard gamma import outdoor.txt --export outdoor64.txt --size 64 --bits 8", *options);
  app.add_option("file", options->inputs, "Curve files")
      ->required()
      ->transform(inputFile())
      ->type_name("FILE...");
  app.add_option("--export", options->exports, "Curve files to write, one for each that is read")
      ->type_name("FILE...");
  addCurveFileForm(app, options->form);
  for (const char* shape : {"--size", "--bits"}) app.get_option(shape)->needs("--export");
  options->plot.addTo(app);
  setJob(app, options, run);
}

}  // namespace greycard::cli
