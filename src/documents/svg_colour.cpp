#include "svg_colour.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "greycard/image_utils_ex.h"

namespace greycard::present {
namespace {

struct Role {
  const char *name, *light, *dark;
};
// The dark ones keep hue and order, lighter where they would sink into the page.
constexpr std::array kPalette{Role{"p0", "#0072b2", "#56b4e9"}, Role{"p1", "#d55e00", "#f28c3a"},
                              Role{"p2", "#009e73", "#2fc79d"}, Role{"p3", "#cc79a7", "#e3a3c6"},
                              Role{"p4", "#000000", "#f0f0f0"}, Role{"p5", "#e69f00", "#f2c14e"}};
constexpr Role kQuiet{"quiet", "#666666", "#a8a8a8"};

}  // namespace

PlotColour plotColour(std::size_t index) {
  const Role& role = kPalette[index % kPalette.size()];
  return {role.light, role.name};
}

PlotColour quietColour() {
  return {kQuiet.light, kQuiet.name};
}

std::string hexColour(const Vector3& rgb) {
  constexpr const char* kDigits = "0123456789abcdef";
  std::string text = "#";
  for (const double component : rgb) {
    const long code =
        std::isnan(component) ? 0 : std::lround(255.0 * std::clamp(component, 0.0, 1.0));
    text += kDigits[code / 16];
    text += kDigits[code % 16];
  }
  return text;
}

std::string hexColourOfLab(const Vector3& lab) {
  Vector3 rgb{};
  ImageUtilsEx::CIELabTosRGB(rgb, lab);
  return hexColour(rgb);
}

std::string plotColourRules(bool dark) {
  std::string rules;
  const auto add = [&](const Role& role) {
    rules += std::string(".") + role.name + "{--c:" + (dark ? role.dark : role.light) + "}";
  };
  for (const Role& role : kPalette) add(role);
  add(kQuiet);
  return rules;
}

}  // namespace greycard::present
