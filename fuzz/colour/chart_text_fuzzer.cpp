// Any bytes may be refused; none may crash, hang or read out of bounds. What the strict reading
// accepts, the forgiving one reads alike, and a written chart is read back as what was written.
#include <cstdint>
#include <cstdlib>
#include <limits>
#include <string_view>

#include "chart_text.h"
#include "greycard/errors.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace greycard;
  if (size > kMaxChartBytes) return 0;
  const std::string_view text(reinterpret_cast<const char*>(data), size);
  constexpr NumberRange kFinite{std::numeric_limits<double>::lowest(),
                                std::numeric_limits<double>::max()};

  PatchTable scanned{};
  const int rows = scanChartText(text, scanned);
  PatchTable parsed;
  try {
    parsed = parseChartText(text, "chart", kFinite);
  } catch (const FileError&) {
    return 0;
  }
  if (rows != kPatchCount || scanned != parsed) std::abort();
  const auto written = formatChartText(parsed);
  if (formatChartText(parseChartText(written, "chart", kFinite)) != written) std::abort();
  return 0;
}
