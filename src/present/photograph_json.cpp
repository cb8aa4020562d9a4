#include <variant>
#include <vector>

#include "chart_fields.h"
#include "greycard/present/fit_file.h"
#include "greycard/present/photograph.h"
#include "json_reader.h"
#include "json_writer.h"

// As described in docs/photograph_json.md.

namespace greycard::present {
namespace {

struct AppliedFits {
  std::vector<AppliedFit> photographs;
};

}  // namespace

void describe(auto& fields, Like<PhotographInfo> auto& info) {
  fields("file", info.file);
  fields("format", info.format);
  fields("width", info.width);
  fields("height", info.height);
  fields("channels", info.channels);
  fields("bits", info.bits);
  fields("encoding", info.levels.encoding);
  fields("black_level", info.levels.blackLevel);
  fields("white_level", info.levels.whiteLevel);
  fields.optional("capture", info.capture);
  fields("warnings", info.warnings);
}

void describe(auto& fields, Like<AppliedFit> auto& applied) {
  fields("photo", applied.photo);
  fields("output", applied.output);
  fields("failure", applied.failure);
  fields("warnings", applied.warnings);
}

void describe(auto& fields, Like<AppliedFits> auto& applied) {
  fields("photographs", applied.photographs);
}

std::string toJson(const PhotographInfo& info) {
  return documentOf(info);
}
void fromJson(std::string_view text, PhotographInfo& info) {
  readFresh(text, info);
}

std::string toJson(std::span<const AppliedFit> applied) {
  return documentOf(AppliedFits{{applied.begin(), applied.end()}});
}

FittedPipeline readFittedPipeline(const std::filesystem::path& file) {
  return std::visit([](const auto& fit) { return pipelineOf(fit); }, readFit(file));
}

}  // namespace greycard::present
