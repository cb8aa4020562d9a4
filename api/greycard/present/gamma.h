#pragma once
/// \file
/// \ingroup own

#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "greycard/curve_tables.h"
#include "greycard/gamma_curve.h"
#include "greycard/jobs/build_curve_lut.h"
#include "greycard/jobs/curve_files.h"
#include "greycard/jobs/degamma_colour.h"
#include "greycard/jobs/reduce_curve.h"
#include "greycard/jobs/show_curve.h"
#include "greycard/jobs/standard_curve.h"
#include "greycard/present/export.h"

namespace greycard::present {

// Tone curves as JSON, which reads back to the same bits, and as plots.
//
// fromJson reads options as people write them (a field that is left out keeps its default, an
// unknown one is refused) and results as toJson wrote them. It throws std::invalid_argument with a
// sentence that begins with the field, and leaves the value as it was then.

GREYCARD_PRESENT_EXPORT std::string toJson(const CurveTables& curve);
GREYCARD_PRESENT_EXPORT void fromJson(std::string_view text, CurveTables& curve);
GREYCARD_PRESENT_EXPORT std::string toJson(const GammaCatalogueListing& listing);
GREYCARD_PRESENT_EXPORT void fromJson(std::string_view text, GammaCatalogueListing& listing);

GREYCARD_PRESENT_EXPORT std::string toJson(const ShowCurveOptions& options);
GREYCARD_PRESENT_EXPORT void fromJson(std::string_view text, ShowCurveOptions& options);
GREYCARD_PRESENT_EXPORT std::string toJson(const ShownCurve& curve);
GREYCARD_PRESENT_EXPORT void fromJson(std::string_view text, ShownCurve& curve);

GREYCARD_PRESENT_EXPORT std::string toJson(const CurveLutOptions& options);
GREYCARD_PRESENT_EXPORT void fromJson(std::string_view text, CurveLutOptions& options);
GREYCARD_PRESENT_EXPORT std::string toJson(const CurveLut& lut);
GREYCARD_PRESENT_EXPORT void fromJson(std::string_view text, CurveLut& lut);

GREYCARD_PRESENT_EXPORT std::string toJson(const CurveFileForm& form);
GREYCARD_PRESENT_EXPORT void fromJson(std::string_view text, CurveFileForm& form);
GREYCARD_PRESENT_EXPORT std::string toJson(const CurveExport& exported);
GREYCARD_PRESENT_EXPORT void fromJson(std::string_view text, CurveExport& exported);
GREYCARD_PRESENT_EXPORT std::string toJson(const CurveImportReport& report);
GREYCARD_PRESENT_EXPORT void fromJson(std::string_view text, CurveImportReport& report);

GREYCARD_PRESENT_EXPORT std::string toJson(const ControlPointReduction& reduction);
GREYCARD_PRESENT_EXPORT void fromJson(std::string_view text, ControlPointReduction& reduction);

GREYCARD_PRESENT_EXPORT std::string toJson(const StandardCurveOptions& options);
GREYCARD_PRESENT_EXPORT void fromJson(std::string_view text, StandardCurveOptions& options);
GREYCARD_PRESENT_EXPORT std::string toJson(const StandardCurve& curve);
GREYCARD_PRESENT_EXPORT void fromJson(std::string_view text, StandardCurve& curve);

GREYCARD_PRESENT_EXPORT std::string toJson(const DeGammaResult& result);
GREYCARD_PRESENT_EXPORT void fromJson(std::string_view text, DeGammaResult& result);

// Plots as SVG. Another curve can be drawn behind in dashes (comparisonCurve): each input and
// output is drawn as a part of full scale then, whatever the curve's entries and bits.

/// The shown channel with its points or samples, over the proportional line.
GREYCARD_PRESENT_EXPORT std::string curvePlot(const ShownCurve& curve,
                                              const std::optional<CurveTables>& against = {});
/// A curve's one table, or three, each with its control points.
GREYCARD_PRESENT_EXPORT std::string curvePlot(const CurveTables& curve,
                                              const std::optional<CurveTables>& against = {});
/// What showCurve showed of a curve: all three tables at once where it has three and none was
/// chosen.
GREYCARD_PRESENT_EXPORT std::string curvePlot(const GammaCurve& curve, const ShownCurve& shown,
                                              const std::optional<CurveTables>& against = {});
/// One curve as above; of several the tables without points, or those of each channel with them.
GREYCARD_PRESENT_EXPORT std::string curvePlot(const CurveImportReport& report,
                                              const std::optional<CurveTables>& against = {});
/// The table, the points and the curve through them.
GREYCARD_PRESENT_EXPORT std::string curvePlot(const ControlPointReduction& reduction,
                                              const std::optional<CurveTables>& against = {});
/// The codes over light.
GREYCARD_PRESENT_EXPORT std::string curvePlot(const StandardCurve& curve,
                                              const std::optional<CurveTables>& against = {});
/// \param curve  the one that the colour was looked up in
GREYCARD_PRESENT_EXPORT std::string curvePlot(const DeGammaResult& result, const CurveTables& curve,
                                              const std::optional<CurveTables>& against = {});

}  // namespace greycard::present
