// In place of libraw_reader.cpp in a library that is built without LibRaw.

#include "decode_raw.h"
#include "greycard/files.h"
#include "raw_levels.h"

namespace greycard {

bool readsRaw() {
  return false;
}

RawCapture decodeRaw(std::string_view /*bytes*/, const std::string& name,
                     const RawOptions& /*options*/) {
  refuseRaw(name,
            "this greycard was built without raw input (GREYCARD_WITH_RAW); develop it first");
}

RawCapture readRaw(const std::filesystem::path& path, const RawOptions& options) {
  return decodeRaw({}, quoted(path), options);
}

}  // namespace greycard
