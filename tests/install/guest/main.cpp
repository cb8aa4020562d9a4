#include <greycard/gamma_curve_model.h>

// 0 when the library is there and works.
int main() {
  return greycard::GammaCurveModel(true).GetNames().size() == 11 ? 0 : 1;
}
