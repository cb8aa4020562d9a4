#include "table_of.h"

#include <algorithm>
#include <cmath>

#include "gamma_table.h"
#include "greycard/curve_tables.h"
#include "greycard/number_text.h"
#include "interpolator.h"

namespace greycard::reading {
namespace {

using Channel = RawCurve::Channel;

constexpr int kMostBits = 16;
// HDR10 and HLG: codes of 10 bits at the inputs 0, 16, ... 4080, 4095 of 12 bits.
constexpr std::size_t kStandardEntries = 257;
constexpr int kStandardBits = 10;

double fullScale(int bits) {
  return (1 << bits) - 1;
}

int bitsFor(double value) {
  for (const int bits : {8, 10, 12, 14})
    if (value <= fullScale(bits)) return bits;
  return kMostBits;
}

bool isWhole(const Located& number) {
  return number.value == std::floor(number.value);
}

bool countsFromZero(const std::vector<Located>& inputs) {
  for (std::size_t i = 0; i < inputs.size(); ++i)
    if (inputs[i].value != static_cast<double>(i)) return false;
  return true;
}

[[noreturn]] void refuseAt(const Located& at, const std::string& why) {
  throw Refusal(at.line, at.column, exact(at.value), why);
}

void checkInputs(const Channel& channel, bool mayBeNegative) {
  if (channel.inputs.empty()) return;
  if (channel.inputs.size() != channel.outputs.size())
    throw Refusal(channel.inputs[0].line, channel.inputs[0].column, {},
                  "there are " + std::to_string(channel.inputs.size()) + " inputs for " +
                      std::to_string(channel.outputs.size()) + " outputs");
  for (std::size_t i = 0; i < channel.inputs.size(); ++i) {
    const Located& input = channel.inputs[i];
    if (!std::isfinite(input.value) || (input.value < 0.0 && !mayBeNegative))
      refuseAt(input, "an input is a number from 0 up");
    if (i > 0 && !(input.value > channel.inputs[i - 1].value))
      refuseAt(input, "inputs must rise; the one before is " + exact(channel.inputs[i - 1].value));
  }
}

void checkOutputs(const Channel& channel, bool clips) {
  const std::size_t count = channel.outputs.size();
  if (count < kFewestEntries || count > kMostEntries)
    throw Refusal(count == 0 ? 0 : channel.outputs[0].line, 0, {},
                  "there are " + std::to_string(count) + " values where a curve has 2 to 65536");
  for (const Located& output : channel.outputs) {
    if (!std::isfinite(output.value)) refuseAt(output, "this is no finite number");
    if (clips) continue;
    if (output.value < 0.0) refuseAt(output, "a curve's values lie at 0 or above");
    if (output.value > fullScale(kMostBits)) refuseAt(output, "a code has 16 bits at most");
  }
}

const Located& largestOf(const RawCurve& raw) {
  const Located* largest = &raw.channels[0].outputs[0];
  for (const Channel& channel : raw.channels)
    for (const Located& output : channel.outputs)
      if (output.value > largest->value) largest = &output;
  return *largest;
}

class Conversion {
 public:
  explicit Conversion(const RawCurve& raw) : raw_(raw), largest_(largestOf(raw)) {
    result_.notes = raw.notes;
    fractions_ = raw.clipsOutputs || largest_.value <= 1.0;
  }

  CatalogueTables run() {
    if (takeControlPoints()) return std::move(result_);
    if (!fractions_) findBits();
    for (std::size_t c = 0; c < raw_.channels.size(); ++c) {
      result_.inFile[c] = {raw_.channels[c].outputs.size(), bits_};
      result_.tables.push_back(tableOf(raw_.channels[c]));
    }
    const std::size_t entries = raw_.channels[0].outputs.size();
    if (straight_ && entries != kCurveEntries)
      note(std::to_string(entries) + (raw_.channels[0].inputs.empty() ? " values" : " points") +
           " are resampled to 1024 entries by straight lines");
    if (partial_)
      note("the points don't reach from 0 to full scale; the curve is level beyond them");
    if (clipped_ > 0) note(std::to_string(clipped_) + " values outside 0 to 1 are clipped");
    return std::move(result_);
  }

 private:
  void note(std::string text, const Located& at = {}) {
    result_.notes.push_back({at.line, at.line > 0 ? exact(at.value) : "", std::move(text),
                             at.line > 0 ? std::optional(at.column) : std::nullopt});
  }

  // A few points in the units of an editor, X = index / 4 and Y = code / 64, up to its last X.
  bool takeControlPoints() {
    constexpr std::size_t kMostPoints = 32;
    constexpr double kLastX = 255.0;
    const Channel& channel = raw_.channels[0];
    const auto fits = [](const Located& n) { return isWhole(n) && n.value <= kLastX; };
    if (raw_.channels.size() != 1 || channel.inputs.empty() || fractions_ || raw_.bits ||
        raw_.lastInput || channel.inputs.size() > kMostPoints ||
        channel.inputs.back().value != kLastX || !std::ranges::all_of(channel.inputs, fits) ||
        !std::ranges::all_of(channel.outputs, fits))
      return false;
    for (std::size_t i = 0; i < channel.inputs.size(); ++i)
      result_.points.push_back({static_cast<std::int32_t>(channel.inputs[i].value),
                                static_cast<std::int32_t>(channel.outputs[i].value)});
    note(
        "a few points up to X 255 are taken as control points, X = index / 4 and Y = code / 64; "
        "a spline joins them");
    return true;
  }

