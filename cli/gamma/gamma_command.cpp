// greycard gamma: the catalogue of tone curves.

#include <iostream>
#include <memory>

#include "command.h"
#include "curve_source.h"
#include "gamma_commands.h"
#include "greycard/gamma_curve_model.h"
#include "job_files.h"
#include "sub_commands.h"
#include "text_table.h"
#include "transition.h"

namespace greycard::cli {
namespace {

void list(const CommonOptions& options) {
  JobFiles().textOutput("--json", options.json);
  const GammaCurveModel catalogue(true);
  TextTable table({{"curve", TextTable::Align::Left},
                   {"entries"},
                   {"first"},
                   {"quarter"},
                   {"half"},
                   {"last"},
                   {"channels", TextTable::Align::Left}});
  Json curves = Json::array();
  for (const std::string& name : catalogue.GetNames()) {
    const GammaCurvePtr curve = catalogue.GetGammaCurveByName(name);
    const GammaTable& data = *curve->Data();
    const auto at = [&data](std::size_t quarters) {
      return data[std::min(quarters * data.size() / 4, data.size() - 1)];
    };
    const std::string channels = curve->IsUnified() ? "together" : "separate";
    table.addRow({name, std::to_string(data.size()), std::to_string(at(0)), std::to_string(at(1)),
                  std::to_string(at(2)), std::to_string(at(4)), channels});
    curves.push_back({{"name", name},
                      {"entries", data.size()},
                      {"bits", kCurveBits},
                      {"unified", curve->IsUnified()},
                      {"immutable", curve->IsImmutable()}});
  }
  writeJson(options.json, {{"curves", curves}});
  if (options.printsText())
    std::cout << table.text() << "Outputs are " << kCurveBits << "-bit codes, 0.." << kCurveMax
              << ".\n";
}

}  // namespace

void CurveChoice::addTo(CLI::App& app) {
  app.add_option("curve", name, "A curve of the catalogue (greycard gamma list), or a curve file")
      ->required()
      ->type_name("NAME|FILE");
  app.add_option("--channel", channel, "Of the curve; all is the same as red")
      ->capture_default_str()
      ->type_name("NAME")
      ->check(CLI::IsMember({"all", "red", "green", "blue"}));
}

void CurveChoice::nameFile(JobFiles& files) const {
  nameCurveFile(files, "the curve file", name);
}

GammaCurvePtr CurveChoice::curve() const {
  return curveByNameOrFile(name);
}

ColorChannel CurveChoice::colorChannel() const {
  if (channel == "green") return ColorChannel::Green;
  return channel == "blue" ? ColorChannel::Blue : ColorChannel::All;
}

std::span<const std::int32_t> CurveChoice::table(const GammaCurve& curve) const {
  if (channel == "green") return *curve.DataG();
  return channel == "blue" ? *curve.DataB() : *curve.Data();
}

void addGammaList(CLI::App& gamma) {
  const auto options = std::make_shared<CommonOptions>();
  addSubCommand(gamma, "list", "The names of the catalogue, with a few outputs of each curve",
                "greycard gamma list", *options)
      .callback([options] { list(*options); });
}

void addGamma(CLI::App& parent) {
  CLI::App& gamma =
      *parent.add_subcommand("gamma", "Look at tone curves, convert them, and make tables of them");
  gamma.footer("Example:\n  greycard gamma show VGammaSRGB --plot curve.svg");
  gamma.require_subcommand(1);
  addGammaList(gamma);
  addGammaShow(gamma);
  addGammaLut(gamma);
  addGammaExport(gamma);
  addGammaImport(gamma);
  addGammaHdr10(gamma);
  addGammaHlg(gamma);
  addGammaPoints(gamma);
  addGammaDegamma(gamma);
}

}  // namespace greycard::cli
