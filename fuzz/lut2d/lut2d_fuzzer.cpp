// Tables, drags and pictures made of arbitrary bytes: anything may be refused, nothing may be
// undefined or hang, and what a table gives is a picture of 10 bits.

#include <array>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <stdexcept>
#include <string_view>
#include <vector>

#include "greycard/diagnostics.h"
#include "greycard/two_d_lut_helper.h"
#include "lut2d_process.h"

namespace {

using namespace greycard;

// Takes values from the bytes, over and over.
class Bytes {
 public:
  explicit Bytes(std::string_view bytes) : m_bytes(bytes) {}

  template <typename T>
  T next() {
    std::array<char, sizeof(T)> raw;
    for (char& c : raw) c = m_bytes[m_at++ % m_bytes.size()];
    T value;
    std::memcpy(&value, raw.data(), sizeof value);
    return value;
  }
  // Near `base`, or sometimes anything at all.
  double near(double base, double reach) {
    const auto byte = next<std::uint8_t>();
    return byte == 255 ? next<double>() : base + reach * (byte - 127) / 127.0;
  }

 private:
  std::string_view m_bytes;
  std::size_t m_at = 0;
};

Lut2DConfig configFrom(Bytes& bytes) {
  Lut2DConfig config;
  const double hueReach = bytes.near(90.0, 90.0), satReach = bytes.near(0.5, 0.5);
  for (std::size_t i = 0; i < config.lut_1d_h.size(); ++i)
    config.lut_1d_h[i] = bytes.near(15.0 * static_cast<double>(i), 8.0);
  for (std::size_t j = 0; j < config.lut_1d_s.size(); ++j)
    config.lut_1d_s[j] = bytes.near(static_cast<double>(j) / 15.0, 0.03);
  for (double& change : config.lut_2d_h) change = bytes.near(0.0, hueReach);
  for (double& change : config.lut_2d_s) change = bytes.near(0.0, satReach);
  config.h_shift = static_cast<float>(bytes.next<std::uint8_t>() % 28);
  config.s_shift = static_cast<float>(bytes.next<std::uint8_t>() % 28);
  for (float* lightness : {&config.l_boundary_start_a, &config.l_boundary_start_b,
                           &config.l_boundary_end_a, &config.l_boundary_end_b})
    *lightness = static_cast<float>(bytes.near(0.5, 0.6));
  config.y_blend_factor = static_cast<float>(bytes.near(0.5, 0.5));
  config.inverse_flag = static_cast<float>(bytes.next<std::uint8_t>() % 2);
  return config;
}

struct Picture10 {
  std::vector<std::uint16_t> r, g, b;

  explicit Picture10(Bytes& bytes) {
    for (int k = 0; k < 300; ++k)
      for (auto* plane : {&r, &g, &b}) plane->push_back(bytes.next<std::uint16_t>());
  }
  void requireTenBits() const {
    for (const auto* plane : {&r, &g, &b})
      for (const std::uint16_t sample : *plane)
        if (sample > 1023) std::abort();
  }
};

void drag(Bytes& bytes) {
  std::vector<double> sat(kLut2dNodes);
  std::vector<std::int32_t> hue(kLut2dNodes);
  for (double& value : sat) value = bytes.near(0.5, 0.5);
  for (auto& value : hue) value = bytes.next<std::int32_t>();
  const double dS = bytes.near(0.0, 0.5), dH = bytes.near(0.0, 90.0);
  const auto rangeS = bytes.next<std::int32_t>(), rangeH = bytes.next<std::int32_t>();
  const int hitH = bytes.next<std::int8_t>() % 25, hitS = bytes.next<std::int8_t>() % 17;
  try {
    TwoDLutHelper::Adjust(0.0, bytes.next<std::int32_t>(), dS, dH, rangeS, rangeH, hitH, hitS, sat,
                          hue, 24, 16, rangeS % 2 == 0);
  } catch (const std::logic_error&) {  // refused
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size < 4 || size > 16 * 1024) return 0;
  setOutputChannel({});
  Bytes bytes({reinterpret_cast<const char*>(data), size});
  TwoDLutHelper helper;
  try {
    helper.SetConfig(configFrom(bytes));
    helper.CalInverseLut2dCfg();
    Picture10 picture(bytes);
    helper.ProcessImage(picture.r, picture.g, picture.b, 20, 15, 10);
    picture.requireTenBits();
  } catch (const std::invalid_argument&) {  // refused
  }
  drag(bytes);

  // A record that no configuration gives.
  lut2d_cfg record;
  auto* words = reinterpret_cast<unsigned char*>(&record);
  for (std::size_t i = 0; i < sizeof record; ++i) words[i] = bytes.next<unsigned char>();
  Picture10 picture(bytes);
  processimage(picture.r.data(), picture.g.data(), picture.b.data(), 20, 15, record);
  picture.requireTenBits();
  return 0;
}
