#pragma once

#include <string>
#include <string_view>

#include "greycard/picture.h"

namespace greycard {

/// readPicture for the bytes of a file; `name` stands for the file in messages.
Picture decodePicture(std::string_view bytes, const std::string& name);

}  // namespace greycard
