// Any bytes as a picture file, and as a PGM's samples: reading may refuse, searching may find
// nothing; neither may crash, hang or let an exception of another kind out. A trusted fit lies in
// the picture.

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

#include "decode_picture.h"
#include "greycard/diagnostics.h"
#include "greycard/errors.h"
#include "greycard/mcc_detector.h"

namespace {

constexpr std::size_t kMostBytes = 32 * 1024;
constexpr std::size_t kMostSamples = 1 << 20;  // a few bytes can stand for a very large picture

void search(const greycard::Picture& picture) {
  if (picture.samples.size() > kMostSamples) return;
  const auto detection = greycard::MCCDetector().detect(picture);
  if (detection.found() != detection.reason.empty()) std::abort();
  if (!detection.trustworthy()) return;
  for (const auto& point : detection.points)
    if (point.x < 0 || point.y < 0 || point.x >= picture.width || point.y >= picture.height)
      std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size == 0 || size > kMostBytes) return 0;
  greycard::setErrorChannel({});
  const std::string_view bytes(reinterpret_cast<const char*>(data), size);
  try {
    search(greycard::decodePicture(bytes, "bytes"));
  } catch (const greycard::FileError&) {
  }

  // The first byte as the width.
  const std::size_t width = 1U + data[0], height = (size - 1) / width;
  greycard::Picture picture(static_cast<int>(width), static_cast<int>(height), 1, 8);
  for (std::size_t i = 0; i < picture.samples.size(); ++i) picture.samples[i] = data[1 + i];
  search(picture);
  return 0;
}
