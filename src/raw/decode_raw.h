#pragma once

#include <cstdio>
#include <string>
#include <string_view>

#include "greycard/raw/read_raw.h"

namespace greycard {

/// readRaw for the bytes of a file; `name` stands for the file in messages.
RawCapture decodeRaw(std::string_view bytes, const std::string& name, const RawOptions& options);

}  // namespace greycard
