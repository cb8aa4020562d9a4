#include "greycard/picture_correction.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <stdexcept>
#include <vector>

#include "code_values.h"
#include "light_table.h"
#include "srgb_transfer.h"

namespace greycard {
namespace {

// Chords of the sRGB curve over this many steps stay within 0.005 codes of it.
constexpr std::size_t kSRgbSteps = 4096;
constexpr double kWhiteCode = 255.0;
constexpr double kLargestEntry = 1e6, kLargestValue = 1e20;  // their products fit a float

bool allFinite(std::span<const double> values) {
  return std::ranges::all_of(values, [](double v) { return std::isfinite(v); });
}

std::vector<double> sRGBCurve() {
  std::vector<double> curve(kSRgbSteps + 1);
  for (std::size_t i = 0; i <= kSRgbSteps; ++i)
    curve[i] = sRGBEncode(static_cast<double>(i) / kSRgbSteps);
  return curve;
}

// A tone curve made ready for many look-ups. Positions on it count from 1: g++ clips to a lower
// limit of 0 with a branch, which a picture mispredicts, and to any other with one instruction.
class CodeCurve {
 public:
  explicit CodeCurve(std::span<const double> curve)
      : points_(curve.size() + 2),
        steps_(static_cast<float>(curve.size() - 1)),
        last_(static_cast<float>(curve.size())) {
    for (std::size_t i = 0; i < points_.size(); ++i) {
      const std::size_t entry = i == 0 ? 0 : std::min(i - 1, curve.size() - 1);
      // The half makes truncation round to nearest.
      points_[i] = static_cast<float>(kWhiteCode * std::clamp(curve[entry], 0.0, 1.0) + 0.5);
    }
  }

  // Nearest code at a linear value, which is clipped to 0..1 first; not-a-number is black.
  std::uint16_t at(float linear) const {
    float position = linear * steps_ + 1.0F;
    position = position > 1.0F ? position : 1.0F;
    position = position < last_ ? position : last_;
    const int step = static_cast<int>(position);
    const float* point = points_.data() + step;
    const float code = point[0] + (position - static_cast<float>(step)) * (point[1] - point[0]);
    return static_cast<std::uint16_t>(static_cast<int>(code));
  }

 private:
  std::vector<float> points_;  // in codes; the last one twice, so that the end is a step too
  float steps_, last_;
};

void checkCurve(std::span<const double> curve) {
  if (curve.size() < 2) throw std::invalid_argument("a tone curve needs at least two values");
  if (!allFinite(curve))
    throw std::invalid_argument("the tone curve has a value that isn't finite");
}

CodeCurve codeCurve(std::span<const double> curve) {
  if (curve.empty()) return CodeCurve(sRGBCurve());
  checkCurve(curve);
  return CodeCurve(curve);
}

// A scale or level that leaves the range of floats is a mistake.
std::vector<float> floatValues(const std::vector<double>& values) {
  const auto inRange = [](double v) { return std::fabs(v) <= kLargestValue; };
  if (!std::ranges::all_of(values, inRange))
    throw std::invalid_argument("the levels and the scale make values beyond 1e20");
  return {values.begin(), values.end()};
}

using FloatMatrix = std::array<std::array<float, 3>, 3>;

FloatMatrix withGains(const Matrix3& matrix, const Vector3& gains) {
  FloatMatrix product;
  for (std::size_t i = 0; i < 3; ++i)
    for (std::size_t j = 0; j < 3; ++j) {
      const double entry = matrix[i][j] * gains[j];
      if (!(std::fabs(entry) <= kLargestEntry))
        throw std::invalid_argument(
            "the gains times the colour matrix must be finite numbers of at most 1e6");
      product[i][j] = static_cast<float>(entry);
    }
  return product;
}

}  // namespace

Picture correctPicture(const Picture& picture, const SampleLevels& levels, const Vector3& gains,
                       const Matrix3& matrix, const ToneCurves& curves,
                       std::span<const double> lightCurve) {
  checkPicture(picture);
  auto values = linearValues(levels, picture);
  if (!lightCurve.empty()) {
    checkCurve(lightCurve);
    for (double& value : values) value = tableLight(lightCurve, value);
  }
  const auto linear = floatValues(values);
  const auto m = withGains(matrix, gains);
  const std::array tone{codeCurve(curves[0]), codeCurve(curves[1]), codeCurve(curves[2])};

  Picture corrected(picture.width, picture.height, 3, 8);
  const auto largest = static_cast<std::uint16_t>(linear.size() - 1);
  const auto value = [&](std::uint16_t code) { return linear[code < largest ? code : largest]; };
  const auto channels = static_cast<std::size_t>(picture.channels);
  const std::size_t toG = channels / 2, toB = channels - 1;  // 1, 2; or 0, 0
  const std::uint16_t* in = picture.samples.data();
  for (auto out = corrected.samples.begin(); out != corrected.samples.end(); out += 3) {
    const float r = value(in[0]), g = value(in[toG]), b = value(in[toB]);
    out[0] = tone[0].at(m[0][0] * r + m[0][1] * g + m[0][2] * b);
    out[1] = tone[1].at(m[1][0] * r + m[1][1] * g + m[1][2] * b);
    out[2] = tone[2].at(m[2][0] * r + m[2][1] * g + m[2][2] * b);
    in += channels;
  }
  return corrected;
}

}  // namespace greycard
