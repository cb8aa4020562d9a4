#pragma once

// What every report has around its own sections.

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "greycard/picture.h"
#include "greycard/present/provenance.h"

namespace greycard::present {

struct ReportHead {
  std::string title;               ///< "Colour correction: photo.jpg"
  std::vector<std::string> facts;  ///< what it is about, a few words each
  std::vector<std::string> warnings;
};

/// The page: head, body, and how the figures came about.
std::string reportPage(const ReportHead& head, const std::string& body,
                       const std::optional<Provenance>& provenance);

/// "4000 x 3000 pixels, 8 bits".
std::string sizeText(const Picture& picture);

}  // namespace greycard::present
