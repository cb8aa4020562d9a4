#include <utility>

#include "bindings.h"
#include "greycard/awb_utils.h"
#include "greycard/de_gamma.h"
#include "greycard/skin_color_helper.h"

namespace greycard::python {
namespace {

void bindWhiteBalance(py::module_& m) {
  Struct<WhiteBalancePoint>(m, "WhiteBalancePoint",
                            "The ratios R/G and B/G of a sensor's response to a grey.")
      .field("rg", &WhiteBalancePoint::rg, "R/G.")
      .field("bg", &WhiteBalancePoint::bg, "B/G.");
  Struct<AffineTransform>(m, "AffineTransform", "X' = a X + b Y + e and Y' = c X + d Y + f.")
      .field("a", &AffineTransform::a, "X to X'.")
      .field("b", &AffineTransform::b, "Y to X'.")
      .field("c", &AffineTransform::c, "X to Y'.")
      .field("d", &AffineTransform::d, "Y to Y'.")
      .field("e", &AffineTransform::e, "Added to X'.")
      .field("f", &AffineTransform::f, "Added to Y'.")
      .def("__call__", &AffineTransform::operator(), py::arg("point"), "The point transformed.");

  using Points = AWBUtils::ReferencePoints;
  py::class_<AWBUtils>(m, "AWBUtils",
                       R"(Maps white-balance points from one sensor's plane to another's.

Three reference points are an array 3 x 2: R/G and B/G of each.

Examples
--------
>>> import greycard.core as core
>>> source = [[0.5, 0.4], [0.7, 0.3], [0.4, 0.8]]
>>> target = [[0.6, 0.4], [0.8, 0.3], [0.5, 0.8]]
>>> moved = core.AWBUtils().GetTranformPtbyAffineTransform(
...     source, target, core.WhiteBalancePoint(rg=0.5, bg=0.4))
>>> round(moved.rg, 9), round(moved.bg, 9)
(0.6, 0.4)
)")
      .def(py::init())
      .def(
          "GetTranformPtbyAffineTransform",
          [](const AWBUtils& self, const Points& source, const Points& target,
             const WhiteBalancePoint& point) {
            return self.GetTranformPtbyAffineTransform(source, target, point);
          },
          py::arg("source"), py::arg("target"), py::arg("point"),
          "A point of the source plane in the target plane. Nothing is checked (SpansPlane).")
      .def("GetTranformPtbyAffineTransform",
           py::overload_cast<double, double, double, double, double, double, double, double, double,
                             double, double, double, double, double>(
               &AWBUtils::GetTranformPtbyAffineTransform, py::const_),
           py::arg("srcRG1"), py::arg("srcBG1"), py::arg("srcRG2"), py::arg("srcBG2"),
           py::arg("srcRG3"), py::arg("srcBG3"), py::arg("targetRG1"), py::arg("targetBG1"),
           py::arg("targetRG2"), py::arg("targetBG2"), py::arg("targetRG3"), py::arg("targetBG3"),
           py::arg("px"), py::arg("py"), "The same one by one.")
      .def("GetAffineTransform", &AWBUtils::GetAffineTransform, py::arg("source"),
           py::arg("target"), "The transform itself, for several points. Not checked either.")
      .def_static("SpansPlane", &AWBUtils::SpansPlane, py::arg("points"),
                  "Whether three points span a triangle.");
}

void bindDeGamma(py::module_& m) {
  py::class_<DeGamma>(m, "DeGamma", "Undoes a camera's tone curve for one colour.")
      .def(py::init())
      .def(
          "runDeGamma",
          [](const DeGamma& self, In<double> gamma, In<double> rgb) {
            Vector3 positions{};
            self.runDeGamma(gamma.read("gamma"), rgb.read("OrigRGB"), positions);
            return positions;
          },
          py::arg("gamma"), py::arg("OrigRGB"),
          R"(Where on the input axis of the table each channel's value is reached.

Parameters
----------
gamma : 256
    The tone curve, non-decreasing, in a scale four times that of the colour (full scale 1020).
OrigRGB : 3
    The encoded colour, 0 to 255.

Returns
-------
3
    Entry numbers from 1.0 to 256.0; not-a-number where the curve is flat.

Raises
------
ValueError
    Fewer than 256 entries or 3 channels.

Examples
--------
>>> import numpy, greycard.core as core
>>> core.DeGamma().runDeGamma(numpy.arange(256) * 4.0, [0, 10, 255]).tolist()
[1.0, 11.0, 256.0]
)");
}

using Skin = SkinColorHelper;

// Points as an array over the memory that the helper shares with whoever holds them.
template <typename Items>
py::object shared(const std::shared_ptr<Items>& items, const py::dtype& type, Shape shape) {
  if (!items) return py::none();
  shape.insert(shape.begin(), static_cast<py::ssize_t>(items->size()));
  auto* const held = new std::shared_ptr<Items>(items);
  const py::capsule owner(held,
                          [](void* gone) { delete static_cast<std::shared_ptr<Items>*>(gone); });
  return py::array(type, shape, items->data(), owner);
}

py::object points(const std::shared_ptr<Skin::DataArray>& items) {
  return shared(items, py::dtype::of<Skin::DataPt>(), {});
}

template <void (Skin::*set)(std::span<const double>, std::span<const double>,
                            std::span<const double>)>
void setResponses(Skin& self, In<double> r, In<double> g, In<double> b) {
  (self.*set)(r.read("avgR"), g.read("avgG"), b.read("avgB"));
}

// The helper is lent to the call: another thread finds it as after Dispose meanwhile.
void calibrate(Skin& self) {
  Skin lent = std::move(self);
  try {
    withoutLock([&] { lent.Calibrate(); });
  } catch (...) {
    self = std::move(lent);
    throw;
  }
  self = std::move(lent);
}

void bindSkin(py::module_& m) {
  PYBIND11_NUMPY_DTYPE(Skin::DataPt, y, h, s);
  py::class_<Skin> bound(m, "SkinColorHelper",
                         R"(Predicts where human skin falls in a camera's processed colours.

Set the inputs in any order, then Calibrate. What is not set is zero. An object works for one thread at
a time.

Examples
--------
>>> import numpy, greycard.core as core
>>> helper = core.SkinColorHelper()
>>> helper.SetCCMValues_T84(numpy.eye(3))
>>> helper.Calibrate()
>>> helper.GetUpperData()["h"].shape
(3213,)
)");
  Struct<Skin::DataPt>(bound, "DataPt", "One synthetic skin colour.")
      .field("y", &Skin::DataPt::y, "Luma, 0..1.")
      .field("h", &Skin::DataPt::h, "Hue ratio Cb / Cr.")
      .field("s", &Skin::DataPt::s, "Saturation (|Cr| + |Cb|) / (2 Y).");
  using Dump = Skin::SkinDetMapDumpStruct;
  Struct<Dump>(bound, "SkinDetMapDumpStruct",
               "For the host; the library neither fills nor reads it.")
      .field("width", &Dump::width, "Pixels.")
      .field("height", &Dump::height, "Pixels.")
      .field("enabled_dump", &Dump::enabled_dump, "For the host.")
      .field("y", &Dump::y, "For the host.")
      .field("h", &Dump::h, "For the host.")
      .field("s", &Dump::s, "For the host.");
  const auto r = py::arg("avgR"), g = py::arg("avgG"), b = py::arg("avgB"), ccm = py::arg("pCCM");
  bound.def(py::init())
      .def(
          "SetMCCRGBValues_A", &setResponses<&Skin::SetMCCRGBValues_A>, r, g, b,
          "The camera's mean R, G and B of the 24 patches under A: linear, 0..1. Raises ValueError "
          "unless each holds 24 finite values.")
      .def("SetMCCRGBValues_D65", &setResponses<&Skin::SetMCCRGBValues_D65>, r, g, b)
      .def("SetMCCRGBValues_T84", &setResponses<&Skin::SetMCCRGBValues_T84>, r, g, b)
      .def("SetCCMValues_A", &Skin::SetCCMValues_A, ccm, "Without effect.")
      .def("SetCCMValues_D65", &Skin::SetCCMValues_D65, ccm, "Without effect.")
      .def(
          "SetCCMValues_T84", &Skin::SetCCMValues_T84, ccm,
          "The colour-correction matrix (3 x 3), applied under all three lights. Raises ValueError "
          "for an entry that is not finite.")
      .def(
          "SetGammaTable",
          [](Skin& self, In<std::int32_t> green, std::int32_t bits) {
            self.SetGammaTable(green.read("pGammaTable_G"), bits);
          },
          py::arg("pGammaTable_G"), py::arg("Bpp"),
          "The camera's tone curve: 256 codes at equal steps of linear input, of 1..31 bits.")
      .def("Calibrate", &calibrate,
           "Makes new arrays of points; the earlier ones stay with whoever holds them.")
      .def(
          "GetUpperData", [](const Skin& self) { return points(self.GetUpperData()); },
          "Records y, h, s of the 3213 points, those not accepted zero; None before Calibrate.")
      .def(
          "GetLowerData", [](const Skin& self) { return points(self.GetLowerData()); },
          "The same. h may be infinite or not a number: check it before computing with it.")
      .def(
          "GetEncodedColours",
          [](const Skin& self) {
            return shared(self.GetEncodedColours(), py::dtype::of<float>(), {3});
          },
          "3213 x 3: R, G, B behind the points, whether accepted or not.")
      .def("Dispose", &Skin::Dispose,
           "Releases the inputs; setting one or calibrating is refused from then on.");
  field(bound, "m_pSessionParams", &Skin::m_pSessionParams, "For the host.");
  bound.attr("kSpectra") = int{Skin::kSpectra};
  bound.attr("kLights") = int{Skin::kLights};
  bound.attr("kVariants") = int{Skin::kVariants};
  bound.attr("kGammaEntries") = int{Skin::kGammaEntries};
  bound.attr("kMinBpp") = int{Skin::kMinBpp};
  bound.attr("kMaxBpp") = int{Skin::kMaxBpp};
  bound.attr("kPoints") = int{Skin::kPoints};
}

}  // namespace

void bindCalibration(py::module_& m) {
  bindWhiteBalance(m);
  bindDeGamma(m);
  bindSkin(m);
}

}  // namespace greycard::python
