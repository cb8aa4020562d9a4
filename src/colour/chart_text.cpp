#include "chart_text.h"

#include <algorithm>
#include <cstdio>

#include "file_handle.h"
#include "greycard/errors.h"
#include "text.h"

namespace greycard {
namespace {

constexpr std::string_view kBlanks = " \t\r\v\f";

std::optional<Vector3> scanRow(std::string_view line) {
  Vector3 row;
  for (double& value : row) {
    line.remove_prefix(std::min(line.find_first_not_of(kBlanks), line.size()));
    const auto number = takeDouble(line);
    if (!number) return std::nullopt;
    value = *number;
  }
  return row;
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
  const FileHandle stream(std::fopen(file.c_str(), "r"));
  if (!stream) return std::nullopt;
  std::string bytes(kMaxChartBytes + 1, '\0');
  bytes.resize(std::fread(bytes.data(), 1, bytes.size(), stream.get()));
  if (std::ferror(stream.get())) return std::nullopt;
  return bytes;
}

int scanChartText(std::string_view text, PatchTable& rows) {
  int count = 0;
  for (const auto line : splitLines(withoutByteOrderMark(text))) {
    if (count == kPatchCount) break;
    const auto row = scanRow(line);
    if (!row) break;
    rows[static_cast<std::size_t>(count++)] = *row;
  }
  return count;
}

PatchTable parseChartText(std::string_view text, std::string_view name, NumberRange range) {
  const StrictReader reader(name, range);
  const auto lines = splitLines(withoutByteOrderMark(text));
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
