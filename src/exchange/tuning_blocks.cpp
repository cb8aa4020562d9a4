#include "tuning_blocks.h"

#include <cmath>

#include "greycard/errors.h"
#include "greycard/number_text.h"

namespace greycard::exchange {

std::string ccmNumbers(const Matrix3& matrix) {
  constexpr std::int32_t kUnit = 100000;
  std::string text;
  for (const auto& row : wholeRows(matrix, kUnit, {kUnit, kUnit, kUnit}))
    for (const std::int32_t entry : row)
      text += (text.empty() ? "" : ", ") + fixed(static_cast<double>(entry) / kUnit, 5);
  return text;
}

std::vector<long> wholeKelvins(const std::vector<const FittedLight*>& lights) {
  std::vector<long> kelvins;
  for (const FittedLight* light : lights) {
    kelvins.push_back(std::lround(*light->kelvin));
    if (kelvins.size() > 1 && kelvins.back() == kelvins[kelvins.size() - 2])
      throw JobError("two lights have the same colour temperature, " +
                     std::to_string(kelvins.back()) + " K; give one fit of each light");
  }
  return kelvins;
}

std::string replaced(std::string_view text, std::vector<Replacement> replacements) {
  std::ranges::sort(replacements, {}, [](const Replacement& r) { return r.span.begin; });
  std::string result;
  std::size_t from = 0;
  for (const auto& [span, replacement] : replacements) {
    result.append(text.substr(from, span.begin - from)).append(replacement);
    from = span.end;
  }
  return result.append(text.substr(from));
}

}  // namespace greycard::exchange
