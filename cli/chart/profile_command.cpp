// greycard profile: a camera under several lights.

#include <fstream>
#include <iostream>
#include <memory>
#include <utility>

#include "chart_source.h"
#include "command.h"
#include "export_requests.h"
#include "greycard/files.h"
#include "greycard/number_text.h"
#include "greycard/present/chart.h"
#include "greycard/present/fit_file.h"
#include "greycard/present/profile.h"
#include "light_option.h"
#include "option_checks.h"
#include "profile_text.h"
#include "progress_bar.h"
#include "sub_commands.h"

namespace greycard::cli {
namespace {

// LIGHT=FILE or LIGHT@KELVIN=FILE.
struct LightWord {
  Illum light = illum_D65;
  std::optional<double> kelvin;
  std::filesystem::path file;
};

struct ProfileCommandOptions : CommonOptions {
  std::vector<std::string> words;
  std::vector<LightWord> lights;
  ChartSource source;  ///< what the photographs have in common
  ChartFitOptions fit;
  std::string deltaE = "cie94";
  std::optional<double> wanted;
  std::filesystem::path wantedJson;
  ExportRequests exports;
};

LightWord lightWord(const std::string& word) {
  const auto equals = word.find('=');
  if (equals == std::string::npos || equals == 0 || equals + 1 == word.size())
    throw UsageError("\"" + word + "\" is no LIGHT=FILE, as in A=tungsten.png");
  const std::string name = word.substr(0, equals);
  const auto at = name.find('@');
  LightWord light;
  light.light = lightFromOption(name.substr(0, at));
  light.file = word.substr(equals + 1);
  if (at == std::string::npos) return light;
  light.kelvin = numberOf<double>(name.substr(at + 1));
  if (!light.kelvin || !(*light.kelvin >= 1000.0 && *light.kelvin <= 25000.0))
    throw UsageError("\"" + name + "\": a colour temperature of 1000 to 25000 stands behind @");
  return light;
}

// A file that begins as a fit in JSON does.
bool isFit(const std::filesystem::path& file) {
  std::ifstream bytes(file, std::ios::binary);
  char first = '\0';
  bytes >> first;
  return first == '{';
}

LightFit lightFit(const ProfileCommandOptions& options, const LightWord& word) {
  if (isFit(word.file)) {
    ChartFit fit = present::chartFitOf(present::readFit(word.file));
    if (fit.light != word.light)
      throw JobError(quoted(word.file) + " holds a fit under " + illumName(fit.light) + ", not " +
                     illumName(word.light));
    return {std::move(fit), word.kelvin};
  }
  ChartFitOptions own = options.fit;
  own.light = word.light;
  const Photograph photograph = options.source.samples.read(word.file);
  return {locating([&] {
            ProgressBar progress(std::string("fitting ") + illumName(word.light));
            return *fitChart(photograph, own, progress.callback());
          }),
          word.kelvin};
}

void nameFiles(ProfileCommandOptions& options) {
  for (const std::string& word : options.words) options.lights.push_back(lightWord(word));
  for (const LightWord& light : options.lights)
    options.files.input(std::string("the photograph under ") + illumName(light.light), light.file);
  if (!options.wantedJson.empty() && !options.wanted)
    throw UsageError("--kelvin-json takes what --kelvin asks for; add that");
  options.files.output("--kelvin-json", options.wantedJson);
  options.files.output("--json", options.json);
  options.exports.nameFiles(options.files, options.lights.size());
}

exchange::FittedCamera camera(const CameraProfile& profile) {
  exchange::FittedCamera lights;
  for (const ProfiledLight& light : profile.lights)
    lights.lights.push_back(exchange::fittedLight(light.fit, light.kelvin));
  return lights;
}

void run(ProfileCommandOptions& options) {
  options.fit.formula = options.deltaE == "cie76" ? FitFormula::CIE76 : FitFormula::CIE94;
  nameFiles(options);
  options.fit.locate = options.source.options();
  options.tellOptions(present::toJson(options.fit), present::toJson(ChartFitOptions{}));
  std::vector<LightFit> fits;
  for (const LightWord& word : options.lights) fits.push_back(lightFit(options, word));
  const CameraProfile profile = profileOf(std::move(fits));
  std::optional<ProfilePoint> point;
  if (options.wanted) point = profileAt(profile, *options.wanted);
  if (options.exports.any()) options.exports.write(options.files, camera(profile));
  if (point) options.files.write(options.wantedJson, present::toJson(*point));
  options.writeJson(present::toJson(profile));
  if (!options.printsText()) return;
  std::cout << profileText(profile, point);
  options.printWarnings(profile.warnings);
  for (const ProfiledLight& light : profile.lights) options.printWarnings(light.fit.warnings);
}

}  // namespace

void addProfile(CLI::App& parent) {
  const auto options = std::make_shared<ProfileCommandOptions>();
  CLI::App& app = addSubCommand(
      parent, "profile",
      "Fit a camera under several lights: the fits side by side, how each matrix does under the\n"
      "other lights, and where colours would jump; one profile of all of them for other programs",
      "greycard profile A=tungsten.png D65=daylight.png --kelvin 4000 --export dcp=camera.dcp",
      *options);
  app.add_option("light", options->words,
                 "Light and photograph of the chart in it, or a fit that ccm --json wrote; "
                 "LIGHT@KELVIN=FILE for a light whose temperature you know")
      ->required()
      ->type_name("LIGHT=FILE...");
  options->source.addSharedOptions(app, 1);
  app.add_option("--gamma", options->fit.gamma,
                 "The camera's tone curve: a name of the catalogue, or a file of 256 numbers")
      ->capture_default_str()
      ->type_name("NAME|FILE");
  app.add_option("--delta-e", options->deltaE, "Colour difference to minimise: cie76 or cie94")
      ->check(oneOf({"cie76", "cie94"}))
      ->capture_default_str()
      ->type_name("NAME");
  app.add_option("--kelvin", options->wanted,
                 "Also gains and matrix for a light of this colour temperature, in between")
      ->check(numbersFrom(1000.0, 25000.0))
      ->type_name("K");
  app.add_option("--kelvin-json", options->wantedJson, "These as JSON")->type_name("FILE");
  options->exports.addTo(app, exchange::MaterialKind::Fit);
  setJob(app, options, run);
}

}  // namespace greycard::cli
