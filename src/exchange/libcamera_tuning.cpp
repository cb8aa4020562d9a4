// libcamera tuning file, version 1: Ccm and GammaOutCorrection.

#include <cmath>
#include <optional>
#include <span>

#include "greycard/errors.h"
#include "greycard/number_text.h"
#include "tone_curve.h"
#include "tuning_blocks.h"

namespace greycard::exchange {
namespace {

double rootMeanSquare(const std::vector<double>& curve, double gamma) {
  double sum = 0.0;
  for (std::size_t i = 0; i < curve.size(); ++i) {
    const double x = static_cast<double>(i) / static_cast<double>(curve.size() - 1);
    const double miss = std::pow(x, 1.0 / gamma) - curve[i];
    sum += miss * miss;
  }
  return std::sqrt(sum / static_cast<double>(curve.size()));
}

// The power x^(1/gamma) nearest to the curve, to 0.01: every gamma that makes sense is tried.
std::string bestGamma(const CurveValues& curves, std::vector<std::string>& notes) {
  const std::vector<double> curve = commonCurve(curves, notes);
  double best = 1.0, least = 2.0;
  for (int hundredths = 20; hundredths <= 600; ++hundredths)
    if (const double miss = rootMeanSquare(curve, hundredths / 100.0); miss < least) {
      least = miss;
      best = hundredths / 100.0;
    }
  notes.push_back("the power 1/" + fixed(best, 2) + " is nearest to the tone curve: " +
                  fixed(100.0 * least, 2) + " % of full scale root mean square");
  return fixed(best, 2);
}

// A fit has no offsets; where a pipeline has a place for them they are 0.
std::string ccmsText(const FittedCamera& camera, const std::string& indent, bool hasOffsets) {
  const auto lights = byTemperature(camera);
  const auto kelvins = wholeKelvins(lights);
  std::string text;
  for (std::size_t i = 0; i < lights.size(); ++i)
    text += indent + "- ct: " + std::to_string(kelvins[i]) + "\n" + indent + "  ccm: [ " +
            ccmNumbers(lights[i]->fit.matrix) + " ]\n" +
            (hasOffsets ? indent + "  offsets: [ 0, 0, 0 ]\n" : "");
  return text;
}

// One line of a file.
struct Line {
  Span span;           // with its line end
  std::size_t indent;  // blanks before the first other character
  std::string_view words;
  bool counts() const { return !words.empty() && words[0] != '#'; }
};

std::vector<Line> linesOf(std::string_view text) {
  std::vector<Line> lines;
  for (std::size_t at = 0; at < text.size();) {
    const std::size_t newline = text.find('\n', at);
    const std::size_t end = newline == std::string_view::npos ? text.size() : newline + 1;
    const std::string_view line = text.substr(at, end - at);
    const std::size_t indent = std::min(line.find_first_not_of(' '), line.size());
    std::string_view words = line.substr(indent);
    words = words.substr(0, words.find_last_not_of(" \t\r\n") + 1);
    if (words.starts_with('\t')) throw JobError("a tab stands at the beginning of a line");
    lines.push_back({{at, end}, indent, words});
    at = end;
  }
  return lines;
}

// The value of "key: value" without a comment behind it; empty for any other line.
std::optional<std::string_view> valueOf(std::string_view words, std::string_view key) {
  if (!words.starts_with(key) || words.substr(key.size()).empty() || words[key.size()] != ':')
    return std::nullopt;
  std::string_view value = words.substr(key.size() + 1);
  value = value.substr(0, value.find(" #"));
  value = value.substr(std::min(value.find_first_not_of(' '), value.size()));
  return value.substr(0, value.find_last_not_of(' ') + 1);
}

// The lines after `first` that belong to it: all that are indented deeper, or as deep a list where
// `first` holds one.
std::size_t endOfBlock(const std::vector<Line>& lines, std::size_t first) {
  const std::size_t indent = lines[first].indent;
  const bool isItem = lines[first].words.starts_with("- ");
  std::size_t end = first + 1;
  for (std::size_t i = first + 1; i < lines.size(); ++i) {
    if (!lines[i].counts()) continue;
    const bool isOwnList = !isItem && lines[i].indent == indent && lines[i].words.starts_with("- ");
    if (lines[i].indent <= indent && !isOwnList) break;
    end = i + 1;
  }
  return end;
}

class TuningFile {
 public:
  explicit TuningFile(std::string_view text) : text_(text), lines_(linesOf(text)) {
    bool hasVersion = false, hasAlgorithms = false;
    for (const Line& line : lines_) {
      if (line.indent != 0) continue;
      if (const auto version = valueOf(line.words, "version")) {
        if (*version != "1")
          throw JobError("its version is " + std::string(*version) + "; only 1 is known");
        hasVersion = true;
      }
      hasAlgorithms = hasAlgorithms || valueOf(line.words, "algorithms") == "";
    }
    if (!hasVersion) throw JobError("it tells no version");
    if (!hasAlgorithms) throw JobError("it holds no list \"algorithms\", an item a line");
  }

