#include "greycard/fewest_points.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <memory>
#include <span>
#include <stdexcept>
#include <string>
#include <utility>

#include "golden.h"
#include "greycard/gamma_curve_model.h"

namespace greycard {
namespace {

// Points whose curve is everywhere as near as asked; the same ones every time.
TEST(FewestControlPoints, AreFewAndNearEnough) {
  const GammaCurveModel catalogue(true);
  std::string text;
  for (const auto& [name, codes] :
       {std::pair{"VNormal", 500.0}, {"VLowlight", 160.0}, {"VBacklight", 500.0}}) {
    const GammaTable& table = *catalogue.GetGammaCurveByName(name)->Data();
    const ControlPointList points = *fewestControlPoints(table, codes);
    text += name + std::string(":");
    for (const ControlPoint& point : points)
      text += " " + std::to_string(point.X) + "," + std::to_string(point.Y);
    text += "\n";
    EXPECT_EQ(points.front().X, 0);
    EXPECT_EQ(points.back().X, 255);
    GammaCurveModel model(false);
    GammaCurve through("through", model);
    through.SetControlPoints(ColorChannel::All, std::make_shared<ControlPointList>(points));
    through.CalculateCurve();
    for (std::size_t i = 0; i < table.size(); ++i)
      ASSERT_LE(std::abs((*through.Data())[i] - table[i]), codes) << name << " " << i;
  }
  expectGolden("gamma/golden/fewest_points.txt", text);
  const GammaTable halfAPoint(1024, 32);  // points are whole 64ths of codes
  EXPECT_FALSE(fewestControlPoints(halfAPoint, 31.9));
  EXPECT_EQ(fewestControlPoints(halfAPoint, 32.0)->size(), 2U);
  const GammaTable steps(1024, 0);
  EXPECT_THROW(fewestControlPoints(steps, 0.0), std::invalid_argument);
  EXPECT_THROW(fewestControlPoints(std::span(steps).first(1023), 5.0), std::invalid_argument);
}

}  // namespace
}  // namespace greycard
