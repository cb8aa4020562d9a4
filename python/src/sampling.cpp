#include "bindings.h"
#include "greycard/macbeth_chart_data.h"
#include "greycard/neutral_row.h"
#include "greycard/patch_sampler.h"
#include "greycard/quad_sampler.h"
#include "greycard/sample_meaning.h"

namespace greycard::python {
namespace {

void bindLevels(py::module_& m) {
  Enum<SampleEncoding>(m, "SampleEncoding", "What the samples of a picture are proportional to.")
      .value("linear", SampleEncoding::linear, "proportional to light")
      .value("sRGB", SampleEncoding::sRGB, "IEC 61966-2-1 transfer");
  Struct<SampleLevels>(m, "SampleLevels", R"(What the code values of a picture mean.

(code - blackLevel) / (whiteLevel - blackLevel), decoded if it is encoded, times scale.

Examples
--------
>>> import greycard.core as core
>>> core.SampleLevels.twelveBit(core.SampleEncoding.linear).whiteLevel
4095.0
)")
      .field("blackLevel", &SampleLevels::blackLevel, "Code value without light.")
      .field("whiteLevel", &SampleLevels::whiteLevel, "Code value of full scale.")
      .field("scale", &SampleLevels::scale, "Factor on the linear value, above 0.")
      .field("encoding", &SampleLevels::encoding, "Linear or encoded.")
      .def_static("eightBit", &SampleLevels::eightBit, py::arg("encoding"), "White level 255.")
      .def_static("twelveBit", &SampleLevels::twelveBit, py::arg("encoding"), "White level 4095.")
      .def_static("sixteenBit", &SampleLevels::sixteenBit, py::arg("encoding"),
                  "White level 65535.");
  Struct<SampleMeaning>(m, "SampleMeaning",
                        "What a photograph's samples mean, as far as somebody says so.")
      .field("encoding", &SampleMeaning::encoding, "Else sRGB for 8 bits and linear for 16.")
      .field("blackLevel", &SampleMeaning::blackLevel, "Else 0.")
      .field("whiteLevel", &SampleMeaning::whiteLevel, "Else 255 or 65535.");
  m.def("checkLevels", &checkLevels, py::arg("levels"),
        "Raises ValueError unless they are finite, white above black, scale above 0.");
  m.def("defaultEncoding", &defaultEncoding, py::arg("bits"),
        "sRGB for 8 bits and linear for 16: what samples are where nobody says otherwise.");
  m.def(
      "sampleLevels", &sampleLevels, py::arg("picture"),
      py::arg_v("meaning", SampleMeaning(), "SampleMeaning()"),
      "The levels of a picture. Raises ValueError unless the white level is above the black one.");
}

void bindReports(py::module_& m) {
  Struct<ChannelClipping>(m, "ChannelClipping", "Shares (0..1) of a patch's pixels in one channel.")
      .field("ceiling", &ChannelClipping::ceiling, "At or above the white level.")
      .field("floor", &ChannelClipping::floor, "At or below the black level.");
  Struct<SamplingReport> report(m, "SamplingReport",
                                "Which patches of a sampled chart ran into the ends of the scale.");
  report
      .field("clipping", &SamplingReport::clipping,
             "24 x 3 x 2: ceiling and floor of each patch's R, G, B.")
      .field("pixels", &SamplingReport::pixels, "24: sampled per patch.");
  report.def("clips", &SamplingReport::clips, py::arg("patch"),
             "Whether more than kClippedAbove of a channel's pixels do. Raises IndexError.");
  report.def("clippedPatches", &SamplingReport::clippedPatches, "0-based rows, ascending.");
  report.attr("kClippedAbove") = SamplingReport::kClippedAbove;

  Struct<QuadSampling>(m, "QuadSampling", "What is seen inside 24 patches given by their corners.")
      .field("mean", &QuadSampling::mean, "24 x 3, linear.")
      .field("deviation", &QuadSampling::deviation, "24 x 3: standard deviation of a pixel.")
      .field("median", &QuadSampling::median, "24 x 3.")
      .field("unevenness", &QuadSampling::unevenness,
             "24 x 3: standard deviation of the means of 3 x 3 cells.")
      .field("report", &QuadSampling::report, "Clipped shares and numbers of pixels.");
  m.def(
      "sampleQuads",
      [](const Picture& picture, const PatchQuads& patches, SampleLevels levels, double share) {
        return withoutLock([&] { return sampleQuads(picture, patches, levels, share); });
      },
      py::arg("picture"), py::arg("patches"), py::arg("levels"), py::arg("share") = 0.5,
      R"(Samples the middle of each patch: its side times `share`, seen as the patch is seen.

Parameters
----------
patches : 24 x 4 x 2
    Corners in pixels.
share : float
    0..1, above 0.

Raises
------
ValueError
    It names the patch whose corners are not finite, not convex, or hold no pixel of the picture.
)");
  m.def("checkSampledShare", &checkSampledShare, py::arg("share"),
        "Raises ValueError for a share that isn't above 0 and at most 1.");
  m.def(
      "sampledMiddles",
      [](const PatchQuads& patches, double share) { return sampledMiddles(patches, share); },
      py::arg("patches"), py::arg("share") = 0.5,
      "The corners (24 x 4 x 2) of what sampleQuads looks at in each patch.");

  Struct<NeutralRow>(m, "NeutralRow",
                     "How well the grey patches stand to each other as their references do.")
      .field("largest", &NeutralRow::largest, "Largest distance to the reference in L*.")
      .field("patch", &NeutralRow::patch, "Where, 0-based.")
      .field("otherwise", &NeutralRow::otherwise,
             "The largest distance had the samples meant the other encoding.");
  m.def("neutralRow", &neutralRow, py::arg("linearRgb"), py::arg("referenceLab"),
        py::arg("encoding"), py::arg("clipped"),
        "How well patches 19 to 24 of balanced linear RGB (24 x 3) stand to each other as those of "
        "the reference L*a*b* (24 x 3); `clipped` are 0-based rows.");
}

SamplingReport collect(MacbethChartData& self, const Picture& picture, const PatchRegions& regions,
                       SampleLevels levels) {
  MacbethChartData sampled = self;
  SamplingReport report =
      withoutLock([&] { return sampled.CollectRGBData(picture, regions, levels); });
  self = sampled;
  return report;
}

void bindChartData(py::module_& m) {
  m.def("patchName", &patchName, py::arg("patch"),
        R"(Name of a patch by its 0-based row. Raises IndexError unless 0 <= patch < 24.

Examples
--------
>>> import greycard.core as core
>>> core.patchName(0), core.patchName(23)
('dark skin', 'black 2')
)");
  using Path = std::filesystem::path;
  Struct<MacbethChartData>(m, "MacbethChartData", R"(One 24-patch chart: reference and measured.

A chart file is text of 24 lines in chart order, three decimal numbers with blanks between them.

Examples
--------
>>> import greycard.core as core
>>> chart = core.MacbethChartData()
>>> chart.LoadMCCCIELAB(core.Illum.illum_D65)
True
>>> chart.m_RefLab.shape, round(chart.m_RefLab[18, 0])
((24, 3), 95)
)")
      .field("m_RefLab", &MacbethChartData::m_RefLab, "24 x 3: reference L*, a*, b*.")
      .field("m_RGB", &MacbethChartData::m_RGB, "24 x 3: measured R, G, B; linear, 0..1.")
      .field("m_Noise", &MacbethChartData::m_Noise,
             "24 x 3: standard deviation of the measured R, G, B.")
      .def("LoadMCCCIELAB", py::overload_cast<Illum>(&MacbethChartData::LoadMCCCIELAB),
           py::arg("illum"), "m_RefLab becomes the chart under the light, adapted to D65.")
      .def("LoadMCCCIELAB", py::overload_cast<const Path&>(&MacbethChartData::LoadMCCCIELAB),
           py::arg("file"),
           "m_RefLab from a file of L*, a*, b*. False when the file can't be opened, or at the "
           "first "
           "line that yields fewer than three numbers; the rows before it stay overwritten.")
      .def("LoadMCCsRGB", &MacbethChartData::LoadMCCsRGB, py::arg("file"),
           "The same from 8-bit sRGB values, 0..255; converts them, clamps nothing.")
      .def("WriteMCC_CIELAB", &MacbethChartData::WriteMCC_CIELAB, py::arg("file"),
           "Writes m_RefLab as a chart file. False when it can't.")
      .def("readReferenceLab", &MacbethChartData::readReferenceLab, py::arg("file"),
           "m_RefLab from a file that must be nothing but 24 lines of three finite numbers. Raises "
           "FileError that names file, line and text; m_RefLab is then left as it was.")
      .def("readReferenceSRgb", &MacbethChartData::readReferenceSRgb, py::arg("file"),
           "The same from 8-bit sRGB values, which must lie in 0..255.")
      .def("RefLabFromRGB", &MacbethChartData::RefLabFromRGB,
           "m_RefLab from m_RGB, taken as encoded sRGB in 0..1 here.")
      .def("CollectRGBData", &collect, py::arg("picture"), py::arg("regions"), py::arg("levels"),
           R"(Samples the patches of a photograph into m_RGB (mean) and m_Noise (deviation).

Parameters
----------
regions : 24 x 4
    Left, top, width, height in pixels.

Raises
------
ValueError
    A region that is not finite or has no pixel inside the picture, levels that make no scale; the
    tables are then untouched.
)")
      .def("Dispose", &MacbethChartData::Dispose, "All three tables zero again.");
}

}  // namespace

void bindSampling(py::module_& m) {
  bindLevels(m);
  bindReports(m);
  bindChartData(m);
}

}  // namespace greycard::python
