#include "flat_field_options.h"

#include <algorithm>
#include <array>
#include <vector>

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

}  // namespace greycard::cli
