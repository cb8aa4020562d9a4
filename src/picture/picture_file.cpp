#include <algorithm>
#include <array>
#include <limits>
#include <new>
#include <opencv2/imgcodecs.hpp>
#include <string>
#include <string_view>
#include <system_error>
#include <vector>

#include "decode_picture.h"
#include "greycard/errors.h"
#include "greycard/files.h"
#include "greycard/picture.h"
#include "image_format.h"
#include "picture_mat.h"
#include "text.h"

// OpenCV's log level belongs to the whole process, so it stays as the host set it. Little is left
// for OpenCV to say: files are opened, recognised and measured here, and it is handed whole files
// of known formats only.

namespace greycard {
namespace {

constexpr const char* kReadFormats = "PNG, TIFF, JPEG, JPEG 2000, BMP, PNM or WebP";

[[noreturn]] void refuseToRead(const std::string& name, const std::string& why) {
  throw FileError("can't read " + name + ": " + why);
}

cv::Mat decode(std::string_view bytes, ImageFormat format, const std::string& name) {
  // imdecode only reads; its parameter type has no const form for borrowed bytes.
  const cv::Mat encoded(1, static_cast<int>(bytes.size()), CV_8U, const_cast<char*>(bytes.data()));
  try {
    auto image = cv::imdecode(encoded, cv::IMREAD_ANYDEPTH | cv::IMREAD_ANYCOLOR);
    if (!image.empty()) return image;
  } catch (const std::bad_alloc&) {
    refuseToRead(name, "it doesn't fit in memory; make it smaller");
  } catch (const cv::Exception& error) {
    refuseToRead(name, error.code == cv::Error::StsNoMem
                           ? "it doesn't fit in memory; make it smaller"
                           : "its width, height or kind of " +
                                 std::string(imageFormatName(format)) +
                                 " is beyond what can be read; save it smaller, as a plain PNG");
  }
  refuseToRead(name, std::string("the ") + imageFormatName(format) +
                         " data in it is damaged; copy or export it again");
}

struct WritableFormat {
  std::string_view ending;
  int maximumBits;
  bool holdsGrey, holdsColour;
};
constexpr std::array<WritableFormat, 10> kWritableFormats{{{".png", 16, true, true},
                                                           {".tif", 16, true, true},
                                                           {".tiff", 16, true, true},
                                                           {".pnm", 16, true, true},
                                                           {".ppm", 16, false, true},
                                                           {".pgm", 16, true, false},
                                                           {".bmp", 8, true, true},
                                                           {".jpg", 8, true, true},
                                                           {".jpeg", 8, true, true},
                                                           {".webp", 8, true, true}}};

[[noreturn]] void refuseToWrite(const std::string& name, const std::string& why) {
  throw FileError("can't write " + name + ": " + why);
}

std::string lowerCaseEnding(const std::filesystem::path& path) {
  auto ending = path.extension().string();
  std::ranges::transform(ending, ending.begin(), lowerCase);
  return ending;
}

const WritableFormat& formatOfName(const std::filesystem::path& path) {
  const auto ending = lowerCaseEnding(path);
  const auto format = std::find_if(kWritableFormats.begin(), kWritableFormats.end(),
                                   [&](const auto& f) { return f.ending == ending; });
  if (format == kWritableFormats.end())
    refuseToWrite(quoted(path), "no picture format has the ending \"" + ending +
                                    "\"; use .png, .tif, .jpg, .bmp, .ppm, .pgm or .webp");
  return *format;
}

const WritableFormat& writableFormat(const std::filesystem::path& path, const Picture& picture) {
  const WritableFormat& format = formatOfName(path);
  const std::string ending(format.ending);
  if (picture.bits > format.maximumBits)
    refuseToWrite(quoted(path),
                  ending + " can't hold 16 bits per sample; use .png, .tif, .ppm or .pgm");
  if (!(picture.channels == 1 ? format.holdsGrey : format.holdsColour))
    refuseToWrite(quoted(path),
                  ending + (picture.channels == 1 ? " can't hold a grey picture; use .pgm or .png"
                                                  : " can't hold colours; use .ppm or .png"));
  return format;
}

std::vector<std::uint8_t> encode(std::string_view ending, const Picture& picture,
                                 const std::string& name, const std::vector<int>& settings = {}) {
  if (!isWellFormed(picture))
    refuseToWrite(name, "the picture is empty or its size and samples disagree");
  std::vector<std::uint8_t> bytes;
  try {
    if (cv::imencode(std::string(ending), toMat(picture), bytes, settings)) return bytes;
  } catch (const std::bad_alloc&) {
    refuseToWrite(name, "not enough memory to encode it; make it smaller");
  } catch (const cv::Exception&) {
    bytes.clear();
  }
  refuseToWrite(name, std::to_string(picture.width) + " x " + std::to_string(picture.height) +
                          " pixels are more than " + std::string(ending) +
                          " can hold; make it smaller or use .png");
}

}  // namespace

Picture decodePicture(std::string_view bytes, const std::string& name) {
  if (bytes.empty()) refuseToRead(name, "the file is empty; copy or export it again");
  if (bytes.size() > static_cast<std::size_t>(std::numeric_limits<int>::max()))
    refuseToRead(name, "it is larger than 2 GiB; make it smaller");
  const auto format = imageFormat(bytes);
  if (!format)
    refuseToRead(name, std::string("it is not a picture in a known format; give a ") +
                           kReadFormats + " file");
  if (!reachesItsEnd(*format, bytes))
    refuseToRead(name, std::string("the ") + imageFormatName(*format) +
                           " file is cut short; copy or export it again");

  const auto image = decode(bytes, *format, name);
  if (image.depth() != CV_8U && image.depth() != CV_16U)
    refuseToRead(name,
                 "its samples are not whole numbers of 8 or 16 bits; export it as an 8- or "
                 "16-bit PNG or TIFF");
  if (image.channels() != 1 && image.channels() != 3)
    refuseToRead(name, "it has " + std::to_string(image.channels()) +
                           " channels; export it as a grey or R, G, B picture");
  return fromMat(image);
}

Picture readPicture(const std::filesystem::path& path) {
  std::error_code ignored;
  if (std::filesystem::is_directory(path, ignored))
    refuseToRead(quoted(path), "it is a folder; name a picture file in it");
  return decodePicture(readWholeFile(path), quoted(path));
}

bool isJpegName(const std::filesystem::path& path) {
  const auto ending = lowerCaseEnding(path);
  return ending == ".jpg" || ending == ".jpeg";
}

void checkPictureName(const std::filesystem::path& path) {
  formatOfName(path);
}

void writePicture(const std::filesystem::path& path, const Picture& picture) {
  const auto& format = writableFormat(path, picture);
  const auto bytes = encode(format.ending, picture, quoted(path));
  writeWholeFile(path, {reinterpret_cast<const char*>(bytes.data()), bytes.size()});
}

std::vector<std::uint8_t> encodePng(const Picture& picture) {
  return encode(".png", picture, "the picture as PNG");
}

std::vector<std::uint8_t> encodeJpeg(const Picture& picture, int quality) {
  constexpr const char* kName = "the picture as JPEG";
  if (picture.bits != 8) refuseToWrite(kName, "it can't hold 16 bits per sample");
  return encode(".jpg", picture, kName, {cv::IMWRITE_JPEG_QUALITY, quality});
}

}  // namespace greycard
