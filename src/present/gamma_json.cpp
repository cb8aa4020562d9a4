#include "gamma_fields.h"
#include "greycard/present/gamma.h"
#include "json_reader.h"
#include "json_writer.h"

namespace greycard::present {

std::string toJson(const CurveTables& curve) {
  return documentOf(curve);
}
void fromJson(std::string_view text, CurveTables& curve) {
  readFresh(text, curve);
}

std::string toJson(const GammaCatalogueListing& listing) {
  return documentOf(listing);
}
void fromJson(std::string_view text, GammaCatalogueListing& listing) {
  readFresh(text, listing);
}

std::string toJson(const ShowCurveOptions& options) {
  return documentOf(options);
}
void fromJson(std::string_view text, ShowCurveOptions& options) {
  readDocument(text, JsonKind::Options, options);
}
std::string toJson(const ShownCurve& curve) {
  return documentOf(curve);
}
void fromJson(std::string_view text, ShownCurve& curve) {
  readFresh(text, curve);
}

std::string toJson(const CurveLutOptions& options) {
  return documentOf(options);
}
void fromJson(std::string_view text, CurveLutOptions& options) {
  readDocument(text, JsonKind::Options, options);
}
std::string toJson(const CurveLut& lut) {
  return documentOf(lut);
}
void fromJson(std::string_view text, CurveLut& lut) {
  readFresh(text, lut);
}

std::string toJson(const CurveFileForm& form) {
  return documentOf(form);
}
void fromJson(std::string_view text, CurveFileForm& form) {
  readDocument(text, JsonKind::Options, form);
}
std::string toJson(const CurveExport& exported) {
  return documentOf(exported);
}
void fromJson(std::string_view text, CurveExport& exported) {
  readFresh(text, exported);
}

std::string toJson(const CurveImportReport& report) {
  return documentOf(report);
}
void fromJson(std::string_view text, CurveImportReport& report) {
  readFresh(text, report);
}

std::string toJson(const ControlPointReduction& reduction) {
  return documentOf(reduction);
}
void fromJson(std::string_view text, ControlPointReduction& reduction) {
  readFresh(text, reduction);
}

std::string toJson(const StandardCurveOptions& options) {
  return documentOf(options);
}
void fromJson(std::string_view text, StandardCurveOptions& options) {
  readDocument(text, JsonKind::Options, options);
}
std::string toJson(const StandardCurve& curve) {
  return documentOf(curve);
}
void fromJson(std::string_view text, StandardCurve& curve) {
  readFresh(text, curve);
}

std::string toJson(const DeGammaResult& result) {
  return documentOf(result);
}
void fromJson(std::string_view text, DeGammaResult& result) {
  readFresh(text, result);
}

}  // namespace greycard::present
