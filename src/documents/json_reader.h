#pragma once

#include <array>
#include <cmath>
#include <limits>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "describe.h"
#include "greycard/names.h"
#include "json_text.h"

namespace greycard::present {

/// Options are written by people: a field that is missing keeps its default, and one that is not
/// known is refused. Results are written by us, perhaps by a later version: fields that are not
/// known are passed over, and none may be missing. A document is ours and people's: no field may be
/// missing, nor unknown.
enum class JsonKind { Options, Result, Document };

/// \throws std::invalid_argument "<name> must be <must>"
[[noreturn]] void refuseField(const std::string& name, const std::string& must);

/// \throws std::invalid_argument with the closest of the known names
[[noreturn]] void refuseName(const std::string& kind, const std::string& name,
                             std::span<const std::string> known);

/// Fills a described value from a JSON object (describe.h). What is wrong is thrown as
/// std::invalid_argument with a plain text that begins with the field; the caller adds the file.
class JsonReader {
 public:
  static constexpr bool kReads = true;

  /// \param prefix  what stands before a field's name in messages, as in "images[2]."
  JsonReader(const Json& object, JsonKind kind, std::string prefix = {});

  template <typename T>
  void operator()(const char* name, T&& value) {
    if (const Json* json = find(name)) read(m_prefix + name, *json, value);
  }
  template <typename T>
  void derived(const char* name, const T& /*value*/) {
    m_known.emplace_back(name);
  }
  template <typename T>
  void optional(const char* name, std::optional<T>& value) {
    m_known.emplace_back(name);
    if (!m_object.contains(name)) return value.reset();
    read(m_prefix + name, m_object[name], value.emplace());
  }
  template <std::integral T>
  void optional(const char* name, std::optional<T>& value, T low, T high) {
    m_known.emplace_back(name);
    if (!m_object.contains(name)) return value.reset();
    value = whole(m_prefix + name, m_object[name], low, high);
  }
  template <typename Inner>
  void group(const char* name, Inner inner) {
    const Json* json = find(name);
    if (json == nullptr) return;
    JsonReader reader(*json, m_kind, m_prefix + name + ".");
    inner(reader);
    reader.finish();
  }
  template <typename Row>
  void rows(const char* name, std::size_t count, Row row) {
    const Json* json = find(name);
    if (json == nullptr) return;
    if (!json->is_array() || json->size() != count)
      refuseField(m_prefix + name, "a list of " + std::to_string(count) + " objects");
    for (std::size_t i = 0; i < count; ++i) {
      JsonReader reader((*json)[i], m_kind, m_prefix + name + "[" + std::to_string(i) + "].");
      row(reader, i);
      reader.finish();
    }
  }
  template <typename Item, typename Row>
  void list(const char* name, std::vector<Item>& items, Row row, std::size_t most = 0) {
    const Json* json = find(name);
    if (json == nullptr) return;
    if (!json->is_array() || (most != 0 && json->size() > most))
      refuseField(m_prefix + name, most == 0
                                       ? "a list of objects"
                                       : "a list of at most " + std::to_string(most) + " objects");
    items.assign(json->size(), {});
    for (std::size_t i = 0; i < items.size(); ++i) {
      JsonReader reader((*json)[i], m_kind, m_prefix + name + "[" + std::to_string(i) + "].");
      row(reader, items[i]);
      reader.finish();
    }
  }
  template <typename T, typename Fields>
  void block(const char* mark, std::optional<T>& value, Fields fields) {
    if (!m_object.contains(mark)) return value.reset();
    fields(*this, value.emplace());
  }

  /// To be called after the description: refuses what options have beside the described fields.
  void finish() const;

 private:
  // The field, noted as known; null when it is missing and may be.
  const Json* find(const char* name);

