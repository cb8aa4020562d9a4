// The list of formats, and the one door to them.

#include "greycard/exchange/formats.h"

#include <algorithm>
#include <cmath>
#include <set>
#include <stdexcept>

#include "greycard/errors.h"
#include "greycard/lut2d_table.h"
#include "greycard/names.h"
#include "greycard/number_text.h"
#include "writers.h"

namespace greycard::exchange {
namespace {

using Kind = MaterialKind;

struct Format {
  FormatInfo info;
  Exported (*write)(const Material& material, const ExportOptions& options);
};

template <int size>
Exported cube3d(const Material& material, const ExportOptions& options) {
  return writeCube3d(material, options, size);
}

template <int version>
Exported icc(const Material& material, const ExportOptions& options) {
  return writeIcc(std::get<FittedCamera>(material), options, version);
}

Exported dcp(const Material& material, const ExportOptions& options) {
  return writeDcp(std::get<FittedCamera>(material), options);
}

Exported rpi(const Material& material, const ExportOptions&) {
  return writeRpi(material, "bcm2835");
}

Exported rpiPisp(const Material& material, const ExportOptions&) {
  return writeRpi(material, "pisp");
}

Exported libcamera(const Material& material, const ExportOptions&) {
  return writeLibcamera(material);
}

std::vector<Format> allFormats() {
  const std::vector<Kind> all{Kind::Fit, Kind::Curve, Kind::Lut2d, Kind::Noise};
  const std::vector<Kind> colours{Kind::Fit, Kind::Lut2d}, curves{Kind::Fit, Kind::Curve};
  return {{{"cube1d", "tone curve as a 1D LUT (.cube)", curves}, writeCube1d},
          {{"cube17", "3D LUT of 17 nodes a side (.cube)", colours}, cube3d<17>},
          {{"cube33", "3D LUT of 33 nodes a side (.cube)", colours}, cube3d<33>},
          {{"cube65", "3D LUT of 65 nodes a side (.cube)", colours}, cube3d<65>},
          {{"csv", "the figures as a table", all}, writeCsv},
          {{"header", "C header of whole numbers", all}, writeCHeader},
          {{"rpi", "Raspberry Pi tuning file for bcm2835", curves}, rpi},
          {{"rpi-pisp", "Raspberry Pi tuning file for pisp", curves}, rpiPisp},
          {{"libcamera", "libcamera tuning file", curves}, libcamera},
          {{"opencv", "OpenCV FileStorage YAML", all}, writeOpenCv},
          {{"icc", "ICC input profile, version 4", {Kind::Fit}}, icc<4>},
          {{"icc2", "ICC input profile, version 2", {Kind::Fit}}, icc<2>},
          {{"dcp", "DNG camera profile", {Kind::Fit}, 2}, dcp}};
}

Format wantedFormat(const std::string& name, Kind kind, std::size_t lights) {
  const auto all = allFormats();
  const auto found = std::ranges::find(all, name, [](const Format& f) { return f.info.name; });
  if (found == all.end() || std::ranges::find(found->info.kinds, kind) == found->info.kinds.end())
    throw std::invalid_argument(
        found == all.end() ? unknownName("export format", name, formatNames(kind))
                           : "the format " + name + " can't be made of this; those that can: " +
                                 listed(formatNames(kind)));
  if (const std::size_t most = found->info.mostLights; most > 0 && lights > most)
    throw JobError("the format " + name + " holds no more than " + std::to_string(most) +
                   " lights, not " + std::to_string(lights));
  return *found;
}

// The largest gain or entry that correctPicture takes, too.
void checkNumbers(const auto& values) {
  for (const double value : values)
    if (!(std::fabs(value) <= 1e6))
      throw std::invalid_argument("a number that is not finite or beyond 1e6: " +
                                  general(value, 6));
}

void check(const FittedCamera& camera) {
  if (camera.lights.empty()) throw std::invalid_argument("a camera without a fit");
  std::set<Illum> seen;
  for (const auto& [fit, kelvin] : camera.lights) {
    checkNumbers(gainsOf(fit));
    for (const Vector3& row : fit.matrix) checkNumbers(row);
    if (!seen.insert(fit.light).second)
      throw JobError(std::string("there are two fits of the light ") + illumName(fit.light) +
                     "; give one of each");
  }
}
void check(const CurveTables& curve) {
  for (std::size_t c = 0; c < (curve.unified ? 1 : 3); ++c)
    if (curve.channels[c].table.size() < 2)
      throw std::invalid_argument("a tone curve needs at least two entries");
}
void check(const Lut2DConfig& table) {
  checkLut2d(table);
}
void check(const SigmaEstimate& noise) {
  checkNumbers(noise.lut);
}

void checkMaterial(const Material& material) {
  std::visit([](const auto& value) { check(value); }, material);
}

}  // namespace

std::vector<FormatInfo> formats() {
  std::vector<FormatInfo> infos;
  for (Format& format : allFormats()) infos.push_back(std::move(format.info));
  return infos;
}

std::vector<std::string> formatNames(MaterialKind kind) {
  std::vector<std::string> names;
  for (const FormatInfo& info : formats())
    if (std::ranges::find(info.kinds, kind) != info.kinds.end()) names.push_back(info.name);
  return names;
}

void checkFormat(const std::string& format, MaterialKind kind, std::size_t lights) {
  wantedFormat(format, kind, lights);
}

Exported exportAs(const std::string& format, const Material& material,
                  const ExportOptions& options) {
  const auto* camera = std::get_if<FittedCamera>(&material);
  const Format wanted =
      wantedFormat(format, kindOf(material), camera == nullptr ? 1 : camera->lights.size());
  checkMaterial(material);
  return wanted.write(material, options);
}

Exported updatedTuning(std::string_view text, const Material& material) {
  if (kindOf(material) != Kind::Fit && kindOf(material) != Kind::Curve)
    throw std::invalid_argument("a tuning file takes a fit or a tone curve");
  checkMaterial(material);
  const std::size_t first = text.find_first_not_of(" \t\r\n");
  if (first == std::string_view::npos) throw JobError("it is empty");
  return text[first] == '{' ? updateRpi(text, material) : updateLibcamera(text, material);
}

}  // namespace greycard::exchange
