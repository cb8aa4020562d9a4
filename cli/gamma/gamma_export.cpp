// greycard gamma export: a curve as a curve file.

#include <filesystem>
#include <iostream>
#include <memory>

#include "command.h"
#include "curve_plot.h"
#include "curve_source.h"
#include "gamma_commands.h"
#include "greycard/files.h"
#include "greycard/names.h"

namespace greycard::cli {
namespace {

struct ExportOptions : CommonOptions {
  std::string name;
  CurveFileForm form;
  std::filesystem::path output;
  CurvePlotOptions plot;
};

void run(const ExportOptions& options) {
  JobFiles files;
  nameCurveFile(files, "the curve file", options.name);
  files.output("--output", options.output);
  options.plot.nameFiles(files);
  files.textOutput("--json", options.json);
  const GammaCurvePtr curve = curveByNameOrFile(options.name);
  options.form.write(*curve, options.output);
  CurvePlot plot("Tone curve " + curve->Name(), curve->Data()->size());
  plot.addCurve(curve->Name(), *curve);
  plot.write(options.plot);
  Json json = curveJson(*curve);
  json["file"] = options.output.string();
  json["file_values"] = options.form.size;
  json["file_bits"] = options.form.bits;
  writeJson(options.json, json);
  if (options.printsText())
    std::cout << printable(curve->Name()) << ": "
              << (curve->IsUnified() ? "one table" : "three tables") << " of " << options.form.size
              << " values of " << options.form.bits << " bits in " << quoted(options.output)
              << '\n';
}

}  // namespace

void CurveFileForm::addTo(CLI::App& app) {
  app.add_option("--size", size, "Values of a table: 64, 256, 512 or 1024")
      ->capture_default_str()
      ->type_name("N")
      ->check(CLI::IsMember({64, 256, 512, 1024}));
  app.add_option("--bits", bits, "Bits of a value: 8, 10, 12 or 14")
      ->capture_default_str()
      ->type_name("B")
      ->check(CLI::IsMember({8, 10, 12, 14}));
}

void CurveFileForm::write(const GammaCurve& curve, const std::filesystem::path& path) const {
  const auto text = curve.GetFileText(size, bits);
  if (!text) throw JobError("the curve " + curve.Name() + " has no table that could be written");
  writeWholeFile(path, *text);
}

void addGammaExport(CLI::App& gamma) {
  const auto options = std::make_shared<ExportOptions>();
  CLI::App& app =
      addSubCommand(gamma, "export", "A curve as the text file that other tools read",
                    "greycard gamma export VOutdoor --size 256 --bits 10 -o outdoor.txt", *options);
  app.add_option("curve", options->name, "A curve of the catalogue, or a curve file to convert")
      ->required()
      ->type_name("NAME|FILE");
  options->form.addTo(app);
  app.add_option("-o,--output", options->output, "Curve file to write")
      ->required()
      ->type_name("FILE");
  options->plot.addTo(app);
  app.callback([options] { run(*options); });
}

}  // namespace greycard::cli
