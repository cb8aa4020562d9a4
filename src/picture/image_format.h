#pragma once

#include <optional>
#include <string_view>

namespace greycard {

/// The picture formats that are read; each file says which it is by its first bytes.
enum class ImageFormat { Png, Jpeg, Jpeg2000, Tiff, Bmp, Pnm, WebP };

/// The format's usual name, for messages.
const char* imageFormatName(ImageFormat format);

/// The format of a file with these bytes; empty when it is none of ours.
std::optional<ImageFormat> imageFormat(std::string_view bytes);

/// Whether the file goes on to the end that its own structure promises. Decoders fill the missing
/// part of some cut files with grey and report success, so this is asked first. True for a TIFF,
/// for JPEG 2000 and for a PNM of decimal text, whose decoders notice it themselves.
bool reachesItsEnd(ImageFormat format, std::string_view bytes);

}  // namespace greycard
