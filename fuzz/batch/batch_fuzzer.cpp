// Settings and results of many photographs may be any bytes: they are refused with an exception
// that says so, or written as a text that reads back to the same text. The first byte chooses.
#include <cstdint>
#include <cstdlib>
#include <stdexcept>
#include <string>
#include <string_view>

#include "greycard/batch/summary.h"

namespace {

using namespace greycard::batch;

template <typename Value>
bool readAndWrite(std::string_view text, Value& value) {
  try {
    fromJson(text, value);
  } catch (const std::invalid_argument&) {
    return false;
  }
  const std::string written = toJson(value);
  Value again;
  fromJson(written, again);
  if (toJson(again) != written) std::abort();
  return true;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  constexpr std::size_t kLongest = 64 * 1024;
  if (size < 1 || size > kLongest) return 0;
  const std::string_view text(reinterpret_cast<const char*>(data) + 1, size - 1);
  Settings settings;
  Result result;
  Summary summary;
  switch (data[0] % 3) {
    case 0:
      if (readAndWrite(text, settings)) resolved(settings, "shelf_A_1.png");
      break;
    case 1:
      if (readAndWrite(text, result)) indexPage({&result, 1}, summaryOf({&result, 1}, settings));
      break;
    default:
      if (readAndWrite(text, summary)) indexPage({}, summary);
  }
  return 0;
}
