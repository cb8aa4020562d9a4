#pragma once

#include <charconv>
#include <string>
#include <utility>
#include <vector>

#include "describe.h"
#include "json_text.h"

namespace greycard::present {

/// Turns a described value into JSON (describe.h).
class JsonWriter {
 public:
  static constexpr bool kReads = false;

  template <typename T>
  void operator()(const char* name, const T& value) {
    m_json[name] = valueOf(value);
  }
  template <typename T>
  void derived(const char* name, const T& value) {
    (*this)(name, value);
  }
  template <typename T>
  void optional(const char* name, const std::optional<T>& value) {
    if (value) (*this)(name, *value);
  }
  template <std::integral T>
  void optional(const char* name, const std::optional<T>& value, T /*low*/, T /*high*/) {
    optional(name, value);
  }
  template <typename Inner>
  void group(const char* name, Inner inner) {
    JsonWriter writer;
    inner(writer);
    m_json[name] = std::move(writer.m_json);
  }
  template <typename Row>
  void rows(const char* name, std::size_t count, Row row) {
    Json list = Json::array();
    for (std::size_t i = 0; i < count; ++i) {
      JsonWriter writer;
      row(writer, i);
      list.push_back(std::move(writer.m_json));
    }
    m_json[name] = std::move(list);
  }
  /// A list of objects, one for each item, at most `most`.
  template <typename Item, typename Row>
  void list(const char* name, const std::vector<Item>& items, Row row, std::size_t /*most*/ = 0) {
    rows(name, items.size(), [&](JsonWriter& writer, std::size_t i) { row(writer, items[i]); });
  }
  /// Fields that are there together or not at all; `mark` is one that is always among them.
  template <typename T, typename Fields>
  void block(const char* /*mark*/, const std::optional<T>& value, Fields fields) {
    if (value) fields(*this, *value);
  }

  const Json& json() const { return m_json; }

 private:
  template <typename T>
  static Json valueOf(const T& value) {
    if constexpr (isOneBased<T>) {
      return value.value + 1;
    } else if constexpr (isInRows<T>) {
      Json rows = Json::array();
      for (std::size_t row = 0; row < T::kRows; ++row) {
        Json columns = Json::array();
        for (std::size_t i = 0; i < T::kColumns; ++i)
          columns.push_back(valueOf(value.values[row * T::kColumns + i]));
        rows.push_back(std::move(columns));
      }
      return rows;
    } else if constexpr (isAllDigits<T>) {
      return allDigits(value.value);
    } else if constexpr (isOptional<T>) {
      return value ? valueOf(*value) : Json(nullptr);
    } else if constexpr (isArray<T> || isVector<T>) {
      Json list = Json::array();
      for (const auto& item : value) list.push_back(valueOf(item));
      return list;
    } else if constexpr (std::is_enum_v<T>) {
      for (const auto& [known, name] : EnumNames<T>::kNames)
        if (known == value) return name;
      return nullptr;
    } else if constexpr (std::same_as<T, float>) {
      return shortest(value);
    } else if constexpr (std::is_arithmetic_v<T>) {
      return value;
    } else if constexpr (std::same_as<T, std::filesystem::path>) {
      return value.string();
    } else if constexpr (std::convertible_to<T, std::string>) {
      return std::string(value);
    } else if constexpr (requires { components(value); }) {
      Json list = Json::array();
      for (const auto* component : components(value)) list.push_back(*component);
      return list;
    } else {
      JsonWriter writer;
      describe(writer, value);
      return std::move(writer.m_json);
    }
  }

  static Json allDigits(float value) { return static_cast<double>(value); }
  template <std::size_t Size>
  static Json allDigits(const std::array<float, Size>& values) {
    return std::vector<double>(values.begin(), values.end());
  }

  // The shortest decimal that reads back to the same float: 0.1, not 0.10000000149011612.
  static double shortest(float value) {
    char text[32];
    const auto end = std::to_chars(text, text + sizeof text, value).ptr;
    double number = value;
    std::from_chars(text, end, number);
    return number;
  }

  Json m_json = Json::object();
};

/// The described value as a JSON document.
template <typename T>
std::string documentOf(const T& value) {
  JsonWriter writer;
  describe(writer, value);
  return jsonText(writer.json());
}

}  // namespace greycard::present
