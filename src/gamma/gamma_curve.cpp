#include "greycard/gamma_curve.h"

#include <algorithm>
#include <cstdint>
#include <limits>
#include <stdexcept>
#include <utility>

#include "control_point_reduction.h"
#include "gamma_model_state.h"
#include "gamma_table.h"
#include "greycard/gamma_curve_model.h"

namespace greycard {
namespace {

template <typename T>
std::shared_ptr<T> cloned(const std::shared_ptr<T>& object) {
  return object ? std::make_shared<T>(*object) : nullptr;
}

// Null, as an empty list does, stands for no entries.
template <typename T>
std::span<T> entries(const std::shared_ptr<std::vector<T>>& list) {
  return list ? std::span<T>(*list) : std::span<T>();
}

std::size_t slotIndex(ColorChannel color) {
  if (color == ColorChannel::Green) return 1;
  return color == ColorChannel::Blue ? 2 : 0;
}

// INT32_MIN / -1 is the one quotient that does not fit.
std::int32_t divided(std::int32_t value, std::int32_t divisor) {
  constexpr std::int64_t kHighest = std::numeric_limits<std::int32_t>::max();
  return static_cast<std::int32_t>(std::min(std::int64_t{value} / divisor, kHighest));
}

}  // namespace

GammaCurve::GammaCurve(TextView name, GammaCurveModel& parent)
    : m_parent(parent.m_state), m_name(name) {
  m_slots[0] = {std::make_shared<GammaTable>(kCurveEntries), std::make_shared<ControlPointList>()};
}

GammaCurve::GammaCurve(TextView name, GammaCurveModel& parent, std::span<const std::int32_t> data)
    : GammaCurve(name, parent) {
  m_bImmutable = true;
  SetCurveData(ColorChannel::All, data);
}

GammaCurve::GammaCurve(TextView name, const GammaCurve& source)
    : m_parent(source.m_parent),
      m_name(name),
      m_bInterpolate(source.m_bInterpolate),
      m_bUnified(source.m_bUnified),
      m_isDirty(true) {
  for (std::size_t i = 0; i < m_slots.size(); ++i)
    m_slots[i] = {cloned(source.m_slots[i].data), cloned(source.m_slots[i].points)};
  if (!m_slots[0].data) m_slots[0].data = std::make_shared<GammaTable>(kCurveEntries);
  if (!m_slots[0].points) m_slots[0].points = std::make_shared<ControlPointList>();
}

GammaCurve::~GammaCurve() = default;

ColorChannel GammaCurve::FixColor(ColorChannel color) {
  if (m_bUnified) return ColorChannel::All;
  if (color != ColorChannel::All) UnUnify();
  return color;
}

const GammaCurve::Slot& GammaCurve::source(ColorChannel color) const {
  return m_slots[m_bUnified ? 0 : slotIndex(color)];
}

GammaCurve::Slot& GammaCurve::target(ColorChannel color) {
  return m_slots[slotIndex(FixColor(color))];
}

void GammaCurve::UnUnify() {
  for (Slot& slot : std::span(m_slots).subspan(1)) {
    if (!slot.data) slot.data = cloned(m_slots[0].data);
    if (!slot.points) slot.points = cloned(m_slots[0].points);
  }
}

bool GammaCurve::IsUnified() const {
  return !m_parent->RGBGamma || m_bUnified;
}

void GammaCurve::SetIsUnified(bool unified) {
  if (m_bImmutable || !m_parent->RGBGamma) return;
  m_bUnified = unified;
  if (!unified) UnUnify();
}

bool GammaCurve::IsEditable() const {
  return !m_bImmutable && (m_bCanEdit || !entries(m_slots[0].points).empty());
}

std::int32_t GammaCurve::DataSize() const {
  return static_cast<std::int32_t>(entries(m_slots[0].data).size());
}

void GammaCurve::SetCurveData(ColorChannel color, OptionalText sgamma) {
  if (m_bImmutable) return;
  auto parsed = StringToIntArray(sgamma);
  const auto dest = entries(target(color).data);
  if (parsed) makeGammaTable(m_parent->GammaBitSize, *parsed, dest);
}

void GammaCurve::SetCurveData(ColorChannel color, std::span<const std::int32_t> data) {
  if (auto copy = DataToArray(data))
    makeGammaTable(m_parent->GammaBitSize, *copy, entries(target(color).data));
}

void GammaCurve::SetCurveData(ColorChannel color, const GammaTablePtr& aCurveData) {
  makeGammaTable(m_parent->GammaBitSize, entries(aCurveData), entries(target(color).data));
}

void GammaCurve::SetGammaTable(ColorChannel color, GammaTablePtr curveData) {
  target(color).data = std::move(curveData);
}

void GammaCurve::pointsChanged() {
  m_isDirty = true;
  m_bInterpolate = true;
}

void GammaCurve::SetControlPoints(ColorChannel color, ControlPointListPtr points) {
  if (m_bImmutable) return;
  target(color).points = std::move(points);
  pointsChanged();
}

void GammaCurve::SetControlPoints(ColorChannel color, OptionalText scp) {
  SetControlPoints(color, CreatePointArray(scp));
}

void GammaCurve::SetControlPoints(ColorChannel color, std::span<const std::int32_t> px,
                                  std::span<const std::int32_t> py) {
  if (px.size() != py.size())
    throw std::invalid_argument("control points need as many Y as X coordinates");
  if (m_bImmutable) return;
  SetControlPointsInternal(color, px, py);
  pointsChanged();
}

void GammaCurve::SetControlPointsInternal(ColorChannel color, std::span<const std::int32_t> px,
                                          std::span<const std::int32_t> py) {
  ControlPointListPtr& points = target(color).points;
  if (!points) points = std::make_shared<ControlPointList>();
  points->clear();
  for (std::size_t i = 0; i < px.size(); ++i) points->push_back({px[i], py[i]});
}

bool GammaCurve::GetDataDownsampled(ColorChannel color, std::span<std::int32_t> px,
                                    std::span<std::int32_t> py) const {
  const auto src = entries(source(color).data);
  const std::size_t nPoints = px.size();
  if (nPoints < 2 || nPoints > src.size() || py.size() != nPoints || m_parent->YScale == 0)
    return false;
  // The labels and the indices they are read at drift apart (deliberate).
  const std::size_t indexStep = src.size() / (nPoints - 1);
  const std::size_t xStep = 256 / (nPoints - 1);
  for (std::size_t i = 0; i + 1 < nPoints; ++i) {
    px[i] = static_cast<std::int32_t>(i * xStep);
    py[i] = divided(src[i * indexStep], m_parent->YScale);
  }
  px.back() = 255;
  py.back() = divided(m_parent->MaxY, m_parent->YScale);
  return true;
}

void GammaCurve::calculate(ColorChannel color) {
  const ControlPointListPtr points = m_slots[slotIndex(color)].points;
  if (entries(points).empty()) return;
  m_parent->m_interp.GenerateCurve(entries(points), m_parent->XScale, m_parent->YScale,
                                   entries(target(color).data));
}

void GammaCurve::CalculateCurve() {
  if (!IsEditable() || !m_bInterpolate) return;
  calculate(ColorChannel::All);
  if (!m_bUnified) {
    calculate(ColorChannel::Green);
    calculate(ColorChannel::Blue);
  }
  m_bInterpolate = false;
}

void GammaCurve::GenerateControlPoints(ColorChannel color) {
  constexpr int kSamples = 32;
  std::array<std::int32_t, kSamples> px, py;
  if (!GetDataDownsampled(color, px, py)) return;
  std::array<double, kSamples> x, y;
  std::copy(px.begin(), px.end(), x.begin());
  std::copy(py.begin(), py.end(), y.begin());
  int n = kSamples;
  findMinimumControlPoints(m_parent->m_interp, kSamples, x, y, x, y, n);
  const auto toInteger = [](double v) { return static_cast<std::int32_t>(v); };
  std::transform(x.begin(), x.begin() + n, px.begin(), toInteger);
  std::transform(y.begin(), y.begin() + n, py.begin(), toInteger);
  const auto count = static_cast<std::size_t>(n);
  SetControlPoints(color, std::span(px).first(count), std::span(py).first(count));
}

void GammaCurve::CommitHeader(std::int32_t) {}
void GammaCurve::CommitHeader(std::int32_t, std::int32_t, std::int32_t) {}
void GammaCurve::CommitNameToSession(OptionalText) {}

}  // namespace greycard
