#include "json_reader.h"

#include <algorithm>

#include "greycard/names.h"

namespace greycard::present {

void refuseField(const std::string& name, const std::string& must) {
  throw std::invalid_argument(name + " must be " + must);
}

void refuseName(const std::string& kind, const std::string& name,
                std::span<const std::string> known) {
  throw std::invalid_argument(unknownName(kind, name, known));
}

JsonReader::JsonReader(const Json& object, JsonKind kind, std::string prefix)
    : m_object(object), m_kind(kind), m_prefix(std::move(prefix)) {
  if (object.is_object()) return;
  if (m_prefix.empty()) throw std::invalid_argument("it must hold one object");
  refuseField(m_prefix.substr(0, m_prefix.size() - 1), "an object");
}

const Json* JsonReader::find(const char* name) {
  m_known.emplace_back(name);
  if (m_object.contains(name)) return &m_object[name];
  if (m_kind != JsonKind::Options) throw std::invalid_argument(m_prefix + name + " is missing");
  return nullptr;
}

void JsonReader::finish() const {
  if (m_kind == JsonKind::Result) return;
  for (const auto& item : m_object.items())
    if (std::ranges::find(m_known, item.key()) == m_known.end())
      refuseName("field", m_prefix + item.key(), m_known);
}

double JsonReader::number(const std::string& name, const Json& json, double most) const {
  if (json.is_null() && m_kind == JsonKind::Result) return std::nan("");
  if (!json.is_number()) refuseField(name, "a number");
  const double value = json.get<double>();
  if (!(std::abs(value) <= most)) refuseField(name, "a number that fits 32 bits");
  return value;
}

}  // namespace greycard::present
