// DNG camera profile (DNG 1.4, chapter 6 and appendix on camera profiles): a TIFF structure.

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdint>
#include <map>

#include "colour_matrices.h"
#include "greycard/errors.h"
#include "tone_curve.h"
#include "writers.h"

namespace greycard::exchange {
namespace {

constexpr std::int32_t kDenominator = 10000;

// EXIF 2.32, tag LightSource. F11 and F2 are cool white fluorescents (3800 to 4500 K) there.
struct LightSource {
  std::uint16_t code;
  Vector3 white;  // XYZ, Y = 1
};
LightSource lightSource(Illum light) {
  const auto known = [light](std::uint16_t code) {
    Vector3 white = whitePoint(light);
    for (double& value : white) value /= 100.0;
    return LightSource{code, white};
  };
  switch (light) {
    case illum_A:
      return known(17);
    case illum_D65:
      return known(21);
    case illum_D75:
      return {22, {0.29902 / 0.31485, 1.0, (1.0 - 0.29902 - 0.31485) / 0.31485}};
    case illum_D50:
      return known(23);
    case illum_TL84:
    case illum_Lowlight:
      return known(14);
    // CIE 15:2004, table T.6: F2 at x = 0.3721, y = 0.3751.
    case illum_CoolWhite:
      return {14, {0.3721 / 0.3751, 1.0, (1.0 - 0.3721 - 0.3751) / 0.3751}};
    default:
      throw JobError(std::string("a camera profile can't name the light ") + illumName(light) +
                     "; it knows A, D50, D65, D75, TL84, Lowlight and CoolWhite");
  }
}

// Little endian, one directory whose values stand behind it.
class TiffDirectory {
 public:
  void ascii(std::uint16_t tag, std::string text) {
    text += '\0';
    const std::size_t count = text.size();
    fields_[tag] = {2, count, std::move(text)};
  }
  void shortValue(std::uint16_t tag, std::uint16_t value) {
    std::string bytes;
    put(bytes, value, 2);
    fields_[tag] = {3, 1, bytes};
  }
  void longValue(std::uint16_t tag, std::uint32_t value) {
    std::string bytes;
    put(bytes, value, 4);
    fields_[tag] = {4, 1, bytes};
  }
  void rationals(std::uint16_t tag, const WholeMatrix& numerators) {
    std::string bytes;
    for (const auto& row : numerators)
      for (const std::int32_t numerator : row) {
        put(bytes, static_cast<std::uint32_t>(numerator), 4);
        put(bytes, kDenominator, 4);
      }
    fields_[tag] = {10, 9, bytes};
  }
  void floats(std::uint16_t tag, const std::vector<float>& values) {
    std::string bytes;
    for (const float value : values) put(bytes, std::bit_cast<std::uint32_t>(value), 4);
    fields_[tag] = {11, values.size(), bytes};
  }

  /// \param magic  in place of TIFF's 42
  std::string file(std::uint16_t magic) const {
    std::string head = "II", values;
    put(head, magic, 2);
    put(head, 8, 4);
    put(head, static_cast<std::uint32_t>(fields_.size()), 2);
    const std::size_t valuesAt = 8 + 2 + 12 * fields_.size() + 4;
    for (const auto& [tag, field] : fields_) {
      put(head, tag, 2);
      put(head, field.type, 2);
      put(head, static_cast<std::uint32_t>(field.count), 4);
      std::string bytes = field.bytes;
      if (bytes.size() <= 4) {
        bytes.resize(4);
        head += bytes;
        continue;
      }
      put(head, static_cast<std::uint32_t>(valuesAt + values.size()), 4);
      bytes.resize(bytes.size() + bytes.size() % 2);  // values begin at even places
      values += bytes;
    }
    put(head, 0, 4);
    return head + values;
  }

