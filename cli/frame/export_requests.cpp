#include "export_requests.h"

#include <algorithm>
#include <stdexcept>

#include "command.h"
#include "greycard/files.h"
#include "greycard/names.h"

namespace greycard::cli {
namespace {

std::string noteText(const std::string& kind, const std::vector<std::string>& notes) {
  std::string text = " (" + kind + ")";
  for (std::size_t i = 0; i < notes.size(); ++i) text += (i == 0 ? ": " : "; ") + notes[i];
  return text;
}

exchange::Exported updated(const std::filesystem::path& file, const exchange::Material& material) {
  const std::string text = readWholeFile(file);
  try {
    return exchange::updatedTuning(text, material);
  } catch (const JobError& error) {
    throw JobError("can't update " + quoted(file) + ": " + error.what());
  }
}

}  // namespace

void ExportRequests::addTo(CLI::App& app, exchange::MaterialKind kind) {
  m_kind = kind;
  CLI::Option_group& group = *app.add_option_group("Export");
  group
      .add_option("--export", m_words,
                  "File for another program, may be given again; formats: " +
                      listed(exchange::formatNames(kind)))
      ->type_name("FORMAT=FILE")
      ->expected(1)
      ->multi_option_policy(CLI::MultiOptionPolicy::TakeAll);
  const bool isFit = kind == exchange::MaterialKind::Fit;
  if (isFit || kind == exchange::MaterialKind::Curve)
    group
        .add_option("--update", m_update,
                    "Tuning file (rpi or libcamera) in which to put matrix and tone curve, "
                    "leaving all else")
        ->type_name("FILE");
  group
      .add_option("--camera", m_options.camera,
                  isFit ? "The camera's name as its raw files tell it"
                        : "What the names in a C header begin with")
      ->type_name("NAME");
  if (isFit)
    group.add_flag("--export-linear", m_options.linearInput,
                   "3D LUT and profile take linear RGB, not RGB through the sRGB transfer");
}

void ExportRequests::nameFiles(JobFiles& files, std::size_t lights) {
  for (const std::string& word : m_words) {
    const std::size_t sign = word.find('=');
    if (sign == std::string::npos || sign == 0 || sign + 1 == word.size())
      throw UsageError("--export wants FORMAT=FILE, not \"" + word +
                       "\"; formats: " + listed(exchange::formatNames(m_kind)));
    Request request{word.substr(0, sign), word.substr(sign + 1)};
    try {
      exchange::checkFormat(request.format, m_kind, lights);
    } catch (const std::invalid_argument& error) {
      throw UsageError(std::string("--export: ") + error.what());
    } catch (const JobError& error) {
      throw UsageError(std::string("--export: ") + error.what());
    }
    files.output("--export " + request.format, request.file);
    m_wanted.push_back(std::move(request));
  }
  files.output("--update", m_update);
}

bool ExportRequests::asksFor(const std::vector<std::string>& formats) const {
  return std::ranges::any_of(m_wanted, [&](const Request& request) {
    return std::ranges::find(formats, request.format) != formats.end();
  });
}

void ExportRequests::write(JobFiles& files, const exchange::Material& material) const {
  struct Output {
    const std::filesystem::path& file;
    std::string kind;
    exchange::Exported exported;
  };
  std::vector<Output> outputs;  // all of them before any is written
  for (const auto& [format, file] : m_wanted)
    outputs.push_back({file, format, exchange::exportAs(format, material, m_options)});
  if (!m_update.empty()) outputs.push_back({m_update, "updated", updated(m_update, material)});
  for (const auto& [file, kind, exported] : outputs)
    files.write(file, exported.bytes, noteText(kind, exported.notes));
}

}  // namespace greycard::cli
