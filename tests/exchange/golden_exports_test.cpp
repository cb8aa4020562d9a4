// Every text format of every material, as a text beside this file; other tests read them with
// programs that are not ours.

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "exchange_fixture.h"
#include "golden.h"

namespace greycard::exchange {
namespace {

// The first lines, and of the many that follow a few.
std::string sampled(const std::string& text) {
  constexpr int kHead = 30, kEvery = 41;
  std::istringstream lines(text);
  std::string out;
  int number = 0;
  for (std::string line; std::getline(lines, line); ++number)
    if (number < kHead || number % kEvery == 0 || lines.peek() == EOF) out += line + "\n";
  return out + std::to_string(number) + " lines\n";
}

std::string hexadecimal(const std::string& bytes) {
  std::string out;
  for (std::size_t i = 0; i < bytes.size(); ++i) {
    char text[4];
    std::snprintf(text, sizeof text, "%02x%c", static_cast<unsigned char>(bytes[i]),
                  i % 24 == 23 ? '\n' : ' ');
    out += text;
  }
  return sampled(out);
}

std::vector<std::pair<std::string, Material>> materials() {
  CurveTables one, three;
  three.unified = false;
  for (std::int32_t c = 0; c < 3; ++c)
    for (std::int32_t i = 0; i < 40; ++i)
      three.channels[static_cast<std::size_t>(c)].table.push_back(
          std::min(i * (10 + c) * 38, 16383));
  one.channels[0] = three.channels[1];
  one.name = "VCurve one";
  three.name = "three channels";
  FittedCamera camera = knownCamera({illum_D65, illum_A});
  camera.lights[1].fit.gamma = cameraGamma("VOutdoor");  // the first light's is taken
  return {
      {"fit", knownCamera({illum_D65})}, {"fits", camera},       {"curve", one}, {"curves", three},
      {"table", knownTable()},           {"noise", knownNoise()}};
}

TEST(GoldenExports, OfEveryFormat) {
  for (const auto& [name, material] : materials()) {
    std::string text;
    for (const std::string& format : formatNames(kindOf(material))) {
      if (format.starts_with("icc") || format == "cube65") continue;  // lcms2's; long
      const ExportOptions options{format == "cube33", format == "dcp" ? "Maker Cam" : ""};
      const Exported made = exportAs(format, material, options);
      text +=
          "== " + format + "\n" + (format == "dcp" ? hexadecimal(made.bytes) : sampled(made.bytes));
      for (const std::string& note : made.notes) text += "note: " + note + "\n";
    }
    expectGolden("exchange/golden/" + name + ".txt", text);
  }
  std::string lights;
  for (const Illum light :
       {illum_A, illum_D65, illum_D75, illum_D50, illum_TL84, illum_CoolWhite, illum_Lowlight})
    lights += std::string(illumName(light)) + "\n" +
              hexadecimal(exportAs("dcp", knownCamera({light})).bytes);
  expectGolden("exchange/golden/dcp_lights.txt", lights);
}

}  // namespace
}  // namespace greycard::exchange
