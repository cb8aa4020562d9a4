#include "greycard/illum.h"

#include <array>

#include "greycard/names.h"

namespace greycard {
namespace {

struct NamedLight {
  Illum light;
  const char* name;
};

constexpr std::array kNames{
    NamedLight{illum_A, "A"},
    NamedLight{illum_D65, "D65"},
    NamedLight{illum_TL84, "TL84"},
    NamedLight{illum_Outdoor, "Outdoor"},
    NamedLight{illum_Lowlight, "Lowlight"},
    NamedLight{illum_LED, "LED"},
    NamedLight{illum_Strobe, "Strobe"},
    NamedLight{illum_D50, "D50"},
    NamedLight{illum_Horizon, "Horizon"},
    NamedLight{illum_CoolWhite, "CoolWhite"},
    NamedLight{illum_D75, "D75"},
    NamedLight{illum_LED1, "LED1"},
    NamedLight{illum_LED2, "LED2"},
};

}  // namespace

std::optional<Illum> illumFromName(TextView name) {
  for (const auto& entry : kNames)
    if (equalIgnoringCase(entry.name, name)) return entry.light;
  return std::nullopt;
}

Illum referenceLight(Illum light) {
  switch (light) {
    case illum_A:
    case illum_TL84:
    case illum_D50:
    case illum_Horizon:
      return light;
    case illum_Lowlight:
      return illum_TL84;
    default:
      return illum_D65;
  }
}

std::string illumTitle(Illum light) {
  const Illum stands = referenceLight(light);
  std::string title = illumName(light);
  if (stands != light) title += std::string(" (reference colours of ") + illumName(stands) + ")";
  return title;
}

const char* illumName(Illum light) {
  for (const auto& entry : kNames)
    if (entry.light == light) return entry.name;
  return "unknown";
}

}  // namespace greycard