  template <typename T>
  void read(const std::string& name, const Json& json, T& value) {
    if constexpr (isOneBased<T>) {
      read(name, json, value.value);
      --value.value;
    } else if constexpr (isInRows<T>) {
      if (!json.is_array() || json.size() != T::kRows)
        refuseField(name, std::to_string(T::kRows) + " lists of " + std::to_string(T::kColumns) +
                              listedThings<std::remove_reference_t<decltype(value.values)>>());
      for (std::size_t row = 0; row < T::kRows; ++row) readRow(name, json, row, value);
    } else if constexpr (isAllDigits<T>) {
      read(name, json, value.value);
    } else if constexpr (isOptional<T>) {
      if (json.is_null()) return value.reset();
      read(name, json, value.emplace());
    } else if constexpr (isArray<T>) {
      if (!json.is_array() || json.size() != value.size()) refuseField(name, listOf<T>());
      for (std::size_t i = 0; i < value.size(); ++i) readItem(name, json, i, value[i]);
    } else if constexpr (isVector<T>) {
      if (!json.is_array()) refuseField(name, "a list");
      value.resize(json.size());
      for (std::size_t i = 0; i < value.size(); ++i) readItem(name, json, i, value[i]);
    } else if constexpr (std::is_enum_v<T>) {
      value = enumOf<T>(name, json);
    } else if constexpr (std::same_as<T, bool>) {
      if (!json.is_boolean()) refuseField(name, "true or false");
      value = json.template get<bool>();
    } else if constexpr (std::floating_point<T>) {
      value = static_cast<T>(number(name, json, std::numeric_limits<T>::max()));
    } else if constexpr (std::integral<T>) {
      value = whole(name, json, std::numeric_limits<T>::min(), std::numeric_limits<T>::max());
    } else if constexpr (std::same_as<T, std::string> || std::same_as<T, std::filesystem::path>) {
      if (!json.is_string()) refuseField(name, "a text");
      value = json.template get<std::string>();
    } else if constexpr (requires { components(value); }) {
      const auto parts = components(value);
      if (!json.is_array() || json.size() != parts.size())
        refuseField(name, "a list of " + std::to_string(parts.size()) + " numbers");
      for (std::size_t i = 0; i < parts.size(); ++i) readItem(name, json, i, *parts[i]);
    } else {
      JsonReader reader(json, m_kind, name + ".");
      describe(reader, value);
      reader.finish();
    }
  }
  template <typename T>
  void readItem(const std::string& name, const Json& json, std::size_t i, T& value) {
    read(name + "[" + std::to_string(i) + "]", json[i], value);
  }
  template <typename T>
  void readRow(const std::string& name, const Json& json, std::size_t row, T& value) {
    const std::string rowName = name + "[" + std::to_string(row) + "]";
    if (!json[row].is_array() || json[row].size() != T::kColumns)
      refuseField(rowName, "a list of " + std::to_string(T::kColumns) +
                               listedThings<std::remove_reference_t<decltype(value.values)>>());
    for (std::size_t i = 0; i < T::kColumns; ++i)
      readItem(rowName, json[row], i, value.values[row * T::kColumns + i]);
  }
  template <typename T>
  static const char* listedThings() {
    return std::is_arithmetic_v<typename T::value_type> ? " numbers" : " items";
  }
  // "a list of 3 numbers", "3 lists of 256 numbers" or "a list of 4 items".
  template <typename Array>
  static std::string listOf() {
    using Item = typename Array::value_type;
    const std::string count = std::to_string(std::tuple_size_v<Array>);
    if constexpr (isArray<Item>)
      return count + " lists of " + std::to_string(std::tuple_size_v<Item>) + listedThings<Item>();
    else
      return "a list of " + count + listedThings<Array>();
  }

  // Of a result, null is a number that was not finite.
  double number(const std::string& name, const Json& json, double most) const;

  // 255.0 is as whole as 255.
  template <std::integral T>
  static T whole(const std::string& name, const Json& json, T low, T high) {
    if (!json.is_number()) refuseField(name, "a number");
    const auto within = [&](auto value) {
      return std::cmp_greater_equal(value, low) && std::cmp_less_equal(value, high);
    };
    if (json.is_number_unsigned()) {
      if (const auto value = json.template get<std::uint64_t>(); within(value))
        return static_cast<T>(value);
    } else if (json.is_number_integer()) {
      if (const auto value = json.template get<std::int64_t>(); within(value))
        return static_cast<T>(value);
    } else if (json.is_number_float()) {
      constexpr double kMostExact = 9007199254740992.0;  // beyond it a double skips whole numbers
      const double value = json.template get<double>();
      if (std::abs(value) <= kMostExact && value == std::floor(value) &&
          within(static_cast<std::int64_t>(value)))
        return static_cast<T>(value);
    }
    refuseField(name, "a whole number from " + std::to_string(low) + " to " + std::to_string(high));
  }

  template <typename Enum>
  static Enum enumOf(const std::string& name, const Json& json) {
    if (!json.is_string()) refuseField(name, "a text");
    const auto text = json.template get<std::string>();
    std::vector<std::string> names;
    for (const auto& [value, known] : EnumNames<Enum>::kNames) {
      if (equalIgnoringCase(known, text)) return value;
      names.emplace_back(known);
    }
    refuseName(EnumNames<Enum>::kKind, text, names);
  }

  const Json& m_object;
  JsonKind m_kind;
  std::string m_prefix;
  std::vector<std::string> m_known;
};

/// Fills the described value, which is changed only when all of the document can be used.
/// \throws std::invalid_argument
template <typename T>
void readDocument(std::string_view text, JsonKind kind, T& value) {
  const Json json = parsedJson(text);
  T filled = value;
  JsonReader reader(json, kind);
  describe(reader, filled);
  reader.finish();
  value = std::move(filled);
}

/// The same of a result, of which nothing stays that the value held before.
/// \throws std::invalid_argument
template <typename T>
void readFresh(std::string_view text, T& value) {
  T fresh;
  readDocument(text, JsonKind::Result, fresh);
  value = std::move(fresh);
}

}  // namespace greycard::present
