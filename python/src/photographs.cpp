// Photographs of any kind: picture files, raw files, samples without a header.

#include "greycard/capture_info.h"
#include "greycard/jobs/describe_photograph.h"
#include "greycard/photograph.h"
#include "greycard/raw/bayer_pattern.h"
#include "greycard/raw/dump.h"
#include "greycard/raw/read_raw.h"
#include "greycard/raw/write_dng.h"
#include "jobs.h"

namespace greycard::python {
namespace {

using Path = std::filesystem::path;

py::bytes asBytes(const std::string& bytes) {
  return {bytes.data(), bytes.size()};
}

void bindCaptureInfo(py::module_& m) {
  Struct<CaptureInfo>(m, "CaptureInfo",
                      "What a raw file tells about itself, in the same words whoever made the "
                      "camera.")
      .field("format", &CaptureInfo::format, "\"DNG\", \"raw\" or \"dump\".")
      .field("camera", &CaptureInfo::camera, "Maker and model; may be empty.")
      .field("mosaic", &CaptureInfo::mosaic, "As in \"RGGB\"; \"linear\" or \"grey\" else.")
      .field("sensorWidth", &CaptureInfo::sensorWidth, "Samples side by side.")
      .field("sensorHeight", &CaptureInfo::sensorHeight, "Samples one above another.")
      .field("orientation", &CaptureInfo::orientation, "EXIF's, 1 to 8; already applied.")
      .field("iso", &CaptureInfo::iso, "Sensitivity, or None.")
      .field("exposureSeconds", &CaptureInfo::exposureSeconds, "Seconds, or None.")
      .field("asShotGains", &CaptureInfo::asShotGains,
             "The camera's factors on linear R, G and B, G being 1; not applied.")
      .field("blackLevel", &CaptureInfo::blackLevel, "Codes of R, G and B that became 0.")
      .field("whiteLevel", &CaptureInfo::whiteLevel, "Codes of R, G and B that became 65535.");
  m.def("captureRows", &captureRows, py::arg("info"),
        "Name and value of what is known, for people.");
}

void bindRaw(py::module_& m) {
  Enum<BayerPattern>(m, "BayerPattern", "Colours of a sensor's upper left 2x2 cell, row by row.")
      .value("RGGB", BayerPattern::RGGB)
      .value("BGGR", BayerPattern::BGGR)
      .value("GRBG", BayerPattern::GRBG)
      .value("GBRG", BayerPattern::GBRG);
  m.def(
      "bayerPatternFromName", [](const std::string& name) { return bayerPatternFromName(name); },
      py::arg("name"), "The pattern of that name, letter case ignored; None for others.");
  m.def("bayerPatternName", &bayerPatternName, py::arg("pattern"), "As in \"RGGB\".");
  m.def("cellChannels", &cellChannels, py::arg("pattern"),
        "Channel (0 R, 1 G, 2 B) at each of the cell's places.");
  Struct<DumpLayout>(m, "DumpLayout", "How a sensor's samples lie in a file without a header.")
      .field("width", &DumpLayout::width, "Samples, even, up to 65534.")
      .field("height", &DumpLayout::height, "Likewise.")
      .field("bits", &DumpLayout::bits, "8 to 16.")
      .field("packed", &DumpLayout::packed, "As MIPI CSI-2 does, 10 and 12 bits alone.")
      .field("pattern", &DumpLayout::pattern, "Colours of the 2x2 cell.")
      .field("offset", &DumpLayout::offset, "Bytes before the first sample.")
      .field("stride", &DumpLayout::stride, "Bytes from row to row; 0 for rows without gaps.");
  m.def(
      "dumpLayoutFromText", [](const std::string& text) { return dumpLayoutFromText(text); },
      py::arg("text"),
      R"(The layout that WIDTHxHEIGHT:BITS:PATTERN[:OFFSET[:STRIDE]] says.

Raises ValueError with a sentence.

Examples
--------
>>> import greycard.core as core
>>> core.dumpLayoutFromText("4000x3000:12p:RGGB").packed
True
)");
  Struct<RawOptions>(m, "RawOptions", "Levels in codes of the file; None: those that it states.")
      .field("blackLevel", &RawOptions::blackLevel, "Code without light.")
      .field("whiteLevel", &RawOptions::whiteLevel, "Code of full scale.");
  Struct<RawCapture>(m, "RawCapture", "A raw file's linear samples.")
      .field("picture", &RawCapture::picture, "16 bits, 0 the black and 65535 the white level.")
      .field("info", &RawCapture::info, "What the file tells.")
      .field("furtherFrames", &RawCapture::furtherFrames,
             "Raw pictures in the file that were not read.");
  m.def("readsRaw", &readsRaw, "Whether this library was built with raw input.");
  m.def("readRaw", unlocked(&readRaw), py::arg("path"),
        defaulted<RawOptions>("options", "RawOptions()"),
        "Reads the linear samples of a DNG or of a camera's own raw file; 2x2 cells are binned. "
        "Raises FileError, and ValueError for levels that make no scale.");
  m.def("readDump", unlocked(&readDump), py::arg("path"), py::arg("layout"),
        defaulted<RawOptions>("options", "RawOptions()"),
        "Samples without a header, as readRaw gives those with one.");
  Struct<DngDescription>(m, "DngDescription", "What a DNG says beside its samples.")
      .field("pattern", &DngDescription::pattern, "None: three linear channels.")
      .field("bits", &DngDescription::bits, "Of a sample: 8, 10, 12, 14 or 16.")
      .field("blackLevels", &DngDescription::blackLevels,
             "Codes without light at the 2x2 cell's places, row by row.")
      .field("whiteLevel", &DngDescription::whiteLevel, "Code of full scale.")
      .field("maker", &DngDescription::maker, "Of the camera.")
      .field("model", &DngDescription::model, "Of the camera.")
      .field("light", &DngDescription::light, "That the colour matrix is for.")
      .field("white", &DngDescription::white, "Linear R, G, B of a perfect reflector.")
      .field("orientation", &DngDescription::orientation, "EXIF's, 1 to 8.")
      .field("iso", &DngDescription::iso, "Sensitivity.")
      .field("exposureSeconds", &DngDescription::exposureSeconds, "Seconds.");
  m.def("mosaicOf", unlocked(&mosaicOf), py::arg("picture"), py::arg("pattern"),
        "One sample of each pixel, as a sensor with these colours sees the picture. Raises "
        "ValueError unless it has three channels and even sides.");
  m.def(
      "encodeDng",
      [](const Picture& samples, const DngDescription& description) {
        return asBytes(unlocked(&encodeDng)(samples, description));
      },
      py::arg("samples"), py::arg("description"),
      "The bytes of a minimal DNG 1.4. Raises ValueError for samples and description that "
      "disagree.");
  m.def("writeDng", unlocked(&writeDng), py::arg("path"), py::arg("samples"),
        py::arg("description"), "Writes them to a file. Raises FileError, and as encodeDng.");
}

// Once: a job may be reading the picture without the interpreter lock.
void setPictureOnce(Photograph& photograph, const Picture& picture) {
  if (!photograph.picture.samples.empty())
    throw py::attribute_error("picture: a photograph keeps the picture that it was made with");
  photograph.picture = picture;
}

void bindPhotographFile(py::module_& m) {
  Struct<PhotographOptions>(m, "PhotographOptions", "How a photograph is read.")
      .field("samples", &PhotographOptions::samples,
             "As somebody says. Levels of a raw file are in its own codes.")
      .field("dump", &PhotographOptions::dump, "The file holds these samples, and no header.");
  Struct<Photograph> photograph(m, "Photograph",
                                "A photograph of whatever kind: a picture file or a camera's raw "
                                "samples. `picture` can be given once.");
  photograph.field("file", &Photograph::file, "Names it.")
      .field("format", &Photograph::format, "\"PNG\", \"TIFF\", \"DNG\", ...")
      .field("samples", &Photograph::samples, "What the picture's samples mean.")
      .field("capture", &Photograph::capture, "Of raw files.")
      .field("warnings", &Photograph::warnings, "A sentence each.");
  photograph.def_property(
      "picture",
      py::cpp_function([](Photograph& self) -> Picture& { return self.picture; },
                       py::return_value_policy::reference_internal),
      &setPictureOnce, "Its samples.");
  photograph.def("__reduce__", [](const py::object& self) {
    py::dict fields;
    for (const char* name : {"picture", "file", "format", "samples", "capture", "warnings"})
      fields[name] = self.attr(name);
    const py::object make = py::module_::import("functools").attr("partial");
    return py::make_tuple(make(py::type::of(self), **fields), py::tuple());
  });
  m.def("readPhotograph", unlocked(&readPhotograph), py::arg("file"),
        defaulted<PhotographOptions>("options", "PhotographOptions()"),
        R"(Reads a photograph, raw or not, as its content tells, whatever its name.

Raises
------
FileError
    As readPicture, readRaw and readDump.
ValueError
    Levels of raw samples that make no scale.)");

  Struct<PhotographInfo>(m, "PhotographInfo",
                         "What a photograph is, before anything is looked for in it.")
      .field("file", &PhotographInfo::file, "Names it.")
      .field("format", &PhotographInfo::format, "\"PNG\", \"DNG\", ...")
      .field("width", &PhotographInfo::width, "Of the picture as it is worked on.")
      .field("height", &PhotographInfo::height, "Likewise.")
      .field("channels", &PhotographInfo::channels, "3 or 1.")
      .field("bits", &PhotographInfo::bits, "8 or 16.")
      .field("levels", &PhotographInfo::levels, "What its samples are taken for.")
      .field("capture", &PhotographInfo::capture, "Of raw files.")
      .field("warnings", &PhotographInfo::warnings, "A sentence each.");
  m.def("describePhotograph", unlocked(&describePhotograph), py::arg("photograph"),
        "Raises ValueError as sampleLevels.");
}

}  // namespace

void bindPhotographs(py::module_& m) {
  bindCaptureInfo(m);
  bindRaw(m);
  bindPhotographFile(m);
}

}  // namespace greycard::python
