// A C header (C99): static const arrays of whole numbers, fixed point with 16 fractional bits but
// for a curve's codes.

#include <cmath>
#include <cstdint>
#include <span>
#include <stdexcept>

#include "colour_matrices.h"
#include "greycard/number_text.h"
#include "tone_curve.h"
#include "writers.h"

namespace greycard::exchange {
namespace {

constexpr double kFixedPointOne = 65536.0;

std::int32_t fixedPoint(double value) {
  if (!(std::fabs(value) < 32768.0))
    throw std::invalid_argument("a C header with 16 fractional bits can't hold " +
                                general(value, 6));
  return static_cast<std::int32_t>(std::lround(value * kFixedPointOne));
}

std::vector<std::int32_t> fixedPoints(const auto& values) {
  std::vector<std::int32_t> points;
  for (const double value : values) points.push_back(fixedPoint(value));
  return points;
}

std::string identifier(std::string name) {
  for (char& c : name) {
    const bool isLetter = (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
    if (!isLetter && !(c >= '0' && c <= '9')) c = '_';
  }
  if (name.empty() || (name[0] >= '0' && name[0] <= '9')) name.insert(0, "camera_");
  return name;
}

class Header {
 public:
  Header(std::string prefix, const std::string& title) : prefix_(std::move(prefix)) {
    std::string guard = prefix_ + "_TABLES_H";
    for (char& c : guard) c = c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
    // Whatever a name holds, it can't end the comment.
    std::string comment = title;
    for (std::size_t at = 0; (at = comment.find("*/", at)) != std::string::npos;) comment[at] = '_';
    text_ = "/* Made by greycard: " + comment + ". */\n#ifndef " + guard + "\n#define " + guard +
            "\n\n#include <stdint.h>\n";
  }

  void add(const std::string& name, const std::string& comment,
           std::span<const std::int32_t> values, const char* type = "int32_t") {
    text_ += "\n/* " + comment + " */\nstatic const " + type + " " + prefix_ + "_" + name + "[" +
             std::to_string(values.size()) + "] = {";
    for (std::size_t i = 0; i < values.size(); ++i)
      text_ += (i == 0 ? "\n    " : i % 8 == 0 ? ",\n    " : ", ") + std::to_string(values[i]);
    text_ += "};\n";
  }

  std::string text() const { return text_ + "\n#endif\n"; }

 private:
  std::string prefix_, text_;
};

constexpr const char* kChannels[] = {"red", "green", "blue"};

void fill(Header& header, const FittedCamera& camera) {
  for (const auto& [fit, kelvin] : camera.lights) {
    const std::string light =
        camera.lights.size() == 1 ? "" : std::string("_") + illumName(fit.light);
    const auto whole = wholeRows(fit.matrix, kFixedPointOne, {65536, 65536, 65536});
    std::vector<std::int32_t> entries;
    for (const auto& row : whole) entries.insert(entries.end(), row.begin(), row.end());
    header.add(
        "matrix" + light,
        "Row by row, value / 65536: corrected RGB = matrix * balanced RGB. Rows sum to 65536.",
        entries);
    header.add("gains" + light, "R, G, B, value / 65536: exposure gain times white-balance gains.",
               fixedPoints(gainsOf(fit)));
  }
  const CurveValues curves = curveValues(camera);
  for (std::size_t c = 0; c < 3; ++c)
    header.add(std::string("curve_") + kChannels[c],
               "Encoded value / 65536 at equal steps of linear input.", fixedPoints(curves[c]));
}

void fill(Header& header, const CurveTables& curve) {
  for (std::size_t c = 0; c < (curve.unified ? 1 : 3); ++c)
    header.add(curve.unified ? "curve" : std::string("curve_") + kChannels[c],
               "Codes of 14 bits at equal steps of linear input.", curve.channels[c].table);
}

void fill(Header& header, const Lut2DConfig& table) {
  header.add("hue", "Hue of each row in degrees, value / 65536.", fixedPoints(table.lut_1d_h));
  header.add("saturation", "Saturation of each column, value / 65536.",
             fixedPoints(table.lut_1d_s));
  header.add("hue_change", "24 rows of 16, degrees, value / 65536.", fixedPoints(table.lut_2d_h));
  header.add("saturation_change", "24 rows of 16, value / 65536.", fixedPoints(table.lut_2d_s));
}

void fill(Header& header, const SigmaEstimate& noise) {
  const double centre[] = {noise.centreNoiseSigma};
  header.add("centre_sigma", "In 8-bit code values, value / 65536.", fixedPoints(centre));
  header.add("noise", "Factors from the centre to the corners, value / 65536.",
             fixedPoints(noise.lut));
}

}  // namespace

Exported writeCHeader(const Material& material, const ExportOptions& options) {
  const auto* camera = std::get_if<FittedCamera>(&material);
  const std::string name = camera != nullptr        ? cameraName(*camera, options)
                           : options.camera.empty() ? "greycard"
                                                    : options.camera;
  Header header(identifier(name), titleOf(material, options));
  std::visit([&](const auto& value) { fill(header, value); }, material);
  return {header.text(), {}};
}

}  // namespace greycard::exchange
