#include "interleave.h"

#include <algorithm>
#include <cstring>
#include <type_traits>

namespace greycard::pxcore {
namespace {

// Four floats that every processor's compiler handles at once.
using Float4 [[gnu::vector_size(16)]] = float;
constexpr std::size_t kQuad = 4;

Float4 load(const float* from) {
  Float4 quad;
  std::memcpy(&quad, from, sizeof quad);
  return quad;
}
void store(const Float4& quad, float* to) {
  std::memcpy(to, &quad, sizeof quad);
}

// Element k of quad i becomes element i of quad k.
void transpose(Float4& a, Float4& b, Float4& c, Float4& d) {
  const Float4 ac = __builtin_shufflevector(a, c, 0, 4, 1, 5);
  const Float4 ac2 = __builtin_shufflevector(a, c, 2, 6, 3, 7);
  const Float4 bd = __builtin_shufflevector(b, d, 0, 4, 1, 5);
  const Float4 bd2 = __builtin_shufflevector(b, d, 2, 6, 3, 7);
  a = __builtin_shufflevector(ac, bd, 0, 4, 1, 5);
  b = __builtin_shufflevector(ac, bd, 2, 6, 3, 7);
  c = __builtin_shufflevector(ac2, bd2, 0, 4, 1, 5);
  d = __builtin_shufflevector(ac2, bd2, 2, 6, 3, 7);
}

void interleaveFloats(const std::array<const float*, kRowLanes>& rows, std::size_t count,
                      float* pixels) {
  std::size_t x = 0;
  for (; x + kQuad <= count; x += kQuad)
    for (std::size_t r = 0; r < kRowLanes; r += kQuad) {
      Float4 a = load(rows[r] + x), b = load(rows[r + 1] + x);
      Float4 c = load(rows[r + 2] + x), d = load(rows[r + 3] + x);
      transpose(a, b, c, d);
      float* const to = pixels + x * kRowLanes + r;
      store(a, to);
      store(b, to + kRowLanes);
      store(c, to + 2 * kRowLanes);
      store(d, to + 3 * kRowLanes);
    }
  for (; x < count; ++x)
    for (std::size_t r = 0; r < kRowLanes; ++r) pixels[x * kRowLanes + r] = rows[r][x];
}

}  // namespace

template <typename T>
void interleave(const std::array<const T*, kRowLanes>& rows, std::size_t count, float* pixels) {
  if constexpr (std::is_same_v<T, float>) {
    interleaveFloats(rows, count, pixels);
  } else {
    constexpr std::size_t kPiece = 256;
    float values[kRowLanes][kPiece];
    std::array<const float*, kRowLanes> pieces;
    for (std::size_t r = 0; r < kRowLanes; ++r) pieces[r] = values[r];
    for (std::size_t x = 0; x < count; x += kPiece) {
      const std::size_t length = std::min(kPiece, count - x);
      for (std::size_t r = 0; r < kRowLanes; ++r)
        for (std::size_t i = 0; i < length; ++i) values[r][i] = static_cast<float>(rows[r][x + i]);
      interleaveFloats(pieces, length, pixels + x * kRowLanes);
    }
  }
}

template void interleave(const std::array<const float*, kRowLanes>&, std::size_t, float*);
template void interleave(const std::array<const unsigned char*, kRowLanes>&, std::size_t, float*);

void separate(const float* pixels, std::size_t count, const std::array<float*, kRowLanes>& rows) {
  std::size_t x = 0;
  for (; x + kQuad <= count; x += kQuad)
    for (std::size_t r = 0; r < kRowLanes; r += kQuad) {
      const float* const from = pixels + x * kRowLanes + r;
      Float4 a = load(from), b = load(from + kRowLanes);
      Float4 c = load(from + 2 * kRowLanes), d = load(from + 3 * kRowLanes);
      transpose(a, b, c, d);
      store(a, rows[r] + x);
      store(b, rows[r + 1] + x);
      store(c, rows[r + 2] + x);
      store(d, rows[r + 3] + x);
    }
  for (; x < count; ++x)
    for (std::size_t r = 0; r < kRowLanes; ++r) rows[r][x] = pixels[x * kRowLanes + r];
}

}  // namespace greycard::pxcore
