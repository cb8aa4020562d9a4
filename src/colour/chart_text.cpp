#include "chart_text.h"

#include <algorithm>
#include <charconv>
#include <cstdio>
#include <memory>

#include "greycard/errors.h"
#include "text.h"

namespace greycard {
namespace {

constexpr std::string_view kBlanks = " \t\r\v\f";
constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";

struct CloseFile {
  void operator()(std::FILE* file) const { std::fclose(file); }
};

// Takes a number off the front of `text`, blanks before it included.
std::optional<double> scanNumber(std::string_view& text) {
  text.remove_prefix(std::min(text.find_first_not_of(kBlanks), text.size()));
  if (text.starts_with('+') && !text.starts_with("+-")) text.remove_prefix(1);
  double value = 0.0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  if (error != std::errc{}) return std::nullopt;
  text.remove_prefix(static_cast<std::size_t>(end - text.data()));
  return value;
}

std::optional<Vector3> scanRow(std::string_view line) {
  Vector3 row;
  for (double& value : row) {
    const auto number = scanNumber(line);
    if (!number) return std::nullopt;
    value = *number;
  }
  return row;
}

std::string_view withoutMark(std::string_view text) {
  if (text.starts_with(kByteOrderMark)) text.remove_prefix(kByteOrderMark.size());
  return text;
}

class StrictReader {
 public:
  StrictReader(std::string_view name, NumberRange range) : name_(name), range_(range) {}

  Vector3 row(std::string_view line, int number) const {
    const auto tokens = splitText(line, kBlanks);
    if (tokens.size() != 3)
      fail(number, "holds " + std::to_string(tokens.size()) + " values instead of three");
    Vector3 values;
    for (std::size_t i = 0; i < 3; ++i) {
      const auto value = parseDouble(tokens[i]);
      if (!value) fail(number, shown(tokens[i]) + " is not a number");
      // Not-a-number and infinity are outside every range.
      if (!(*value >= range_.lowest && *value <= range_.highest))
        fail(number, shown(tokens[i]) + " is not within " + formatGeneral(range_.lowest) + " to " +
                         formatGeneral(range_.highest));
      values[i] = *value;
    }
    return values;
  }

  [[noreturn]] void fail(int line, const std::string& what) const {
    throw FileError(std::string(name_) + ", line " + std::to_string(line) + ": " + what +
                    "; a chart file is 24 lines of three numbers with blanks between them");
  }

 private:
  std::string_view name_;
  NumberRange range_;
};

}  // namespace

std::optional<std::string> readChartBytes(const std::filesystem::path& file) {
  const std::unique_ptr<std::FILE, CloseFile> stream(std::fopen(file.c_str(), "r"));
  if (!stream) return std::nullopt;
  std::string bytes(kMaxChartBytes + 1, '\0');
  bytes.resize(std::fread(bytes.data(), 1, bytes.size(), stream.get()));
  if (std::ferror(stream.get())) return std::nullopt;
  return bytes;
}

int scanChartText(std::string_view text, PatchTable& rows) {
  int count = 0;
  for (const auto line : splitLines(withoutMark(text))) {
    if (count == kPatchCount) break;
    const auto row = scanRow(line);
    if (!row) break;
    rows[static_cast<std::size_t>(count++)] = *row;
  }
  return count;
}

PatchTable parseChartText(std::string_view text, std::string_view name, NumberRange range) {
  const StrictReader reader(name, range);
  const auto lines = splitLines(withoutMark(text));
  PatchTable rows;
  int number = 0;
  for (const auto line : lines) {
    ++number;
    if (number <= kPatchCount)
      rows[static_cast<std::size_t>(number) - 1] = reader.row(line, number);
    else if (line.find_first_not_of(kBlanks) != std::string_view::npos)
      reader.fail(number, "more text after the 24th line");
  }
  if (number < kPatchCount) reader.fail(number + 1, "the file has ended");
  return rows;
}

std::string formatChartText(const PatchTable& rows) {
  std::string text;
  for (const auto& row : rows)
    text +=
        formatGeneral(row[0]) + ' ' + formatGeneral(row[1]) + ' ' + formatGeneral(row[2]) + '\n';
  return text;
}

}  // namespace greycard
