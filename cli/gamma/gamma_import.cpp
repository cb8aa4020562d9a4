// greycard gamma import: what curve files hold.

#include <filesystem>
#include <iostream>
#include <memory>
#include <vector>

#include "command.h"
#include "curve_plot.h"
#include "curve_source.h"
#include "gamma_commands.h"
#include "greycard/gamma_curve_model.h"
#include "greycard/names.h"
#include "text_table.h"

namespace greycard::cli {
namespace {

struct ImportOptions : CommonOptions {
  std::vector<std::string> inputs;
  std::vector<std::filesystem::path> exports;
  CurveFileForm form;
  CurvePlotOptions plot;
};

void nameFiles(const ImportOptions& options) {
  if (!options.exports.empty() && options.exports.size() != options.inputs.size())
    throw UsageError("--export takes as many files as are imported");
  JobFiles files;
  for (const std::string& input : options.inputs) files.input("a curve file", input);
  for (const auto& path : options.exports) files.output("--export", path);
  options.plot.nameFiles(files);
  files.textOutput("--json", options.json);
}

std::vector<GammaImport> importAll(GammaCurveModel& catalogue, const ImportOptions& options) {
  std::vector<GammaImport> imports;
  for (const std::string& file : options.inputs) {
    imports.push_back(catalogue.ImportWithReport(file));
    if (const auto& refusal = imports.back().refusal) {
      for (const GammaImportNote& note : imports.back().notes)
        std::cerr << "note: " << noteText(file, note) << '\n';
      throw JobError(noteText(file, *refusal));
    }
  }
  return imports;
}

std::string tableText(const GammaImport::Table& table) {
  return std::to_string(table.numbers) + " x " + std::to_string(table.bits) + " bits";
}

std::string countText(const ControlPointListPtr& points) {
  return std::to_string(points ? points->size() : 0);
}

void printText(const ImportOptions& options, const std::vector<GammaImport>& imports) {
  using enum TextTable::Align;
  TextTable text({{"curve", Left}, {"channels", Left}, {"in the file", Left}, {"points"}});
  for (const GammaImport& import : imports) {
    const GammaCurve& curve = *import.curve;
    std::string tables = tableText(import.tables[0]), points = countText(curve.ControlPoints());
    if (!curve.IsUnified()) {
      tables += ", " + tableText(import.tables[1]) + ", " + tableText(import.tables[2]);
      points += ", " + countText(curve.ControlPointsG()) + ", " + countText(curve.ControlPointsB());
    }
    text.addRow(
        {printable(curve.Name()), curve.IsUnified() ? "together" : "separate", tables, points});
  }
  std::cout << text.text();
  for (std::size_t i = 0; i < imports.size(); ++i)
    for (const GammaImportNote& note : imports[i].notes)
      std::cout << "note: " << noteText(options.inputs[i], note) << '\n';
}

Json importJson(const std::string& file, const GammaImport& import) {
  Json json = curveJson(*import.curve);
  json["file"] = file;
  json["file_tables"] = Json::array();
  for (std::size_t c = 0; c < import.tables.size(); ++c)
    if (const auto& [numbers, bits] = import.tables[c]; numbers > 0)
      json["file_tables"].push_back(
          {{"channel", kChannelNames[c]}, {"values", numbers}, {"bits", bits}});
  json["notes"] = Json::array();
  for (const GammaImportNote& note : import.notes)
    json["notes"].push_back({{"line", note.line}, {"token", note.token}, {"text", note.text}});
  return json;
}

void run(const ImportOptions& options) {
  nameFiles(options);
  GammaCurveModel catalogue(true);
  const std::vector<GammaImport> imports = importAll(catalogue, options);
  for (std::size_t i = 0; i < options.exports.size(); ++i)
    options.form.write(*imports[i].curve, options.exports[i]);
  const std::string& first = imports.front().curve->Name();
  CurvePlot plot(imports.size() == 1 ? "Tone curve " + first : "Imported tone curves", 1024);
  for (std::size_t i = 0; i < imports.size(); ++i) {
    const GammaCurve& curve = *imports[i].curve;
    if (imports.size() == 1)
      plot.addCurve(curve.Name(), curve);
    else
      plot.addTable(curve.Name(), *curve.Data(), plotColour(i));
  }
  plot.write(options.plot);
  if (!options.json.empty()) {
    Json curves = Json::array();
    for (std::size_t i = 0; i < imports.size(); ++i)
      curves.push_back(importJson(options.inputs[i], imports[i]));
    writeJson(options.json, {{"curves", curves}});
  }
  if (options.printsText()) printText(options, imports);
}

}  // namespace

void addGammaImport(CLI::App& gamma) {
  const auto options = std::make_shared<ImportOptions>();
  CLI::App& app = addSubCommand(
      gamma, "import",
      "What curve files hold, and what of it could not be used; also converts them.\n"
      "A plot of several files shows the red (or common) table of each.",
      "greycard gamma import outdoor.txt --export outdoor64.txt --size 64 --bits 8", *options);
  app.add_option("file", options->inputs, "Curve files")->required()->type_name("FILE...");
  app.add_option("--export", options->exports, "Curve files to write, one for each that is read")
      ->type_name("FILE...");
  options->form.addTo(app);
  for (const char* shape : {"--size", "--bits"}) app.get_option(shape)->needs("--export");
  options->plot.addTo(app);
  app.callback([options] { run(*options); });
}

}  // namespace greycard::cli
