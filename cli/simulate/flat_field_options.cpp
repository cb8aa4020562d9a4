#include "flat_field_options.h"

#include <array>
#include <vector>

#include "greycard/sigma_lut.h"

namespace greycard::cli {

void FlatFieldOptions::addTo(CLI::App& app) {
  static constexpr std::array kForBoth{"--size", "--bits", "--seed"};
  std::vector<CLI::Option*> forCharts;
  for (CLI::App* group : app.get_subcommands([](const CLI::App*) { return true; }))
    for (CLI::Option* option : group->get_options())
      if (option != group->get_help_ptr() &&
          std::ranges::find(kForBoth, option->get_name()) == kForBoth.end())
        forCharts.push_back(option);

  CLI::Option_group& group = *app.add_option_group("Flat field");
  CLI::Option* const isFlat = group.add_flag("--flat", flat, "A flat field instead of the chart");
  for (CLI::Option* option : forCharts) isFlat->excludes(option);
  const auto add = [&](const char* name, double& value, const char* what) {
    group.add_option(name, value, what)->capture_default_str()->needs(isFlat);
  };
  add("--sigma", settings.centreSigma, "Standard deviation at the centre, in code values");
  add("--gain", settings.cornerGain, "How many times that in the corners");
  add("--level", settings.level, "Mean at the centre, in code values of 8 bits");
  add("--fall-off", settings.fallOff, "Share by which the mean is lower in the corners");
}

Json flatFieldJson(const std::filesystem::path& picture, const FlatFieldSimulator& simulator) {
  const FlatFieldSettings& s = simulator.m_settings;
  std::vector<double> gains;
  for (std::size_t i = 0; i < kSigmaEntries; ++i)
    gains.push_back(simulator.gainAt(static_cast<double>(i) / kSigmaEntries));
  return {{"file", picture.filename().string()},
          {"synthetic", true},
          {"width", s.width},
          {"height", s.height},
          {"bits", s.bits},
          {"level", s.level},
          {"fall_off", s.fallOff},
          {"center_noise_sigma", s.centreSigma},
          {"corner_gain", s.cornerGain},
          {"lut", gains},
          {"seed", s.seed}};
}

}  // namespace greycard::cli
