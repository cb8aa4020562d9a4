#include "light_option.h"

#include <vector>

#include "command.h"
#include "greycard/names.h"

namespace greycard::cli {
namespace {

std::vector<std::string> lightNames() {
  std::vector<std::string> names;
  for (int code = illum_A; code <= illum_LED2; ++code)
    names.emplace_back(illumName(static_cast<Illum>(code)));
  return names;
}

}  // namespace

void addLightOption(CLI::App& app, std::string& name) {
  std::string list;
  for (const std::string& known : lightNames()) list += (list.empty() ? "" : ", ") + known;
  app.add_option("--light", name,
                 "Light on the chart: " + list +
                     ". Reference colours are those of the light, but of D65 for Outdoor, LED, "
                     "Strobe, CoolWhite, D75, LED1 and LED2, and of TL84 for Lowlight")
      ->capture_default_str()
      ->type_name("NAME");
}

Illum lightFromOption(const std::string& name) {
  if (const auto light = illumFromName(name)) return *light;
  throw UsageError("--light: " + unknownName("light", name, lightNames()));
}

}  // namespace greycard::cli
