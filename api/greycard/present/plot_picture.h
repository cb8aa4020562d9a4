#pragma once
/// \file
/// \ingroup own

#include <string_view>

#include "greycard/picture.h"
#include "greycard/present/export.h"

namespace greycard::present {

/// Whether this build can draw plots as pictures (librsvg).
GREYCARD_PRESENT_EXPORT bool drawsPlotPictures();

/// A plot of this library as an R, G, B picture of 8 bits on white.
/// \param svg    as one of the plot functions gives it
/// \param scale  pixels for one unit of the plot, 0.1 to 10
/// \throws JobError where drawsPlotPictures is false; std::invalid_argument for what is no SVG, has
///         no size or a size that makes no picture
GREYCARD_PRESENT_EXPORT Picture plotPicture(std::string_view svg, double scale = 2.0);

}  // namespace greycard::present
