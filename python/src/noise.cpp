#include "bindings.h"
#include "greycard/flat_field_simulator.h"
#include "greycard/sigma_lut.h"

namespace greycard::python {
namespace {

void bindReport(py::module_& m) {
  Struct<SigmaReport>(m, "SigmaReport", "What a table can't tell about the flat field behind it.")
      .field("ceilingShare", &SigmaReport::ceilingShare, "Share of samples at 255, 0..1.")
      .field("floorShare", &SigmaReport::floorShare, "Share of samples at 0.")
      .field("highByteDropped", &SigmaReport::highByteDropped, "Samples above 255.")
      .field("centreMean", &SigmaReport::centreMean, "Over a tenth of the shorter side.")
      .field("cornerMean", &SigmaReport::cornerMean, "Over four such squares in the corners.")
      .field("allEqual", &SigmaReport::allEqual, "Every sample the same: no noise at all.")
      .field("unflatness", &SigmaReport::unflatness,
             "What is left over the best radial fall-off, as a share of the mean, or None.")
      .field("centreWindowEmpty", &SigmaReport::centreWindowEmpty,
             "Narrower or lower than 600 pixels.")
      .field("centreRingSigma", &SigmaReport::centreRingSigma, "Largest local sigma of ring 0.")
      .field("rawRatio", &SigmaReport::rawRatio, "164: table before smoothing and clamping.")
      .field("residualSigma", &SigmaReport::residualSigma, "164: root mean square of each ring.")
      .field("ringPixels", &SigmaReport::ringPixels, "164: pixels of each ring.")
      .def("fallOff", &SigmaReport::fallOff,
           "Share of the centre's mean that is missing in the corners.");
}

bool calculate(SigmaLUT& self, std::uint64_t width, std::uint64_t height, In<std::uint16_t> pixels,
               const py::object& localSigma) {
  const auto samples = pixels.read("pixels", {kAnyShape});
  InOut<float> local{localSigma};
  const auto sigma =
      localSigma.is_none() ? std::span<float>() : local.change("localSigma", {kAnyShape});
  SigmaLUT made;
  const auto calculated = [&] {
    return withoutLock([&] { return made.CalculateSigmaLUT(width, height, samples, sigma); });
  };
  try {
    const bool done = calculated();
    self = std::move(made);
    return done;
  } catch (...) {
    self = std::move(made);
    throw;
  }
}

void bindTable(py::module_& m) {
  m.attr("kSigmaEntries") = kSigmaEntries;
  Struct<SigmaLUT>(m, "SigmaLUT", R"(The radial noise table, estimated from a flat field.

Examples
--------
>>> import numpy, greycard.core as core
>>> noise = numpy.random.default_rng(1).normal(128, 3, (640, 800)).round()
>>> table = core.SigmaLUT()
>>> table.CalculateSigmaLUT(800, 640, noise.astype(numpy.uint16))
True
>>> 3.0 < table.center_noise_sigma < 3.2, table.lut.shape
(True, (164,))
)")
      .field("center_noise_sigma", &SigmaLUT::center_noise_sigma,
             "Noise at the centre, in code values of 8 bits; 0 below 600 pixels a side.")
      .field("lut", &SigmaLUT::lut,
             "164: how much stronger the noise is than at the centre; None after a failure.")
      .field("msg", &SigmaLUT::msg, "Advice to the user about the last calculation.")
      .field("report", &SigmaLUT::report, "On the last calculation.")
      .def("CalculateSigmaLUT", &calculate, py::arg("width"), py::arg("height"), py::arg("pixels"),
           py::arg("localSigma") = py::none(),
           R"(Estimates the table.

Parameters
----------
pixels : array of whole numbers
    Luma row by row, 8-bit values; of larger ones the low byte counts.
localSigma : ndarray of float32, optional
    Takes the local sigma of every pixel, in code values, in place.

Returns
-------
bool
    False without pixels; msg is then empty, lut None.

Raises
------
ValueError
    Fewer pixels, or places in localSigma, than width * height.
MemoryError
    The picture takes more memory than there is.
)");
}

bool simulate(FlatFieldSimulator& self, const ProgressArg& progress) {
  FlatFieldSimulator rendered;
  rendered.m_settings = self.m_settings;
  const bool done = cancellable(
      progress, [&](const ProgressCallback& callback) { return rendered.Simulate(callback); });
  if (done) self.m_picture = std::move(rendered.m_picture);
  return done;
}

void bindFlatField(py::module_& m) {
  using Settings = FlatFieldSettings;
  Struct<Settings>(m, "FlatFieldSettings", "A simulated flat field: an even surface with noise.")
      .field("width", &Settings::width, "Pixels, 2..20000, 100 million together.")
      .field("height", &Settings::height, "Pixels, 2..20000.")
      .field("level", &Settings::level, "Mean at the centre, in code values; 0..255.")
      .field("fallOff", &Settings::fallOff, "The mean falls by this share at the corner; 0..1.")
      .field("centreSigma", &Settings::centreSigma, "0 for none, or 0.6..60 code values.")
      .field("cornerGain", &Settings::cornerGain, "Times as much noise at the corner; 1..20.")
      .field("seed", &Settings::seed, "Of the noise.")
      .field("bits", &Settings::bits, "8, or 16 for the same values in a 16-bit file.");
  py::class_<FlatFieldSimulator> bound(m, "FlatFieldSimulator",
                                       R"(Renders flat fields whose noise is known.

Examples
--------
>>> import greycard.core as core
>>> simulator = core.FlatFieldSimulator()
>>> simulator.m_settings.width, simulator.m_settings.height = 64, 48
>>> simulator.Simulate(), simulator.m_picture
(True, Picture(64 x 48, channels=1, bits=8))
)");
  bound.def(py::init())
      .def_property_readonly(
          "m_picture", [](const FlatFieldSimulator& self) { return self.m_picture; },
          "A copy of the last picture: one channel.")
      .def("Simulate", &simulate, py::arg("progress") = ProgressArg(),
           "Equal settings give equal pictures to the bit. False when the callback cancelled it; "
           "raises ValueError about the first setting that is out of range.")
      .def("gainAt", &FlatFieldSimulator::gainAt, py::arg("rho"), "1 + (cornerGain - 1) rho^2.");
  field(bound, "m_settings", &FlatFieldSimulator::m_settings, "What is rendered.");
}

}  // namespace

void bindNoise(py::module_& m) {
  bindReport(m);
  bindTable(m);
  bindFlatField(m);
}

}  // namespace greycard::python
