// Raspberry Pi camera tuning file, version 2: rpi.ccm and rpi.contrast.

#include <cmath>
#include <nlohmann/json.hpp>
#include <optional>

#include "greycard/errors.h"
#include "greycard/number_text.h"
#include "tone_curve.h"
#include "tuning_blocks.h"

namespace greycard::exchange {
namespace {

constexpr int kCurvePoints = 33;
constexpr double kFullScale16 = 65535.0;

std::string ccmsText(const FittedCamera& camera) {
  const auto lights = byTemperature(camera);
  const auto kelvins = wholeKelvins(lights);
  std::string text = "[";
  for (std::size_t i = 0; i < lights.size(); ++i)
    text += std::string(i == 0 ? "\n" : ",\n") +
            "                    { \"ct\": " + std::to_string(kelvins[i]) + ", \"ccm\": [ " +
            ccmNumbers(lights[i]->fit.matrix) + " ] }";
  return text + "\n                ]";
}

// 33 points at squares of equal steps, so that they lie closer in the shadows.
std::string gammaCurveText(const CurveValues& curves, std::vector<std::string>& notes) {
  const std::vector<double> curve = commonCurve(curves, notes);
  std::string text = "[ ";
  std::vector<double> xs, ys;
  for (int i = 0; i < kCurvePoints; ++i) {
    const double step = static_cast<double>(i) / (kCurvePoints - 1);
    xs.push_back(std::round(kFullScale16 * step * step));
    ys.push_back(std::round(kFullScale16 * curveAt(curve, xs.back() / kFullScale16)));
    text += (i == 0 ? "" : ", ") + fixed(xs.back(), 0) + ", " + fixed(ys.back(), 0);
  }
  double worst = 0.0;
  for (std::size_t i = 0, k = 0; i < curve.size(); ++i) {
    const double x = kFullScale16 * static_cast<double>(i) / static_cast<double>(curve.size() - 1);
    while (k + 2 < xs.size() && xs[k + 1] < x) ++k;
    const double y = ys[k] + (x - xs[k]) * (ys[k + 1] - ys[k]) / (xs[k + 1] - xs[k]);
    worst = std::max(worst, std::fabs(y / kFullScale16 - curve[i]));
  }
  notes.push_back("33 points of the tone curve, at most " + fixed(100.0 * worst, 2) +
                  " % of full scale away from it");
  return text + " ]";
}

struct Blocks {
  std::optional<std::string> ccms;
  std::string gammaCurve;
  std::vector<std::string> notes;
};

Blocks blocksOf(const Material& material) {
  Blocks blocks;
  if (const auto* camera = std::get_if<FittedCamera>(&material)) {
    blocks.ccms = ccmsText(*camera);
    blocks.gammaCurve = gammaCurveText(curveValues(*camera), blocks.notes);
  } else {
    blocks.gammaCurve = gammaCurveText(curveValues(std::get<CurveTables>(material)), blocks.notes);
  }
  return blocks;
}

// Refuses what is no tuning file of ours. The text is valid JSON afterwards, with a list of
// algorithms.
void checkTuning(std::string_view text) {
  const auto file = nlohmann::json::parse(text, nullptr, false);
  if (file.is_discarded()) throw JobError("it is not valid JSON");
  if (!file.is_object() || !file.contains("algorithms") || !file["algorithms"].is_array())
    throw JobError("it holds no list \"algorithms\"");
  const auto version = file.value("version", nlohmann::json());
  if (!version.is_number() || version.get<double>() != 2.0)
    throw JobError("its version is " + version.dump() + "; only 2.0 is known");
  const auto target = file.value("target", nlohmann::json());
  if (target != "bcm2835" && target != "pisp")
    throw JobError("its target is " + target.dump(-1, ' ', true) +
                   "; only \"bcm2835\" and \"pisp\" are known");
}

}  // namespace

Exported writeRpi(const Material& material, const std::string& target) {
  const Blocks blocks = blocksOf(material);
  std::string text =
      "{\n    \"version\": 2.0,\n    \"target\": \"" + target + "\",\n    \"algorithms\": [\n";
  if (blocks.ccms)
    text += "        {\n            \"rpi.ccm\": {\n                \"ccms\": " + *blocks.ccms +
            "\n            }\n        },\n";
  text +=
      "        {\n            \"rpi.contrast\": {\n                \"ce_enable\": 0,\n"
      "                \"gamma_curve\": " +
      blocks.gammaCurve + "\n            }\n        }\n    ]\n}\n";
  return {std::move(text), blocks.notes};
}

Exported updateRpi(std::string_view text, const Material& material) {
  checkTuning(text);
  const Blocks blocks = blocksOf(material);
  std::vector<Replacement> replacements;
  std::string done;
  const auto replace = [&](Span algorithm, const char* name, const char* key,
                           const std::string& with) {
    if (text[algorithm.begin] != '{') return;
    const auto found = objectMembers(text, algorithm);
    const auto block = found.find(std::string_view(name));
    if (block == found.end() || text[block->second.begin] != '{') return;
    const auto members = objectMembers(text, block->second);
    const auto value = members.find(std::string_view(key));
    if (value == members.end()) return;
    replacements.push_back({value->second, with});
    done += (done.empty() ? "" : " and ") + std::string(name);
  };
  const auto root = objectMembers(text, wholeValue(text));
  const auto list = root.find(std::string_view("algorithms"));
  if (list == root.end() || text[list->second.begin] != '[')
    throw JobError("its key \"algorithms\" is written with escapes; write it plainly first");
  for (const Span algorithm : arrayElements(text, list->second)) {
    if (blocks.ccms) replace(algorithm, "rpi.ccm", "ccms", *blocks.ccms);
    replace(algorithm, "rpi.contrast", "gamma_curve", blocks.gammaCurve);
  }
  if (replacements.empty())
    throw JobError(blocks.ccms ? "it holds neither rpi.ccm with ccms nor rpi.contrast with a "
                                 "gamma_curve to replace"
                               : "it holds no rpi.contrast with a gamma_curve to replace");
  Exported result{replaced(text, std::move(replacements)), blocks.notes};
  result.notes.insert(result.notes.begin(), "replaced " + done + ", left all else as it was");
  return result;
}

}  // namespace greycard::exchange
