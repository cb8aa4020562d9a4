#pragma once

#include <cstddef>
#include <string>

#include "greycard/types.h"

namespace greycard::present {

/// A colour of a drawing: one that means itself, as a patch's, or one of the palette. Those of the
/// palette have a role too, a class by which a page gives them another colour on a dark screen.
struct PlotColour {
  std::string hex;        ///< "#rrggbb"
  const char* role = "";  ///< empty for a colour that means itself

  PlotColour(std::string itself) : hex(std::move(itself)) {}
  PlotColour(std::string hex_, const char* role_) : hex(std::move(hex_)), role(role_) {}
};

/// Colours that also differ for colour-blind eyes (Okabe and Ito, 2008), repeating after six.
PlotColour plotColour(std::size_t index);
/// For what is compared with: quiet, and dark enough for thin lines.
PlotColour quietColour();

/// "#rrggbb" of an encoded colour of 0..1; what lies beyond is clipped, not-a-number counts as 0.
std::string hexColour(const Vector3& rgb);
/// Likewise of L*a*b*.
std::string hexColourOfLab(const Vector3& lab);

/// The rules of a style sheet that give roles their colours, on a light or a dark page.
std::string plotColourRules(bool dark);

}  // namespace greycard::present
