#pragma once
/// \file
/// \ingroup own

#include <filesystem>
#include <string>
#include <string_view>

#include "greycard/jobs/apply_lut2d.h"
#include "greycard/jobs/invert_lut2d.h"
#include "greycard/lut2d_table.h"
#include "greycard/present/export.h"

namespace greycard::present {

// Hue/saturation tables as JSON, which reads back to the same bits, and as a wheel.
//
// fromJson reads options as people write them (a field that is left out keeps its default, an
// unknown one is refused) and results as toJson wrote them. It throws std::invalid_argument with a
// sentence that begins with the field, and leaves the value as it was then.

/// The table with every field under its own name; the changes as 24 lists of 16 numbers.
GREYCARD_PRESENT_EXPORT std::string toJson(const Lut2DConfig& table);
/// Every field must be there, and none else. \throws std::invalid_argument also as checkLut2d
GREYCARD_PRESENT_EXPORT void fromJson(std::string_view text, Lut2DConfig& table);
/// The table of a file. \throws FileError; JobError that names the file and what is wrong with it
GREYCARD_PRESENT_EXPORT Lut2DConfig readLut2d(const std::filesystem::path& file);

GREYCARD_PRESENT_EXPORT std::string toJson(const Lut2dIdentityOptions& options);
GREYCARD_PRESENT_EXPORT void fromJson(std::string_view text, Lut2dIdentityOptions& options);

GREYCARD_PRESENT_EXPORT std::string toJson(const Lut2dDragOptions& options);
GREYCARD_PRESENT_EXPORT void fromJson(std::string_view text, Lut2dDragOptions& options);
GREYCARD_PRESENT_EXPORT std::string toJson(const Lut2dDragReport& report);
GREYCARD_PRESENT_EXPORT void fromJson(std::string_view text, Lut2dDragReport& report);

GREYCARD_PRESENT_EXPORT std::string toJson(const Lut2dSummary& summary);
GREYCARD_PRESENT_EXPORT void fromJson(std::string_view text, Lut2dSummary& summary);

GREYCARD_PRESENT_EXPORT std::string toJson(const Lut2dApplyOptions& options);
GREYCARD_PRESENT_EXPORT void fromJson(std::string_view text, Lut2dApplyOptions& options);
GREYCARD_PRESENT_EXPORT std::string toJson(const Lut2dApplyReport& report);
GREYCARD_PRESENT_EXPORT void fromJson(std::string_view text, Lut2dApplyReport& report);

GREYCARD_PRESENT_EXPORT std::string toJson(const Lut2dInverseReport& report);
GREYCARD_PRESENT_EXPORT void fromJson(std::string_view text, Lut2dInverseReport& report);

/// The table as a wheel in SVG: hue round the centre, saturation outward, each node in its colour
/// (at half lightness) with an arrow to where its change takes that colour.
/// \param name  the table's file, for the title; may be empty
GREYCARD_PRESENT_EXPORT std::string lut2dWheel(const Lut2DConfig& table,
                                               const std::string& name = {});

/// AppliedLut2d::comparison with "before" and "after" written above the two pictures.
GREYCARD_PRESENT_EXPORT Picture labelledComparison(const AppliedLut2d& applied);

}  // namespace greycard::present
