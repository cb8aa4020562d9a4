// Simulated photographs and flat fields, sample by sample, against a slow camera: rays in space
// instead of a homography, 64 of them for every pixel, a blur in two dimensions, the encoding by
// its formula.

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <numbers>
#include <random>
#include <stdexcept>
#include <vector>

#include "greycard/chart_simulator.h"
#include "greycard/flat_field_simulator.h"
#include "setting_check.h"

namespace greycard {
namespace {

constexpr double kDegree = std::numbers::pi / 180.0;
constexpr double kDistance = 18.0, kFrame = 0.12, kSide = 0.87;  // in pitches

// Axis i towards axis j. In space x points right, y down, z away from the camera.
Vector3 turned(Vector3 p, double degrees, std::size_t i, std::size_t j) {
  const double c = std::cos(degrees * kDegree), s = std::sin(degrees * kDegree);
  const double pi = p[i];
  p[i] = c * pi - s * p[j];
  p[j] = s * pi + c * p[j];
  return p;
}

// Box and Muller's normal numbers, two for each pair of equally distributed ones.
class Normal {
 public:
  explicit Normal(std::uint64_t seed) : random_(seed) {}
  double next() {
    if (odd_ = !odd_; !odd_) return radius_ * std::sin(angle_);
    radius_ = std::sqrt(-2.0 * std::log(static_cast<double>((random_() >> 11) + 1) / 0x1p53));
    angle_ = 2.0 * std::numbers::pi * static_cast<double>(random_() >> 11) / 0x1p53;
    return radius_ * std::cos(angle_);
  }

 private:
  std::mt19937_64 random_;
  bool odd_ = false;
  double radius_ = 0.0, angle_ = 0.0;
};

// IEC 61966-2-1, symmetric about 0.
double encoded(double v) {
  const double a = std::abs(v);
  return std::copysign(a <= 0.0031308 ? 12.92 * a : 1.055 * std::pow(a, 1.0 / 2.4) - 0.055, v);
}

class SlowCamera {
 public:
  SlowCamera(const SimulationSettings& settings, const SimulationTruth& truth)
      : s_(settings), truth_(truth) {
    double left = HUGE_VAL, top = HUGE_VAL, right = -HUGE_VAL, bottom = -HUGE_VAL;
    for (const double u : {-kFrame, 6 + kFrame})
      for (const double v : {-kFrame, 4 + kFrame}) {
        const Point2 p = image(u, v);
        left = std::min(left, p.x), right = std::max(right, p.x);
        top = std::min(top, p.y), bottom = std::max(bottom, p.y);
      }
    scale_ = s_.sizeShare * std::min(s_.width / (right - left), s_.height / (bottom - top));
    shift_ = {(s_.width - 1) / 2.0 + s_.offsetX * s_.width - scale_ * (left + right) / 2,
              (s_.height - 1) / 2.0 + s_.offsetY * s_.height - scale_ * (top + bottom) / 2};
  }

  Point2 at(double u, double v) const {
    const Point2 p = image(u, v);
    return {scale_ * p.x + shift_.x, scale_ * p.y + shift_.y};
  }

  double shading(double x, double y) const {
    const double cx = (s_.width - 1) / 2.0, cy = (s_.height - 1) / 2.0;
    const double tanCorner = std::tan(std::acos(std::pow(1.0 - s_.vignetting, 0.25)));
    const double tan = tanCorner * std::hypot(x - cx, y - cy) / std::hypot(cx, cy);
    return std::pow(std::cos(std::atan(tan)), 4);
  }

  // The values that the samples are rounded from, R, G, B of each pixel.
  std::vector<double> samples() const {
    std::vector<double> result;
    Normal normal(s_.seed);
    const double white = s_.whiteLevel > 0 ? s_.whiteLevel : s_.bits == 8 ? 255 : 65535;
    const std::vector<Vector3> sharp = sharpPicture();
    for (int y = 0; y < s_.height; ++y)
      for (int x = 0; x < s_.width; ++x) {
        const Vector3 colour = blurred(sharp, x, y);
        for (std::size_t c = 0; c < 3; ++c) {
          double v = colour[c] * shading(x, y);
          if (s_.shotNoise > 0 || s_.readNoise > 0)
            v += std::sqrt(std::pow(s_.shotNoise, 2) * v + std::pow(s_.readNoise, 2)) *
                 normal.next();
          v = std::min(v, 1.0);
          if (s_.encoding == SampleEncoding::sRGB) v = encoded(v);
          result.push_back(std::max(0.0, s_.blackLevel + v * (white - s_.blackLevel)));
        }
      }
    return result;
  }

