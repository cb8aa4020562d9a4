#pragma once

#include <string>

#include "raw_samples.h"

class LibRaw;

namespace greycard {

/// Whether the file, opened and not unpacked, holds its mosaic's codes row by row, uncompressed and
/// with nothing to be done to them: they can then be taken as they are needed, which saves the
/// memory for all of them and most of the time.
bool storesCodes(LibRaw& raw);

/// The rows that are seen, read from such a file as they are asked for.
/// \param name  of the file; a row that isn't there ends in a FileError with it
MosaicRows storedRows(LibRaw& raw, const std::string& name);

}  // namespace greycard
