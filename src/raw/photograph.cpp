#include "greycard/photograph.h"

#include <string>
#include <system_error>
#include <utility>

#include "decode_picture.h"
#include "decode_raw.h"
#include "file_handle.h"
#include "file_structure.h"
#include "greycard/files.h"
#include "image_format.h"

namespace greycard {
namespace {

void warnOfFurther(Photograph& photograph, std::size_t further, const char* one,
                   const char* several) {
  if (further > 0)
    photograph.warnings.push_back(quoted(photograph.file) + " holds " + std::to_string(further) +
                                  " further " + (further == 1 ? one : several) +
                                  "; its first alone was read");
}

Photograph ofRaw(RawCapture capture, const std::filesystem::path& file,
                 const PhotographOptions& options) {
  Photograph photograph;
  photograph.picture = std::move(capture.picture);
  photograph.file = file;
  photograph.format = capture.info.format;
  photograph.samples.encoding = options.samples.encoding.value_or(SampleEncoding::linear);
  photograph.capture = std::move(capture.info);
  warnOfFurther(photograph, capture.furtherFrames, "raw frame", "raw frames");
  return photograph;
}

Photograph ofPicture(std::string_view bytes, const FileStructure& structure,
                     const std::filesystem::path& file, const PhotographOptions& options) {
  Photograph photograph;
  photograph.picture = decodePicture(bytes, quoted(file));
  photograph.file = file;
  if (const auto format = imageFormat(bytes)) photograph.format = imageFormatName(*format);
  photograph.samples = options.samples;
  warnOfFurther(photograph, structure.furtherPictures, "page or sub-picture",
                "pages or sub-pictures");
  return photograph;
}

}  // namespace

Photograph readPhotograph(const std::filesystem::path& file, const PhotographOptions& options) {
  const RawOptions levels{options.samples.blackLevel, options.samples.whiteLevel};
  if (options.dump) return ofRaw(readDump(file, *options.dump, levels), file, options);
  // A raw file is read by its decoder, so that it isn't held in memory twice.
  std::error_code ignored;
  if (std::filesystem::is_regular_file(file, ignored)) {
    FileHandle handle(std::fopen(file.c_str(), "rb"));
    if (handle && fileStructure(FileBytes(handle.get())).raw) {
      handle.reset();
      return ofRaw(readRaw(file, levels), file, options);
    }
  }
  if (std::filesystem::is_directory(file, ignored)) readPicture(file);  // says that it is a folder
  const std::string bytes = readWholeFile(file);
  const FileStructure structure = fileStructure(FileBytes(bytes));
  if (structure.raw) return ofRaw(decodeRaw(bytes, quoted(file), levels), file, options);
  return ofPicture(bytes, structure, file, options);
}

}  // namespace greycard
