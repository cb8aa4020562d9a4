#include "greycard/picture.h"

#include <cstring>
#include <limits>
#include <stdexcept>

#include "bindings.h"
#include "calls.h"
#include "greycard/picture_threads.h"

namespace greycard::python {
namespace {

Picture blackPicture(int width, int height, int channels, int bits) {
  // Without samples no product of the lengths can overflow before they are looked at.
  const bool sizes = width > 0 && height > 0 && (channels == 1 || channels == 3);
  if (!sizes || (bits != 8 && bits != 16))
    throw std::invalid_argument(
        "a picture has at least one pixel, 1 or 3 channels and 8 or 16 "
        "bits, not " +
        std::to_string(width) + " x " + std::to_string(height) + " with " +
        std::to_string(channels) + " channels of " + std::to_string(bits) + " bits");
  return Picture(width, height, channels, bits);
}

// The picture's own memory, whatever its bits.
py::array samplesOf(const py::object& self) {
  auto& picture = self.cast<Picture&>();
  Shape shape{picture.height, picture.width};
  if (picture.channels != 1) shape.push_back(picture.channels);
  return py::array(py::dtype::of<std::uint16_t>(), shape, picture.samples.data(), self);
}

void setSamples(const py::object& self, const py::object& samples) {
  auto& picture = self.cast<Picture&>();
  Shape shape{picture.height, picture.width};
  if (picture.channels != 1) shape.push_back(picture.channels);
  const py::array given = readNumbers(samples, "samples", py::dtype::of<std::uint16_t>(), shape);
  std::memmove(picture.samples.data(), given.data(),
               picture.samples.size() * sizeof(std::uint16_t));
}

py::array pixel(const py::object& self, int x, int y) {
  auto& picture = self.cast<Picture&>();
  if (x < 0 || y < 0 || x >= picture.width || y >= picture.height)
    throw std::out_of_range("pixel (" + std::to_string(x) + ", " + std::to_string(y) +
                            ") is outside the picture of " + std::to_string(picture.width) + " x " +
                            std::to_string(picture.height));
  return py::array(py::dtype::of<std::uint16_t>(), Shape{picture.channels}, picture.pixel(x, y),
                   self);
}

py::bytes bytesOf(const std::vector<std::uint8_t>& bytes) {
  return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}

void bindPictureClass(py::module_& m) {
  py::class_<Picture>(m, "Picture", R"(A picture in memory: rows from the top, pixels from the left.

Wherever the library takes a Picture, an array of uint8 or uint16 does as well, height x width or
height x width x 3 (R, G, B), C-contiguous; it is copied once for the call. A Picture is not copied.
Its size is fixed once it is made.

Samples of an 8-bit file are 0..255 and of a 16-bit file 0..65535, as they stand in the file; a
12-bit picture is a 16-bit one whose white level is 4095.

Examples
--------
>>> import numpy, greycard.core as core
>>> grey = core.Picture(numpy.full((2, 4), 7, numpy.uint8))
>>> grey.width, grey.height, grey.channels, grey.bits, grey.ceiling()
(4, 2, 1, 8, 255)
>>> grey.samples[0, 0] = 9
>>> numpy.asarray(grey)
array([[9, 7, 7, 7],
       [7, 7, 7, 7]], dtype=uint8)
)")
      .def(py::init(&blackPicture), py::arg("width"), py::arg("height"), py::arg("channels") = 3,
           py::arg("bits") = 8, "A black picture.")
      .def(py::init([](const py::array& array) { return pictureFrom(array); }), py::arg("array"),
           "A copy of an array of uint8 or uint16.")
      .def_readonly("width", &Picture::width, "Pixels from left to right.")
      .def_readonly("height", &Picture::height, "Pixels from top to bottom.")
      .def_readonly("channels", &Picture::channels, "3 (R, G, B) or 1.")
      .def_readonly("bits", &Picture::bits, "8 or 16: the sample size of the file.")
      .def_property("samples", &samplesOf, &setSamples,
                    "The samples themselves as uint16, height x width (x 3). Assigning copies the "
                    "numbers of an array of that shape.")
      .def("pixel", &pixel, py::arg("x"), py::arg("y"),
           "The pixel's 1 or 3 samples themselves. Raises IndexError outside the picture.")
      .def("ceiling", &Picture::ceiling, "Largest value a sample can hold: 255 or 65535.")
      .def(
          "__array__",
          [](const py::object& self, const py::object& dtype) -> py::object {
            py::array array = arrayOf(self.cast<const Picture&>(), self);
            return dtype.is_none() ? py::object(array) : py::object(array.attr("astype")(dtype));
          },
          py::arg("dtype") = py::none(),
          "uint8 or uint16, as in the file; of 16-bit samples the picture's own memory.")
      .def("__copy__", [](const Picture& self) { return Picture(self); })
      .def(
          "__deepcopy__", [](const Picture& self, const py::dict&) { return Picture(self); },
          py::arg("memo"))
      .def("__reduce__",
           [](const py::object& self) {
             return py::make_tuple(py::type::of(self),
                                   py::make_tuple(arrayOf(self.cast<const Picture&>(), self)));
           })
      .def("__repr__", [](const Picture& self) {
        return "Picture(" + std::to_string(self.width) + " x " + std::to_string(self.height) +
               ", channels=" + std::to_string(self.channels) +
               ", bits=" + std::to_string(self.bits) + ")";
      });
}

}  // namespace

void bindPicture(py::module_& m) {
  bindPictureClass(m);
  m.def("isWellFormed", &isWellFormed, py::arg("picture"),
        "Whether the picture's fields agree; always so of one that Python made.");
  m.def(
      "readPicture",
      [](const std::filesystem::path& path) {
        return withoutLock([&] { return readPicture(path); });
      },
      py::arg("path"),
      R"(Reads a PNG, TIFF, JPEG, JPEG 2000, BMP, PNM or WebP file of 8 or 16 bits per sample.

An alpha channel is dropped, an orientation mark is obeyed; colours are in the order R, G, B.

Raises
------
FileError
    It names the file and the reason.
)");
  m.def("checkPictureName", &checkPictureName, py::arg("path"),
        "Raises FileError when no format that pictures are written in has the name's ending.");
  m.def("isJpegName", &isJpegName, py::arg("path"),
        "Whether the name has the ending of a JPEG file, whose compression alters noise.");
  m.def(
      "writePicture",
      [](const std::filesystem::path& path, const Picture& picture) {
        withoutLock([&] { writePicture(path, picture); });
      },
      py::arg("path"), py::arg("picture"),
      R"(Writes the picture; the format follows from the file name's ending.

Written under a temporary name and renamed, so an earlier file stays whole when writing fails.

Raises
------
FileError
    It names the file and the reason, such as a format that can't hold the picture's bits.
)");
  m.def(
      "encodePng",
      [](const Picture& picture) {
        return bytesOf(withoutLock([&] { return encodePng(picture); }));
      },
      py::arg("picture"),
      R"(The bytes of the picture as a PNG file.

Examples
--------
>>> import numpy, greycard.core as core
>>> core.encodePng(numpy.zeros((2, 2, 3), numpy.uint8))[:4]
b'\x89PNG'
)");
  m.def(
      "encodeJpeg",
      [](const Picture& picture, int quality) {
        return bytesOf(withoutLock([&] { return encodeJpeg(picture, quality); }));
      },
      py::arg("picture"), py::arg("quality") = 85,
      "The bytes of an 8-bit picture as a JPEG file, for pictures that are only looked at.");
  m.def(
      "shrinkPicture",
      [](const Picture& picture, int longestSide) {
        return withoutLock([&] { return shrinkPicture(picture, longestSide); });
      },
      py::arg("picture"), py::arg("longestSide"),
      "The picture brought to `longestSide` pixels on its longer side by averaging areas, or a "
      "copy. Raises ValueError for a side below 1.");
  m.def(
      "setPictureThreads", &setPictureThreads, py::arg("count"),
      "How many threads the picture library may use inside one call, in the whole process. Raises "
      "ValueError for a count below 1.");
}

}  // namespace greycard::python