 private:
  Point2 image(double u, double v) const {
    Vector3 p{u - 3, v - 2, 0};
    p = turned(turned(turned(p, s_.yawDeg, 0, 2), s_.tiltDeg, 2, 1), s_.rotationDeg, 0, 1);
    return {p[0] / (kDistance + p[2]), p[1] / (kDistance + p[2])};
  }

  // Where the ray through a point of the picture meets the chart.
  Vector3 colourAt(double x, double y) const {
    const auto inChart = [&](Vector3 p) {
      return turned(turned(turned(p, -s_.rotationDeg, 0, 1), -s_.tiltDeg, 2, 1), -s_.yawDeg, 0, 2);
    };
    const Vector3 eye = inChart({0, 0, -kDistance});
    const Vector3 ray = inChart({(x - shift_.x) / scale_, (y - shift_.y) / scale_, 1});
    const double t = -eye[2] / ray[2];
    const double u = eye[0] + t * ray[0] + 3, v = eye[1] + t * ray[1] + 2;
    const Vector3& w = truth_.whiteRgb;
    if (u < -kFrame || u > 6 + kFrame || v < -kFrame || v > 4 + kFrame)
      return {w[0] * s_.surround[0], w[1] * s_.surround[1], w[2] * s_.surround[2]};
    for (std::size_t i = 0; i < kPatchCount; ++i)
      if (std::abs(u - static_cast<double>(i % 6) - 0.5) <= kSide / 2 &&
          std::abs(v - static_cast<double>(i / 6) - 0.5) <= kSide / 2)
        return truth_.rgb[i];
    return {w[0] * 0.015, w[1] * 0.015, w[2] * 0.015};
  }

  std::vector<Vector3> sharpPicture() const {
    std::vector<Vector3> picture(static_cast<std::size_t>(s_.width * s_.height));
    for (std::size_t i = 0; i < picture.size(); ++i)
      for (int ray = 0; ray < 64; ++ray) {
        const auto [y, x] = std::div(static_cast<int>(i), s_.width);
        const Vector3 colour = colourAt(x + (ray % 8 - 3.5) / 8, y + (ray / 8 - 3.5) / 8);
        for (std::size_t c = 0; c < 3; ++c) picture[i][c] += colour[c] / 64;
      }
    return picture;
  }

  Vector3 blurred(const std::vector<Vector3>& sharp, int x, int y) const {
    const int radius = static_cast<int>(std::ceil(4 * s_.blurSigma));
    Vector3 sum{};
    double weights = 0.0;
    for (int dy = -radius; dy <= radius; ++dy)
      for (int dx = -radius; dx <= radius; ++dx) {
        const double weight =
            radius == 0 ? 1.0 : std::exp((dx * dx + dy * dy) / (-2 * s_.blurSigma * s_.blurSigma));
        const int px = std::clamp(x + dx, 0, s_.width - 1),
                  py = std::clamp(y + dy, 0, s_.height - 1);
        for (std::size_t c = 0; c < 3; ++c)
          sum[c] += weight * sharp[static_cast<std::size_t>(py * s_.width + px)][c];
        weights += weight;
      }
    return {sum[0] / weights, sum[1] / weights, sum[2] / weights};
  }

