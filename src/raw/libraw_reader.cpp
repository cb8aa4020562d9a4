// Raw files through LibRaw, which decodes them; what the codes mean is worked out here.

#include <libraw/libraw.h>

#include <algorithm>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <new>
#include <numeric>
#include <optional>
#include <stdexcept>
#include <utility>

#include "decode_raw.h"
#include "file_handle.h"
#include "file_structure.h"
#include "greycard/errors.h"
#include "greycard/files.h"
#include "greycard/number_text.h"
#include "raw_levels.h"
#include "raw_samples.h"
#include "stored_codes.h"

namespace greycard {
namespace {

constexpr std::uint64_t kMostSamples = std::uint64_t{1} << 29;  // 1 GiB of them
// No camera's compression comes near to half a bit for a sample.
constexpr std::uint64_t kMostSamplesPerByte = 16;
constexpr int kXTrans = 9;  // LibRaw's mark among the filters

// The limit moved, and a callback went, with LibRaw 0.21. Without callbacks nothing is written to
// standard error.
#if LIBRAW_COMPILE_CHECK_VERSION_NOTLESS(0, 21)
constexpr unsigned kSilent = LIBRAW_OPIONS_NO_DATAERR_CALLBACK;
unsigned& memoryLimit(LibRaw& raw) {
  return raw.imgdata.rawparams.max_raw_memory_mb;
}
#else
constexpr unsigned kSilent = LIBRAW_OPIONS_NO_MEMERR_CALLBACK | LIBRAW_OPIONS_NO_DATAERR_CALLBACK;
unsigned& memoryLimit(LibRaw& raw) {
  return raw.imgdata.params.max_raw_memory_mb;
}
#endif

[[noreturn]] void refuseXTrans(const std::string& name) {
  refuseRaw(name, "X-Trans mosaics repeat after 6x6 samples, and only 2x2 are read; develop it");
}

// What is learnt while the directories are read: of a mosaic's pattern, and of the camera's name.
struct FieldsSeen {
  bool wholePattern = false;  ///< as bytes that are in the file
  bool xTrans = false;        ///< a pattern of 36 places
  bool endlessName = false;   ///< longer than any camera's
};

// A text as LibRaw reads it: up to its 0, however many characters the field is said to have.
std::size_t nameLength(LibRaw_abstract_datastream& file) {
  std::array<char, 64> text{};
  const INT64 place = file.tell();
  file.read(text.data(), 1, text.size());
  file.seek(place, SEEK_SET);
  return strnlen(text.data(), text.size());
}

// Called for each field of a TIFF directory, at its values. LibRaw 0.20 is stopped before what it
// doesn't come back from: a pattern of 36 places, as compilers that count on array bounds make it,
// and the name of a Hasselblad so long that its additions overflow.
void watchFields(void* seen, int tag, int type, int count, unsigned, void* values, INT64) {
  constexpr int kTagBits = 0xFFFF, kModel = 272, kCfaPattern = 33422, kByte = 1, kUndefined = 7;
  constexpr int kKindShift = 16, kKindBits = 0xF, kPictures = 0, kPanasonic = 3;
  constexpr int kMostPlaces = 16, kXTransPlaces = 36;
  constexpr std::size_t kLongestName = 48;
  auto& fields = *static_cast<FieldsSeen*>(seen);
  auto& file = *static_cast<LibRaw_abstract_datastream*>(values);
  const int kind = tag >> kKindShift & kKindBits;  // of directory; others number as they please
  if ((tag & kTagBits) == kModel && (kind == kPictures || kind == kPanasonic))
    fields.endlessName = nameLength(file) > kLongestName;
  if ((tag & kTagBits) == kCfaPattern) {
    fields.xTrans = count == kXTransPlaces;
    fields.wholePattern = (type == kByte || type == kUndefined) && count > 0 &&
                          count <= kMostPlaces && file.tell() <= file.size() - count;
  }
  if (fields.xTrans || fields.endlessName) throw LIBRAW_EXCEPTION_IO_CORRUPT;  // caught by LibRaw
}

void refuseStructure(const FileStructure& structure, const std::string& name) {
  if (structure.foveon)
    refuseRaw(name, "Foveon sensors have no mosaic to take samples from; develop it first");
  if (structure.jpegXl)
    refuseRaw(name, "its samples are compressed as JPEG XL; save it as a DNG without that");
  if (!structure.raw) refuseRaw(name, "it is no raw file in a known format");
}

void refuseUnless(int done, const std::string& name) {
  if (done == LIBRAW_SUCCESS) return;
  if (done == LIBRAW_TOO_BIG || done == LIBRAW_UNSUFFICIENT_MEMORY)
    refuseRaw(name, "it doesn't fit in memory; crop it or make it smaller");
  if (done == LIBRAW_FILE_UNSUPPORTED)
    refuseRaw(name, "its camera or compression isn't known, or it is damaged; convert it to DNG");
  refuseCutShort(name);
}

// What can be refused before memory and time go into samples.
void refuseLayout(LibRaw& raw, std::uint64_t fileBytes, const std::string& name) {
  const libraw_iparams_t& identity = raw.imgdata.idata;
  const std::string colours(identity.cdesc, strnlen(identity.cdesc, sizeof identity.cdesc));
  if (identity.filters == kXTrans) refuseXTrans(name);
  if (identity.is_foveon != 0)
    refuseRaw(name, "Foveon sensors have no mosaic to take samples from; develop it first");
  if (raw.is_sraw() != 0)
    refuseRaw(name, "it holds the camera's reduced YCbCr, not the sensor's samples");
  if (raw.is_floating_point() != 0)
    refuseRaw(name, "its samples are floating-point numbers; save it with whole ones");
  if (identity.colors != 1 && (identity.colors != 3 || !colours.starts_with("RGB")))
    refuseRaw(name, "its colours are " + colours + ", not R, G and B");
  if (raw.is_fuji_rotated() != 0)
    refuseRaw(name, "its mosaic stands at 45 degrees, and only upright 2x2 ones are read");

  const libraw_image_sizes_t& size = raw.imgdata.sizes;
  const std::uint64_t samples = std::uint64_t{size.raw_width} * size.raw_height *
                                (identity.filters == 0 && identity.colors == 3 ? 4U : 1U);
  if (samples > kMostSamples) refuseUnless(LIBRAW_TOO_BIG, name);
  if (samples / kMostSamplesPerByte > fileBytes)
    refuseRaw(name, "it is too short for " + std::to_string(size.raw_width) + " x " +
                        std::to_string(size.raw_height) + " samples; copy it again");
  constexpr unsigned kMegabyte = 1U << 20, kSlack = 16;
  memoryLimit(raw) = static_cast<unsigned>(2 * samples / kMegabyte) + kSlack;
}

std::string printableText(const char* text, std::size_t most) {
  std::string result(text, strnlen(text, most));
  std::erase_if(result, [](char c) { return c < ' ' || c > '~'; });
  return result;
}

int exifOrientation(int flip) {
  // LibRaw's bits: 1 from the right, 2 from below, 4 rows for columns.
  constexpr std::array kOrientations{1, 2, 4, 3, 5, 8, 6, 7};
  return kOrientations.at(static_cast<std::size_t>(flip & 7));
}

CaptureInfo infoOf(const LibRaw& raw) {
  const libraw_data_t& data = raw.imgdata;
  CaptureInfo info;
  info.format = data.idata.dng_version != 0 ? "DNG" : "raw";
  const std::string maker = printableText(data.idata.make, sizeof data.idata.make);
  info.camera = printableText(data.idata.model, sizeof data.idata.model);
  if (!maker.empty()) info.camera = info.camera.empty() ? maker : maker + " " + info.camera;
  info.sensorWidth = data.sizes.width;
  info.sensorHeight = data.sizes.height;
  info.orientation = exifOrientation(data.sizes.flip);
  const auto known = [](double value) { return value > 0.0 && value < 1e9; };
  // Single precision, whose shortest text is the number that was meant: 0.01, not 0.00999999978.
  if (known(data.other.iso_speed)) info.iso = numberOf<double>(exact(data.other.iso_speed));
  if (known(data.other.shutter)) info.exposureSeconds = numberOf<double>(exact(data.other.shutter));
  const float* gains = data.color.cam_mul;
  if (known(gains[0]) && known(gains[1]) && known(gains[2]))
    info.asShotGains = {gains[0] / static_cast<double>(gains[1]), 1.0,
                        gains[2] / static_cast<double>(gains[1])};
  return info;
}

// \param bases  which of the file's levels by channel hold at each place of `levels.black`
RawLevels levelsOf(const LibRaw& raw, const std::array<int, 4>& bases) {
  const libraw_colordata_t& colour = raw.imgdata.color;
  RawLevels levels;
  for (std::size_t place = 0; place < bases.size(); ++place)
    levels.black[place] =
        1.0 * colour.black + colour.cblack[static_cast<std::size_t>(bases[place])];
  // Behind the channels' levels: rows and columns of a part that repeats, then its codes.
  const std::size_t rows = colour.cblack[4], columns = colour.cblack[5];
  if (rows > 0 && columns > 0 && rows * columns <= LIBRAW_CBLACK_SIZE - 6) {
    levels.rows = rows;
    levels.columns = columns;
    levels.pattern.assign(colour.cblack + 6, colour.cblack + 6 + rows * columns);
  }
  const double limit = colour.dng_levels.LinearResponseLimit;
  for (std::size_t c = 0; c < 3; ++c) {
    double white = colour.maximum;
    if (raw.imgdata.idata.dng_version != 0 && limit > 0.0 && limit < 1.0)
      white = levels.black[0] + limit * (white - levels.black[0]);
    if (colour.linear_max[c] > 0)
      white = std::min(white, static_cast<double>(colour.linear_max[c]));
    levels.white[c] = white;
  }
  return levels;
}

// Channels as LibRaw counts them at a cell's places; 3 is the second green.
std::array<int, 4> cellOf(LibRaw& raw, const std::string& name) {
  const std::array<int, 4> cell{raw.COLOR(0, 0), raw.COLOR(0, 1), raw.COLOR(1, 0), raw.COLOR(1, 1)};
  constexpr int kLookedAt = 16;
  bool repeats = true;
  for (int y = 0; y < kLookedAt; ++y)
    for (int x = 0; x < kLookedAt; ++x)
      repeats = repeats && raw.COLOR(y, x) == cell[static_cast<std::size_t>(y % 2 * 2 + x % 2)];
  for (const int channel : {0, 1, 2}) repeats = repeats && std::ranges::count(cell, channel) > 0;
  if (!repeats) refuseRaw(name, "its mosaic doesn't repeat after 2x2 samples; develop it first");
  return cell;
}

// \param stored  as storesCodes says; else it is unpacked
Picture pictureOf(LibRaw& raw, bool stored, const RawOptions& options, CaptureInfo& info,
                  const std::string& name) {
  const libraw_rawdata_t& data = raw.imgdata.rawdata;
  const libraw_image_sizes_t& size = raw.imgdata.sizes;
  const auto seen = [&](const std::uint16_t* first, std::size_t perPixel) {
    const std::size_t stride = size.raw_pitch / sizeof(std::uint16_t);
    return RawSamples{first + size.top_margin * stride + size.left_margin * perPixel, stride,
                      size.width, size.height};
  };
  if (size.width < 2 || size.height < 2 || size.top_margin + size.height > size.raw_height ||
      size.left_margin + size.width > size.raw_width)
    refuseCutShort(name);

  if ((stored || data.raw_image != nullptr) && raw.imgdata.idata.filters != 0) {
    const std::array<int, 4> cell = cellOf(raw, name);
    auto channels = cell;
    std::ranges::replace(channels, 3, 1);
    for (const int channel : channels) info.mosaic += "RGB"[channel];
    RawLevels levels = levelsOf(raw, cell);
    settleLevels(levels, channels, options, info);
    const MosaicRows rows = stored ? storedRows(raw, name) : rowsOf(seen(data.raw_image, 1));
    return binMosaic(size.width, size.height, rows, channels, levels);
  }
  const bool grey = data.raw_image != nullptr;
  const std::array<int, 4> channels{0, grey ? -1 : 1, grey ? -1 : 2, -1};
  RawLevels levels = levelsOf(raw, {0, 1, 2, 3});
  info.mosaic = grey ? "grey" : "linear";
  settleLevels(levels, channels, options, info);
  if (grey) return scaledSamples(seen(data.raw_image, 1), 1, 1, levels);
  if (data.color3_image != nullptr) return scaledSamples(seen(*data.color3_image, 3), 3, 3, levels);
  if (data.color4_image != nullptr) return scaledSamples(seen(*data.color4_image, 4), 3, 4, levels);
  refuseRaw(name, "it holds no samples of a kind that is read");
}

template <typename Open>
RawCapture capture(Open open, const FileStructure& structure, std::uint64_t fileBytes,
                   const std::string& name, const RawOptions& options) try {
  refuseStructure(structure, name);
  const auto raw = std::make_unique<LibRaw>(kSilent);  // too large for a stack
  FieldsSeen fields;
  raw->set_exifparser_handler(watchFields, &fields);
  const int opened = open(*raw);
  if (fields.xTrans) refuseXTrans(name);
  if (fields.endlessName) refuseCutShort(name);
  refuseUnless(opened, name);
  // LibRaw takes what stands on the stack for a pattern that isn't there.
  if (structure.dng && structure.mosaic && !fields.wholePattern) refuseCutShort(name);
  refuseLayout(*raw, fileBytes, name);
  const bool stored = storesCodes(*raw);
  if (!stored) refuseUnless(raw->unpack(), name);
  if (raw->error_count() > 0) refuseUnless(LIBRAW_DATA_ERROR, name);
  RawCapture result;
  result.info = infoOf(*raw);
  if (const unsigned frames = raw->imgdata.idata.raw_count; frames > 1)
    result.furtherFrames = frames - 1;
  result.picture = pictureOf(*raw, stored, options, result.info, name);
  result.picture = oriented(std::move(result.picture), result.info.orientation);
  return result;
} catch (const std::bad_alloc&) {
  refuseUnless(LIBRAW_UNSUFFICIENT_MEMORY, name);
  throw;
}

}  // namespace

bool readsRaw() {
  return true;
}

RawCapture decodeRaw(std::string_view bytes, const std::string& name, const RawOptions& options) {
  // open_buffer only reads; its parameter type has no const form for borrowed bytes.
  const auto open = [&](LibRaw& raw) {
    return raw.open_buffer(const_cast<char*>(bytes.data()), bytes.size());
  };
  return capture(open, fileStructure(FileBytes(bytes)), bytes.size(), name, options);
}

RawCapture readRaw(const std::filesystem::path& path, const RawOptions& options) {
  const std::string name = quoted(path);
  std::error_code error;
  // What can't be read twice, such as a pipe, and what can't be read at all.
  if (!std::filesystem::is_regular_file(path, error))
    return decodeRaw(readWholeFile(path), name, options);
  FileHandle file(std::fopen(path.c_str(), "rb"));
  if (!file) return decodeRaw(readWholeFile(path), name, options);
  const FileStructure structure = fileStructure(FileBytes(file.get()));
  file.reset();
  const auto open = [&](LibRaw& raw) { return raw.open_file(path.c_str()); };
  return capture(open, structure, std::filesystem::file_size(path, error), name, options);
}

}  // namespace greycard
