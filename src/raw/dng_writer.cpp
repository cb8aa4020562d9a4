// DNG 1.4: a TIFF structure whose first picture is the raw one.

#include <algorithm>
#include <cmath>
#include <limits>
#include <span>
#include <stdexcept>

#include "greycard/files.h"
#include "greycard/raw/write_dng.h"
#include "tiff_directory.h"

namespace greycard {
namespace {

// XYZ of D65, Y = 1, to linear sRGB: IEC 61966-2-1.
constexpr Matrix3 kXyzToSRgb{
    {{3.2406, -1.5372, -0.4986}, {-0.9689, 1.8758, 0.0415}, {0.0557, -0.2040, 1.0570}}};

// EXIF 2.32, tag LightSource.
std::uint16_t lightSource(Illum light) {
  constexpr std::uint16_t kCoolWhiteFluorescent = 14, kOther = 255;
  switch (light) {
    case illum_A:
      return 17;
    case illum_D65:
      return 21;
    case illum_D75:
      return 22;
    case illum_D50:
      return 23;
    case illum_TL84:
    case illum_CoolWhite:
      return kCoolWhiteFluorescent;
    default:
      return kOther;
  }
}

std::vector<double> neutralOf(const Vector3& white) {
  const double most = *std::ranges::max_element(white);
  return {white[0] / most, white[1] / most, white[2] / most};
}

// XYZ to the camera's R, G, B: rows of the sRGB matrix, such that the light's white gives
// `neutral`.
std::vector<double> colourMatrix(Illum light, const std::vector<double>& neutral) {
  constexpr double kLeast = 0.01;  // a light beyond the sRGB gamut has no row of its own
  Vector3 white = whitePoint(light);
  for (double& value : white) value /= 100.0;
  std::vector<double> matrix;
  for (std::size_t c = 0; c < 3; ++c) {
    const Vector3& row = kXyzToSRgb[c];
    const double sRgb = row[0] * white[0] + row[1] * white[1] + row[2] * white[2];
    for (const double entry : row) matrix.push_back(entry * neutral[c] / std::max(sRgb, kLeast));
  }
  return matrix;
}

void check(const Picture& samples, const DngDescription& d) {
  const auto refuse = [](const std::string& why) { throw std::invalid_argument(why); };
  if (!isWellFormed(samples) || samples.channels != (d.pattern ? 1 : 3))
    refuse("a DNG holds one sample a pixel with a pattern, and three without");
  if (d.pattern && (samples.width % 2 != 0 || samples.height % 2 != 0))
    refuse("a mosaic of 2x2 cells needs an even width and height");
  if (d.bits != 8 && d.bits != 10 && d.bits != 12 && d.bits != 14 && d.bits != 16)
    refuse("samples of a DNG have 8, 10, 12, 14 or 16 bits, not " + std::to_string(d.bits));
  const int most = (1 << d.bits) - 1;
  if (d.whiteLevel > most || std::ranges::any_of(d.blackLevels, [&](int black) {
        return black < 0 || black >= d.whiteLevel;
      }))
    refuse("levels of a DNG are 0 or above, black below white, and white up to " +
           std::to_string(most));
  if (!std::ranges::all_of(d.white, [](double v) { return v > 0.0 && std::isfinite(v); }))
    refuse("the white of a DNG has three values above 0");
  if (!(d.iso >= 1.0 && d.iso <= 65535.0) ||
      !(d.exposureSeconds >= 1e-6 && d.exposureSeconds <= 4000.0))
    refuse("a DNG is taken at ISO 1 to 65535, in 1e-6 to 4000 seconds");
  if (d.orientation < 1 || d.orientation > 8) refuse("an orientation mark is 1 to 8");
}

// Rows of samples, the high bits first, each row from a new byte on; 16 bits as TIFF's own order.
std::string packed(const Picture& picture, int bits) {
  const int most = (1 << bits) - 1;
  const auto rowSamples = static_cast<std::size_t>(picture.width * picture.channels);
  std::string bytes;
  bytes.reserve((rowSamples * static_cast<std::size_t>(bits) + 7) / 8 *
                static_cast<std::size_t>(picture.height));
  for (int y = 0; y < picture.height; ++y) {
    std::uint32_t waiting = 0;
    int count = 0;
    for (const std::uint16_t sample : std::span(picture.pixel(0, y), rowSamples)) {
      const auto code = static_cast<std::uint32_t>(std::min<int>(sample, most));
      if (bits == 16) {
        appendLittleEndian(bytes, code, 2);
        continue;
      }
      waiting = waiting << bits | code;
      for (count += bits; count >= 8; count -= 8)
        bytes += static_cast<char>(waiting >> (count - 8));
    }
    if (count > 0) bytes += static_cast<char>(waiting << (8 - count));
  }
  return bytes;
}

TiffDirectory sensorFields(const Picture& samples, const DngDescription& d) {
  constexpr std::uint16_t kColourFilterArray = 32803, kLinearRaw = 34892;
  const auto channels = static_cast<std::uint16_t>(samples.channels);
  TiffDirectory ifd;
  ifd.longs(254, {0});
  ifd.longs(256, {static_cast<std::uint32_t>(samples.width)});
  ifd.longs(257, {static_cast<std::uint32_t>(samples.height)});
  ifd.shorts(258, std::vector(channels, static_cast<std::uint16_t>(d.bits)));
  ifd.shorts(259, {1});
  ifd.shorts(262, {d.pattern ? kColourFilterArray : kLinearRaw});
  ifd.shorts(274, {static_cast<std::uint16_t>(d.orientation)});
  ifd.shorts(277, {channels});
  ifd.longs(278, {static_cast<std::uint32_t>(samples.height)});
  ifd.shorts(284, {1});
  std::vector<std::uint16_t> black(d.blackLevels.begin(), d.blackLevels.end());
  if (d.pattern) {
    std::string cell;
    for (const int channel : cellChannels(*d.pattern)) cell += static_cast<char>(channel);
    ifd.shorts(33421, {2, 2});                   // CFARepeatPatternDim
    ifd.bytes(33422, cell);                      // CFAPattern
    ifd.bytes(50710, std::string("\0\1\2", 3));  // CFAPlaneColor
    ifd.shorts(50711, {1});                      // CFALayout: a rectangle
    ifd.shorts(50713, {2, 2});                   // BlackLevelRepeatDim
  } else {
    black.resize(3);
  }
  ifd.shorts(50714, black);
  ifd.longs(50717, std::vector(channels, static_cast<std::uint32_t>(d.whiteLevel)));
  return ifd;
}

TiffDirectory allFields(const Picture& samples, const DngDescription& d) {
  TiffDirectory ifd = sensorFields(samples, d);
  ifd.ascii(271, d.maker);
  ifd.ascii(272, d.model);
  ifd.bytes(50706, std::string("\1\4\0\0", 4));  // DNGVersion
  ifd.bytes(50707, std::string("\1\1\0\0", 4));  // DNGBackwardVersion
  ifd.ascii(50708, d.maker + " " + d.model);
  const std::vector<double> neutral = neutralOf(d.white);
  ifd.signedRationals(50721, colourMatrix(d.light, neutral));
  ifd.rationals(50728, neutral);  // AsShotNeutral
  ifd.shorts(50778, {lightSource(d.light)});
  return ifd;
}

TiffDirectory exposureFields(const DngDescription& d) {
  TiffDirectory exif;
  exif.rationals(33434, {d.exposureSeconds});
  exif.shorts(34855, {static_cast<std::uint16_t>(std::lround(d.iso))});
  exif.undefined(36864, "0230");
  return exif;
}

}  // namespace

Picture mosaicOf(const Picture& picture, BayerPattern pattern) {
  if (!isWellFormed(picture) || picture.channels != 3 || picture.width % 2 != 0 ||
      picture.height % 2 != 0)
    throw std::invalid_argument("a mosaic of 2x2 cells needs three channels and even sides");
  const auto channels = cellChannels(pattern);
  Picture mosaic(picture.width, picture.height, 1, picture.bits);
  for (int y = 0; y < mosaic.height; ++y)
    for (int x = 0; x < mosaic.width; ++x)
      *mosaic.pixel(x, y) =
          picture.pixel(x, y)[channels[static_cast<std::size_t>(y % 2 * 2 + x % 2)]];
  return mosaic;
}

std::string encodeDng(const Picture& samples, const DngDescription& description) {
  check(samples, description);
  const std::string strip = packed(samples, description.bits);
  TiffDirectory ifd = allFields(samples, description);
  const TiffDirectory exif = exposureFields(description);
  constexpr std::uint32_t kHeader = 8;
  const auto place = [&](std::uint32_t exifAt, std::uint32_t stripAt) {
    ifd.longs(34665, {exifAt});
    ifd.longs(273, {stripAt});
    ifd.longs(279, {static_cast<std::uint32_t>(strip.size())});
  };
  place(0, 0);
  const auto exifAt = static_cast<std::uint32_t>(kHeader + ifd.at(kHeader).size());
  const auto stripAt = static_cast<std::uint32_t>(exifAt + exif.at(exifAt).size());
  if (strip.size() > std::numeric_limits<std::uint32_t>::max() - stripAt)
    throw std::invalid_argument("a DNG can't hold more than 4 GiB");
  place(exifAt, stripAt);

  std::string file = "II";
  appendLittleEndian(file, 42, 2);
  appendLittleEndian(file, kHeader, 4);
  file += ifd.at(kHeader) + exif.at(exifAt);
  file += strip;
  return file;
}

void writeDng(const std::filesystem::path& path, const Picture& samples,
              const DngDescription& description) {
  writeWholeFile(path, encodeDng(samples, description));
}

}  // namespace greycard
