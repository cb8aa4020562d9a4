#pragma once

// Tone curves, as described in docs/gamma_json.md.

#include "describe.h"
#include "greycard/curve_tables.h"
#include "greycard/gamma_import.h"
#include "greycard/jobs/build_curve_lut.h"
#include "greycard/jobs/curve_files.h"
#include "greycard/jobs/degamma_colour.h"
#include "greycard/jobs/reduce_curve.h"
#include "greycard/jobs/show_curve.h"
#include "greycard/jobs/standard_curve.h"

namespace greycard::present {

template <>
struct EnumNames<CurveChannel> {
  static constexpr const char* kKind = "channel";
  static constexpr auto kNames = namesInOrder<CurveChannel>(kCurveChannelNames);
};

template <>
struct EnumNames<LutKind> {
  static constexpr const char* kKind = "kind of table";
  static constexpr auto kNames = namesInOrder<LutKind>(kLutKindNames);
};

template <>
struct EnumNames<StandardCurveKind> {
  static constexpr const char* kKind = "standard curve";
  static constexpr auto kNames = namesInOrder<StandardCurveKind>(kStandardCurveNames);
};

void describe(auto& fields, Like<CurveTables> auto& curve) {
  fields("name", curve.name);
  fields.derived("bits", kCurveBits);
  fields("unified", curve.unified);
  fields("table", curve.channels[0].table);
  fields("points", curve.channels[0].points);
  if (curve.unified) return;
  fields("table_green", curve.channels[1].table);
  fields("table_blue", curve.channels[2].table);
  fields("points_green", curve.channels[1].points);
  fields("points_blue", curve.channels[2].points);
}

void describe(auto& fields, Like<CatalogueCurve> auto& curve) {
  fields("name", curve.name);
  fields("entries", curve.entries);
  fields.derived("bits", kCurveBits);
  fields("unified", curve.unified);
  fields("immutable", curve.immutable);
}

void describe(auto& fields, Like<GammaCatalogueListing> auto& listing) {
  fields("curves", listing.curves);
}

void describe(auto& fields, Like<ShowCurveOptions> auto& options) {
  fields("channel", options.channel);
  fields("points", options.points);
}

void describe(auto& fields, Like<ShownCurve> auto& curve) {
  fields("name", curve.name);
  fields("channel", curve.channel);
  fields.derived("bits", kCurveBits);
  fields("unified", curve.unified);
  fields("immutable", curve.immutable);
  fields("table", curve.table);
  fields("points_are_samples", curve.pointsAreSamples);
  fields("points", curve.points);
}

void describe(auto& fields, Like<CurveLutOptions> auto& options) {
  fields("kind", options.kind);
  fields("channel", options.channel);
  fields.optional("bits", options.bits);
}

void describe(auto& fields, Like<CurveLut> auto& lut) {
  fields("name", lut.name);
  fields("channel", lut.channel);
  fields("kind", lut.kind);
  fields("curve_bits", lut.curveBits);
  fields("values", lut.values);
}

void describe(auto& fields, Like<CurveFileForm> auto& form) {
  fields("file_values", form.values);
  fields("file_bits", form.bits);
}

void describe(auto& fields, Like<CurveExport> auto& exported) {
  describe(fields, exported.curve);
  fields("file", exported.file);
  describe(fields, exported.form);
}

void describe(auto& fields, Like<CurveFileTable> auto& table) {
  fields("channel", table.channel);
  fields("values", table.values);
  fields("bits", table.bits);
}

void describe(auto& fields, Like<GammaImportNote> auto& note) {
  fields("line", note.line);
  fields.optional("column", note.column);
  fields("token", note.token);
  fields("text", note.text);
}

void describe(auto& fields, Like<ImportedCurve> auto& imported) {
  describe(fields, imported.curve);
  fields("file", imported.file);
  fields("file_tables", imported.fileTables);
  fields("notes", imported.notes);
}

void describe(auto& fields, Like<RefusedCurveFile> auto& refused) {
  fields("file", refused.file);
  fields("reason", refused.reason);
  fields("notes", refused.notes);
}

void describe(auto& fields, Like<CurveImportReport> auto& report) {
  fields("curves", report.curves);
  fields("refused", report.refused);
}

void describe(auto& fields, Like<ControlPointReduction> auto& reduction) {
  fields("name", reduction.name);
  fields("channel", reduction.channel);
  fields.derived("bits", kCurveBits);
  fields.optional("within_percent", reduction.withinPercent);
  fields("points", reduction.points);
  fields("largest_deviation", reduction.largestDeviation);
  fields("largest_deviation_index", reduction.largestDeviationIndex);
  fields("table", reduction.table);
  fields("table_through_points", reduction.tableThroughPoints);
}

void describe(auto& fields, Like<StandardCurveOptions> auto& options) {
  fields("name", options.kind);
  fields("nits", options.nits);
}

void describe(auto& fields, Like<StandardCurve> auto& curve) {
  fields("name", curve.kind);
  fields("peak", curve.peak);
  fields.derived("input_bits", StandardCurve::kInputBits);
  fields.derived("output_bits", StandardCurve::kOutputBits);
  fields("inputs", curve.inputs);
  fields("table", curve.table);
}

void describe(auto& fields, Like<DeGammaResult> auto& result) {
  fields("name", result.name);
  fields("colour", result.colour);
  fields("positions", result.positions);
  fields("table_red", result.tables[0]);
  fields("table_green", result.tables[1]);
  fields("table_blue", result.tables[2]);
}

}  // namespace greycard::present
