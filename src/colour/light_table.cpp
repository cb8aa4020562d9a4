#include "light_table.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

#include "srgb_transfer.h"

namespace greycard {

double tableLight(std::span<const double> table, double x) {
  const double last = static_cast<double>(table.size() - 1);
  const double at = sRGBEncode(x) * last;
  const double low = std::clamp(std::floor(at), 0.0, last - 1.0);
  const auto i = static_cast<std::size_t>(low);
  return table[i] + (at - low) * (table[i + 1] - table[i]);
}

}  // namespace greycard
