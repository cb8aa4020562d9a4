#pragma once
/// \file
/// \ingroup own

#include "greycard/export.h"

namespace greycard {

/// How many threads the picture library may use inside one call, in the whole process; as many as
/// there are cores until this is called. 1 suits processes that work on many pictures at a time:
/// results don't depend on it. Not while another thread works on pictures.
/// \throws std::invalid_argument for a count below 1
GREYCARD_EXPORT void setPictureThreads(int count);

}  // namespace greycard
