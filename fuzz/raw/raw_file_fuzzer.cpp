// Any bytes may be refused by name; none may crash, hang or read out of bounds. What is read is a
// well-formed picture with levels that make a scale. The first byte says how the rest is taken: as
// a file of some format, or as a layout in text.

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <stdexcept>
#include <string_view>

#include "decode_raw.h"
#include "file_structure.h"
#include "greycard/errors.h"
#include "greycard/raw/dump.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace greycard;
  if (size == 0 || size > 256 * 1024) return 0;
  const std::string_view bytes(reinterpret_cast<const char*>(data) + 1, size - 1);
  try {
    if (data[0] == 't') {
      const DumpLayout layout = dumpLayoutFromText(bytes);
      if (layout.width < 2 || layout.bits < 8 || layout.bits > 16) std::abort();
      return 0;
    }
    if (!fileStructure(FileBytes(bytes)).raw) return 0;
    const RawCapture capture = decodeRaw(bytes, "fuzzed", {});
    if (!isWellFormed(capture.picture)) std::abort();
    if (!(capture.info.whiteLevel[0] > capture.info.blackLevel[0])) std::abort();
  } catch (const FileError&) {
  } catch (const std::invalid_argument&) {
  }
  return 0;
}
