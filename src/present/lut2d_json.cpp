#include <stdexcept>

#include "greycard/errors.h"
#include "greycard/files.h"
#include "greycard/present/lut2d.h"
#include "json_reader.h"
#include "json_writer.h"
#include "lut2d_fields.h"

namespace greycard::present {

std::string toJson(const Lut2DConfig& table) {
  return documentOf(table);
}
void fromJson(std::string_view text, Lut2DConfig& table) {
  Lut2DConfig read;
  readDocument(text, JsonKind::Document, read);
  checkLut2d(read);
  table = read;
}

Lut2DConfig readLut2d(const std::filesystem::path& file) {
  const std::string text = readWholeFile(file);
  Lut2DConfig table;
  try {
    fromJson(text, table);
  } catch (const std::invalid_argument& error) {
    throw JobError(quoted(file) + " is no hue/saturation table: " + error.what());
  }
  return table;
}

std::string toJson(const Lut2dIdentityOptions& options) {
  return documentOf(options);
}
void fromJson(std::string_view text, Lut2dIdentityOptions& options) {
  readDocument(text, JsonKind::Options, options);
}
std::string toJson(const Lut2dDragOptions& options) {
  return documentOf(options);
}
void fromJson(std::string_view text, Lut2dDragOptions& options) {
  readDocument(text, JsonKind::Options, options);
}
std::string toJson(const Lut2dDragReport& report) {
  return documentOf(report);
}
void fromJson(std::string_view text, Lut2dDragReport& report) {
  readFresh(text, report);
}

std::string toJson(const Lut2dSummary& summary) {
  return documentOf(summary);
}
void fromJson(std::string_view text, Lut2dSummary& summary) {
  readFresh(text, summary);
}

std::string toJson(const Lut2dApplyOptions& options) {
  return documentOf(options);
}
void fromJson(std::string_view text, Lut2dApplyOptions& options) {
  readDocument(text, JsonKind::Options, options);
}
std::string toJson(const Lut2dApplyReport& report) {
  return documentOf(report);
}
void fromJson(std::string_view text, Lut2dApplyReport& report) {
  readFresh(text, report);
}

std::string toJson(const Lut2dInverseReport& report) {
  return documentOf(report);
}
void fromJson(std::string_view text, Lut2dInverseReport& report) {
  readFresh(text, report);
}

}  // namespace greycard::present
