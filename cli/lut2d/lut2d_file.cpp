#include "lut2d_file.h"

#include <charconv>
#include <limits>
#include <span>
#include <stdexcept>
#include <utility>
#include <vector>

#include "command.h"
#include "greycard/files.h"
#include "greycard/number_text.h"
#include "greycard/two_d_lut_helper.h"
#include "text_table.h"
#include "transition.h"

namespace greycard::cli {
namespace {

// The shortest decimal that reads back to the same float: 0.1, not 0.10000000149011612.
double shortest(float value) {
  char text[32];
  const auto end = std::to_chars(text, text + sizeof text, value).ptr;
  double number = 0.0;
  std::from_chars(text, end, number);
  return number;
}

Json rowsOf(std::span<const double, kLut2dNodes> table) {
  Json rows = Json::array();
  for (std::size_t row = 0; row < kLut2dHueRows; ++row) {
    Json columns = Json::array();
    for (const double value : table.subspan(row * kLut2dSatColumns, kLut2dSatColumns))
      columns.push_back(value);
    rows.push_back(columns);
  }
  return rows;
}

// Calls visit(name, member) for every field, in the order of the file.
template <typename Config, typename Visit>
void visitFields(Config& config, Visit visit) {
  visit("enabled", config.enabled);
  visit("hs_lut_bank_sel", config.hs_lut_bank_sel);
  visit("lut_1d_h", config.lut_1d_h);
  visit("lut_1d_s", config.lut_1d_s);
  visit("lut_2d_h", config.lut_2d_h);
  visit("lut_2d_s", config.lut_2d_s);
  visit("h_shift", config.h_shift);
  visit("s_shift", config.s_shift);
  visit("l_boundary_start_a", config.l_boundary_start_a);
  visit("l_boundary_start_b", config.l_boundary_start_b);
  visit("l_boundary_end_a", config.l_boundary_end_a);
  visit("l_boundary_end_b", config.l_boundary_end_b);
  visit("y_blend_factor", config.y_blend_factor);
  visit("K_b_integer", config.K_b_integer);
  visit("K_r_integer", config.K_r_integer);
  visit("l_boundary_start_inv", config.l_boundary_start_inv);
  visit("l_boundary_end_inv", config.l_boundary_end_inv);
  visit("inverse_flag", config.inverse_flag);
}

template <std::integral T>
void read(const std::string& name, const Json& json, T& value) {
  const double number = numberFrom(name, json);
  const double low = std::numeric_limits<T>::min(), high = std::numeric_limits<T>::max();
  if (!json.is_number_integer() || number < low || number > high)
    refuseField(name, "a whole number from " + std::to_string(std::numeric_limits<T>::min()) +
                          " to " + std::to_string(std::numeric_limits<T>::max()));
  value = static_cast<T>(number);
}

void read(const std::string& name, const Json& json, float& value) {
  const double number = numberFrom(name, json);
  if (!(number >= -std::numeric_limits<float>::max() &&
        number <= std::numeric_limits<float>::max()))
    refuseField(name, "a number that fits 32 bits");
  value = static_cast<float>(number);
}

template <std::size_t Size>
void read(const std::string& name, const Json& json, std::array<double, Size>& values) {
  if constexpr (Size != kLut2dNodes) {
    readNumbers(name, json, values);
  } else {
    if (!json.is_array() || json.size() != kLut2dHueRows)
      refuseField(name, "24 lists of 16 numbers");
    for (std::size_t row = 0; row < kLut2dHueRows; ++row)
      readNumbers(name + "[" + std::to_string(row) + "]", json[row],
                  std::span(values).subspan(row * kLut2dSatColumns, kLut2dSatColumns));
  }
}

void checkGrid(const std::string& name, std::span<const double> nodes, double low, double high) {
  for (std::size_t i = 0; i < nodes.size(); ++i)
    if (nodes[i] < low || nodes[i] > high || (i > 0 && nodes[i] < nodes[i - 1]))
      refuseField(name, "numbers from " + general(low, 3) + " to " + general(high, 3) +
                            " that don't fall; entry " + std::to_string(i + 1) + " is " +
                            general(nodes[i], 6));
}

Lut2DConfig configFrom(const Json& json) {
  if (!json.is_object()) throw std::invalid_argument("it must hold one object");
  Lut2DConfig config;
  std::vector<std::string> known;
  visitFields(config, [&](const std::string& name, auto& member) {
    if (!json.contains(name)) throw std::invalid_argument(name + " is missing");
    read(name, json[name], member);
    known.push_back(name);
  });
  refuseUnknownFields("", json, known);
  TwoDLutHelper().SetConfig(config);  // refuses numbers without meaning
  checkGrid("lut_1d_h", config.lut_1d_h, 0.0, 360.0);
  checkGrid("lut_1d_s", config.lut_1d_s, 0.0, 1.0);
  if (config.lut_1d_h.front() != 0.0 || config.lut_1d_h.back() != 360.0)
    refuseField("lut_1d_h", "from 0 to 360");
  for (const auto& [name, value] : {std::pair{"l_boundary_start_a", config.l_boundary_start_a},
                                    std::pair{"l_boundary_start_b", config.l_boundary_start_b},
                                    std::pair{"l_boundary_end_a", config.l_boundary_end_a},
                                    std::pair{"l_boundary_end_b", config.l_boundary_end_b},
                                    std::pair{"y_blend_factor", config.y_blend_factor}})
    if (!(value >= 0.0F && value <= 1.0F)) refuseField(name, "from 0 to 1");
  return config;
}

}  // namespace

Json lut2dJson(const Lut2DConfig& config) {
  Json json;
  visitFields(config, [&json](const char* name, const auto& member) {
    using Member = std::remove_cvref_t<decltype(member)>;
    if constexpr (std::is_same_v<Member, float>)
      json[name] = shortest(member);
    else if constexpr (std::is_same_v<Member, std::array<double, kLut2dNodes>>)
      json[name] = rowsOf(member);
    else
      json[name] = member;
  });
  return json;
}

Lut2DConfig readLut2d(const std::filesystem::path& path) {
  const std::string text = readWholeFile(path);
  try {
    return configFrom(parsedJson(text));
  } catch (const std::invalid_argument& error) {
    throw JobError(quoted(path) + " is no hue/saturation table: " + error.what());
  }
}

}  // namespace greycard::cli
