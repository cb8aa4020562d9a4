// greycard gamma import: what files of curves hold.

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
  CurveImportOptions import;
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

// The curve of each file goes to the file that stands in the same place behind --export.
void exportAll(const GammaCurveModel& catalogue, const CurveImportReport& report,
               ImportOptions& options) {
  auto next = report.curves.begin();
  for (std::size_t i = 0; i < options.exports.size() && next != report.curves.end(); ++i) {
    if (next->file != options.inputs[i]) continue;
    options.files.write(
        options.exports[i],
        curveFileText(*catalogue.GetGammaCurveByName(next->curve.name), options.form));
    ++next;
  }
}

// What could be read has been dealt with by now.
void tellRefusals(const CurveImportReport& report) {
  for (const RefusedCurveFile& refused : report.refused) printNotes(refused.notes);
  if (report.refused.empty()) return;
  if (report.refused.size() == 1) throw JobError(report.refused[0].reason);
  for (const RefusedCurveFile& refused : report.refused)
    std::cerr << "refused: " << printable(refused.reason) << '\n';
  throw JobError(std::to_string(report.refused.size()) + " of " +
                 std::to_string(report.curves.size() + report.refused.size()) +
                 " files gave no curve");
}

std::string tableText(const CurveFileTable& table) {
  return std::to_string(table.values) +
         (table.bits == 0 ? " fractions" : " x " + std::to_string(table.bits) + " bits");
}

void printText(const CurveImportReport& report) {
  using enum TextTable::Align;
  TextTable text({{"curve", Left}, {"channels", Left}, {"in the file", Left}, {"points"}});
  for (const ImportedCurve& imported : report.curves) {
    const CurveTables& curve = imported.curve;
    std::string tables, points;
    for (std::size_t c = 0; c < (curve.unified ? 1 : curve.channels.size()); ++c) {
      if (c < imported.fileTables.size())
        tables += (c == 0 ? "" : ", ") + tableText(imported.fileTables[c]);
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
  const std::vector<std::filesystem::path> files(options.inputs.begin(), options.inputs.end());
  const CurveImportReport report = importCurves(catalogue, files, options.import);
  if (report.curves.empty()) return tellRefusals(report);
  exportAll(catalogue, report, options);
  options.plot.write(options.files,
                     [&](const auto& against) { return present::curvePlot(report, against); });
  options.writeJson(present::toJson(report));
  if (options.printsText()) printText(report);
  tellRefusals(report);
}

}  // namespace

void addGammaImport(CLI::App& gamma) {
  const auto options = std::make_shared<ImportOptions>();
  CLI::App& app = addSubCommand(
      gamma, "import",
      "What files of curves hold, and what of it could not be used; also converts them. A file\n"
      "may be a curve file, .cube (1D), CSV of one to four columns, JSON or YAML lists, C arrays, "
      "or\n"
      "plain numbers; its content tells.",
      "greycard gamma import outdoor.txt --export outdoor64.txt --size 64 --bits 8", *options);
  app.add_option("file", options->inputs, "Files of curves")
      ->required()
      ->transform(inputFile())
      ->type_name("FILE...");
  app.add_flag("--from-points", options->import.fromPoints,
               "Compute each curve from the control points of its file, whatever its table says");
  app.add_option("--export", options->exports, "Curve files to write, one for each that is read")
      ->type_name("FILE...");
  addCurveFileForm(app, options->form);
  for (const char* shape : {"--size", "--bits"}) app.get_option(shape)->needs("--export");
  options->plot.addTo(app);
  setJob(app, options, run);
}

}  // namespace greycard::cli
