#include "stored_codes.h"

#include <libraw/libraw.h>

#include <algorithm>
#include <bit>
#include <string_view>

#include "raw_levels.h"

namespace greycard {
namespace {

constexpr short kIntelOrder = 0x4949;  // TIFF 6.0, section 2: "II"
constexpr unsigned kFewestBits = 8, kMostBits = 16;

bool inWords(const unpacker_data_t& file) {
  return file.tiff_bps == kMostBits && file.order == kIntelOrder &&
         std::endian::native == std::endian::little;
}

// Codes of `bits` bits, the highest first and without gaps; also 16-bit words, high byte first.
// \param packed  with two bytes behind the last code's
void takePacked(const std::uint8_t* packed, unsigned bits, std::uint16_t* codes,
                std::size_t count) {
  const std::uint32_t mask = (1U << bits) - 1;
  for (std::size_t i = 0, at = 0; i < count; ++i, at += bits) {
    const std::uint8_t* first = packed + at / 8;
    const std::uint32_t three =
        std::uint32_t{first[0]} << 16U | std::uint32_t{first[1]} << 8U | first[2];
    codes[i] = static_cast<std::uint16_t>(three >> (24 - bits - at % 8) & mask);
  }
}

// A table from stored to linear codes that changes nothing.
bool isPlain(const libraw_colordata_t& colour) {
  for (std::size_t code = 0; code < std::size(colour.curve); ++code)
    if (colour.curve[code] != code) return false;
  return true;
}

// Masked sensor rows, from which unpacking takes a black level.
bool hasMasks(const libraw_image_sizes_t& sizes) {
  return std::ranges::any_of(sizes.mask, [](const int(&mask)[4]) {
    return std::ranges::any_of(mask, [](int edge) { return edge != 0; });
  });
}

}  // namespace

bool storesCodes(LibRaw& raw) {
  libraw_decoder_info_t decoder;
  if (raw.get_decoder_info(&decoder) != LIBRAW_SUCCESS || decoder.decoder_name == nullptr ||
      std::string_view(decoder.decoder_name) != "packed_dng_load_raw()")
    return false;
  const libraw_internal_data_t& inside = *raw.get_internal_data_pointer();
  const unpacker_data_t& file = inside.unpacker_data;
  return file.tiff_bps >= kFewestBits && file.tiff_bps <= kMostBits && file.tiff_samples == 1 &&
         file.load_flags == 0 && file.zero_after_ff == 0 && raw.imgdata.idata.filters != 0 &&
         raw.imgdata.idata.colors == 3 && inside.internal_data.input != nullptr &&
         inside.internal_data.input->valid() != 0 && !hasMasks(raw.imgdata.sizes) &&
         isPlain(raw.imgdata.color);
}

MosaicRows storedRows(LibRaw& raw, const std::string& name) {
  const libraw_internal_data_t& inside = *raw.get_internal_data_pointer();
  const unpacker_data_t& layout = inside.unpacker_data;
  const libraw_image_sizes_t& sizes = raw.imgdata.sizes;
  LibRaw_abstract_datastream& file = *inside.internal_data.input;
  const bool words = inWords(layout);
  const unsigned bits = layout.tiff_bps;
  const std::size_t width = sizes.raw_width, left = sizes.left_margin;
  const std::size_t rowBytes = (width * bits + 7) / 8;
  file.seek(layout.data_offset + static_cast<INT64>(sizes.top_margin * rowBytes), SEEK_SET);

  const auto read = [&file, name](void* to, std::size_t bytes) {
    if (file.read(to, 1, bytes) != static_cast<int>(bytes)) refuseCutShort(name);
  };
  return [=, codes = std::vector<std::uint16_t>(2 * width),
          packed = std::vector<std::uint8_t>(2 * rowBytes + 2)]() mutable {
    const RowPair rows{codes.data(), codes.data() + width};
    if (words) {
      read(codes.data(), 2 * rowBytes);
    } else {
      read(packed.data(), 2 * rowBytes);
      takePacked(packed.data(), bits, codes.data(), width);
      takePacked(packed.data() + rowBytes, bits, codes.data() + width, width);
    }
    return RowPair{rows[0] + left, rows[1] + left};
  };
}

}  // namespace greycard
