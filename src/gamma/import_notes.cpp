#include "import_notes.h"

#include <algorithm>
#include <string>
#include <string_view>

#include "gamma_table.h"
#include "interpolator.h"

namespace greycard {
namespace {

constexpr std::array<std::string_view, 3> kChannels{"red", "green", "blue"};

std::string countText(std::size_t channel, const CurveFileList& list) {
  return "the " + std::string(kChannels[channel]) + " table holds " +
         std::to_string(list.numbers.size()) + " numbers where 64, 256, 512 or 1024 are accepted";
}

GammaImport::Table tableOf(const CurveFileList& list) {
  const std::size_t count = list.numbers.size();
  return {count, isCurveLength(count) ? inferredDepth(list.numbers.back()) : 0};
}

class Notes {
 public:
  Notes(const CurveFileContents& file, GammaImport& import) : m_file(file), m_import(import) {}

  GammaImportNote refusal(std::int32_t gammaBitSize) const {
    const CurveFileList& red = m_file.lists[0];
    if (!red.present)
      return {0,
              {},
              "there is no red table: no number stands before the first keyword, and there is no "
              "GammaTableV2:, GammaTableV2R: or GammaTable:"};
    if (m_import.tables[0].bits == 0) return {red.line, red.opener, countText(0, red)};
    return {0,
            {},
            "tables of " + std::to_string(gammaBitSize) +
                " bits are asked for (GammaBitSize); 0 to 31 can be made"};
  }

  void addTables(bool rgbGamma) {
    for (std::size_t c = 1; c < kChannels.size(); ++c) {
      const CurveFileList& list = m_file.lists[c];
      if (list.present && m_import.tables[c].bits == 0)
        add(list, countText(c, list) + "; the red table serves all channels");
      else if (list.present && !m_file.lists[3 - c].present)
        add(list, "there is a " + std::string(kChannels[c]) + " table but no " +
                      std::string(kChannels[3 - c]) + " one; the red table serves all channels");
    }
    if (threeTables() && !rgbGamma)
      add(m_file.lists[2], "the model keeps one table for all channels; this one is used");
  }

  void addPoints(bool rgbGamma) {
    bool allChannels = true;
    for (std::size_t c = 0; c < kChannels.size(); ++c)
      allChannels = allChannels && points(c).numbers.size() >= 2;
    for (std::size_t c = 0; c < kChannels.size(); ++c) {
      const CurveFileList& list = points(c);
      if (!list.present) continue;
      if (threeTables() && !allChannels)
        add(list, "control points are taken when every channel has some; these are left out");
      else if (threeTables() && !rgbGamma && c < 2)
        add(list, "the model keeps one list of control points for all channels; blue's is used");
      else if (!threeTables() && c > 0)
        add(list, "the curve is the same for all channels; these control points are left out");
      else
        addPointList(list);
    }
  }

  void addUnknownTokens() {
    for (const UnknownToken& unknown : m_file.firstUnknown)
      m_import.notes.push_back({unknown.line, unknown.token,
                                "this is neither a keyword nor a 32-bit whole number; skipped"});
  }

  void addHiddenTokens() {
    const std::size_t hidden = m_file.unknownTokens - m_file.firstUnknown.size();
    if (hidden > 0)
      m_import.notes.push_back({0, {}, std::to_string(hidden) + " more words like that skipped"});
  }

 private:
  const CurveFileList& points(std::size_t channel) const {
    return m_file.lists[kFirstPointList + channel];
  }
  bool threeTables() const { return m_import.tables[1].bits != 0 && m_import.tables[2].bits != 0; }
  void add(const CurveFileList& list, std::string text) {
    m_import.notes.push_back({list.line, list.opener, std::move(text)});
  }

  void addPointList(const CurveFileList& list) {
    const auto& numbers = list.numbers;
    if (numbers.size() % 2 != 0)
      add(list, std::to_string(numbers.size()) +
                    " numbers make no whole pairs; the last one is left out");
    const std::size_t count = numbers.size() / 2;
    bool increases = true;
    for (std::size_t i = 1; i < count; ++i)
      increases = increases && numbers[2 * i] > numbers[2 * i - 2];
    if (!increases || count == 1 || count > Interpolator::kCapacity)
      add(list, "the curve can't be recomputed from these control points: that takes 2 to " +
                    std::to_string(Interpolator::kCapacity) + " of them with increasing X");
  }

  const CurveFileContents& m_file;
  GammaImport& m_import;
};

}  // namespace

void describeImport(const CurveFileContents& file, bool rgbGamma, std::int32_t gammaBitSize,
                    GammaImport& import) {
  for (std::size_t c = 0; c < import.tables.size(); ++c) import.tables[c] = tableOf(file.lists[c]);
  Notes notes(file, import);
  if (!import.curve) {
    import.refusal = notes.refusal(gammaBitSize);
  } else {
    notes.addTables(rgbGamma);
    notes.addPoints(rgbGamma);
  }
  notes.addUnknownTokens();
  std::stable_sort(import.notes.begin(), import.notes.end(),
                   [](const auto& a, const auto& b) { return a.line < b.line; });
  notes.addHiddenTokens();
}

}  // namespace greycard
