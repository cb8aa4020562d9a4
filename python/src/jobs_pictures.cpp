// Jobs on whole pictures: hue/saturation tables, flat fields, simulated photographs.

#include "greycard/chart_simulator.h"
#include "greycard/jobs/apply_lut2d.h"
#include "greycard/jobs/estimate_sigma.h"
#include "greycard/jobs/invert_lut2d.h"
#include "greycard/jobs/read_flat_field.h"
#include "greycard/jobs/simulate.h"
#include "jobs.h"

namespace greycard::python {
namespace {

using Path = std::filesystem::path;

void bindLut2dJobs(py::module_& m) {
  Struct<Lut2dApplyOptions>(m, "Lut2dApplyOptions", "How a picture's samples lie.")
      .field("bits", &Lut2dApplyOptions::bits,
             "10 in a 16-bit picture whose white is 1023; else None, those of the picture.");
  Struct<Lut2dApplyReport>(m, "Lut2dApplyReport", "What a table did to a picture.")
      .field("photo", &Lut2dApplyReport::photo, "Names the picture.")
      .field("lut", &Lut2dApplyReport::lut, "Names the table.")
      .field("whiteLevel", &Lut2dApplyReport::whiteLevel, "Sample of full scale.")
      .field("pixels", &Lut2dApplyReport::pixels, "Of the picture.")
      .field("changedPixels", &Lut2dApplyReport::changedPixels, "That the table moved.");
  py::class_<AppliedLut2d>(m, "AppliedLut2d", "A picture before and after a hue/saturation table.")
      .def_readonly("report", &AppliedLut2d::report)
      .def_readonly("bits", &AppliedLut2d::bits, "Sample size of the picture.")
      .def_readonly("before", &AppliedLut2d::before)
      .def_readonly("after", &AppliedLut2d::after)
      .def(
          "picture",
          [](const AppliedLut2d& applied) {
            return withoutLock([&] { return applied.picture(); });
          },
          "The picture with the colours moved, of the white level and sample size that it had.")
      .def(
          "comparison",
          [](const AppliedLut2d& applied) {
            return withoutLock([&] { return applied.comparison(); });
          },
          "Before and after in 8 bits, side by side.");
  m.def("applyLut2d", unlocked(&applyLut2d), py::arg("picture"), py::arg("table"),
        defaulted<Lut2dApplyOptions>("options", "Lut2dApplyOptions()"), py::arg("photo") = Path(),
        py::arg("lut") = Path(),
        R"(Moves the colours of a picture.

The table works on 10 bits: other samples are scaled to that and back.

Raises
------
WrongSampleBits
    The samples can't be of the bits that the options say.
JobError
    More than 65535 pixels a side.
ValueError
    As TwoDLutHelper.SetConfig, and for bits other than 8, 10 and 16.)");

  Struct<Lut2dRoundTrip> roundTrip(m, "Lut2dRoundTrip",
                                   "How far colours are from where they were, after a table and "
                                   "its inverse in 10 bits.");
  Struct<Lut2dRoundTrip::Error>(roundTrip, "Error", "Of the hue in degrees, or the saturation.")
      .field("mean", &Lut2dRoundTrip::Error::mean, "Mean difference.")
      .field("worst", &Lut2dRoundTrip::Error::worst, "Largest difference.");
  roundTrip.field("hueDeg", &Lut2dRoundTrip::hueDeg, "Hue, in degrees.")
      .field("sat", &Lut2dRoundTrip::sat, "Saturation.");
  m.def("roundTripLut2d", unlocked(&roundTripLut2d), py::arg("forward"), py::arg("inverse"),
        "Raises ValueError as TwoDLutHelper.SetConfig.");
  Struct<Lut2dInverseReport>(m, "Lut2dInverseReport", "How well a table is undone.")
      .field("uncoveredNodes", &Lut2dInverseReport::uncoveredNodes,
             "In no triangle of the table's targets; they change nothing.")
      .field("roundTrip", &Lut2dInverseReport::roundTrip, "There and back.");
  Struct<Lut2dInverse>(m, "Lut2dInverse", "The table that undoes a table, and how well it does.")
      .field("table", &Lut2dInverse::table, "Codes.")
      .field("report", &Lut2dInverse::report, "How it went.");
  m.def("invertLut2d", unlocked(&invertLut2d), py::arg("table"),
        "By TwoDLutHelper.CalInverseLut2dCfg, whatever the table's inverse_flag, which is 0 "
        "afterwards.");
}

void bindFlatField(py::module_& m) {
  Enum<LumaChoice>(m, "LumaChoice", "What becomes of a pixel's three samples.")
      .value("Rec601", LumaChoice::Rec601)
      .value("Green", LumaChoice::Green);
  Struct<BareSamples>(m, "BareSamples", "Samples without a header, row by row, low byte first.")
      .field("width", &BareSamples::width, "Pixels, above 0.")
      .field("height", &BareSamples::height, "Likewise.")
      .field("bits", &BareSamples::bits, "8 or 16.");
  Struct<FlatFieldOptions>(m, "FlatFieldOptions", "How a flat field is read.")
      .field("luma", &FlatFieldOptions::luma, "Must be there for a colour picture.")
      .field("raw", &FlatFieldOptions::raw, "The file holds these, and no picture.")
      .field("black", &FlatFieldOptions::black, "Sample without light, which becomes 0.")
      .field("white", &FlatFieldOptions::white, "Sample of full scale, which becomes 255.")
      .field("bits", &FlatFieldOptions::bits,
             "8 to 16, of a sample: `white` is then the most that they hold.");
  Struct<FlatField>(m, "FlatField", "Luma of an even surface, row by row.")
      .field("file", &FlatField::file, "Names it.")
      .field("width", &FlatField::width, "Pixels.")
      .field("height", &FlatField::height, "Likewise.")
      .field("samples", &FlatField::samples, "width * height, in code values of 8 bits.")
      .field("isJpeg", &FlatField::isJpeg, "As its file's name tells.")
      .field("fileCodes", &FlatField::fileCodes, "Code values of the file in one of 8 bits.")
      .field("warnings", &FlatField::warnings, "Of the file, a sentence each.");
  m.def("flatField", unlocked(&flatField), py::arg("picture"), py::arg("luma") = py::none(),
        py::arg("file") = Path(),
        "The field of a picture. Raises ColourFlatField for a colour picture without `luma`.");
  m.def("readFlatField", unlocked(&readFlatField), py::arg("file"),
        defaulted<FlatFieldOptions>("options", "FlatFieldOptions()"),
        "Reads a picture file, or bare samples. Raises FileError, ColourFlatField, JobError when "
        "the file doesn't hold as many samples as `raw` tells, and ValueError for bits or levels "
        "that can't be.");

  Struct<SigmaEstimate>(m, "SigmaEstimate",
                        "The radial noise table of a flat field (SigmaLUT), and what to think of "
                        "it.")
      .field("file", &SigmaEstimate::file, "Names it.")
      .field("width", &SigmaEstimate::width, "Pixels.")
      .field("height", &SigmaEstimate::height, "Likewise.")
      .field("centreNoiseSigma", &SigmaEstimate::centreNoiseSigma, "In code values of 8 bits.")
      .field("lut", &SigmaEstimate::lut, "164 factors from the centre to the corners.")
      .field("msg", &SigmaEstimate::msg, "Of SigmaLUT; mostly empty.")
      .field("fileCodes", &SigmaEstimate::fileCodes, "Code values of the file in one of 8 bits.")
      .field("advice", &SigmaEstimate::advice, "A sentence each, `msg` first.")
      .field("doubts", &SigmaEstimate::doubts,
             "Why this is no flat field to make a table of, a sentence each.")
      .field("report", &SigmaEstimate::report, "How it went.")
      .field("localSigma", &SigmaEstimate::localSigma,
             "Row by row, in code values; empty unless asked for.")
      .def("require", &SigmaEstimate::require,
           "Raises DoubtfulFlatField with all doubts, where there are any.");
  m.def("estimateSigma", unlocked(&estimateSigma), py::arg("field"),
        py::arg("keepsLocalSigma") = false,
        "The noise table of a FlatField. Raises ValueError for a field without pixels or with "
        "fewer samples than pixels.");
}

void bindChartSimulator(py::module_& m) {
  Enum<ModelSensor>(m, "ModelSensor",
                    "Spectral sensitivities of a camera's three channels, made by a formula.")
      .value("Ordinary", ModelSensor::Ordinary)
      .value("Narrow", ModelSensor::Narrow)
      .value("Broad", ModelSensor::Broad)
      .value("Colorimetric", ModelSensor::Colorimetric);
  m.def(
      "modelSensorFromName", [](const std::string& name) { return modelSensorFromName(name); },
      py::arg("name"),
      "The sensor of \"ordinary\", \"narrow\", \"broad\" or \"colorimetric\"; None for others.");
  m.def("modelSensorName", &modelSensorName, py::arg("sensor"), "The name of a ModelSensor.");
  m.def(
      "modelSensors", [] { return std::vector(modelSensors().begin(), modelSensors().end()); },
      "All model sensors.");
  m.def(
      "simulatedLights",
      [] { return std::vector(simulatedLights().begin(), simulatedLights().end()); },
      "The lights that photographs can be simulated under.");
  using S = SimulationSettings;
  Struct<S>(m, "SimulationSettings",
            "What a simulated photograph shows and how it is taken. Shares are 0..1.")
      .field("light", &S::light, "A, D65, TL84, D50, Horizon or CoolWhite.")
      .field("sensor", &S::sensor, "The model sensor.")
      .field("width", &S::width, "Pixels, 16..20000.")
      .field("height", &S::height, "Likewise.")
      .field("sizeShare", &S::sizeShare, "Of the chart in the picture, 0.02..2.")
      .field("offsetX", &S::offsetX, "Shift from the centre, as a share of the width; -1..1.")
      .field("offsetY", &S::offsetY, "Likewise of the height.")
      .field("rotationDeg", &S::rotationDeg, "Clockwise, -360..360.")
      .field("tiltDeg", &S::tiltDeg, "The chart's top leans away, -70..70.")
      .field("yawDeg", &S::yawDeg, "Its right side turns away, -70..70.")
      .field("surround", &S::surround, "R, G, B, as a share of a perfect white; 0..1.")
      .field("whiteShare", &S::whiteShare, "Of full scale in the white patch; 0.001 to 4.")
      .field("vignetting", &S::vignetting, "Share of light lost in the corners, 0..0.95.")
      .field("blurSigma", &S::blurSigma, "Pixels, 0..50.")
      .field("shotNoise", &S::shotNoise, "Standard deviation at full scale; 0..1.")
      .field("readNoise", &S::readNoise, "Standard deviation without light; 0..1.")
      .field("seed", &S::seed, "Of the noise.")
      .field("bits", &S::bits, "8 or 16.")
      .field("encoding", &S::encoding, "What samples mean.")
      .field("blackLevel", &S::blackLevel, "Sample without light.")
      .field("whiteLevel", &S::whiteLevel, "0 stands for what the bits hold.");
  using T = SimulationTruth;
  Struct<T>(m, "SimulationTruth", "What is known about a simulated photograph.")
      .field("centres", &T::centres, "Of the patches, in pixels.")
      .field("corners", &T::corners, "Of each patch.")
      .field("pitch", &T::pitch, "Mean distance of neighbouring centres in pixels.")
      .field("patchSide", &T::patchSide, "Mean side of a patch in pixels.")
      .field("sideRatio", &T::sideRatio, "The largest ratio of adjacent sides of a patch.")
      .field("turnDeg", &T::turnDeg, "Direction of the first row; 0 to below 360.")
      .field("rgb", &T::rgb, "24 x 3, shares of full scale, without vignetting and noise.")
      .field("noiseSigma", &T::noiseSigma, "Standard deviation of a pixel's noise at rgb.")
      .field("shading", &T::shading, "Factor of the vignetting at the centres.")
      .field("whiteRgb", &T::whiteRgb, "rgb of a perfect reflector.");
  py::class_<ChartSimulator>(m, "ChartSimulator",
                             "Renders photographs of the 24-patch chart whose truth is known. Fill "
                             "m_settings, call Simulate, read m_picture and m_truth.")
      .def(py::init<>())
      .def_readwrite("m_settings", &ChartSimulator::m_settings)
      .def_property_readonly("m_picture",
                             [](const ChartSimulator& simulator) { return simulator.m_picture; })
      .def_property_readonly("m_truth",
                             [](const ChartSimulator& simulator) { return simulator.m_truth; })
      .def(
          "Simulate",
          [](ChartSimulator& simulator, const ProgressArg& progress) {
            // Its own copy, which another thread's call can't meet.
            ChartSimulator own;
            own.m_settings = simulator.m_settings;
            const bool done = cancellable(
                progress, [&](const ProgressCallback& callback) { return own.Simulate(callback); });
            if (done) simulator = std::move(own);
            return done;
          },
          py::arg("progress") = ProgressArg(),
          "False when the callable cancelled; raises ValueError about the first setting out of "
          "range. Picture and truth are then as they were.");
}

void bindSimulate(py::module_& m) {
  Struct<DngForm>(m, "DngForm", "What a DNG of a simulated photograph is like.")
      .field("bayer", &DngForm::bayer, "None: three linear channels.")
      .field("bits", &DngForm::bits, "Of a sample: 10, 12, 14 or 16.");
  Struct<SimulatedChart>(m, "SimulatedChart",
                         "A simulated photograph of the chart, and the truth about it.")
      .field("file", &SimulatedChart::file, "Without its folder.")
      .field("settings", &SimulatedChart::settings, "What was asked.")
      .field("truth", &SimulatedChart::truth, "What is known.")
      .field("picture", &SimulatedChart::picture, "The picture.")
      .field("dng", &SimulatedChart::dng, "Of simulateDng.")
      .def("patchAreaOverMinimum", &SimulatedChart::patchAreaOverMinimum,
           "Mean area of a patch over the least that MCCDetector takes.")
      .def("whiteLevel", &SimulatedChart::whiteLevel, "Sample of full scale.");
  m.def(
      "simulateChart",
      [](const SimulationSettings& settings, const Path& file, const ProgressArg& progress) {
        return cancellable(progress, [settings, file](const ProgressCallback& callback) {
          return simulateChart(settings, file, callback);
        });
      },
      defaulted<SimulationSettings>("settings", "SimulationSettings()"), py::arg("file") = Path(),
      py::arg("progress") = ProgressArg(),
      "A photograph in memory; `file` names it in the result. None when the callable cancelled; "
      "raises ValueError as ChartSimulator.Simulate.");
  m.def(
      "simulateDng",
      [](const SimulationSettings& settings, const DngForm& form, const Path& file,
         const ProgressArg& progress) {
        return cancellable(progress, [settings, form, file](const ProgressCallback& callback) {
          return simulateDng(settings, form, file, callback);
        });
      },
      py::arg("settings"), py::arg("form"), py::arg("file") = Path(),
      py::arg("progress") = ProgressArg(),
      "A photograph as the sensor's own codes, for a DNG: linear, whatever the settings say.");
  m.def(
      "dngOf",
      [](const SimulatedChart& chart) {
        std::string bytes;
        {
          const py::gil_scoped_release unlocked;
          bytes = dngOf(chart);
        }
        return py::bytes(bytes);
      },
      py::arg("chart"), "The file's bytes of what simulateDng gave.");
  Struct<SimulatedFlatField>(m, "SimulatedFlatField",
                             "A simulated flat field, whose settings are the truth about it.")
      .field("file", &SimulatedFlatField::file, "Without its folder.")
      .field("settings", &SimulatedFlatField::settings, "What was asked.")
      .field("picture", &SimulatedFlatField::picture, "The picture.")
      .def("noiseGains", &SimulatedFlatField::noiseGains,
           "How much stronger the noise is than at the centre, at 164 radii.");
  m.def(
      "simulateFlatField",
      [](const FlatFieldSettings& settings, const Path& file, const ProgressArg& progress) {
        return cancellable(progress, [settings, file](const ProgressCallback& callback) {
          return simulateFlatField(settings, file, callback);
        });
      },
      defaulted<FlatFieldSettings>("settings", "FlatFieldSettings()"), py::arg("file") = Path(),
      py::arg("progress") = ProgressArg(), "Likewise; raises as FlatFieldSimulator.Simulate.");
}

}  // namespace

void bindPictureJobs(py::module_& m) {
  bindLut2dJobs(m);
  bindFlatField(m);
  bindChartSimulator(m);
  bindSimulate(m);
}

}  // namespace greycard::python
