// The text forms of a curve's tables and control points.

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdlib>

#include "gamma_model_state.h"
#include "greycard/gamma_curve.h"
#include "interpolator.h"
#include "text.h"

namespace greycard {
namespace {

// Right-aligned in `width` characters; a longer number widens its field.
void appendNumber(std::string& text, std::int32_t value, std::size_t width) {
  std::array<char, 11> digits;  // as many as INT32_MIN takes
  const char* const end = std::to_chars(digits.data(), digits.data() + digits.size(), value).ptr;
  const auto length = static_cast<std::size_t>(end - digits.data());
  text.append(std::max(width, length) - length, ' ').append(digits.data(), length);
}

std::size_t fieldWidth(std::int32_t bitSize) {
  if (bitSize == 14) return 5;
  return bitSize == 12 ? 4 : 3;
}

}  // namespace

std::optional<std::vector<std::int32_t>> GammaCurve::StringToIntArray(OptionalText s) {
  if (!s || s->empty()) return std::nullopt;
  std::vector<std::int32_t> numbers;
  for (const std::string_view piece : splitText(*s, " ,")) {
    const auto number = parseInt32(piece);
    if (!number) return std::nullopt;
    numbers.push_back(*number);
  }
  return numbers;
}

ControlPointListPtr GammaCurve::CreatePointArray(std::span<const std::int32_t> numbers) {
  if (numbers.size() < 2) return nullptr;
  auto points = std::make_shared<ControlPointList>();
  points->reserve(numbers.size() / 2);
  for (std::size_t i = 0; i + 1 < numbers.size(); i += 2)
    points->push_back({numbers[i], numbers[i + 1]});
  return points;
}

ControlPointListPtr GammaCurve::CreatePointArray(OptionalText s) {
  const auto numbers = StringToIntArray(s);
  return numbers ? CreatePointArray(*numbers) : nullptr;
}

std::optional<std::vector<std::int32_t>> GammaCurve::DataToArray(
    std::span<const std::int32_t> data) {
  if (data.empty()) return std::nullopt;
  return std::vector<std::int32_t>(data.begin(), data.end());
}

std::optional<std::string> GammaCurve::GetDataAsString(ColorChannel color, std::int32_t tableSize,
                                                       std::int32_t bitSize) const {
  const GammaTablePtr& table = source(color).data;
  const std::int64_t shift = std::int64_t{m_parent->GammaBitSize} - bitSize;
  if (!table || table->empty() || std::abs(shift) > 31) return std::nullopt;
  if (tableSize < 1 || tableSize > static_cast<std::int32_t>(kCurveEntries)) return std::nullopt;

  const std::size_t step = kCurveEntries / static_cast<std::size_t>(tableSize);
  const std::size_t width = fieldWidth(bitSize);
  std::string text;
  text.reserve((table->size() / step + 1) * (width + 2));
  std::int32_t written = 0;
  for (std::size_t i = 0; i < table->size(); i += step) {
    const std::int32_t value = (*table)[i];
    appendNumber(text, shift < 0 ? value << -shift : value >> shift, width);
    ++written;
    text += written == tableSize ? "\n" : written % 16 == 0 ? ",\n" : ", ";
  }
  return text;
}

std::optional<std::string> GammaCurve::GetDataAsString(ColorChannel color) const {
  const GammaTablePtr& table = source(color).data;
  if (!table || table->empty()) return std::nullopt;
  std::string text;
  for (const std::int32_t value : *table) {
    text += ' ';
    appendNumber(text, value, 0);
  }
  return text;
}

std::optional<std::string> GammaCurve::GetControlPointsAsString(ColorChannel color) const {
  const ControlPointListPtr& points = source(color).points;
  if (!points || points->empty()) return std::nullopt;
  std::string text;
  for (const ControlPoint& point : *points) {
    text += ' ';
    appendNumber(text, point.X, 0);
    text += ',';
    appendNumber(text, point.Y, 0);
  }
  return text;
}

}  // namespace greycard
