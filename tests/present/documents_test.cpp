// The pieces that all our documents are made of.

#include <gmock/gmock.h>

#include <array>
#include <cmath>
#include <cstdlib>
#include <set>
#include <stdexcept>

#include "greycard/picture.h"
#include "greycard/present/provenance.h"
#include "html_page.h"
#include "json_text.h"
#include "svg_colour.h"

namespace greycard::present {
namespace {

using testing::HasSubstr;

// RFC 4648, section 4.
std::vector<std::uint8_t> base64Decoded(const std::string& text) {
  const std::string digits = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
  std::vector<std::uint8_t> bytes;
  unsigned waiting = 0;
  int bits = 0;
  for (const char c : text.substr(0, text.find('='))) {
    waiting = waiting << 6 | static_cast<unsigned>(digits.find(c));
    if ((bits += 6) >= 8) bytes.push_back(static_cast<std::uint8_t>(waiting >> (bits -= 8)));
  }
  return bytes;
}

TEST(JpegAddress, IsThePicturesBytes) {
  std::set<std::size_t> remainders;
  for (int width = 8; width < 60; ++width) {
    Picture picture(width, 9, 3, 8);
    for (std::size_t i = 0; i < picture.samples.size(); ++i)
      picture.samples[i] = static_cast<std::uint16_t>(i * 37 % 251);
    const std::string address = jpegAddress(picture), head = "data:image/jpeg;base64,";
    ASSERT_TRUE(address.starts_with(head));
    const std::vector<std::uint8_t> bytes = encodeJpeg(picture);
    EXPECT_EQ((address.size() - head.size()) % 4, 0U);
    EXPECT_EQ(base64Decoded(address.substr(head.size())), bytes) << width;
    remainders.insert(bytes.size() % 3);
  }
  EXPECT_EQ(remainders.size(), 3U);
}

TEST(Html, TablesAndFiguresAreWhole) {
  EXPECT_EQ(htmlEscape("a<b>&\"c\""), "a&lt;b&gt;&amp;&quot;c&quot;");
  EXPECT_EQ(htmlTable({{"a", "b"}, {"1", "2"}}),
            "<div class=\"wide\"><table>\n<thead><tr><th>a</th><th>b</th></tr></thead>\n<tbody>\n"
            "<tr><td>1</td><td>2</td></tr>\n</tbody></table></div>\n");
  EXPECT_THAT(htmlTextTable({{"a"}}), HasSubstr("<table class=\"texts\">"));
  EXPECT_THAT(htmlFigure("<x>", "c"), HasSubstr("<figcaption>c</figcaption>"));
  EXPECT_THAT(htmlFigure("<x>"), testing::Not(HasSubstr("figcaption")));
  EXPECT_THAT(htmlSideBySide({"<x>", "<y>"}, true), HasSubstr("\"pair\""));
  EXPECT_THAT(htmlSideBySide({"<x>", "<y>"}), HasSubstr("\"side\""));
}

TEST(JsonText, IsIndentedWithRowsOfNumbersInOneLine) {
  Json json;
  json["name"] = "\u66f2 \"x\"";
  json["matrix"] = {{1, 2.5}, {0.1, NAN}};
  json["mixed"] = {1, "a"};
  json["none"] = Json::array();
  json["inner"]["b"] = true;
  json["empty"] = Json::object();
  EXPECT_EQ(jsonText(json), R"({
  "name": ")"
                            "\u66f2"
                            R"( \"x\"",
  "matrix": [
    [1,2.5],
    [0.1,null]
  ],
  "mixed": [
    1,
    "a"
  ],
  "none": [],
  "inner": {
    "b": true
  },
  "empty": {}
}
)");
  EXPECT_EQ(jsonText("\xFF"), "\"\uFFFD\"\n");
}

TEST(ParsedJson, TellsWhereATextGoesWrong) {
  const auto refusal = [](const std::string& text) -> std::string {
    try {
      parsedJson(text);
    } catch (const std::invalid_argument& error) {
      return error.what();
    }
    return "";
  };
  const auto nested = [](std::size_t depth) {
    return std::string(depth, '[') + std::string(depth, ']');
  };
  EXPECT_EQ(refusal(nested(64)), "");
  EXPECT_THAT(refusal(nested(65)), HasSubstr("more than 64 levels"));
  EXPECT_EQ(refusal("[\"" + std::string(100, '[') + "\\\"" + std::string(100, '{') + "\"]"), "");
  EXPECT_EQ(refusal("[" + std::string(80, ' ') + "[1],[2],{\"a\":[3]}]"), "");
  std::string wide = "[0";
  for (int i = 0; i < 80; ++i) wide += ",[1],{}";
  EXPECT_EQ(refusal(wide + "]"), "");
  EXPECT_THAT(refusal("x"), HasSubstr("line 1, column 1 "));
  EXPECT_THAT(refusal("{\n \"a\": ]"), HasSubstr("line 2, column 7 "));
  EXPECT_THAT(refusal("[1,\n2,\n\n3 4]"), HasSubstr("line 4, column 3 "));
  EXPECT_THAT(refusal("[1e999]"), HasSubstr("too large"));
  EXPECT_THAT(refusal(""), HasSubstr("empty"));
}

struct Epoch {
  static constexpr const char* kName = "SOURCE_DATE_EPOCH";
  const std::string before = std::getenv(kName) != nullptr ? std::getenv(kName) : "";
  explicit Epoch(const char* seconds) { ::setenv(kName, seconds, 1); }
  ~Epoch() { before.empty() ? ::unsetenv(kName) : ::setenv(kName, before.c_str(), 1); }
};

TEST(Provenance, TheTimeIsThatOfTheEnvironment) {
  for (const auto& [seconds, time] : {std::pair{"0", "1970-01-01T00:00:00Z"},
                                      {"951868799", "2000-02-29T23:59:59Z"},
                                      {"253402300799", "9999-12-31T23:59:59Z"}})
    EXPECT_EQ((Epoch(seconds), provenanceNow().created), time);
  for (const char* seconds : {"", "x", "-1", "253402300800"})  // left to the clock
    EXPECT_THAT((Epoch(seconds), provenanceNow().created),
                testing::AllOf(testing::Gt("2020"), testing::Lt("9")));
}

TEST(Provenance, TellsOfTheOptionsThatDiffer) {
  const auto changed = changedOptions(R"({"a": 1, "b": "x", "c": [1, 2], "d": {}})",
                                      R"({"a": 1, "b": "y", "c": [1, 3], "e": 4})");
  const std::string head = R"({"greycard":"9","created":"now",)";
  const auto line = [](const std::string& text) { return parsedJson(text).dump(); };
  EXPECT_EQ(line(stamped("{\n  \"x\": 1\n}\n", {"9", "now", "run", changed})),
            head + R"("command":"run","options":{"b":"x","c":[1,2],"d":{}},"x":1})");
  EXPECT_EQ(line(stamped("{\n  \"options\": {},\n  \"x\": 1\n}\n", {"9", "now", "", changed})),
            head + R"("options":{},"x":1})");
  EXPECT_THROW(changedOptions("[1]", "{}"), std::invalid_argument);
  EXPECT_EQ(plainValue(R"([1, ["a", 2.5], true])"), "1, a, 2.5, true");
  EXPECT_EQ(plainValue("\"x, y\"") + plainValue("[]") + plainValue("{\"a\": 2}"), "x, y{\"a\": 2}");
}

TEST(HexColour, ClipsAndKnowsLab) {
  EXPECT_EQ(hexColour({0.0, 1.0, 0.5}), "#00ff80");
  EXPECT_EQ(hexColour({-1.0, 7.0, NAN}), "#00ff00");
  // IEC 61966-2-1: the primaries and white in CIE L*a*b* under D65.
  EXPECT_EQ(hexColourOfLab({100, 0, 0}), "#ffffff");
  EXPECT_EQ(hexColourOfLab({53.2408, 80.0925, 67.2032}), "#ff0000");
  EXPECT_EQ(hexColourOfLab({87.7347, -86.1827, 83.1793}), "#00ff00");
  EXPECT_EQ(hexColourOfLab({32.2970, 79.1875, -107.8602}), "#0000ff");
  EXPECT_EQ(hexColourOfLab({0, 0, 0}), "#000000");
  EXPECT_EQ(plotColour(1).hex, plotColour(7).hex);
  EXPECT_NE(plotColour(0).hex, plotColour(5).hex);
  for (const bool dark : {true, false})
    EXPECT_THAT(plotColourRules(dark), HasSubstr(plotColour(2).role));
  EXPECT_NE(plotColourRules(true), plotColourRules(false));
}

}  // namespace
}  // namespace greycard::present
