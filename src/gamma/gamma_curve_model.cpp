#include "greycard/gamma_curve_model.h"

#include "builtin_curves.h"
#include "control_point_reduction.h"
#include "gamma_curve_collection.h"
#include "gamma_model_state.h"
#include "gamma_table.h"

namespace greycard {

GammaCurveModel::GammaCurveModel(bool bAutoPopulate)
    : m_state(std::make_shared<GammaModelState>()),
      m_Curves(std::make_unique<GammaCurveCollection>()) {
  if (!bAutoPopulate) return;
  for (const BuiltinCurve& builtin : builtinCurves())
    m_Curves->Add(std::make_shared<GammaCurve>(builtin.name, *this, builtin.table));
}

GammaCurveModel::GammaCurveModel(GammaCurveModel&&) noexcept = default;
GammaCurveModel& GammaCurveModel::operator=(GammaCurveModel&&) noexcept = default;
GammaCurveModel::~GammaCurveModel() = default;

std::int32_t GammaCurveModel::GammaBitSize() const {
  return m_state->GammaBitSize;
}
void GammaCurveModel::SetGammaBitSize(std::int32_t bits) {
  m_state->GammaBitSize = bits;
}
bool GammaCurveModel::RGBGamma() const {
  return m_state->RGBGamma;
}
void GammaCurveModel::SetRGBGamma(bool perChannel) {
  m_state->RGBGamma = perChannel;
}
std::int32_t GammaCurveModel::XScale() const {
  return m_state->XScale;
}
void GammaCurveModel::SetXScale(std::int32_t scale) {
  m_state->XScale = scale;
}
std::int32_t GammaCurveModel::YScale() const {
  return m_state->YScale;
}
void GammaCurveModel::SetYScale(std::int32_t scale) {
  m_state->YScale = scale;
}
std::int32_t GammaCurveModel::MaxY() const {
  return m_state->MaxY;
}
void GammaCurveModel::SetMaxY(std::int32_t maxY) {
  m_state->MaxY = maxY;
}

GammaCurvePtr GammaCurveModel::GetGammaCurveByIndex(std::int32_t index) const {
  if (index < 0 || static_cast<std::size_t>(index) >= m_Curves->size()) return nullptr;
  return (*m_Curves)[static_cast<std::size_t>(index)];
}

GammaCurvePtr GammaCurveModel::GetGammaCurveByName(OptionalText name) const {
  return name ? m_Curves->Find(*name) : nullptr;
}

std::vector<std::string> GammaCurveModel::GetNames() const {
  std::vector<std::string> names;
  names.reserve(m_Curves->size());
  for (const GammaCurvePtr& curve : *m_Curves) names.push_back(curve->Name());
  return names;
}

std::optional<std::string> GammaCurveModel::GetCurrent(OptionalText) const {
  return std::nullopt;
}

GammaCurvePtr GammaCurveModel::GetCurrentCurve(OptionalText lightLevel) const {
  return GetGammaCurveByName(lightLevel);
}

GammaCurvePtr GammaCurveModel::append(GammaCurvePtr curve) {
  curve->SetIsDirty(true);
  m_Curves->Add(curve);
  return curve;
}

GammaCurvePtr GammaCurveModel::AddGammaCurve(TextView name) {
  if (m_Curves->Contains(name)) return nullptr;
  return append(std::make_shared<GammaCurve>(name, *this));
}

GammaCurvePtr GammaCurveModel::AddGammaCurve(TextView name, double denominator, std::int32_t maxY) {
  GammaCurvePtr curve = AddGammaCurve(name);
  if (curve) GetReferenceCurve(denominator, *curve->Data(), maxY);
  return curve;
}

GammaCurvePtr GammaCurveModel::AddGammaCurve(TextView name, OptionalText source) {
  const GammaCurvePtr original = GetGammaCurveByName(source);
  if (!original || m_Curves->Contains(name)) return nullptr;
  GammaCurvePtr curve = append(std::make_shared<GammaCurve>(name, *original));
  curve->m_bCanEdit = true;
  return curve;
}

bool GammaCurveModel::DeleteGammaCurve(OptionalText name) {
  const GammaCurvePtr curve = GetGammaCurveByName(name);
  if (!curve || curve->IsImmutable()) return false;
  m_DeletedNames.push_back(curve->Name());
  return m_Curves->Remove(curve->Name());
}

void GammaCurveModel::CommitSession() {
  m_DeletedNames.clear();
  for (const GammaCurvePtr& curve : *m_Curves) {
    if (!curve->IsDirty()) continue;
    SaveGammaCurve(curve->Name());
    curve->SetIsDirty(false);
  }
}

bool GammaCurveModel::SaveGammaCurveAs(OptionalText name, OptionalText) const {
  const GammaCurvePtr curve = GetGammaCurveByName(name);
  return curve && curve->DataSize() > 0;
}

GammaCurvePtr GammaCurveModel::LoadGammaCurve(TextView name) {
  return CreateCurve(name, GetFromSession(name, "Gamma"), GetFromSession(name, "GammaG"),
                     GetFromSession(name, "GammaB"), GetFromSession(name, "ControlPoints"),
                     GetFromSession(name, "ControlPointsG"),
                     GetFromSession(name, "ControlPointsB"));
}

std::optional<std::vector<std::string>> GammaCurveModel::GetSectionNames() const {
  return std::nullopt;
}
std::optional<std::string> GammaCurveModel::GetFromSession(OptionalText, OptionalText) const {
  return std::nullopt;
}
void GammaCurveModel::SaveToSession(OptionalText, OptionalText, OptionalText) {}
void GammaCurveModel::DeleteFromSession(OptionalText) {}

GammaCurvePtr GammaCurveModel::CreateCurve(TextView name, const GammaTablePtr& gammaR,
                                           const GammaTablePtr& gammaG, const GammaTablePtr& gammaB,
                                           const ControlPointListPtr& cpR,
                                           const ControlPointListPtr& cpG,
                                           const ControlPointListPtr& cpB) {
  if (!gammaR) return nullptr;
  auto curve = std::make_shared<GammaCurve>(name, *this);
  curve->SetIsDirty(true);
  if (!gammaG || !gammaB) {
    curve->SetGammaTable(ColorChannel::Red, gammaR);
    if (cpR) curve->SetControlPoints(ColorChannel::Red, cpR);
    return curve;
  }
  curve->SetIsUnified(false);
  curve->SetGammaTable(ColorChannel::Red, gammaR);
  curve->SetGammaTable(ColorChannel::Green, gammaG);
  curve->SetGammaTable(ColorChannel::Blue, gammaB);
  if (cpR && cpG && cpB) {
    curve->SetControlPoints(ColorChannel::Red, cpR);
    curve->SetControlPoints(ColorChannel::Green, cpG);
    curve->SetControlPoints(ColorChannel::Blue, cpB);
  }
  return curve;
}

GammaCurvePtr GammaCurveModel::CreateCurve(TextView name, std::span<const std::int32_t> listR,
                                           std::span<const std::int32_t> listG,
                                           std::span<const std::int32_t> listB,
                                           std::span<const std::int32_t> cpR,
                                           std::span<const std::int32_t> cpG,
                                           std::span<const std::int32_t> cpB) {
  return CreateCurve(name, CreateGammaTable(listR), CreateGammaTable(listG),
                     CreateGammaTable(listB), GammaCurve::CreatePointArray(cpR),
                     GammaCurve::CreatePointArray(cpG), GammaCurve::CreatePointArray(cpB));
}

GammaCurvePtr GammaCurveModel::CreateCurve(TextView name, OptionalText table, OptionalText tableG,
                                           OptionalText tableB, OptionalText cp, OptionalText cpG,
                                           OptionalText cpB) {
  return CreateCurve(name, CreateGammaTable(table), CreateGammaTable(tableG),
                     CreateGammaTable(tableB), GammaCurve::CreatePointArray(cp),
                     GammaCurve::CreatePointArray(cpG), GammaCurve::CreatePointArray(cpB));
}

GammaTablePtr GammaCurveModel::CreateGammaTable(const GammaTablePtr& aSrc) const {
  if (!aSrc) return nullptr;
  auto table = std::make_shared<GammaTable>(kCurveEntries);
  return MakeGammaTable(*aSrc, *table) ? table : nullptr;
}

GammaTablePtr GammaCurveModel::CreateGammaTable(std::span<const std::int32_t> list) const {
  return CreateGammaTable(std::make_shared<GammaTable>(list.begin(), list.end()));
}

GammaTablePtr GammaCurveModel::CreateGammaTable(OptionalText sGamma) const {
  const auto numbers = GammaCurve::StringToIntArray(sGamma);
  return numbers ? CreateGammaTable(std::span(*numbers)) : nullptr;
}

bool GammaCurveModel::MakeGammaTable(std::span<std::int32_t> aSrc,
                                     std::span<std::int32_t> aDest) const {
  return makeGammaTable(m_state->GammaBitSize, aSrc, aDest);
}

void GammaCurveModel::GetReferenceCurve(double denominator, std::span<std::int32_t> aDest,
                                        std::int32_t maxY) const {
  fillReferenceCurve(denominator, aDest, maxY);
}

void GammaCurveModel::FindMinimumControlPoints(int ninterp, std::span<const double> pinx,
                                               std::span<const double> piny,
                                               std::span<double> poutx, std::span<double> pouty,
                                               int& nout) {
  findMinimumControlPoints(m_state->m_interp, ninterp, pinx, piny, poutx, pouty, nout);
}

}  // namespace greycard
