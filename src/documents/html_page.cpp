#include "html_page.h"

#include <cstddef>
#include <cstdint>

#include "greycard/names.h"
#include "svg_colour.h"

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

// Sizes of paper are left to the printer: A4 and Letter both hold what 186 mm do.
constexpr std::string_view kStyle = R"(
:root { color-scheme: light dark; }
* { box-sizing: border-box; }
body { font: 15px/1.5 system-ui, sans-serif; color: var(--ink); background: var(--paper);
       max-width: 1200px; margin: 0 auto; padding: 1.4rem; }
h1 { font-size: 1.5rem; line-height: 1.25; margin: 0 0 .2rem; overflow-wrap: anywhere; }
h2 { font-size: 1.15rem; margin: 2.2rem 0 .7rem; padding-bottom: .2rem;
     border-bottom: 1px solid var(--line); }
h3 { font-size: 1rem; margin: 1.2rem 0 .4rem; }
p { margin: .4rem 0; }
.note, figcaption, .facts { color: var(--soft); font-size: .9em; }
figure { margin: 0; }
figcaption { margin-top: .3rem; }
img, svg { display: block; max-width: 100%; height: auto; }
img { width: 100%; border-radius: 3px; }
.side { display: grid; gap: 1.2rem 1.6rem; align-items: start;
        grid-template-columns: repeat(auto-fit, minmax(min(100%, 27rem), 1fr)); }
.pair { display: grid; gap: .8rem 1.2rem; align-items: start; grid-template-columns: 1fr 1fr; }
.side > *, .pair > * { min-width: 0; }
.wide { overflow-x: auto; }
table { border-collapse: collapse; margin: .4rem 0; font-size: .9em;
        font-variant-numeric: tabular-nums; }
th, td { padding: .2rem .6rem; text-align: right; border-bottom: 1px solid var(--line);
         white-space: nowrap; }