  const SimulationSettings& s_;
  const SimulationTruth& truth_;
  double scale_ = 0.0;
  Point2 shift_{};
};

double distance(const Point2& a, const Point2& b) {
  return std::hypot(a.x - b.x, a.y - b.y);
}

void expectTruth(const SlowCamera& camera, const SimulationSettings& s,
                 const SimulationTruth& truth) {
  double sides = 0.0, pitches = 0.0, ratio = 1.0;
  for (std::size_t i = 0; i < kPatchCount; ++i) {
    const double u = static_cast<double>(i % 6) + 0.5, v = static_cast<double>(i / 6) + 0.5;
    EXPECT_LT(distance(truth.centres[i], camera.at(u, v)), 1e-9);
    EXPECT_NEAR(truth.shading[i], camera.shading(truth.centres[i].x, truth.centres[i].y), 1e-9);
    for (std::size_t c = 0; c < 3; ++c)
      EXPECT_NEAR(std::pow(truth.noiseSigma[i][c], 2),
                  std::pow(s.shotNoise, 2) * truth.rgb[i][c] + std::pow(s.readNoise, 2), 1e-12);
    double side[5];
    for (std::size_t k = 0; k < 5; ++k) {
      const double right = k % 4 == 1 || k % 4 == 2 ? 0.5 : -0.5, low = k % 4 > 1 ? 0.5 : -0.5;
      EXPECT_LT(distance(truth.corners[i][k % 4], camera.at(u + kSide * right, v + kSide * low)),
                1e-9);
      side[k] = distance(truth.corners[i][k % 4], truth.corners[i][(k + 1) % 4]);
      if (k > 0) ratio = std::max({ratio, side[k] / side[k - 1], side[k - 1] / side[k]});
      if (k > 0) sides += side[k];
    }
    if (i % 6 > 0) pitches += distance(camera.at(u, v), camera.at(u - 1, v));
    if (i > 5) pitches += distance(camera.at(u, v), camera.at(u, v - 1));
  }
  EXPECT_NEAR(truth.patchSide, sides / 96, 1e-9);
  EXPECT_NEAR(truth.pitch, pitches / (4 * 5 + 3 * 6), 1e-9);
  EXPECT_NEAR(truth.sideRatio, ratio, 1e-9);
  const Point2 first = camera.at(0.5, 0.5), last = camera.at(5.5, 0.5);
  EXPECT_GE(truth.turnDeg, 0.0);
  EXPECT_LT(truth.turnDeg, 360.0);
  EXPECT_NEAR(std::cos(truth.turnDeg * kDegree), (last.x - first.x) / distance(first, last), 1e-9);
  EXPECT_NEAR(std::sin(truth.turnDeg * kDegree), (last.y - first.y) / distance(first, last), 1e-9);
}

SimulationSettings small() {
  SimulationSettings s;
  s.width = 96, s.height = 70, s.bits = 16, s.encoding = SampleEncoding::linear;
  return s;
}

TEST(ChartSimulator, TakesThePictureOfASlowCamera) {
  std::vector<SimulationSettings> cases(6, small());
  cases[0].rotationDeg = 200, cases[0].tiltDeg = 20, cases[0].yawDeg = -35;
  cases[0].offsetX = 0.1, cases[0].offsetY = -0.05, cases[0].surround = {0.2, 0.5, 0.9};
  cases[1].blurSigma = 1.2, cases[1].vignetting = 0.4, cases[1].encoding = SampleEncoding::sRGB;
  cases[1].yawDeg = 15, cases[1].blackLevel = 64, cases[1].whiteLevel = 4095;
  cases[2].shotNoise = 0.1, cases[2].seed = 7, cases[2].blackLevel = 300, cases[2].vignetting = 0.1;
  cases[3].readNoise = 0.2, cases[3].shotNoise = 0.01, cases[3].bits = 8, cases[3].blackLevel = 16;
  cases[3].encoding = SampleEncoding::sRGB, cases[3].blurSigma = 0.2;
  cases[4].whiteShare = 1.5, cases[4].bits = 8, cases[4].sizeShare = 1.3, cases[4].tiltDeg = -30;
  // Beyond all edges of the picture, and blurred there.
  cases[5].sizeShare = 1.6, cases[5].blurSigma = 0.9, cases[5].rotationDeg = 3;
  for (const SimulationSettings& s : cases) {
    SCOPED_TRACE(&s - cases.data());
    ChartSimulator simulator;
    simulator.m_settings = s;
    ASSERT_TRUE(simulator.Simulate());
    const SlowCamera camera(s, simulator.m_truth);
    expectTruth(camera, s, simulator.m_truth);
    EXPECT_EQ(simulator.m_picture.bits, s.bits);
    const std::vector<double> expected = camera.samples();
    ASSERT_EQ(simulator.m_picture.samples.size(), expected.size());
    for (std::size_t i = 0; i < expected.size(); ++i)
      ASSERT_NEAR(simulator.m_picture.samples[i], expected[i], 0.5 + 1e-6) << i;
  }
}

TEST(FlatFieldSimulator, FollowsItsFormula) {
  FlatFieldSimulator simulator;
  for (const int bits : {8, 16})
    for (const double sigma : {0.0, 0.6, 60.0}) {
      FlatFieldSettings s{37, 20, 190.0, 0.7, sigma, 1.5, 3, bits};
      simulator.m_settings = s;
      ASSERT_TRUE(simulator.Simulate());
      Normal normal(s.seed);
      for (int y = 0; y < s.height; ++y)
        for (int x = 0; x < s.width; ++x) {
          const double rho2 = (std::pow(x - 18, 2) + std::pow(y - 10, 2)) / (18.0 * 18 + 10 * 10);
          double value = 190.0 * (1 - 0.7 * rho2);
          if (sigma > 0)
            value += std::sqrt(std::pow(sigma * (1 + 0.5 * rho2), 2) - 1.0 / 12) * normal.next();
          ASSERT_NEAR(*simulator.m_picture.pixel(x, y), std::clamp(value, 0.0, 255.0), 0.5 + 1e-9);
        }
      EXPECT_EQ(simulator.m_picture.bits, bits);
    }
}

struct Limit {
  double SimulationSettings::*member;
  double low, high, beyond;
  const char* text;
};

template <typename Simulator>
std::string refusal(const Simulator& simulator) {
  Simulator tried = simulator;
  try {
    tried.Simulate();
  } catch (const std::invalid_argument& error) {
    EXPECT_TRUE(tried.m_picture.samples.empty());
    return error.what();
  }
  return "";
}

TEST(ChartSimulator, TakesEverySettingUpToItsLimitsAndNoFurther) {
  using S = SimulationSettings;
  const Limit limits[] = {
      // Setting, the least and the most it may be, a value beyond, what is said about that.
      {&S::sizeShare, 0.02, 2, 2.01,
       "the chart's share of the picture must be from 0.02 to 2, not 2.01"},
      {&S::offsetX, -1, 1, -1.01, "the offset along x must be from -1 to 1, not -1.01"},
      {&S::offsetY, -1, 1, 1.01, "the offset along y must be from -1 to 1, not 1.01"},
      {&S::rotationDeg, -360, 360, 361,
       "the rotation in degrees must be from -360 to 360, not 361"},
      {&S::tiltDeg, -70, 70, -70.5, "the tilt in degrees must be from -70 to 70, not -70.5"},
      {&S::yawDeg, -70, 70, 70.5, "the yaw in degrees must be from -70 to 70, not 70.5"},
      {&S::whiteShare, 0.001, 4, 0,
       "the exposure of the white patch must be from 0.001 to 4, not 0"},
      {&S::vignetting, 0, 0.95, 0.96, "the vignetting must be from 0 to 0.95, not 0.96"},
      {&S::blurSigma, 0, 50, 50.5, "the blur in pixels must be from 0 to 50, not 50.5"},
      {&S::shotNoise, 0, 1, -0.01, "the shot noise must be from 0 to 1, not -0.01"},
      {&S::readNoise, 0, 1, 1.01, "the read noise must be from 0 to 1, not 1.01"},
      {&S::blackLevel, 0, 65534, 65535, "the black level must be from 0 to 65534, not 65535"},
      {&S::whiteLevel, 1, 65535, 65536, "the white level must be from 1 to 65535, not 65536"}};
  ChartSimulator simulator;
  for (const Limit& limit : limits) {
    SCOPED_TRACE(limit.text);
    for (const double value : {limit.low, limit.high, limit.beyond, std::nan("")}) {
      simulator.m_settings = small();
      simulator.m_settings.width = simulator.m_settings.height = 16;
      simulator.m_settings.*limit.member = value;
      EXPECT_EQ(refusal(simulator) == "", value >= limit.low && value <= limit.high) << value;
      if (value == limit.beyond) {
        EXPECT_EQ(refusal(simulator), limit.text);
      }
    }
  }
  for (std::size_t c = 0; c < 3; ++c) {
    simulator.m_settings = small();
    simulator.m_settings.surround[c] = 1.5;
    EXPECT_NE(refusal(simulator), "");
  }
}

struct Odd {
  void (*change)(SimulationSettings&);
  const char* text;  // empty where it is accepted
};

TEST(ChartSimulator, RefusesWhatIsNoPictureLightOrSensor) {
  const Odd cases[] = {
      {[](SimulationSettings& s) { s.width = 15; }, "the width must be from 16 to 20000, not 15"},
      {[](SimulationSettings& s) { s.height = 20001; },
       "the height must be from 16 to 20000, not 20001"},
      {[](SimulationSettings& s) { s.width = 20000, s.height = 5001; },
       "a picture of more than 100 million pixels is too large"},
      {[](SimulationSettings& s) { s.width = s.height = 16; }, ""},
      {[](SimulationSettings& s) { s.bits = 12; }, "a picture has 8 or 16 bits, not 12"},
      {[](SimulationSettings& s) { s.bits = 8, s.whiteLevel = 256; },
       "the white level must be from 1 to 255, not 256"},
      {[](SimulationSettings& s) { s.encoding = static_cast<SampleEncoding>(9); },
       "samples are linear or sRGB-encoded, nothing else"},
      {[](SimulationSettings& s) { s.sensor = static_cast<ModelSensor>(4); },
       "there is no such model sensor"},
      {[](SimulationSettings& s) { s.light = illum_D75; },
       "there is no spectrum of the light D75; use A, D65, TL84, D50, Horizon or CoolWhite"}};
  ChartSimulator simulator;
  for (const Odd& odd : cases) {
    simulator.m_settings = small();
    odd.change(simulator.m_settings);
    EXPECT_EQ(refusal(simulator), odd.text);
  }
}

TEST(SettingCheck, TakesAHundredMillionPixels) {
  EXPECT_NO_THROW(checkPixels(20000, 5000));
  EXPECT_THROW(checkPixels(1, 100'000'001), std::invalid_argument);
}

TEST(FlatFieldSimulator, RefusesWhatIsOutOfRange) {
  const std::pair<FlatFieldSettings, const char*> cases[] = {
      // Settings, and what is said about them; nothing where they are accepted.
      {{2, 2, 255.0, 1.0, 0.6, 20.0, 1, 16}, ""},
      {{2, 2, 0.0, 0.0, 60.0, 1.0, 1, 8}, ""},
      {{1, 2}, "the width must be from 2 to 20000, not 1"},
      {{2, 20001}, "the height must be from 2 to 20000, not 20001"},
      {{20000, 5001}, "a picture of more than 100 million pixels is too large"},
      {{2, 2, 255.5}, "the level must be from 0 to 255, not 255.5"},
      {{2, 2, 9.0, 1.1}, "the fall-off must be from 0 to 1, not 1.1"},
      {{2, 2, 9.0, 0.0, 0.5}, "the noise at the centre must be from 0.6 to 60, not 0.5"},
      {{2, 2, 9.0, 0.0, 60.5}, "the noise at the centre must be from 0.6 to 60, not 60.5"},
      {{2, 2, 9.0, 0.0, 3.0, 0.9},
       "the gain of the noise in the corners must be from 1 to 20, not 0.9"},
      {{2, 2, 9.0, 0.0, 3.0, 21.0},
       "the gain of the noise in the corners must be from 1 to 20, not 21"},
      {{2, 2, 9.0, 0.0, 3.0, 1.0, 1, 10}, "a picture has 8 or 16 bits, not 10"}};
  for (const auto& [settings, text] : cases) {
    FlatFieldSimulator simulator;
    simulator.m_settings = settings;
    EXPECT_EQ(refusal(simulator), text);
  }
}

// Asked before every 64th row how far it is; a refusal leaves all as it was.
TEST(Simulators, ReportAndCanBeStopped) {
  ChartSimulator chart;
  chart.m_settings = small();
  chart.m_settings.height = 130;
  FlatFieldSimulator field;
  field.m_settings = {20, 130};
  std::vector<double> shares;
  const auto note = [&](double share) { return shares.push_back(share), share < 0.6; };
  EXPECT_FALSE(chart.Simulate([&](double share) { return note(share) || share < 0.9; }));
  EXPECT_FALSE(field.Simulate(note) && field.Simulate(note));
  EXPECT_EQ(shares, (std::vector{0.0, 64 / 130.0, 128 / 130.0, 0.0, 64 / 130.0, 128 / 130.0}));
  EXPECT_TRUE(chart.m_picture.samples.empty() && field.m_picture.samples.empty());
  EXPECT_TRUE(chart.Simulate([](double) { return true; }));
}

TEST(ModelSensor, HasANameInAnyCase) {
  const char* const names[] = {"ordinary", "narrow", "broad", "colorimetric", "unknown"};
  for (int i = 0; i < 5; ++i) EXPECT_STREQ(modelSensorName(static_cast<ModelSensor>(i)), names[i]);
  EXPECT_STREQ(modelSensorName(static_cast<ModelSensor>(-1)), "unknown");
  EXPECT_EQ(modelSensorFromName("ORDINarY"), ModelSensor::Ordinary);
  EXPECT_EQ(modelSensorFromName("colorimetriC"), ModelSensor::Colorimetric);
  for (const char* none : {"unknown", "", "narro", "narrow ", "@roaD"})
    EXPECT_EQ(modelSensorFromName(none), std::nullopt) << none;
}

}  // namespace
}  // namespace greycard
