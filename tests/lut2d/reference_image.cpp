#include "reference_image.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>

namespace greycard::reference {
namespace {

using Int = std::int64_t;

struct State {
  int hShift, sShift;
  Int hueNode[25], hueRecip[25], satNode[16], satRecip[16];
  Int hTable[25][16], sTable[25][16];
  Int lStartA, lStartB, lEndA, lEndB, fadeInRecip, fadeOutRecip, yBlend;
  Int mantissa[1024], shift[1024];
};

Int trunc(float value) {
  return static_cast<Int>(value);
}

Int entry(float value, int shift) {
  Int v = trunc(value);
  if (shift != 0) v = (v + (Int{1} << (shift - 1))) >> shift;
  if (v >= 512) v = 511;
  if (v < -512) v = -511;
  return v;
}

Int reciprocal(float one, Int width) {
  return width != 0 ? static_cast<Int>(std::ceil(one / static_cast<float>(width))) : 0;
}

bool fillReciprocals(State& st) {
  for (int n = 1; n <= 1023; ++n) {
    const double x = 4194304.0 / n;
    int e = 0;
    const double f = std::frexp(x, &e);
    st.mantissa[n] = static_cast<Int>(std::ceil(e <= 13 ? x : f * 8192.0));
    st.shift[n] = 10;
    if (e > 13) {
      if (st.mantissa[n] == 8192) {
        st.mantissa[n] = 4096;
        ++e;
      }
      st.shift[n] = 23 - e;
    }
    if (st.shift[n] < 0) return false;
  }
  return true;
}

bool fillState(const lut2d_cfg& cfg, State& st) {
  st.hShift = static_cast<int>(cfg.h_shift);
  st.sShift = static_cast<int>(cfg.s_shift);
  for (std::size_t i = 0; i < 25; ++i) st.hueNode[i] = trunc(cfg.node[i][0].h / 60 * 2048);
  for (std::size_t i = 1; i < 25; ++i)
    st.hueRecip[i] = reciprocal(16384.0F, st.hueNode[i] - st.hueNode[i - 1]);
  for (std::size_t j = 0; j < 16; ++j) st.satNode[j] = trunc(cfg.node[0][j].s * 8);
  for (std::size_t j = 1; j < 16; ++j)
    st.satRecip[j] = reciprocal(2048.0F, st.satNode[j] - st.satNode[j - 1]);
  for (std::size_t i = 0; i < 25; ++i)
    for (std::size_t j = 0; j < 16; ++j) {
      st.hTable[i][j] = entry(cfg.delta[i % 24][j].h / 60 * 2048, st.hShift);
      st.sTable[i][j] = entry(cfg.delta[i % 24][j].s / 256 * 2048, st.sShift);
    }
  st.lStartA = trunc(cfg.l_boundary_start_a * 2047);
  st.lStartB = trunc(cfg.l_boundary_start_b * 2047);
  st.lEndA = trunc(cfg.l_boundary_end_a * 2047);
  st.lEndB = trunc(cfg.l_boundary_end_b * 2047);
  st.fadeInRecip = st.lStartA != st.lStartB ? reciprocal(2048.0F, st.lStartB - st.lStartA) : 1;
  st.fadeOutRecip = st.lEndA != st.lEndB ? reciprocal(2048.0F, st.lEndB - st.lEndA) : 1;
  st.yBlend = std::lround(cfg.y_blend_factor * 16);
  return fillReciprocals(st);
}

Int divided(const State& st, Int v, Int n) {
  return (((v * st.mantissa[n]) >> st.shift[n]) + 1) >> 1;
}

Int interpolated(const Int (&table)[25][16], int shift, int i, int j, Int fh, Int fs) {
  const auto corner = [&](int row, int column) { return table[row][column] * (Int{1} << shift); };
  const auto acrossHue = [&](int column) {
    const Int from = corner(i, column), to = corner(i + 1, column);
    return std::clamp(from + (((to - from) * fh + 8192) >> 14), -(Int{1} << 36), Int{1} << 36);
  };
  const Int a = acrossHue(j), b = acrossHue(j + 1);
  return std::clamp(a + (((b - a) * fs + 1024) >> 11), -(Int{1} << 47), Int{1} << 47);
}

void lookUp(const State& st, Int& hue, Int& sat, Int L) {
  int i = 0, j = 0;
  while (i < 24 && !(st.hueNode[i] <= hue && hue < st.hueNode[i + 1])) ++i;
  if (i == 24) {
    i = 0;
    hue = 0;
  }
  while (j < 14 && !(st.satNode[j] <= sat && sat < st.satNode[j + 1])) ++j;
  const Int fh = (hue - st.hueNode[i]) * st.hueRecip[i + 1];
  const Int fs = (sat - st.satNode[j]) * st.satRecip[j + 1];
  Int dH = interpolated(st.hTable, st.hShift, i, j, fh, fs);
  Int dS = interpolated(st.sTable, st.sShift, i, j, fh, fs);
  if (L < st.lStartA || L >= st.lEndB) {
    dH = dS = 0;
  } else if (L < st.lStartB || L >= st.lEndA) {
    const Int w =
        L < st.lStartB ? (L - st.lStartA) * st.fadeInRecip : (st.lEndB - L) * st.fadeOutRecip;
    dH = (dH * w + 1024) >> 11;
    dS = (dS * w + 1024) >> 11;
  }
  hue += dH;
  if (hue >= 24576) hue -= 24576;
  if (hue >= 12288) hue -= 12288;
  if (hue < -12288) hue += 24576;
  if (hue < 0) hue += 12288;
  sat = std::clamp<Int>(sat + dS, 0, 2048);
}

void processPixel(const State& st, std::uint16_t& r, std::uint16_t& g, std::uint16_t& b) {
  const Int R = r, G = g, B = b;
  Int max = R, min = G, mid = 0, sector = 0, sign = 1;
  if (R < G) {
    max = G;
    min = R;
    sector = 1;
    sign = -1;
  }
  if (B > max) {
    mid = max;
    max = B;
    sector = 2;
  } else if (B > min) {
    mid = B;
    sign = sector == 0 ? -1 : 1;
    if (sector == 0) sector = 3;
  } else {
    mid = min;
    min = B;
  }
  const Int L = max + min, den = L < 1024 ? L : 2046 - L, C = max - min;
  Int hue = 0, sat = 0;
  if (C != 0) {
    sat = divided(st, C, den);
    hue = divided(st, mid - min, C) * sign + sector * 4096;
  }
  if (sat >= st.satNode[0]) lookUp(st, hue, sat, L);

  const Int primary = (hue + 2048) >> 12, off = hue - primary * 4096;
  const Int C2 = (sat * den + 1024) >> 11, part = (std::abs(off) * C2 + 1024) >> 11;
  Int R2 = 0, G2 = 0, B2 = 0;
  if (primary == 1) {
    G2 = C2;
    (off < 0 ? R2 : B2) = part;
  } else if (primary == 2) {
    B2 = C2;
    (off < 0 ? G2 : R2) = part;
  } else {
    R2 = C2;
    (off < 0 ? B2 : G2) = part;
  }
  const Int base = (L - C2) >> 1, d = G2 - G;
  const auto dY = static_cast<std::int16_t>(((58 * (B - B2 + d) + 153 * (R - R2 + d) + 256) >> 9) +
                                            (G - G2) - base);
  const Int offset = ((st.yBlend * dY + 8) >> 4) + base;
  const auto sample = [](Int v) { return static_cast<std::uint16_t>(std::clamp<Int>(v, 0, 1023)); };
  r = sample(R2 + offset);
  g = sample(G2 + offset);
  b = sample(B2 + offset);
}

}  // namespace

int processimage(std::uint16_t* r, std::uint16_t* g, std::uint16_t* b, std::uint16_t width,
                 std::uint16_t height, const lut2d_cfg& cfg) {
  State st{};
  if (!fillState(cfg, st)) return 0;
  for (std::size_t k = 0; k < std::size_t{width} * height; ++k) processPixel(st, r[k], g[k], b[k]);
  return 1;
}

}  // namespace greycard::reference
