#pragma once

#include <cstddef>
#include <string_view>
#include <vector>

#include "greycard/gamma_curve.h"

namespace greycard {

/// Curves in insertion order, keyed by their exact name.
class GammaCurveCollection {
 public:
  /// \throws std::invalid_argument when a curve of that name is there already
  void Add(GammaCurvePtr curve);
  bool Contains(std::string_view name) const { return Find(name) != nullptr; }
  /// The curve of that name, or null.
  GammaCurvePtr Find(std::string_view name) const;
  /// False when there is no curve of that name.
  bool Remove(std::string_view name);

  std::size_t size() const { return m_items.size(); }
  const GammaCurvePtr& operator[](std::size_t position) const { return m_items[position]; }
  auto begin() const { return m_items.begin(); }
  auto end() const { return m_items.end(); }

 private:
  std::vector<GammaCurvePtr> m_items;
};

}  // namespace greycard
