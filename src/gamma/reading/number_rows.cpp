// Lines of numbers: one after the other, or in columns.

#include <algorithm>

#include "raw_curve.h"
#include "text.h"

namespace greycard::reading {
namespace {

struct Row {
  std::vector<Located> numbers;
  bool goesOn = false;  // a separator stands at its end
  bool commas = false;
};

struct Rows {
  std::vector<Row> rows;
  std::vector<GammaImportNote> notes;
};

constexpr std::string_view kSeparators = " ,;\t\r\v\f";

// The line without what stands behind # or //, of which a number would be missed.
std::string_view withoutComment(std::string_view line, std::size_t number,
                                std::vector<GammaImportNote>& notes) {
  const std::size_t start = std::min(line.find('#'), line.find("//"));
  if (start == std::string_view::npos) return line;
  const auto words = splitText(line.substr(start), " ,;\t\r#/:=");
  const auto hidden =
      std::ranges::find_if(words, [](std::string_view word) { return numberIn(word).has_value(); });
  if (hidden != words.end() && notes.empty())
    notes.push_back({number, keptWord(*hidden), "numbers in comments are not counted",
                     static_cast<std::size_t>(hidden->data() - line.data()) + 1});
  return line.substr(0, start);
}

std::string_view unquoted(std::string_view word) {
  if (word.size() >= 2 && word.front() == '"' && word.back() == '"')
    word = word.substr(1, word.size() - 2);
  return word;
}

Row rowOf(std::string_view line, std::string_view content, std::size_t number, bool mayBeHead) {
  Row row;
  row.commas = content.find_first_of(",;") != std::string_view::npos;
  const auto last = content.find_last_not_of(" \t\r");
  row.goesOn = last != std::string_view::npos && (content[last] == ',' || content[last] == ';');
  const auto words = splitText(content, kSeparators);
  const auto valueOf = [](std::string_view word) { return numberIn(unquoted(word)); };
  if (mayBeHead &&
      std::ranges::none_of(words, [&](auto word) { return valueOf(word).has_value(); }))
    return {};
  for (const std::string_view word : words) {
    const std::size_t column = static_cast<std::size_t>(word.data() - line.data()) + 1;
    const auto value = valueOf(word);
    if (!value) throw Refusal(number, column, word, "this is no number");
    row.numbers.push_back({*value, number, column});
  }
  return row;
}

// The first line may be names of columns.
Rows rowsOf(std::string_view text) {
  constexpr std::size_t kMostNumbers = 4 * kMostEntries;
  Rows result;
  std::size_t line = 0, numbers = 0;
  bool first = true;
  for (const std::string_view whole : splitLines(text)) {
    ++line;
    const std::string_view content = withoutComment(whole, line, result.notes);
    if (content.find_first_not_of(kSeparators) == std::string_view::npos) continue;
    Row row = rowOf(whole, content, line, first);
    first = false;
    numbers += row.numbers.size();
    if (numbers > kMostNumbers)
      throw Refusal(line, 1, {}, "the file holds more than 65536 entries of four columns");
    if (!row.numbers.empty()) result.rows.push_back(std::move(row));
  }
  return result;
}

bool neverFalls(const std::vector<Row>& rows) {
  double before = rows[0].numbers[0].value;
  for (const Row& row : rows)
    for (const Located& number : row.numbers) {
      if (number.value < before) return false;
      before = number.value;
    }
  return true;
}

bool firstColumnRises(const std::vector<Row>& rows) {
  return std::ranges::adjacent_find(rows, [](const Row& a, const Row& b) {
           return !(a.numbers[0].value < b.numbers[0].value);
         }) == rows.end();
}

bool firstColumnCounts(const std::vector<Row>& rows) {
  for (std::size_t i = 0; i < rows.size(); ++i)
    if (rows[i].numbers[0].value != static_cast<double>(i)) return false;
  return true;
}

// Rows that are as wide as the first, except the last of a list.
std::size_t commonWidth(const std::vector<Row>& rows) {
  const std::size_t width = rows[0].numbers.size();
  for (std::size_t i = 1; i < rows.size(); ++i)
    if (rows[i].numbers.size() != width) return 0;
  return width;
}

// Columns, or a list of values that is wrapped: a list's lines end in a comma, or have none and its
// numbers never fall, which those of columns do unless they are near the proportional line.
bool isInColumns(const std::vector<Row>& rows) {
  const std::size_t width = commonWidth(rows);
  if (rows.size() < 2 || width < 2 || width > 4 || rows[0].goesOn) return false;
  if (width == 3) return rows[0].commas || !neverFalls(rows);
  return firstColumnCounts(rows) ||
         (firstColumnRises(rows) && (rows[0].commas || !neverFalls(rows)));
}

// A row that is missing something in what else looks like columns.
void refuseRaggedColumns(const std::vector<Row>& rows) {
  const std::size_t width = rows[0].numbers.size();
  if (rows.size() < 3 || width < 2 || width > 4 || rows[0].goesOn || !rows[0].commas) return;
  const auto odd =
      std::ranges::find_if(rows, [width](const Row& row) { return row.numbers.size() != width; });
  if (odd == rows.end()) return;
  throw Refusal(odd->numbers[0].line, odd->numbers[0].column, {},
                "this line holds " + std::to_string(odd->numbers.size()) +
                    " numbers where those before hold " + std::to_string(width));
}

}  // namespace

bool standsInColumns(std::string_view text) try {
  const Rows read = rowsOf(text);
  return !read.rows.empty() && isInColumns(read.rows);
} catch (const Refusal&) {
  return false;
}

RawCurve readNumbers(std::string_view text) {
  Rows read = rowsOf(text);
  if (read.rows.empty()) throw Refusal(0, 0, {}, "there is no number in it");
  RawCurve curve;
  curve.notes = std::move(read.notes);
  if (!isInColumns(read.rows)) {
    refuseRaggedColumns(read.rows);
    curve.channels.resize(1);
    for (const Row& row : read.rows)
      curve.channels[0].outputs.insert(curve.channels[0].outputs.end(), row.numbers.begin(),
                                       row.numbers.end());
    return curve;
  }
  const std::size_t width = read.rows[0].numbers.size();
  curve.channels.resize(width == 2 ? 1 : 3);
  for (const Row& row : read.rows)
    for (std::size_t c = 0; c < curve.channels.size(); ++c) {
      if (width != 3) curve.channels[c].inputs.push_back(row.numbers[0]);
      curve.channels[c].outputs.push_back(row.numbers[width == 3 ? c : c + 1]);
    }
  return curve;
}

}  // namespace greycard::reading
