// greycard gamma power, merge and invert: curves made from others or from nothing.

#include <array>
#include <memory>

#include "curve_output.h"
#include "gamma_commands.h"
#include "greycard/jobs/make_curve.h"
#include "option_checks.h"

namespace greycard::cli {
namespace {

struct PowerOptions : CurveOutput {
  double denominator = 2.2;
};

struct MergeOptions : CurveOutput {
  std::array<std::string, 3> names;
};

struct InvertOptions : CurveOutput {
  std::string name;
};

void power(PowerOptions& options) {
  options.nameFiles();
  options.write(*powerCurve(options.denominator));
}

void merge(MergeOptions& options) {
  for (const std::string& name : options.names) nameCurveFile(options.files, "a curve file", name);
  options.nameFiles();
  std::array<GammaCurvePtr, 3> curves;
  for (std::size_t c = 0; c < curves.size(); ++c) curves[c] = curveFromOption(options.names[c]);
  options.write(*mergedCurve(options.output.stem().string(), *curves[0], *curves[1], *curves[2]));
}

void invert(InvertOptions& options) {
  nameCurveFile(options.files, "the curve file", options.name);
  options.nameFiles();
  options.write(*invertedCurve(*curveFromOption(options.name)));
}

}  // namespace

void addGammaPower(CLI::App& gamma) {
  const auto options = std::make_shared<PowerOptions>();
  CLI::App& app = addSubCommand(gamma, "power", "A power curve: output = input^(1 / denominator)",
                                "greycard gamma power 2.2 -o power.txt", *options);
  app.add_option("denominator", options->denominator, "0.1 to 10")
      ->required()
      ->type_name("NUMBER")
      ->check(numbersFrom(0.1, 10.0));
  options->addTo(app);
  setJob(app, options, power);
}

void addGammaMerge(CLI::App& gamma) {
  const auto options = std::make_shared<MergeOptions>();
  CLI::App& app =
      addSubCommand(gamma, "merge", "One curve for each channel, made of three",
                    "greycard gamma merge VNormal VOutdoor VHDR -o three.txt", *options);
  constexpr std::array kChannels{"red", "green", "blue"};
  for (std::size_t c = 0; c < options->names.size(); ++c)
    app.add_option(kChannels[c], options->names[c],
                   "Curve for this channel: of the catalogue, HDR10, HLG, or a file of a curve")
        ->required()
        ->transform(inputFile())
        ->type_name("NAME|FILE");
  options->addTo(app);
  setJob(app, options, merge);
}

void addGammaInvert(CLI::App& gamma) {
  const auto options = std::make_shared<InvertOptions>();
  CLI::App& app =
      addSubCommand(gamma, "invert", "The curve that undoes another, which must not fall anywhere",
                    "greycard gamma invert VGammaSRGB -o linear.txt", *options);
  app.add_option("curve", options->name,
                 "A curve of the catalogue, HDR10, HLG, or a file of a curve")
      ->required()
      ->transform(inputFile())
      ->type_name("NAME|FILE");
  options->addTo(app);
  setJob(app, options, invert);
}

}  // namespace greycard::cli
