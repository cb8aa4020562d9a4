#include "profile_text.h"

#include <array>
#include <vector>

#include "greycard/macbeth_chart_data.h"
#include "greycard/number_text.h"
#include "text_table.h"

namespace greycard::cli {
namespace {

using Align = TextTable::Align;
constexpr std::array kRowNames{"R", "G", "B"};

std::string nameOf(const ProfiledLight& light) {
  return illumName(light.fit.light);
}

std::string lightsText(const CameraProfile& profile) {
  TextTable table({{"light", Align::Left},
                   {"K"},
                   {"from", Align::Left},
                   {"R gain"},
                   {"G gain"},
                   {"B gain"},
                   {"exposure"},
                   {"mean dE00"},
                   {"worst"},
                   {"patch", Align::Left}});
  for (const ProfiledLight& light : profile.lights) {
    const ErrorColumn& error = light.fit.after.ciede2000;
    table.addRow({nameOf(light), fixed(light.kelvin, 0),
                  kKelvinSourceNames[static_cast<std::size_t>(light.source)],
                  fixed(light.fit.whiteBalance[0], 4), fixed(light.fit.whiteBalance[1], 4),
                  fixed(light.fit.whiteBalance[2], 4), fixed(light.fit.exposure, 4),
                  fixed(error.mean, 2), fixed(error.worst, 2), patchName(error.worstPatch)});
  }
  return table.text();
}

std::string matricesText(const CameraProfile& profile) {
  std::vector<TextTable::Column> columns{{"", Align::Left}};
  for (const ProfiledLight& light : profile.lights)
    for (const char* channel : kRowNames) columns.push_back({nameOf(light) + " " + channel});
  TextTable table(columns);
  for (std::size_t r = 0; r < 3; ++r) {
    std::vector<std::string> cells{kRowNames[r]};
    for (const ProfiledLight& light : profile.lights)
      for (const double entry : light.fit.matrix[r]) cells.push_back(fixed(entry, 4));
    table.addRow(std::move(cells));
  }
  return table.text();
}

std::string errorsText(const CameraProfile& profile) {
  std::vector<TextTable::Column> columns{{"matrix of", Align::Left}};
  for (const ProfiledLight& light : profile.lights) columns.push_back({"under " + nameOf(light)});
  TextTable table(columns);
  for (std::size_t i = 0; i < profile.lights.size(); ++i) {
    std::vector<std::string> cells{nameOf(profile.lights[i])};
    for (const ErrorColumn& error : profile.errors[i]) cells.push_back(fixed(error.mean, 2));
    table.addRow(std::move(cells));
  }
  return table.text();
}

std::string stepsText(const CameraProfile& profile) {
  TextTable table({{"step", Align::Left},
                   {"mired"},
                   {"mean dE00"},
                   {"per 100 mired"},
                   {"worst"},
                   {"patch", Align::Left}});
  for (std::size_t i = 0; i < profile.steps.size(); ++i) {
    const MatrixStep& step = profile.steps[i];
    table.addRow({nameOf(profile.lights[i]) + " to " + nameOf(profile.lights[i + 1]),
                  fixed(step.mired, 0), fixed(step.mean, 2), fixed(step.per100Mired(), 2),
                  fixed(step.worst, 2), patchName(step.worstPatch)});
  }
  return table.text();
}

std::string pointText(const CameraProfile& profile, const ProfilePoint& point) {
  const ProfiledLight &warm = profile.lights[point.warmer], &cool = profile.lights[point.cooler];
  std::string text = "\nAt " + general(point.kelvin, 6) + " K: ";
  text += point.warmer == point.cooler ? "as " + nameOf(warm) + ", the nearest light\n"
                                       : fixed(100.0 * point.warmerShare, 1) + " % " +
                                             nameOf(warm) + ", the rest " + nameOf(cool) + "\n";
  TextTable table({{"", Align::Left}, {""}, {""}, {""}});
  for (std::size_t r = 0; r < 3; ++r)
    table.addRow({kRowNames[r], fixed(point.matrix[r][0], 5), fixed(point.matrix[r][1], 5),
                  fixed(point.matrix[r][2], 5)});
  return text + table.text() + "White-balance gains  R " + fixed(point.whiteBalance[0], 4) +
         "  G " + fixed(point.whiteBalance[1], 4) + "  B " + fixed(point.whiteBalance[2], 4) +
         "\nExposure gain        " + fixed(point.exposure, 4) + "\n";
}

}  // namespace

std::string profileText(const CameraProfile& profile, const std::optional<ProfilePoint>& point) {
  std::string text = "Lights, from the warmest on\n" + lightsText(profile) +
                     "\nMatrices (rows sum to 1)\n" + matricesText(profile);
  if (profile.lights.size() > 1)
    text += "\nMean dE00 of each matrix under each light, with that light's gains\n" +
            errorsText(profile) +
            "\nHow far colours move where one matrix takes over from the next\n" +
            stepsText(profile);
  if (point) text += pointText(profile, *point);
  return text;
}

}  // namespace greycard::cli