  void findBits() {
    const auto& outputs = raw_.channels[0].outputs;
    isStandard_ = raw_.channels.size() == 1 && outputs.size() == kStandardEntries &&
                  hasEqualSteps(raw_.channels[0]) && largest_.value <= fullScale(kStandardBits) &&
                  std::ranges::all_of(outputs, isWhole);
    bits_ = raw_.bits ? *raw_.bits : isStandard_ ? kStandardBits : bitsFor(largest_.value);
    if (largest_.value > fullScale(bits_))
      refuseAt(largest_, "the value takes more than the " + std::to_string(bits_) +
                             " bits that the file tells");
    if (isStandard_) {
      note(
          "257 codes are taken for 10 bits at the inputs 0, 16, ... 4080, 4095 of 12 bits, as of "
          "HDR10 and HLG");
    } else if (const Located& last = outputs.back(); !raw_.bits && bitsFor(last.value) < bits_) {
      note("the largest value takes " + std::to_string(bits_) + " bits, the last, " +
               exact(last.value) + ", only " + std::to_string(bitsFor(last.value)) +
               "; the former are taken",
           largest_);
    }
  }

  // Inputs 0, 1, 2 are places in the list, unless the file tells where full scale is.
  bool hasEqualSteps(const Channel& channel) const {
    return channel.inputs.empty() || (!raw_.lastInput && countsFromZero(channel.inputs));
  }

  GammaTable tableOf(const Channel& channel) {
    const bool equalSteps = hasEqualSteps(channel);
    const bool asCurveFile = !fractions_ && bits_ <= kCurveBits && equalSteps &&
                             isCurveLength(channel.outputs.size()) &&
                             std::ranges::all_of(channel.outputs, isWhole);
    if (!asCurveFile) return byStraightLines(channel, equalSteps);
    std::vector<std::int32_t> codes;
    for (const Located& output : channel.outputs)
      codes.push_back(static_cast<std::int32_t>(output.value) << (kCurveBits - bits_));
    GammaTable table(kCurveEntries);
    expandTable(codes, kCurveBits, table);
    return table;
  }

  // Where full scale is 1.
  double inputAt(const Channel& channel, std::size_t i, bool equalSteps) const {
    const auto place = static_cast<double>(i);
    if (isStandard_) return std::min(16.0 * place, 4095.0) / 4095.0;
    if (equalSteps) return place / static_cast<double>(channel.outputs.size() - 1);
    const double last = channel.inputs.back().value;
    return channel.inputs[i].value / raw_.lastInput.value_or(std::max(last, 1.0));
  }
  double outputAt(const Channel& channel, std::size_t i) {
    const double value = channel.outputs[i].value;
    if (!fractions_) return value / fullScale(bits_);
    if (value < 0.0 || value > 1.0) ++clipped_;
    return std::clamp(value, 0.0, 1.0);
  }

  // Beyond the first and the last input their outputs go on.
  GammaTable byStraightLines(const Channel& channel, bool equalSteps) {
    straight_ = true;
    const std::size_t count = channel.outputs.size();
    std::vector<double> x(count), y(count);
    for (std::size_t i = 0; i < count; ++i)
      x[i] = inputAt(channel, i, equalSteps), y[i] = outputAt(channel, i);
    partial_ = partial_ || x.front() > 0.0 || x.back() < 1.0;
    GammaTable table(kCurveEntries);
    std::size_t k = 0;
    for (std::size_t i = 0; i < table.size(); ++i) {
      const double at = static_cast<double>(i) / (kCurveEntries - 1);
      while (k + 2 < count && x[k + 1] <= at) ++k;
      const double part = std::clamp((at - x[k]) / (x[k + 1] - x[k]), 0.0, 1.0);
      table[i] =
          static_cast<std::int32_t>(std::lround(kCurveMax * (y[k] + part * (y[k + 1] - y[k]))));
    }
    return table;
  }

  const RawCurve& raw_;
  const Located& largest_;
  CatalogueTables result_;
  bool fractions_ = false, isStandard_ = false, straight_ = false, partial_ = false;
  int bits_ = 0;
  std::size_t clipped_ = 0;
};

}  // namespace

CatalogueTables tablesOf(const RawCurve& raw) {
  for (const Channel& channel : raw.channels) {
    checkOutputs(channel, raw.clipsOutputs);
    checkInputs(channel, raw.lastInput.has_value());
  }
  return Conversion(raw).run();
}

}  // namespace greycard::reading
