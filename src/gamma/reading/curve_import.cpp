// One door to all the forms in which a tone curve may come.

#include "greycard/curve_import.h"

#include <algorithm>
#include <memory>
#include <optional>
#include <stdexcept>
#include <utility>

#include "curve_file.h"
#include "curve_form.h"
#include "greycard/curve_tables.h"
#include "greycard/files.h"
#include "greycard/number_text.h"
#include "interpolator.h"
#include "raw_curve.h"
#include "table_of.h"
#include "text.h"

namespace greycard {
namespace {

using reading::Form;
using reading::Refusal;

constexpr std::array kColours{ColorChannel::Red, ColorChannel::Green, ColorChannel::Blue};

GammaImport refused(GammaImportNote refusal, std::vector<GammaImportNote> notes = {}) {
  GammaImport import;
  import.refusal = std::move(refusal);
  import.notes = std::move(notes);
  return import;
}

// A new curve of the catalogue, for whom the caller has something better than its zeros.
GammaImport newCurve(GammaCurveModel& catalogue, TextView name) {
  std::string zeros;
  for (int i = 0; i < 64; ++i) zeros += "0 ";
  GammaImport import = catalogue.ImportText(name, std::move(zeros));
  import.tables = {};
  return import;
}

bool makesACurve(std::span<const ControlPoint> points) {
  return points.size() >= 2 && points.size() <= Interpolator::kCapacity &&
         std::ranges::adjacent_find(points, [](const ControlPoint& a, const ControlPoint& b) {
           return b.X <= a.X;
         }) == points.end();
}

const char* const kWhatPointsTake =
    "no curve can be computed from these control points: that takes 2 to 512 of them with "
    "increasing X";

// Red alone, or all three.
GammaImport curveThrough(GammaCurveModel& catalogue, TextView name,
                         const std::vector<ControlPointList>& points,
                         std::vector<GammaImportNote> notes) {
  GammaImport import = newCurve(catalogue, name);
  if (import.refusal) return import;
  import.notes = std::move(notes);
  if (points.size() == kColours.size()) import.curve->SetIsUnified(false);
  for (std::size_t c = 0; c < points.size(); ++c)
    import.curve->SetControlPoints(kColours[c], std::make_shared<ControlPointList>(points[c]));
  import.curve->CalculateCurve();
  return import;
}

GammaImport pointsAlone(GammaCurveModel& catalogue, TextView name, const CurveFileContents& file) {
  const auto list = [&](std::size_t c) -> const CurveFileList& {
    return file.lists[kFirstPointList + c];
  };
  const bool three = list(1).present && list(2).present && catalogue.RGBGamma();
  std::vector<ControlPointList> points;
  for (std::size_t c = 0; c < (three ? kColours.size() : 1); ++c) {
    const auto pairs = GammaCurve::CreatePointArray(list(c).numbers);
    points.push_back(pairs ? *pairs : ControlPointList());
    if (!makesACurve(points.back()))
      return refused({list(c).line, list(c).opener, kWhatPointsTake});
  }
  std::vector<GammaImportNote> notes;
  for (const UnknownToken& unknown : file.firstUnknown)
    notes.push_back({unknown.line, unknown.token, "this is not understood; skipped"});
  notes.push_back(
      {0, {}, "there is no table in it; the curve is computed from the control points"});
  return curveThrough(catalogue, name, points, std::move(notes));
}

// Where the curve through its points lies farthest from a table, in codes; 0 without points.
std::int64_t distanceOfPoints(const GammaCurve& curve, CurveChannel channel) {
  const auto points = curvePoints(curve, channel);
  if (!makesACurve(points)) return 0;
  GammaCurveModel scratch(false);
  GammaCurve through("", scratch);
  through.SetControlPoints(ColorChannel::All,
                           std::make_shared<ControlPointList>(points.begin(), points.end()));
  through.CalculateCurve();
  std::int64_t distance = 0;
  const auto table = curveTable(curve, channel);
  for (std::size_t i = 0; i < std::min(table.size(), through.Data()->size()); ++i)
    distance = std::max(distance, std::abs(std::int64_t{table[i]} - (*through.Data())[i]));
  return distance;
}

std::span<const CurveChannel> channelsOf(const GammaCurve& curve) {
  static constexpr std::array kThree{CurveChannel::Red, CurveChannel::Green, CurveChannel::Blue};
  return std::span(kThree).first(curve.IsUnified() ? 1 : kThree.size());
}

// A table is kept whatever the points beside it say; points that say something else were edited.
void questionPoints(GammaImport& import) {
  constexpr std::int64_t kRounding = kCurveMax / 100;  // points are whole 64ths of codes
  std::int64_t distance = 0;
  for (const CurveChannel channel : channelsOf(*import.curve))
    distance = std::max(distance, distanceOfPoints(*import.curve, channel));
  if (distance > kRounding)
    import.notes.push_back(
        {0,
         {},
         "the curve through the control points is up to " +
             fixed(100.0 * static_cast<double>(distance) / kCurveMax, 1) +
             " % off the table, which is used; it can be computed from the points instead"});
}

// Largest above what the last value is taken for: such codes are beyond full scale then.
void questionDepths(const CurveFileContents& file, GammaImport& import) {
  for (std::size_t c = 0; c < import.tables.size(); ++c) {
    if (import.tables[c].bits == 0) continue;
    const std::int32_t largest = std::ranges::max(file.lists[c].numbers);
    if (largest >> import.tables[c].bits == 0) continue;
    import.notes.push_back({file.lists[c].line, file.lists[c].opener,
                            "the largest value, " + std::to_string(largest) + ", doesn't fit the " +
                                std::to_string(import.tables[c].bits) + " bits that the last, " +
                                std::to_string(file.lists[c].numbers.back()) +
                                ", is taken for; is the table whole?"});
  }
}

GammaImport importCurveFile(GammaCurveModel& catalogue, TextView name, const std::string& text,
                            const CurveImportOptions& options) {
  TokenStream tokens = TokenStream::ofText(text);
  const CurveFileContents file = readCurveFile(tokens);
  if (!file.lists[0].present && file.lists[kFirstPointList].present)
    return pointsAlone(catalogue, name, file);
  if (options.fromPoints) {
    GammaCurveModel scratch(false);
    GammaImport trial = scratch.ImportText(name, text);
    if (trial.curve)
      for (const CurveChannel channel : channelsOf(*trial.curve))
        if (!makesACurve(curvePoints(*trial.curve, channel)))
          return refused({file.lists[kFirstPointList].line, file.lists[kFirstPointList].opener,
                          curvePoints(*trial.curve, channel).empty()
                              ? "there are no control points to compute the curve from"
                              : kWhatPointsTake},
                         std::move(trial.notes));
  }
  GammaImport import = catalogue.ImportText(name, text);
  if (!import.curve) return import;
  questionDepths(file, import);
  if (options.fromPoints)
    import.curve->CalculateCurve();
  else
    questionPoints(import);
  return import;
}

// As many whole numbers as a curve file has, one after the other: a curve file without keywords.
bool isBareCurveFile(const std::string& text) {
  constexpr std::int32_t kFirstOf16Bits = kCurveMax + 1;
  if (text.find('#') != std::string::npos || text.find("//") != std::string::npos) return false;
  TokenStream tokens = TokenStream::ofText(text);
  const CurveFileContents file = readCurveFile(tokens);
  const auto& numbers = file.lists[0].numbers;
  return isCurveLength(numbers.size()) && std::ranges::max(numbers) < kFirstOf16Bits &&
         !reading::standsInColumns(withoutByteOrderMark(text));
}

reading::RawCurve rawCurve(Form form, std::string_view text) {
  switch (form) {
    case Form::Cube:
      return reading::readCube(text);
    case Form::CArrays:
      return reading::readCArrays(text);
    case Form::Json:
      return reading::readJson(text);
    case Form::Yaml:
      return reading::readYaml(text);
    default:
      return reading::readNumbers(text);
  }
}

reading::CatalogueTables tablesIn(Form form, std::string_view text) {
  reading::CatalogueTables read = reading::tablesOf(rawCurve(form, text));
  // Three that are the same are one, as formats need them that have three columns always.
  if (read.tables.size() == kColours.size() && read.tables[0] == read.tables[1] &&
      read.tables[1] == read.tables[2])
    read.tables.resize(1);
  return read;
}

GammaImport importOther(GammaCurveModel& catalogue, TextView name,
                        const reading::CatalogueTables& read, const CurveImportOptions& options) {
  if (!read.points.empty()) {
    if (!makesACurve(read.points)) return refused({0, {}, kWhatPointsTake}, read.notes);
    return curveThrough(catalogue, name, {read.points}, read.notes);
  }
  if (options.fromPoints)
    return refused({0, {}, "there are no control points to compute the curve from"}, read.notes);
  GammaImport import = newCurve(catalogue, name);
  if (import.refusal) return import;
  import.notes = read.notes;
  import.tables = read.inFile;
  const bool three = read.tables.size() == kColours.size() && catalogue.RGBGamma();
  if (three) import.curve->SetIsUnified(false);
  for (std::size_t c = 0; c < (three ? kColours.size() : 1); ++c)
    import.curve->SetGammaTable(kColours[c], std::make_shared<GammaTable>(read.tables[c]));
  if (read.tables.size() > 1 && !three)
    import.notes.push_back(
        {0, {}, "the catalogue keeps one table for all channels; red's is used"});
  return import;
}

void requireCurveBits(const GammaCurveModel& catalogue) {
  if (catalogue.GammaBitSize() != kCurveBits)
    throw std::invalid_argument("curves are imported into a catalogue of 14 bits, not " +
                                std::to_string(catalogue.GammaBitSize()));
}

}  // namespace

struct CurveReading::State {
  std::string curveFile;  ///< the whole text, where the catalogue reads it by itself
  std::optional<reading::CatalogueTables> tables;
  std::optional<GammaImportNote> refusal;
};

CurveReading::CurveReading(std::string text) {
  State state;
  try {
    const Form form = reading::formOf(withoutByteOrderMark(text));
    if (form == Form::CurveFile || (form == Form::Numbers && isBareCurveFile(text)))
      state.curveFile = std::move(text);
    else
      state.tables = tablesIn(form, withoutByteOrderMark(text));
  } catch (const Refusal& refusal) {
    state.refusal = refusal.note();
  }
  m_state = std::make_shared<const State>(std::move(state));
}

GammaImport importAnyCurve(GammaCurveModel& catalogue, TextView name, const CurveReading& reading,
                           const CurveImportOptions& options) {
  requireCurveBits(catalogue);
  const CurveReading::State& state = *reading.m_state;
  if (state.refusal) return refused(*state.refusal);
  if (state.tables) return importOther(catalogue, name, *state.tables, options);
  return importCurveFile(catalogue, name, state.curveFile, options);
}

GammaImport importAnyCurve(GammaCurveModel& catalogue, TextView name, std::string text,
                           const CurveImportOptions& options) {
  requireCurveBits(catalogue);
  return importAnyCurve(catalogue, name, CurveReading(std::move(text)), options);
}

GammaImport importAnyCurveFile(GammaCurveModel& catalogue, const std::filesystem::path& file,
                               const CurveImportOptions& options) {
  return importAnyCurve(catalogue, file.stem().string(), readWholeFile(file), options);
}

}  // namespace greycard
