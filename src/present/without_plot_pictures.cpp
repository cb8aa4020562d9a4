#include "greycard/errors.h"
#include "greycard/present/plot_picture.h"

namespace greycard::present {

bool drawsPlotPictures() {
  return false;
}

Picture plotPicture(std::string_view /*svg*/, double /*scale*/) {
  throw JobError(
      "this greycard was built without librsvg, which draws plots as pictures; take .svg");
}

}  // namespace greycard::present
