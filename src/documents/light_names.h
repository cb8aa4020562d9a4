#pragma once

#include <array>
#include <utility>

#include "describe.h"
#include "greycard/illum.h"

namespace greycard::present {

template <>
struct EnumNames<Illum> {
  static constexpr const char* kKind = "light";
  static constexpr std::array kNames{std::pair{illum_A, "A"},
                                     std::pair{illum_D65, "D65"},
                                     std::pair{illum_TL84, "TL84"},
                                     std::pair{illum_Outdoor, "Outdoor"},
                                     std::pair{illum_Lowlight, "Lowlight"},
                                     std::pair{illum_LED, "LED"},
                                     std::pair{illum_Strobe, "Strobe"},
                                     std::pair{illum_D50, "D50"},
                                     std::pair{illum_Horizon, "Horizon"},
                                     std::pair{illum_CoolWhite, "CoolWhite"},
                                     std::pair{illum_D75, "D75"},
                                     std::pair{illum_LED1, "LED1"},
                                     std::pair{illum_LED2, "LED2"}};
};

}  // namespace greycard::present
