#pragma once

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

#include "greycard/exchange/formats.h"
#include "greycard/lut2d_table.h"

namespace greycard::exchange {

/// A fit with known figures, and 24 measured colours inside the cube.
inline ChartFit knownFit(Illum light) {
  ChartFit fit;
  fit.photo = "folder/shot.dng";
  fit.light = light;
  fit.gamma = cameraGamma("VGammaSRGB");
  fit.matrix = light == illum_A
                   ? Matrix3{{{2.1, -1.15, 0.05}, {-0.3, 1.4, -0.1}, {0.03, -0.2, 1.17}}}
                   : Matrix3{{{1.7, -0.6, -0.1}, {-0.2, 1.5, -0.3}, {0.0, -0.5, 1.5}}};
  fit.whiteBalance = light == illum_A ? Vector3{1.02, 1.0, 3.9} : Vector3{1.9, 1.0, 1.6};
  fit.exposure = 1.1;
  for (std::size_t i = 0; i < kPatchCount; ++i) {
    const auto k = static_cast<double>(i);
    fit.measuredRgb[i] = {0.05 + 0.014 * k, 0.1 + 0.02 * static_cast<double>(i * 7 % 24),
                          0.06 + 0.01 * static_cast<double>(i * 5 % 24)};
    for (std::size_t c = 0; c < 3; ++c)
      fit.fit.m_balancedRGB[i][c] = fit.exposure * fit.whiteBalance[c] * fit.measuredRgb[i][c];
  }
  return fit;
}

inline FittedCamera knownCamera(const std::vector<Illum>& lights) {
  FittedCamera camera;
  for (const Illum light : lights) camera.lights.push_back(fittedLight(knownFit(light)));
  return camera;
}

/// A noise table, and a hue/saturation table of which one node is changed.
inline SigmaEstimate knownNoise() {
  SigmaEstimate noise;
  noise.centreNoiseSigma = 2.5F;
  for (std::size_t i = 0; i < kSigmaEntries; ++i) noise.lut[i] = 1.0F + static_cast<float>(i) / 128;
  return noise;
}

inline Lut2DConfig knownTable() {
  Lut2DConfig table = identityLut2d();
  table.lut_2d_h[37] = -12.5;
  table.lut_2d_s[37] = 0.125;
  return table;
}

/// A folder of the test's own, removed with it.
class Folder {
 public:
  Folder() {
    std::string name = (std::filesystem::temp_directory_path() / "exchangeXXXXXX").string();
    if (mkdtemp(name.data()) == nullptr) throw std::runtime_error("no temporary folder");
    path_ = name;
  }
  ~Folder() { std::filesystem::remove_all(path_); }
  Folder(const Folder&) = delete;
  Folder& operator=(const Folder&) = delete;

  void write(const std::string& name, const std::string& bytes) const {
    std::ofstream(path_ / name, std::ios::binary) << bytes;
  }
  /// What a command line prints that is run in the folder.
  std::string shell(const std::string& line) const {
    const std::string whole = "cd '" + path_.string() + "' && " + line;
    std::FILE* pipe = popen(whole.c_str(), "r");
    std::string out;
    for (char buffer[4096]; const std::size_t n = std::fread(buffer, 1, sizeof buffer, pipe);)
      out.append(buffer, n);
    if (pclose(pipe) != 0) throw std::runtime_error(line + " failed: " + out);
    return out;
  }

 private:
  std::filesystem::path path_;
};

inline std::vector<double> numbersIn(const std::string& text) {
  std::istringstream stream(text);
  std::vector<double> numbers;
  for (double number = 0.0; stream >> number;) numbers.push_back(number);
  return numbers;
}

}  // namespace greycard::exchange
