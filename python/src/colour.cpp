#include "bindings.h"
#include "greycard/colour_errors.h"
#include "greycard/colour_temperature.h"
#include "greycard/delta_e.h"
#include "greycard/illum.h"
#include "greycard/image_utils_ex.h"
#include "greycard/luma.h"

namespace greycard::python {
namespace {

void bindLights(py::module_& m) {
  // Any number is a light: D65 stands for those without a name.
  py::enum_<Illum>(m, "Illum", "Test lights; three names share their value with the light after.")
      .value("illum_unknown", illum_unknown, "D65 stands for it, as for any value without a name")
      .value("illum_A", illum_A, "CIE standard illuminant A")
      .value("illum_D65", illum_D65, "CIE standard illuminant D65")
      .value("illum_TL84", illum_TL84, "narrow-band fluorescent, CIE F11")
      .value("illum_Outdoor", illum_Outdoor, "D65 stands for it")
      .value("illum_Lowlight", illum_Lowlight, "CIE F11 stands for it")
      .value("illum_LED", illum_LED, "D65 stands for it")
      .value("illum_Strobe", illum_Strobe, "D65 stands for it")
      .value("illum_D50", illum_D50, "CIE standard illuminant D50")
      .value("illum_Max", illum_Max)
      .value("illum_Horizon", illum_Horizon, "Planckian radiator at 2300 K")
      .value("illum_Max304", illum_Max304)
      .value("illum_CoolWhite", illum_CoolWhite, "D65 stands for it, as for all that follow")
      .value("illum_Max306", illum_Max306)
      .value("illum_D75", illum_D75)
      .value("illum_LED1", illum_LED1)
      .value("illum_LED2", illum_LED2)
      .export_values();
  m.def(
      "illumFromName", [](const std::string& name) { return illumFromName(name); }, py::arg("name"),
      R"(The light of that name, letter case ignored; None for any other text.

Examples
--------
>>> import greycard.core as core
>>> core.illumFromName("tl84")
<Illum.illum_TL84: 2>
)");
  m.def("illumName", &illumName, py::arg("light"),
        "The light's name; \"unknown\" for any value without one.");
  m.def("referenceLight", &referenceLight, py::arg("light"),
        "The light whose spectrum and reference colours stand for this one.");
  m.def("illumTitle", &illumTitle, py::arg("light"),
        "The light's name, and which light stands for it where that is another.");
  m.def("whitePoint", &whitePoint, py::arg("light"),
        R"(XYZ of a perfect reflector under the light, Y = 100; CIE 1931 2 degree observer.

Examples
--------
>>> import greycard.core as core
>>> float(core.whitePoint(core.illum_D65)[1])
100.0
)");
  Struct<LightSpectrum>(m, "LightSpectrum", "Relative spectral power at some wavelengths.")
      .field("wavelengthNm", &LightSpectrum::wavelengthNm, "Nanometres.")
      .field("power", &LightSpectrum::power, "As many, relative.");
  m.def("lightSpectrum", &lightSpectrum, py::arg("light"),
        "The spectrum that the light's colours are computed with: 400 to 700 nm by 5 nm.");

  Struct<ColourTemperature>(m, "ColourTemperature",
                            "Where a light stands beside the Planckian radiators.")
      .field("kelvin", &ColourTemperature::kelvin, "Correlated colour temperature.")
      .field("duv", &ColourTemperature::duv,
             "Distance from the locus in CIE 1960 u, v; above 0 on the side of green.");
  m.def(
      "correlatedColourTemperature", &correlatedColourTemperature, py::arg("xyz"),
      "The correlated colour temperature of a light by its X, Y, Z at any scale; None for what is "
      "no light, below 1000 K, above 25000 K and more than 0.05 from the locus.");
  m.def("lightTemperature", &lightTemperature, py::arg("light"),
        "The same of a light's spectrum, or of the one that stands for it.");
}

void bindDifferences(py::module_& m) {
  m.def("deltaE76", &deltaE76, py::arg("labA"), py::arg("labB"),
        R"(CIE 1976 colour difference of two colours in L*a*b* (L* 0..100).

Examples
--------
>>> import greycard.core as core
>>> core.deltaE76([50, 0, 0], [50, 3, 4])
5.0
)");
  m.def("deltaE94", &deltaE94, py::arg("referenceLab"), py::arg("sampleLab"),
        "CIE 1994 with the graphic-arts weights. Not symmetric: the weights follow the reference.");
  m.def("differenceSplit", &differenceSplit, py::arg("referenceLab"), py::arg("lab"),
        "dL*, dC* and dH* of a colour to its reference, signed.");
  m.def("deltaE2000", &deltaE2000, py::arg("labA"), py::arg("labB"),
        "CIEDE2000 with kL = kC = kH = 1.");
  Struct<DeltaE2000Terms>(m, "DeltaE2000Terms",
                          "What CIEDE2000 is made of: the sum of squares, and the rotation.")
      .field("lightness", &DeltaE2000Terms::lightness, "Weighted difference.")
      .field("chroma", &DeltaE2000Terms::chroma, "Weighted difference.")
      .field("hue", &DeltaE2000Terms::hue, "Weighted difference.")
      .field("rotation", &DeltaE2000Terms::rotation,
             "Interaction of chroma and hue, not squared; may be negative.");
  m.def("deltaE2000Terms", &deltaE2000Terms, py::arg("labA"), py::arg("labB"),
        "The terms of deltaE2000, differences B - A.");

  Struct<ErrorColumn>(m, "ErrorColumn", "Colour differences of one chart by one formula.")
      .field("patch", &ErrorColumn::patch, "24.")
      .field("mean", &ErrorColumn::mean, "Of all patches.")
      .field("worst", &ErrorColumn::worst, "The largest.")
      .field("worstPatch", &ErrorColumn::worstPatch, "0-based; the first of equals.");
  Struct<ColourErrors>(m, "ColourErrors", "Colour differences of one chart by three formulas.")
      .field("cie76", &ColourErrors::cie76, "By deltaE76.")
      .field("cie94", &ColourErrors::cie94, "By deltaE94.")
      .field("ciede2000", &ColourErrors::ciede2000, "By deltaE2000.")
      .field("split", &ColourErrors::split, "24 x 3: dL*, dC*, dH* of each patch.")
      .field("levelled2000", &ColourErrors::levelled2000,
             "CIEDE2000 without the mean of dL* over the chart.");
  m.def("colourErrors", &colourErrors, py::arg("referenceLab"), py::arg("lab"),
        "The differences between two charts (24 x 3) in L*a*b*.");
}

void bindHelpers(py::module_& m) {
  m.attr("kLumaShares") = arrayOf(kLumaShares);
  m.def(
      "luma601", [](const Vector3& rgb) { return luma601(rgb); }, py::arg("rgb"),
      R"(Luma of an encoded colour after BT.601, on the colour's own scale.

Examples
--------
>>> import greycard.core as core
>>> round(core.luma601([0, 255, 0]), 3)
149.685
)");

  py::class_<ImageUtilsEx>(m, "ImageUtilsEx", "Colour helpers for a host.")
      .def(py::init())
      .def_static(
          "CIELabTosRGB",
          [](const Vector3& pLab) {
            Vector3 rgb{};
            ImageUtilsEx::CIELabTosRGB(rgb, pLab);
            return rgb;
          },
          py::arg("pLab"),
          "Encoded sRGB (nominally 0..1, not clamped) of a colour in L*a*b* (D65, L* 0..100).")
      .def_static(
          "sRGBToCIELab",
          [](const Vector3& pRGB) {
            Vector3 lab{};
            ImageUtilsEx::sRGBToCIELab(lab, pRGB);
            return lab;
          },
          py::arg("pRGB"), "L*a*b* (D65) of an encoded sRGB colour, nominally 0..1.")
      .def_static(
          "compute_pseudo_inverse",
          [](const Matrix3& inM) -> std::optional<Matrix3> {
            Matrix3 out{};
            if (!ImageUtilsEx::compute_pseudo_inverse(inM, out)) return std::nullopt;
            return out;
          },
          py::arg("inM"),
          "Pseudo-inverse (3 x 3) in single precision; None when an entry does not fit a float.");
}

}  // namespace

void bindColour(py::module_& m) {
  bindLights(m);
  bindDifferences(m);
  bindHelpers(m);
}

}  // namespace greycard::python
