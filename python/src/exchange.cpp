// greycard.core.exchange: files that other programs read.

#include "greycard/exchange/formats.h"
#include "greycard/exchange/material.h"
#include "jobs.h"

namespace greycard::python {
namespace {

using exchange::Exported;
using exchange::Material;

// The bytes of a file are bytes in Python, whatever they hold.
struct ExportedFile {
  std::string bytes;
  std::vector<std::string> notes;
};

ExportedFile fileOf(Exported exported) {
  return {std::move(exported.bytes), std::move(exported.notes)};
}

void bindMaterial(py::module_& m) {
  Enum<exchange::MaterialKind>(m, "MaterialKind", "What a file of another program can be made of.")
      .value("Fit", exchange::MaterialKind::Fit)
      .value("Curve", exchange::MaterialKind::Curve)
      .value("Lut2d", exchange::MaterialKind::Lut2d)
      .value("Noise", exchange::MaterialKind::Noise);
  Struct<exchange::FittedLight>(m, "FittedLight", "Gains and matrix under one light.")
      .field("fit", &exchange::FittedLight::fit, "To linear sRGB primaries.")
      .field("kelvin", &exchange::FittedLight::kelvin,
             "Correlated colour temperature of the light, where it is known.");
  m.def("fittedLight", &exchange::fittedLight, py::arg("fit"), py::arg("kelvin") = py::none(),
        "The fit with the colour temperature of its light: that given, or else the published one. "
        "Raises ValueError outside 1000..25000 K.");
  Struct<exchange::FittedCamera>(m, "FittedCamera", "A camera under one or more lights.")
      .field("lights", &exchange::FittedCamera::lights, "A list of FittedLight, in any order.");
  m.def("kindOf", &exchange::kindOf, py::arg("material"),
        "The MaterialKind of a FittedCamera, CurveTables, Lut2DConfig or SigmaEstimate.");
}

void bindFormats(py::module_& m) {
  Struct<exchange::FormatInfo>(m, "FormatInfo", "A format that other programs read.")
      .field("name", &exchange::FormatInfo::name, "\"cube\", \"icc\", ...")
      .field("holds", &exchange::FormatInfo::holds, "A few words for people.")
      .field("kinds", &exchange::FormatInfo::kinds, "What it can be made of.")
      .field("mostLights", &exchange::FormatInfo::mostLights,
             "Of a camera fitted under several; 0: any number.");
  m.def("formats", &exchange::formats, "All formats in a fixed order.");
  m.def("formatNames", &exchange::formatNames, py::arg("kind"),
        "The names of those that can be made of such material.");
  Struct<exchange::ExportOptions>(m, "ExportOptions", "How a file is made.")
      .field("linearInput", &exchange::ExportOptions::linearInput,
             "RGB enters a 3D LUT or a profile as linear values; else through the sRGB transfer.")
      .field("camera", &exchange::ExportOptions::camera,
             "The camera's name, as its raw files tell it; of a C header, what names begin with.");
  py::class_<ExportedFile>(m, "Exported", "A file's bytes, and what its maker should know of it.")
      .def_property_readonly(
          "bytes", [](const ExportedFile& file) { return py::bytes(file.bytes); }, "The file.")
      .def_property_readonly(
          "notes", [](const ExportedFile& file) { return file.notes; },
          "Accuracy, and what could not be kept; a sentence each.");
  m.def(
      "exportAs",
      [](const std::string& format, const Material& material,
         const exchange::ExportOptions& options) {
        return fileOf(unlocked(&exchange::exportAs)(format, material, options));
      },
      py::arg("format"), py::arg("material"),
      defaulted<exchange::ExportOptions>("options", "ExportOptions()"),
      R"(The material in a format; the same bytes for the same material.

Parameters
----------
format : str
    One of formatNames(kindOf(material)).
material : FittedCamera, CurveTables, Lut2DConfig or SigmaEstimate
options : ExportOptions

Raises
------
ValueError
    A format that is unknown or can't be made of such material; values that are not finite.
JobError
    Lights that the format can't hold.)");
  m.def(
      "checkFormat", &exchange::checkFormat, py::arg("format"), py::arg("kind"),
      py::arg("lights") = 1,
      "Raises ValueError or JobError, before there is any material, as exportAs; lights: how many "
      "a camera will be fitted under.");
  m.def(
      "updatedTuning",
      [](const std::string& text, const Material& material) {
        return fileOf(exchange::updatedTuning(text, material));
      },
      py::arg("text"), py::arg("material"),
      "A tuning file with matrices and tone curve of its own put in place of those that it holds. "
      "Raises JobError for a text that can't be understood.");
}

}  // namespace

void bindExchange(py::module_& m) {
  bindMaterial(m);
  bindFormats(m);
}

}  // namespace greycard::python
