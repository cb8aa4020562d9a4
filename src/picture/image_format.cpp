#include "image_format.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>

#include "text.h"

namespace greycard {
namespace {

using namespace std::string_view_literals;

// The caller checks that the bytes are there.
std::size_t byteAt(std::string_view bytes, std::size_t at) {
  return static_cast<unsigned char>(bytes[at]);
}
std::size_t bigEndian16(std::string_view bytes, std::size_t at) {
  return byteAt(bytes, at) << 8 | byteAt(bytes, at + 1);
}
std::size_t bigEndian32(std::string_view bytes, std::size_t at) {
  return bigEndian16(bytes, at) << 16 | bigEndian16(bytes, at + 2);
}
std::size_t littleEndian32(std::string_view bytes, std::size_t at) {
  return byteAt(bytes, at) | byteAt(bytes, at + 1) << 8 | byteAt(bytes, at + 2) << 16 |
         byteAt(bytes, at + 3) << 24;
}

// PNG (ISO/IEC 15948, 5.3): chunks of length, type, data and checksum up to the chunk IEND.
bool pngReachesItsEnd(std::string_view bytes) {
  for (std::size_t at = 8; at + 12 <= bytes.size(); at += 12 + bigEndian32(bytes, at))
    if (bytes.substr(at + 4, 4) == "IEND") return true;
  return false;
}

// JPEG (ITU-T T.81, B.1.1): marker segments carry their length and are stepped over, so that a
// thumbnail's end is not taken for the picture's; coded data holds no markers but restarts.
bool jpegReachesItsEnd(std::string_view bytes) {
  constexpr std::size_t kStuffing = 0x00, kTemporary = 0x01, kFill = 0xFF, kEnd = 0xD9;
  for (std::size_t at = 2; (at = bytes.find('\xFF', at)) < bytes.size() - 1;) {
    const std::size_t marker = byteAt(bytes, at + 1);
    const bool restart = marker >= 0xD0 && marker <= 0xD7;
    if (marker == kEnd) return true;
    if (marker == kFill) {
      ++at;
    } else if (marker == kStuffing || marker == kTemporary || restart) {
      at += 2;
    } else if (at + 4 <= bytes.size()) {
      at += 2 + bigEndian16(bytes, at + 2);
    } else {
      return false;
    }
  }
  return false;
}

// Next word of a PNM header; comments run from # to the end of the line.
std::string_view pnmWord(std::string_view& header) {
  constexpr auto kSpace = " \t\r\n\v\f"sv;
  while (true) {
    header.remove_prefix(std::min(header.find_first_not_of(kSpace), header.size()));
    if (!header.starts_with('#')) break;
    header.remove_prefix(std::min(header.find('\n'), header.size()));
  }
  const auto word = header.substr(0, header.find_first_of(kSpace));
  header.remove_prefix(word.size());
  return word;
}

bool pnmReachesItsEnd(std::string_view bytes) {
  const char kind = bytes[1];
  if (kind < '4') return true;  // decimal text
  auto rest = bytes.substr(2);
  const auto width = parseInt32(pnmWord(rest)), height = parseInt32(pnmWord(rest));
  const auto maximum = kind == '4' ? 1 : parseInt32(pnmWord(rest));
  if (!width || !height || !maximum || *width <= 0 || *height <= 0) return false;

  const auto columns = static_cast<double>(*width), rows = static_cast<double>(*height);
  const double sampleBytes = *maximum > 255 ? 2.0 : 1.0;
  const double rowBytes = kind == '4'   ? static_cast<double>((std::int64_t{*width} + 7) / 8)
                          : kind == '5' ? columns * sampleBytes
                                        : 3.0 * columns * sampleBytes;
  return static_cast<double>(rest.size()) >= 1.0 + rowBytes * rows;  // one space, then the samples
}

}  // namespace

const char* imageFormatName(ImageFormat format) {
  switch (format) {
    case ImageFormat::Png:
      return "PNG";
    case ImageFormat::Jpeg:
      return "JPEG";
    case ImageFormat::Jpeg2000:
      return "JPEG 2000";
    case ImageFormat::Tiff:
      return "TIFF";
    case ImageFormat::Bmp:
      return "BMP";
    case ImageFormat::Pnm:
      return "PNM";
    case ImageFormat::WebP:
      return "WebP";
  }
  return "";
}

std::optional<ImageFormat> imageFormat(std::string_view bytes) {
  if (bytes.starts_with("\x89PNG\r\n\x1a\n"sv)) return ImageFormat::Png;
  if (bytes.starts_with("\xFF\xD8\xFF"sv)) return ImageFormat::Jpeg;
  for (const auto mark : {"\0\0\0\x0CjP  \r\n\x87\n"sv, "\xFF\x4F\xFF\x51"sv})
    if (bytes.starts_with(mark)) return ImageFormat::Jpeg2000;
  for (const auto mark : {"II*\0"sv, "MM\0*"sv, "II+\0"sv, "MM\0+"sv})
    if (bytes.starts_with(mark)) return ImageFormat::Tiff;
  if (bytes.starts_with("BM")) return ImageFormat::Bmp;
  if (bytes.starts_with("RIFF") &&
      bytes.substr(std::min(bytes.size(), std::size_t{8}), 4) == "WEBP")
    return ImageFormat::WebP;
  if (bytes.size() > 2 && bytes[0] == 'P' && bytes[1] >= '1' && bytes[1] <= '6' &&
      " \t\r\n#"sv.find(bytes[2]) != std::string_view::npos)
    return ImageFormat::Pnm;
  return std::nullopt;
}

bool reachesItsEnd(ImageFormat format, std::string_view bytes) {
  constexpr std::size_t kSmallestBmp = 26, kSmallestWebP = 32;  // headers
  switch (format) {
    case ImageFormat::Png:
      return pngReachesItsEnd(bytes);
    case ImageFormat::Jpeg:
      return jpegReachesItsEnd(bytes);
    case ImageFormat::Bmp:
      return bytes.size() >= kSmallestBmp && bytes.size() >= littleEndian32(bytes, 2);
    case ImageFormat::WebP:
      return bytes.size() >= kSmallestWebP && bytes.size() - 8 >= littleEndian32(bytes, 4);
    case ImageFormat::Pnm:
      return pnmReachesItsEnd(bytes);
    case ImageFormat::Jpeg2000:
    case ImageFormat::Tiff:
      break;
  }
  return true;
}

}  // namespace greycard
