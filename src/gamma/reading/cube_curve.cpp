// .cube of one dimension: a head of keywords, then three numbers a line.

#include <algorithm>
#include <array>
#include <cmath>

#include "raw_curve.h"
#include "text.h"

namespace greycard::reading {
namespace {

constexpr std::string_view kBlanks = " \t\r";

class CubeReader {
 public:
  RawCurve read(std::string_view text) {
    curve_.clipsOutputs = true;
    curve_.channels.resize(3);
    for (const std::string_view line : splitLines(text)) {
      ++line_;
      const auto words = splitText(line.substr(0, line.find('#')), kBlanks);
      if (words.empty()) continue;
      start_ = line.data();
      if (numberIn(words[0]))
        readRow(words);
      else
        readKeyword(words);
    }
    finish();
    return std::move(curve_);
  }

 private:
  std::size_t columnOf(std::string_view word) const {
    return static_cast<std::size_t>(word.data() - start_) + 1;
  }
  [[noreturn]] void refuse(std::string_view word, std::string why) const {
    throw Refusal(line_, columnOf(word), word, std::move(why));
  }
  double wantedNumber(std::string_view word) const {
    const auto number = numberIn(word);
    if (!number || !std::isfinite(*number)) refuse(word, "this is no finite number");
    return *number;
  }

  void readKeyword(const std::vector<std::string_view>& words) {
    const std::string_view name = words[0];
    if (name == "TITLE") return;
    if (name == "LUT_3D_SIZE")
      refuse(name, "a LUT of three dimensions holds no tone curve; one with LUT_1D_SIZE does");
    if (name == "LUT_1D_SIZE" && words.size() == 2) {
      const double size = wantedNumber(words[1]);
      if (!(size >= kFewestEntries && size <= kMostEntries && size == std::floor(size)))
        refuse(words[1], "a curve of 2 to 65536 entries can be read");
      size_ = static_cast<std::size_t>(size);
    } else if ((name == "DOMAIN_MIN" || name == "DOMAIN_MAX") && words.size() == 4) {
      readDomain(words);
    } else if (name == "LUT_1D_INPUT_RANGE" && words.size() == 3) {
      first_ = wantedNumber(words[1]);
      last_ = wantedNumber(words[2]);
    } else {
      refuse(name, "this is no line of a .cube file");
    }
  }

  void readDomain(const std::vector<std::string_view>& words) {
    const double value = wantedNumber(words[1]);
    for (std::size_t c = 2; c < 4; ++c)
      if (wantedNumber(words[c]) != value)
        refuse(words[c], "a domain that differs between the channels can't be used");
    (words[0] == "DOMAIN_MIN" ? first_ : last_) = value;
  }

  void readRow(const std::vector<std::string_view>& words) {
    if (words.size() != 3)
      refuse(words[0],
             "three numbers are wanted in this line, not " + std::to_string(words.size()));
    if (size_ == 0) refuse(words[0], "numbers stand here before LUT_1D_SIZE has been told");
    if (curve_.channels[0].outputs.size() == size_)
      refuse(words[0], "there are more than the " + std::to_string(size_) + " rows of LUT_1D_SIZE");
    for (std::size_t c = 0; c < 3; ++c)
      curve_.channels[c].outputs.push_back({wantedNumber(words[c]), line_, columnOf(words[c])});
  }

  // Inputs at equal steps of the domain; one of 0..1 needs none. Full scale is 1, or the end of a
  // domain that is plainly one of codes.
  void finish() {
    const std::size_t rows = curve_.channels[0].outputs.size();
    if (size_ == 0 || rows != size_)
      throw Refusal(line_, 0, {},
                    size_ == 0 ? "LUT_1D_SIZE is missing"
                               : "the file ends after " + std::to_string(rows) + " of the " +
                                     std::to_string(size_) + " rows of LUT_1D_SIZE");
    if (!(first_ < last_))
      throw Refusal(0, 0, {}, "the domain's end doesn't lie above its beginning");
    constexpr double kLeastCodes = 255.0;
    curve_.lastInput = last_ < kLeastCodes ? 1.0 : last_;
    if (first_ == 0.0 && last_ == 1.0) return;
    for (RawCurve::Channel& channel : curve_.channels)
      for (std::size_t i = 0; i < rows; ++i)
        channel.inputs.push_back(
            {first_ + (last_ - first_) * static_cast<double>(i) / static_cast<double>(rows - 1),
             channel.outputs[i].line, channel.outputs[i].column});
  }

  RawCurve curve_;
  double first_ = 0.0, last_ = 1.0;
  std::size_t size_ = 0, line_ = 0;
  const char* start_ = nullptr;
};

}  // namespace

RawCurve readCube(std::string_view text) {
  return CubeReader().read(text);
}

}  // namespace greycard::reading