 private:
  struct Field {
    std::uint16_t type = 0;
    std::size_t count = 0;
    std::string bytes;
  };
  static void put(std::string& bytes, std::uint32_t value, int count) {
    for (int i = 0; i < count; ++i) bytes += static_cast<char>(value >> 8 * i & 0xFFU);
  }
  std::map<std::uint16_t, Field> fields_;  // in the order of the tags, as TIFF wants them
};

// XYZ to camera RGB before any gain, under the light; the largest response to its white is 1.
WholeMatrix colorMatrix(const ChartFit& fit, const Vector3& white) {
  const Vector3 gains = gainsOf(fit);
  Matrix3 camera = multiply(adaptation(kD65White, white), multiply(srgbToXyz(), fit.matrix));
  for (Vector3& row : camera)
    for (std::size_t c = 0; c < 3; ++c) row[c] *= gains[c];
  const Matrix3 toCamera = inverted(camera);
  const Vector3 neutral = multiply(toCamera, white);
  const double scale = kDenominator / *std::ranges::max_element(neutral);
  WholeMatrix whole{};
  for (std::size_t i = 0; i < 3; ++i) {
    // Rounded so that rows keep what they make of the white, not their sum.
    for (std::size_t j = 0; j < 3; ++j) {
      const double entry = toCamera[i][j] * scale;
      if (!(std::fabs(entry) < 1e9)) throw JobError("the colour matrix is too large for a profile");
      whole[i][j] = static_cast<std::int32_t>(std::lround(entry));
    }
  }
  return whole;
}

// Balanced camera RGB to XYZ under D50; (1, 1, 1) goes to the white to the last digit.
WholeMatrix forwardMatrix(const ChartFit& fit) {
  return wholeRows(multiply(adaptation(kD65White, kD50White), multiply(srgbToXyz(), fit.matrix)),
                   kDenominator, {9642, 10000, 8249});
}

// Linear in and out: the reader applies an encoding of its own afterwards.
std::vector<float> linearToneCurve(const std::vector<double>& curve) {
  std::vector<float> pairs;
  const std::size_t last = curve.size() - 1;
  for (std::size_t i = 0; i <= last; ++i) {
    pairs.push_back(static_cast<float>(i) / static_cast<float>(last));
    pairs.push_back(i == 0 ? 0.0F : i == last ? 1.0F : static_cast<float>(srgbDecoded(curve[i])));
  }
  return pairs;
}

}  // namespace

Exported writeDcp(const FittedCamera& camera, const ExportOptions& options) {
  const auto lights = byTemperature(camera);
  Exported result;
  TiffDirectory directory;
  const std::string name = cameraName(camera, options);
  directory.ascii(50708, name);                        // UniqueCameraModel
  directory.ascii(50936, "greycard " + name);          // ProfileName
  directory.ascii(50942, "No copyright, use freely");  // ProfileCopyright
  directory.longValue(50941, 3);                       // ProfileEmbedPolicy: no restrictions
  for (std::size_t i = 0; i < lights.size(); ++i) {
    const auto step = static_cast<std::uint16_t>(i);
    const LightSource source = lightSource(lights[i]->fit.light);
    directory.shortValue(static_cast<std::uint16_t>(50778 + step), source.code);
    directory.rationals(static_cast<std::uint16_t>(50721 + step),
                        colorMatrix(lights[i]->fit, source.white));
    directory.rationals(static_cast<std::uint16_t>(50964 + step), forwardMatrix(lights[i]->fit));
  }
  const std::vector<double> curve = commonCurve(curveValues(camera), result.notes);
  directory.floats(50940, linearToneCurve(curve));  // ProfileToneCurve
  directory.longValue(51110, 1);                    // DefaultBlackRender: none
  if (options.camera.empty())
    result.notes.push_back("raw converters take the profile only for raw files of the camera \"" +
                           name + "\", a name taken from the photograph; tell the camera's");
  result.bytes = directory.file(0x4352);
  return result;
}

}  // namespace greycard::exchange
