// YAML as OpenCV's FileStorage reads it: a mapping of matrices and numbers.

#include <span>

#include "greycard/number_text.h"
#include "tone_curve.h"
#include "writers.h"

namespace greycard::exchange {
namespace {

class Storage {
 public:
  void number(const std::string& name, double value) { text_ += name + ": " + real(value) + "\n"; }
  void string(const std::string& name, const std::string& value) {
    text_ += name + ": \"" + value + "\"\n";
  }
  /// \param type  d for doubles, i for whole numbers
  template <typename Number>
  void matrix(const std::string& name, std::span<const Number> values, std::size_t rows,
              char type = 'd') {
    text_ += name + ": !!opencv-matrix\n   rows: " + std::to_string(rows) +
             "\n   cols: " + std::to_string(values.size() / rows) + "\n   dt: " + type +
             "\n   data: [";
    for (std::size_t i = 0; i < values.size(); ++i) {
      text_ += i == 0 ? " " : i % 4 == 0 ? ",\n       " : ", ";
      if constexpr (std::is_integral_v<Number>)
        text_ += std::to_string(values[i]);
      else
        text_ += real(values[i]);
    }
    text_ += " ]\n";
  }
  std::string take() { return std::move(text_); }

 private:
  // A number without a dot would be read as a whole one.
  static std::string real(double value) {
    std::string digits = exact(value);
    if (digits.find_first_of(".en") == std::string::npos) digits += '.';
    return digits;
  }
  std::string text_ = "%YAML:1.0\n---\n";
};

void fill(Storage& storage, const FittedCamera& camera) {
  for (const auto& [fit, kelvin] : camera.lights) {
    const std::string light =
        camera.lights.size() == 1 ? "" : std::string("_") + illumName(fit.light);
    std::vector<double> entries;
    for (const Vector3& row : fit.matrix) entries.insert(entries.end(), row.begin(), row.end());
    storage.string("light" + light, illumName(fit.light));
    if (kelvin) storage.number("kelvin" + light, *kelvin);
    storage.matrix<double>("matrix" + light, entries, 3);
    storage.matrix<double>("gains" + light, gainsOf(fit), 3);
  }
  std::vector<double> curve;
  for (const auto& channel : curveValues(camera))
    curve.insert(curve.end(), channel.begin(), channel.end());
  storage.matrix<double>("curve", curve, 3);
}

void fill(Storage& storage, const CurveTables& curve) {
  const char* const names[] = {"red", "green", "blue"};
  for (std::size_t c = 0; c < (curve.unified ? 1 : 3); ++c)
    storage.matrix<std::int32_t>(curve.unified ? "curve" : names[c], curve.channels[c].table, 1,
                                 'i');
}

void fill(Storage& storage, const Lut2DConfig& table) {
  storage.matrix<double>("hue", table.lut_1d_h, 1);
  storage.matrix<double>("saturation", table.lut_1d_s, 1);
  storage.matrix<double>("hue_change", table.lut_2d_h, kLut2dHueRows);
  storage.matrix<double>("saturation_change", table.lut_2d_s, kLut2dHueRows);
}

void fill(Storage& storage, const SigmaEstimate& noise) {
  storage.number("centre_sigma", noise.centreNoiseSigma);
  const std::vector<double> factors(noise.lut.begin(), noise.lut.end());
  storage.matrix<double>("noise", factors, 1);
}

}  // namespace

Exported writeOpenCv(const Material& material, const ExportOptions&) {
  Storage storage;
  std::visit([&](const auto& value) { fill(storage, value); }, material);
  return {storage.take(), {}};
}

}  // namespace greycard::exchange
