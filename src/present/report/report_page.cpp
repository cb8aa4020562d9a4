#include "report_page.h"

#include "greycard/names.h"
#include "html_page.h"

namespace greycard::present {
namespace {

std::string provenanceSection(const Provenance& provenance) {
  std::string html = "<p>greycard " + htmlEscape(provenance.version);
  if (!provenance.created.empty()) html += ", " + htmlEscape(provenance.created);
  html += "</p>\n";
  if (!provenance.commandLine.empty())
    html += "<p><code>" + htmlEscape(printable(provenance.commandLine)) + "</code></p>\n";
  if (provenance.options.empty()) return html + htmlNote("All options have their default values.");
  std::vector<std::vector<std::string>> rows = {{"option", "value"}};
  for (const auto& [name, value] : provenance.options)
    rows.push_back({htmlEscape(name), htmlEscape(printable(plainValue(value)))});
  return html + htmlTextTable(rows) +
         htmlNote("Options that are not named have their default values.");
}

}  // namespace

std::string reportPage(const ReportHead& head, const std::string& body,
                       const std::optional<Provenance>& provenance) {
  std::string facts;
  for (const std::string& fact : head.facts) facts += (facts.empty() ? "" : " \u00b7 ") + fact;
  std::string html = "<h1>" + htmlEscape(printable(head.title)) + "</h1>\n<p class=\"facts\">" +
                     htmlEscape(printable(facts)) + "</p>\n" + htmlWarnings(head.warnings) + body;
  if (provenance)
    html += htmlSection("How these figures came about", provenanceSection(*provenance));
  return htmlPage(head.title, html);
}

std::string sizeText(const Picture& picture) {
  return std::to_string(picture.width) + " x " + std::to_string(picture.height) + " pixels, " +
         std::to_string(picture.bits) + " bits";
}

}  // namespace greycard::present