  void replaceCcms(const FittedCamera& camera) {
    const auto key = find("Ccm", "ccms");
    if (!key) return;
    const std::size_t end = endOfBlock(lines_, *key);
    if (valueOf(lines_[*key].words, "ccms") != "" || end == *key + 1)
      throw JobError("its ccms aren't a list with an item a line; write them so first");
    const auto block = std::span(lines_).subspan(*key + 1, end - *key - 1);
    const auto item = std::ranges::find_if(block, &Line::counts);
    const bool hasOffsets = std::ranges::any_of(block, [](const Line& line) {
      return line.words.find("offsets:") != std::string_view::npos;
    });
    std::string with = ccmsText(camera, std::string(item->indent, ' '), hasOffsets);
    const Span span{block.front().span.begin, block.back().span.end};
    if (!span.of(text_).ends_with('\n')) with.pop_back();
    replace("Ccm", span, with);
  }

  void replaceGamma(const std::string& gamma) {
    const auto key = find("GammaOutCorrection", "gamma");
    if (!key) return;
    const auto value = valueOf(lines_[*key].words, "gamma");
    if (value->empty() || !numberOf<double>(*value))
      throw JobError("its GammaOutCorrection has a gamma that is no number");
    const auto begin = static_cast<std::size_t>(value->data() - text_.data());
    replace("GammaOutCorrection", {begin, begin + value->size()}, gamma);
  }

  Exported take(std::vector<std::string> notes) {
    if (replacements_.empty())
      throw JobError("it holds no Ccm with ccms and no GammaOutCorrection that could be replaced");
    notes.insert(notes.begin(), "replaced " + done_ + ", left all else as it was");
    return {replaced(text_, replacements_), std::move(notes)};
  }

 private:
  // The line of the key in the algorithm's block.
  std::optional<std::size_t> find(const std::string& algorithm, std::string_view key) const {
    for (std::size_t i = 0; i < lines_.size(); ++i) {
      if (valueOf(lines_[i].words, "- " + algorithm) != "") continue;
      for (std::size_t k = i + 1; k < endOfBlock(lines_, i); ++k)
        if (valueOf(lines_[k].words, key)) return k;
    }
    return std::nullopt;
  }
  void replace(const char* name, Span span, const std::string& with) {
    replacements_.push_back({span, with});
    done_ += (done_.empty() ? "" : " and ") + std::string(name);
  }

  std::string_view text_;
  std::vector<Line> lines_;
  std::vector<Replacement> replacements_;
  std::string done_;
};

}  // namespace

Exported writeLibcamera(const Material& material) {
  std::vector<std::string> notes;
  std::string text = "%YAML 1.1\n---\nversion: 1\nalgorithms:\n";
  const auto* camera = std::get_if<FittedCamera>(&material);
  if (camera != nullptr) text += "  - Ccm:\n      ccms:\n" + ccmsText(*camera, "        ", false);
  const CurveValues curves =
      camera != nullptr ? curveValues(*camera) : curveValues(std::get<CurveTables>(material));
  text += "  - GammaOutCorrection:\n      gamma: " + bestGamma(curves, notes) + "\n...\n";
  return {std::move(text), std::move(notes)};
}

Exported updateLibcamera(std::string_view text, const Material& material) {
  TuningFile file(text);
  std::vector<std::string> notes;
  const auto* camera = std::get_if<FittedCamera>(&material);
  if (camera != nullptr) file.replaceCcms(*camera);
  const CurveValues curves =
      camera != nullptr ? curveValues(*camera) : curveValues(std::get<CurveTables>(material));
  file.replaceGamma(bestGamma(curves, notes));
  return file.take(std::move(notes));
}

}  // namespace greycard::exchange
