#pragma once

// Hue/saturation tables, as described in docs/lut2d_json.md.

#include <array>

#include "describe.h"
#include "greycard/jobs/apply_lut2d.h"
#include "greycard/jobs/invert_lut2d.h"
#include "greycard/lut2d_table.h"

namespace greycard::present {

void describe(auto& fields, Like<Lut2DConfig> auto& table) {
  fields("enabled", table.enabled);
  fields("hs_lut_bank_sel", table.hs_lut_bank_sel);
  fields("lut_1d_h", table.lut_1d_h);
  fields("lut_1d_s", table.lut_1d_s);
  fields("lut_2d_h", inRows<kLut2dSatColumns>(table.lut_2d_h));
  fields("lut_2d_s", inRows<kLut2dSatColumns>(table.lut_2d_s));
  fields("h_shift", table.h_shift);
  fields("s_shift", table.s_shift);
  fields("l_boundary_start_a", table.l_boundary_start_a);
  fields("l_boundary_start_b", table.l_boundary_start_b);
  fields("l_boundary_end_a", table.l_boundary_end_a);
  fields("l_boundary_end_b", table.l_boundary_end_b);
  fields("y_blend_factor", table.y_blend_factor);
  fields("K_b_integer", table.K_b_integer);
  fields("K_r_integer", table.K_r_integer);
  fields("l_boundary_start_inv", table.l_boundary_start_inv);
  fields("l_boundary_end_inv", table.l_boundary_end_inv);
  fields("inverse_flag", table.inverse_flag);
}

void describe(auto& fields, Like<Lut2dIdentityOptions> auto& options) {
  fields("fade", options.fade);
  fields("y_blend", options.yBlend);
  fields("h_shift", options.hShift);
  fields("s_shift", options.sShift);
}

void describe(auto& fields, Like<Lut2dDragOptions> auto& options) {
  fields("at_hue_deg", options.atHueDeg);
  fields("at_saturation", options.atSat);
  fields("by_hue_deg", options.byHueDeg);
  fields("by_saturation", options.bySat);
  fields("range_rows", options.rangeRows);
  fields("range_columns", options.rangeColumns);
  fields("keep_node", options.keepNode);
}

void describe(auto& fields, Like<Lut2dDragReport> auto& report) {
  fields("row", report.node.row);
  fields("column", report.node.column);
  fields("hue_deg", report.hueDeg);
  fields("saturation", report.sat);
  fields("moved_nodes", report.movedNodes);
  fields("cut_nodes", report.cutNodes);
}

void describe(auto& fields, Like<Lut2dSummary> auto& summary) {
  fields.derived("nodes", kLut2dNodes);
  fields("changed_nodes", summary.changedNodes);
  fields("largest_hue_change_deg", summary.largestHueChangeDeg);
  fields("largest_saturation_change", summary.largestSatChange);
  fields("cut_nodes", summary.cutNodes);
  fields("table", summary.table);
}

void describe(auto& fields, Like<Lut2dApplyOptions> auto& options) {
  fields.optional("bits", options.bits);
}

void describe(auto& fields, Like<Lut2dApplyReport> auto& report) {
  fields("photo", report.photo);
  fields("lut", report.lut);
  fields("white_level", report.whiteLevel);
  fields("pixels", report.pixels);
  fields("changed_pixels", report.changedPixels);
}

void describe(auto& fields, Like<Lut2dInverseReport> auto& report) {
  fields("uncovered_nodes", report.uncoveredNodes);
  fields("mean_hue_error_deg", report.roundTrip.hueDeg.mean);
  fields("worst_hue_error_deg", report.roundTrip.hueDeg.worst);
  fields("mean_saturation_error", report.roundTrip.sat.mean);
  fields("worst_saturation_error", report.roundTrip.sat.worst);
}

}  // namespace greycard::present
