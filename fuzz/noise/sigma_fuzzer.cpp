// Small pictures of any shape and content, and text of any code page: anything may be refused,
// nothing may be undefined, and a table holds factors of at least 1.

#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <exception>
#include <string_view>
#include <vector>

#include "greycard/sigma_lut.h"
#include "uni_str.h"

namespace {

using namespace greycard;

void calculate(std::uint64_t width, std::uint64_t height,
               const std::vector<std::uint16_t>& samples) {
  SigmaLUT sigma;
  std::vector<float> localSigma(samples.size());
  if (!sigma.CalculateSigmaLUT(width, height, samples, localSigma)) return;
  std::uint64_t pixels = 0;
  for (const std::uint64_t ring : sigma.report.ringPixels) pixels += ring;
  if (pixels > width * height) std::abort();
  for (const float factor : *sigma.lut)
    if (!(factor >= 1.0F) || !std::isfinite(factor)) std::abort();
  for (std::uint64_t i = 0; i < width * height; ++i)
    if (!(localSigma[i] >= 0.0F && localSigma[i] <= 255.0F)) std::abort();
}

void roundTrip(std::string_view text, int codePage) {
  const pxcore::UniStr wide(text, codePage);
  if (pxcore::UniStr(wide.ToMBCS(codePage), codePage) != wide) std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size < 4 || size > 4 * 1024) return 0;
  // Mostly as many samples as the sizes say, and sizes of up to 16 bits.
  const std::uint64_t width = data[0], height = data[1] % 64 == 63 ? data[1] * 257U : data[1] % 64;
  std::vector<std::uint16_t> samples;
  const std::size_t count = data[2] % 8 == 0 ? size : width * height % 20000;
  for (std::size_t i = 0; i < count; ++i)
    samples.push_back(static_cast<std::uint16_t>(data[3 + i % (size - 3)] | (data[2] & 2) << 7));
  try {
    calculate(width, height, samples);
  } catch (const std::exception&) {  // refused
  }
  try {
    roundTrip({reinterpret_cast<const char*>(data), size}, data[2] % 3);
  } catch (const std::exception&) {  // refused
  }
  return 0;
}
