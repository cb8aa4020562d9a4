// greycard sigma: the radial noise table of a flat field.

#include <filesystem>
#include <iostream>
#include <memory>

#include "command.h"
#include "flat_field_source.h"
#include "greycard/files.h"
#include "job_files.h"
#include "sigma_map.h"
#include "sigma_output.h"
#include "sub_commands.h"

namespace greycard::cli {
namespace {

struct SigmaOptions : CommonOptions {
  FlatFieldSource source;
  std::filesystem::path csv, plot, map;
};

void nameFiles(const SigmaOptions& options) {
  JobFiles files;
  files.input("FLATFIELD", options.source.file);
  files.output("--csv", options.csv);
  files.output("--plot", options.plot);
  files.pictureOutput("--map", options.map);
  files.textOutput("--json", options.json);
}

Json figures(const SigmaOptions& options, const LumaPlane& plane, const SigmaLUT& sigma,
             const std::vector<std::string>& advice) {
  Json json{
      {"file", options.source.file.string()}, {"width", plane.width}, {"height", plane.height}};
  json.update(sigmaJson(sigma, advice));
  return json;
}

void run(const SigmaOptions& options) {
  nameFiles(options);
  const LumaPlane plane = options.source.read();
  std::vector<float> localSigma(options.map.empty() ? 0 : plane.samples.size());
  SigmaLUT sigma;
  sigma.CalculateSigmaLUT(plane.width, plane.height, plane.samples, localSigma);
  const auto advice = sigmaAdvice(sigma, plane);

  const std::string name = options.source.file.filename().string();
  if (!options.csv.empty()) writeWholeFile(options.csv, sigmaCsv(sigma));
  if (!options.plot.empty()) writeWholeFile(options.plot, sigmaPlot(sigma, "Noise of " + name));
  if (!options.map.empty()) writePicture(options.map, sigmaMap(plane, localSigma));
  writeJson(options.json, figures(options, plane, sigma, advice));
  if (!options.printsText()) return;
  std::cout << quoted(options.source.file) << ", " << plane.width << " x " << plane.height
            << " pixels\n"
            << sigmaText(sigma);
  for (const std::string& sentence : advice) std::cout << "Advice: " << sentence << "\n";
}

}  // namespace

void addSigma(CLI::App& parent) {
  const auto options = std::make_shared<SigmaOptions>();
  CLI::App& app = addSubCommand(
      parent, "sigma",
      "Estimate the radial noise table of a noise-reduction block from a flat field: how much\n"
      "stronger the noise is at each of 164 distances from the centre than at the centre",
      "greycard sigma flat.png --plot noise.svg --map noise.png\n"
      "greycard sigma flat.raw --raw 4000,3000,8 --csv noise.csv",
      *options);
  options->source.addTo(app);
  app.add_option("--csv", options->csv, "Write a line per ring")->type_name("FILE");
  app.add_option("--plot", options->plot, "Draw the factors over the radius, as SVG")
      ->type_name("FILE");
  app.add_option("--map", options->map, "Picture of the local sigma in code values (.png, ...)")
      ->type_name("FILE");
  app.callback([options] { run(*options); });
}

}  // namespace greycard::cli
