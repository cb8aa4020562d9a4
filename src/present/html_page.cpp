#include "html_page.h"

#include <cstddef>
#include <cstdint>

namespace greycard::present {
namespace {

// RFC 4648, section 4.
std::string base64(const std::vector<std::uint8_t>& bytes) {
  constexpr char kDigits[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
  std::string text;
  text.reserve((bytes.size() + 2) / 3 * 4);
  for (std::size_t i = 0; i < bytes.size(); i += 3) {
    std::uint32_t group = 0;
    for (std::size_t k = 0; k < 3; ++k)
      group = group << 8 | (i + k < bytes.size() ? bytes[i + k] : 0u);
    for (std::size_t k = 0; k < 4; ++k)
      text += i + k > bytes.size() ? '=' : kDigits[group >> (18 - 6 * k) & 63];
  }
  return text;
}

constexpr std::string_view kStyle = R"(
body { font: 15px/1.45 system-ui, sans-serif; color: #222; background: #fff; margin: 2em auto;
       max-width: 62em; padding: 0 1em; }
h1 { font-size: 1.5em; } h2 { font-size: 1.15em; margin-top: 2em; }
table { border-collapse: collapse; margin: .6em 0; display: block; overflow-x: auto; }
th, td { padding: .15em .7em; text-align: right; border-bottom: 1px solid #ddd; white-space: nowrap; }
th { background: #f3f3f3; } td:first-child, th:first-child { text-align: left; }
img, svg { max-width: 100%; height: auto; }
.side { display: flex; flex-wrap: wrap; gap: 1.5em; align-items: flex-start; }
.warning { background: #fff3cd; border-left: 4px solid #d39e00; padding: .4em .8em; margin: .4em 0; }
.note { color: #666; }
)";

}  // namespace

std::string htmlEscape(std::string_view text) {
  std::string escaped;
  for (const char c : text) {
    switch (c) {
      case '&':
        escaped += "&amp;";
        break;
      case '<':
        escaped += "&lt;";
        break;
      case '>':
        escaped += "&gt;";
        break;
      case '"':
        escaped += "&quot;";
        break;
      default:
        escaped += c;
    }
  }
  return escaped;
}

std::string htmlImage(const Picture& picture, std::string_view description) {
  return "<img alt=\"" + htmlEscape(description) + "\" src=\"data:image/png;base64," +
         base64(encodePng(picture)) + "\">\n";
}

std::string htmlTable(const std::vector<std::vector<std::string>>& rows) {
  std::string html = "<table>\n";
  const char* cell = "th";
  for (const auto& row : rows) {
    html += "<tr>";
    for (const auto& text : row) html += std::string("<") + cell + ">" + text + "</" + cell + ">";
    html += "</tr>\n";
    cell = "td";
  }
  return html + "</table>\n";
}

std::string htmlPage(std::string_view title, std::string_view body) {
  std::string html = "<!DOCTYPE html>\n<html lang=\"en\">\n<head>\n<meta charset=\"utf-8\">\n";
  html += "<meta name=\"viewport\" content=\"width=device-width, initial-scale=1\">\n<title>";
  html += htmlEscape(title);
  html += "</title>\n<style>";
  html += kStyle;
  html += "</style>\n</head>\n<body>\n";
  html += body;
  html += "</body>\n</html>\n";
  return html;
}

}  // namespace greycard::present