th { background: var(--band); font-weight: 600; white-space: normal; vertical-align: bottom; }
td:first-child, th:first-child { text-align: left; }
table.texts td, table.texts th { text-align: left; white-space: normal; overflow-wrap: anywhere; }
code { font: .92em ui-monospace, monospace; overflow-wrap: anywhere; }
.warning { background: var(--warn); border-left: 4px solid #d39e00; padding: .4rem .8rem; }
.verdict { display: grid; gap: .4rem 2rem; grid-template-columns: auto minmax(0, 1fr);
           align-items: center; background: var(--band); border: 1px solid var(--line);
           border-left: 6px solid var(--grade); border-radius: 4px; padding: 1rem 1.4rem;
           margin: 1rem 0; }
.verdict { --grade: var(--soft); } .good { --grade: #0072b2; } .fair { --grade: #e69f00; } .poor { --grade: #d55e00; }
.verdict .word { font-size: 1.25rem; font-weight: 600; }
.verdict .number { font-size: 3rem; font-weight: 700; line-height: 1.1; }
.plot { font-family: system-ui, sans-serif; }
.plot text:not(.on) { fill: var(--ink); }
.plot .paper { fill: var(--paper); } .plot .band { fill: var(--band); }
.plot .grid { stroke: var(--line); } .plot .zero { stroke: var(--soft); }
.plot .frame, .plot .rim { stroke: var(--soft); }
.plot .f { fill: var(--c); } .plot .k { stroke: var(--c); }
@media (max-width: 640px) {
  body { padding: .8rem; font-size: 14px; }
  .verdict { grid-template-columns: minmax(0, 1fr); padding: .8rem 1rem; }
}
@media print {
  @page { margin: 12mm; }
  body { font-size: 9.5pt; max-width: none; padding: 0; }
  h2 { margin-top: 1.1rem; }
  h1, h2, h3 { break-after: avoid; }
  figure, tr, .wide, .verdict, .warning, .note, svg, img { break-inside: avoid; }
  .side { grid-template-columns: 1fr 1fr; gap: .5rem .8rem; }
  .wide { overflow: visible; }
  table { font-size: 7.5pt; }
  th, td { padding: .1rem .3rem; }
  .side td { white-space: normal; }
  .verdict, th, .warning, svg { print-color-adjust: exact; -webkit-print-color-adjust: exact; }
}
)";

std::string tableOf(const std::vector<std::vector<std::string>>& rows, const char* attributes) {
  std::string html = std::string("<div class=\"wide\"><table") + attributes + ">\n";
  for (std::size_t i = 0; i < rows.size(); ++i) {
    const char *opened = i == 0 ? "<th>" : "<td>", *closed = i == 0 ? "</th>" : "</td>";
    html += i == 0 ? "<thead><tr>" : "<tr>";
    for (const std::string& text : rows[i]) html.append(opened).append(text).append(closed);
    html += i == 0 ? "</tr></thead>\n<tbody>\n" : "</tr>\n";
  }
  return html + "</tbody></table></div>\n";
}

std::string styleSheet() {
  constexpr std::string_view kLight =
      ":root{--paper:#fff;--ink:#1d2127;--soft:#59616d;--line:#dde1e6;--band:#f4f6f8;"
      "--warn:#fff3cd}";
  constexpr std::string_view kDark =
      ":root{--paper:#15181c;--ink:#e8eaed;--soft:#a9b1bc;--line:#3a414a;--band:#1f242a;"
      "--warn:#4a3b0c}";
  return std::string(kLight) + plotColourRules(false) +
         "\n@media screen and (prefers-color-scheme:dark){" + std::string(kDark) +
         plotColourRules(true) + "}" + std::string(kStyle);
}

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

std::string jpegAddress(const Picture& picture) {
  return "data:image/jpeg;base64," + base64(encodeJpeg(picture));
}

std::string htmlPhotograph(const Picture& picture, std::string_view description) {
  return "<img alt=\"" + htmlEscape(description) + "\" width=\"" + std::to_string(picture.width) +
         "\" height=\"" + std::to_string(picture.height) + "\" src=\"" + jpegAddress(picture) +
         "\">\n";
}

std::string htmlTable(const std::vector<std::vector<std::string>>& rows) {
  return tableOf(rows, "");
}

std::string htmlTextTable(const std::vector<std::vector<std::string>>& rows) {
  return tableOf(rows, " class=\"texts\"");
}

std::string htmlKeyFigure(std::string_view name, std::string_view number,
                          std::string_view sentence) {
  return "<div class=\"verdict\">\n<div><div class=\"word\">" + htmlEscape(name) +
         "</div><div class=\"number\">" + htmlEscape(number) + "</div></div>\n<p>" +
         htmlEscape(sentence) + "</p></div>\n";
}

std::string htmlFigure(const std::string& body, std::string_view caption) {
  return "<figure>" + body +
         (caption.empty() ? "" : "<figcaption>" + htmlEscape(caption) + "</figcaption>") +
         "</figure>\n";
}

std::string htmlSideBySide(const std::vector<std::string>& pieces, bool always) {
  std::string html = always ? "<div class=\"pair\">\n" : "<div class=\"side\">\n";
  for (const std::string& piece : pieces) html += "<div>" + piece + "</div>\n";
  return html + "</div>\n";
}

std::string htmlSection(std::string_view title, const std::string& body) {
  return "<section>\n<h2>" + htmlEscape(title) + "</h2>\n" + body + "</section>\n";
}

std::string htmlNote(std::string_view text) {
  return "<p class=\"note\">" + htmlEscape(text) + "</p>\n";
}

std::string htmlWarnings(const std::vector<std::string>& warnings) {
  std::string html;
  for (const std::string& warning : warnings)
    html += "<p class=\"warning\">" + htmlEscape(printable(warning)) + "</p>\n";
  return html;
}

std::string htmlPage(std::string_view title, std::string_view body) {
  std::string html = "<!DOCTYPE html>\n<html lang=\"en\">\n<head>\n<meta charset=\"utf-8\">\n";
  html += "<meta name=\"viewport\" content=\"width=device-width, initial-scale=1\">\n<title>";
  html += htmlEscape(title);
  html += "</title>\n<style>";
  html += styleSheet();
  html += "</style>\n</head>\n<body>\n";
  html += body;
  html += "</body>\n</html>\n";
  return html;
}

}  // namespace greycard::present
