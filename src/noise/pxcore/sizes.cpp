#include "sizes.h"

#include <unistd.h>

#include <algorithm>
#include <cstddef>
#include <string>

#include "exception.h"

namespace greycard::pxcore {
namespace {

std::uint64_t memoryOfThisMachine() {
  const long pages = sysconf(_SC_PHYS_PAGES), bytes = sysconf(_SC_PAGESIZE);
  if (pages <= 0 || bytes <= 0) return std::numeric_limits<std::ptrdiff_t>::max();
  return static_cast<std::uint64_t>(pages) * static_cast<std::uint64_t>(bytes);
}

}  // namespace

void requireMemory(std::uint64_t w, std::uint64_t h, std::uint64_t pad,
                   std::uint64_t bytesPerSample) {
  const std::uint64_t memory = memoryOfThisMachine();
  const auto tooLong = [&](std::uint64_t side) { return side > memory || pad > memory - side; };
  if (!tooLong(w) && !tooLong(h) && pad <= memory / 4) {
    const std::uint64_t most = memory / bytesPerSample;
    if (w + 2 * pad <= most / std::max<std::uint64_t>(h + 2 * pad, 1)) return;
  }
  throw ExceptionRuntime(
      UniStr("an image of " + std::to_string(w) + " x " + std::to_string(h) + " pixels, with " +
                 std::to_string(pad) + " more on every side, takes more memory than the " +
                 std::to_string(memory) + " bytes of this machine; use a smaller one",
             UniStr::kUtf8));
}

}  // namespace greycard::pxcore
