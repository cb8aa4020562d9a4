#include "curve_options.h"

#include <iostream>

#include "command.h"
#include "greycard/files.h"
#include "greycard/gamma_curve_model.h"
#include "option_checks.h"

namespace greycard::cli {
namespace {

bool isInCatalogue(const std::string& name) {
  return GammaCurveModel(true).GetGammaCurveByName(name) != nullptr;
}

bool isGenerated(const std::string& name) {
  return name == "HDR10" || name == "HLG";
}

// Runs what reads a curve, and prints its notes.
template <typename Read>
auto withNotesPrinted(Read read) try {
  auto source = read();
  printNotes(source.notes);
  return source;
} catch (const CurveFileRefused& refusal) {
  printNotes(refusal.notes());
  throw;
}

}  // namespace

void printNotes(const std::vector<std::string>& notes) {
  for (const std::string& note : notes) std::cerr << "note: " << note << '\n';
}

GammaCurvePtr curveFromOption(const std::string& nameOrFile) {
  return withNotesPrinted([&] { return curveByNameOrFile(nameOrFile); }).curve;
}

void nameCurveFile(JobFiles& files, const std::string& option, const std::string& nameOrFile) {
  if (!nameOrFile.empty() && !isInCatalogue(nameOrFile)) files.input(option, nameOrFile);
}

void CurveChoice::addTo(CLI::App& app) {
  app.add_option("curve", name, "A curve of the catalogue (greycard gamma list), or a curve file")
      ->required()
      ->transform(inputFile())
      ->type_name("NAME|FILE");
  app.add_option("--channel", channel, "Of the curve; all is the same as red")
      ->capture_default_str()
      ->type_name("NAME")
      ->check(oneOf({"all", "red", "green", "blue"}));
}

void CurveChoice::nameFile(JobFiles& files) const {
  nameCurveFile(files, "the curve file", name);
}

void CurvePlotOptions::addTo(CLI::App& app) {
  app.add_option("--plot", plot, "Plot to write, as SVG or PNG")->type_name("FILE");
  app.add_option("--against", against,
                 "A second curve in the plot: of the catalogue, from a curve file, HDR10 or HLG")
      ->type_name("NAME|FILE");
}

void CurvePlotOptions::nameFiles(JobFiles& files) const {
  if (plot.empty() && !against.empty())
    throw UsageError("--against is a second curve in the plot; it needs --plot");
  if (!isGenerated(against)) nameCurveFile(files, "--against", against);
  files.plotOutput("--plot", plot);
}

void CurvePlotOptions::write(
    JobFiles& files,
    const std::function<std::string(const std::optional<CurveTables>&)>& draw) const {
  if (plot.empty()) return;
  std::optional<CurveTables> comparison;
  if (!against.empty())
    comparison = withNotesPrinted([this] { return comparisonCurve(against); }).curve;
  files.writePlot(plot, draw(comparison));
}

void addCurveFileForm(CLI::App& app, CurveFileForm& form) {
  app.add_option("--size", form.values, "Values of a table: 64, 256, 512 or 1024")
      ->capture_default_str()
      ->type_name("N")
      ->check(CLI::IsMember({64, 256, 512, 1024}));
  app.add_option("--bits", form.bits, "Bits of a value: 8, 10, 12 or 14")
      ->capture_default_str()
      ->type_name("B")
      ->check(CLI::IsMember({8, 10, 12, 14}));
}

}  // namespace greycard::cli
