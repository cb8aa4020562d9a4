#include "gamma_curve_collection.h"

#include <algorithm>
#include <stdexcept>
#include <utility>

namespace greycard {
namespace {

auto named(std::string_view name) {
  return [name](const GammaCurvePtr& curve) { return curve->Name() == name; };
}

}  // namespace

void GammaCurveCollection::Add(GammaCurvePtr curve) {
  if (Contains(curve->Name()))
    throw std::invalid_argument("a curve named \"" + curve->Name() +
                                "\" is in the catalogue already");
  m_items.push_back(std::move(curve));
}

GammaCurvePtr GammaCurveCollection::Find(std::string_view name) const {
  const auto found = std::find_if(begin(), end(), named(name));
  return found == end() ? nullptr : *found;
}

bool GammaCurveCollection::Remove(std::string_view name) {
  return std::erase_if(m_items, named(name)) > 0;
}

}  // namespace greycard
