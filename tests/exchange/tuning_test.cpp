// Tuning files, read back by parsers that are not ours.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <nlohmann/json.hpp>

#include "exchange_fixture.h"

namespace greycard::exchange {
namespace {

using nlohmann::json;
using testing::HasSubstr;

json yaml(const std::string& text) {
  Folder folder;
  folder.write("file.yaml", text);
  return json::parse(folder.shell(
      "python3 -c 'import json, yaml; print(json.dumps(yaml.safe_load(open(\"file.yaml\"))))'"));
}

void expectLights(const json& ccms, const FittedCamera& camera, std::vector<std::size_t> order) {
  ASSERT_EQ(ccms.size(), order.size());
  for (std::size_t i = 0; i < order.size(); ++i) {
    const FittedLight& light = camera.lights[order[i]];
    EXPECT_EQ(ccms[i]["ct"], std::lround(*light.kelvin));
    for (std::size_t k = 0; k < 9; ++k)
      EXPECT_NEAR(ccms[i]["ccm"][k], light.fit.matrix[k / 3][k % 3], 6e-6);
    for (std::size_t row = 0; row < 9; row += 3) {
      const json& ccm = ccms[i]["ccm"];
      EXPECT_NEAR(ccm[row].get<double>() + ccm[row + 1].get<double>() + ccm[row + 2].get<double>(),
                  1.0, 1e-12);
    }
  }
}

TEST(Tuning, SeveralLightsRiseAndTheCurveIsTheCameras) {
  const FittedCamera camera = knownCamera({illum_D65, illum_A, illum_TL84});
  const json rpi = json::parse(exportAs("rpi-pisp", camera).bytes);
  EXPECT_EQ(rpi["version"], 2.0);
  EXPECT_EQ(rpi["target"], "pisp");
  expectLights(rpi["algorithms"][0]["rpi.ccm"]["ccms"], camera, {1, 2, 0});
  const json& curve = rpi["algorithms"][1]["rpi.contrast"]["gamma_curve"];
  auto exact = camera.lights[0].fit.pipeline().m_gamma[1];
  for (double& value : exact) value = std::min(value, 1.0);
  EXPECT_EQ(curve.front(), 0);
  EXPECT_EQ(curve[curve.size() - 2], 65535);
  for (std::size_t i = 0; i < curve.size(); i += 2) {
    const double at = curve[i].get<double>() / 65535.0 * 255.0;
    const auto entry = static_cast<std::size_t>(std::min(at, 254.0));
    const double rest = at - static_cast<double>(entry);
    const double value = (1 - rest) * exact[entry] + rest * exact[entry + 1];
    EXPECT_NEAR(curve[i + 1], 65535.0 * value, 0.51);
    EXPECT_TRUE(i == 0 || curve[i] > curve[i - 2]);
  }

  const json libcamera = yaml(exportAs("libcamera", camera).bytes);
  EXPECT_EQ(libcamera["version"], 1);
  expectLights(libcamera["algorithms"][0]["Ccm"]["ccms"], camera, {1, 2, 0});
}

TEST(Tuning, ThePowerIsTheNearest) {
  CurveTables curve;
  for (int i = 0; i < 1024; ++i)
    curve.channels[0].table.push_back(
        static_cast<std::int32_t>(std::lround(16383.0 * std::pow(i / 1023.0, 1.0 / 1.83))));
  EXPECT_EQ(
      yaml(exportAs("libcamera", curve).bytes)["algorithms"][0]["GammaOutCorrection"]["gamma"],
      1.83);
}

TEST(Tuning, AnUpdateLeavesAllElse) {
  const std::string
      before =
          R"({"target" : "bcm2835", "note": "a \"} b", "version": 2.0e0, "algorithms": [ {"rpi.awb": )"
          R"({"x": [1, {"ccms": 2}]}},)"
          "\n\t{ \"rpi.ccm\": {\"sat\":1.50, \"ccms\":",
      between = R"(, "k": [ ] } } , {"rpi.contrast":{"ce_enable":1,"gamma_curve":)",
      after = "}} ]  }\n\n";
  const FittedCamera camera = knownCamera({illum_A, illum_D65});
  const std::string text = before + R"([ {"ct": 1, "ccm": "]"} ])" + between + "[0,0]" + after;
  const Exported updated = updatedTuning(text, camera);
  EXPECT_TRUE(updated.bytes.starts_with(before + "[")) << updated.bytes;
  EXPECT_THAT(updated.bytes, HasSubstr("]" + between + "["));
  EXPECT_TRUE(updated.bytes.ends_with("]" + after));
  EXPECT_THAT(updated.notes[0], HasSubstr("rpi.ccm and rpi.contrast"));
  expectLights(json::parse(updated.bytes)["algorithms"][1]["rpi.ccm"]["ccms"], camera, {0, 1});
  EXPECT_EQ(updatedTuning(updated.bytes, camera).bytes, updated.bytes);

  const std::string
      head = "%YAML 1.1\n---\nversion: 1  # one\nalgorithms:\n- Awb:\n- Ccm:\n    ccms:\n",
      middle = "    # next\n    other: 3\n- GammaOutCorrection:\n    gamma: ",
      tail = " # bright\n- Agc:\n    gamma: 7\n...\n";
  const std::string list =
      "    - ct: 1\n      ccm: [ 1,\n        2 ]\n      offsets: [ 1, 2, 3 ]\n";
  const Exported lines = updatedTuning(head + list + middle + "1.0" + tail, camera);
  EXPECT_TRUE(lines.bytes.starts_with(head + "    - ct: 2856\n")) << lines.bytes;
  EXPECT_THAT(lines.bytes, HasSubstr("\n" + middle));
  EXPECT_TRUE(lines.bytes.ends_with(tail));
  EXPECT_THAT(lines.notes[0], HasSubstr("replaced Ccm and GammaOutCorrection, left"));
  const json parsed = yaml(lines.bytes);
  expectLights(parsed["algorithms"][1]["Ccm"]["ccms"], camera, {0, 1});
  EXPECT_EQ(parsed["algorithms"][1]["Ccm"]["ccms"][0]["offsets"], json({0, 0, 0}));
  EXPECT_GT(parsed["algorithms"][2]["GammaOutCorrection"]["gamma"], 2.0);
}

TEST(Tuning, AnotherKindOfFileIsRefused) {
  const struct {
    const char *text, *says;
  } cases[] = {
      {" ", "empty"},
      {"{\"version\": 2.0", "not valid JSON"},
      {R"({"version": 2.0, "target": "bcm2835"})", "no list"},
      {R"({"version": 1.0, "target": "bcm2835", "algorithms": []})", "version is 1.0"},
      {R"({"version": 2.0, "target": "vc5", "algorithms": []})", "target is \"vc5\""},
      {R"({"version": 2.0, "target": "pisp", "algor\u0069thms": []})", "escapes"},
      {R"({"version": 2.0, "target": "pisp", "algorithms": [{"rpi.ccm": {}}, 3]})", "neither"},
      {"version: 2\nalgorithms:\n", "version is 2"},
      {"algorithms:\n  - Ccm:\n", "no version"},
      {"version: 1\n", "no list"},
      {"version: 1\nalgorithms:\n  - Awb:\n", "no Ccm"},
      {"version: 1\nalgorithms:\n  - Ccm:\n      ccms: []\n", "an item a line"},
      {"version: 1\nalgorithms:\n  - GammaOutCorrection:\n      gamma: x\n", "no number"},
      {"version: 1\nalgorithms:\n\t- Ccm:\n", "tab"},
  };
  for (const auto& [text, says] : cases) {
    SCOPED_TRACE(text);
    try {
      updatedTuning(text, knownCamera({illum_D65}));
      ADD_FAILURE() << "accepted";
    } catch (const JobError& error) {
      EXPECT_THAT(error.what(), HasSubstr(says));
    }
  }
  EXPECT_THROW(exportAs("rpi", knownCamera({illum_LED})), JobError);
  FittedCamera near;
  for (const double kelvin : {4000.6, 4001.4, 4001.6})
    near.lights.push_back(fittedLight(knownFit(kelvin < 4001.5 ? illum_LED1 : illum_LED2), kelvin));
  near.lights.erase(near.lights.begin());
  EXPECT_NO_THROW(exportAs("rpi", near));  // 4001 and 4002
  near.lights[1].kelvin = 4001.3;
  EXPECT_THROW(exportAs("rpi", near), JobError);
}

}  // namespace
}  // namespace greycard::exchange
