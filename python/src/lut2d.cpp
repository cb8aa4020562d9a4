#include <array>
#include <stdexcept>

#include "bindings.h"
#include "greycard/lut2d_cfg.h"
#include "greycard/lut2d_table.h"
#include "greycard/ten_bit_planes.h"
#include "greycard/two_d_lut_helper.h"
#include "listener.h"

namespace greycard::python {
namespace {

// A helper whose table is not set or inverted while pictures go through it in other threads. The
// counts change with the interpreter lock only.
class SharedHelper : public TwoDLutHelper {
 public:
  /// For the length of a call that reads the table.
  class Reading {
   public:
    explicit Reading(SharedHelper& helper) : helper_(helper) {
      if (helper_.changing_) refuse();
      ++helper_.readers_;
    }
    ~Reading() { --helper_.readers_; }
    Reading(const Reading&) = delete;
    Reading& operator=(const Reading&) = delete;

   private:
    SharedHelper& helper_;
  };
  /// For the length of a call that changes it.
  class Changing {
   public:
    explicit Changing(SharedHelper& helper) : helper_(helper) {
      if (helper_.changing_ || helper_.readers_ != 0) refuse();
      helper_.changing_ = true;
    }
    ~Changing() { helper_.changing_ = false; }
    Changing(const Changing&) = delete;
    Changing& operator=(const Changing&) = delete;

   private:
    SharedHelper& helper_;
  };

 private:
  [[noreturn]] static void refuse() {
    throw std::runtime_error(
        "a TwoDLutHelper is in use by another thread: set and invert its table "
        "before or after");
  }

  int readers_ = 0;
  bool changing_ = false;
};

void bindConfig(py::module_& m) {
  m.attr("kLut2dHueRows") = kLut2dHueRows;
  m.attr("kLut2dSatColumns") = kLut2dSatColumns;
  m.attr("kLut2dNodes") = kLut2dNodes;
  using Config = Lut2DConfig;
  Struct<Config>(m, "Lut2DConfig", R"(A hue/saturation table as a host edits it.

Everything starts at zero, which is not a usable table; identityLut2d makes one. The arrays are the
table's own memory.

Examples
--------
>>> import greycard.core as core
>>> table = core.identityLut2d()
>>> table.lut_2d_h[16 * 3 + 5] = 4.5
>>> table.lut_1d_h[:3].tolist()
[0.0, 15.0, 30.0]
)")
      .field("enabled", &Config::enabled, "For the host.")
      .field("hs_lut_bank_sel", &Config::hs_lut_bank_sel, "For the host.")
      .field("lut_1d_h", &Config::lut_1d_h, "25: hue of each row in degrees, 0 to 360.")
      .field("lut_1d_s", &Config::lut_1d_s, "16: saturation of each column, 0..1.")
      .field("lut_2d_h", &Config::lut_2d_h, "384: hue change in degrees, 16 * row + column.")
      .field("lut_2d_s", &Config::lut_2d_s, "384: saturation change, 1 = full saturation.")
      .field("h_shift", &Config::h_shift, "0..24: a hue change reaches about 15 * 2^n degrees.")
      .field("s_shift", &Config::s_shift, "0..24: a saturation change reaches about 0.25 * 2^n.")
      .field("l_boundary_start_a", &Config::l_boundary_start_a, "Lightness: begins to fade in.")
      .field("l_boundary_start_b", &Config::l_boundary_start_b, "Lightness: full strength.")
      .field("l_boundary_end_a", &Config::l_boundary_end_a, "Lightness: begins to fade out.")
      .field("l_boundary_end_b", &Config::l_boundary_end_b, "Lightness: gone.")
      .field("y_blend_factor", &Config::y_blend_factor, "0..1 (1 = luma kept).")
      .field("K_b_integer", &Config::K_b_integer, "For the host.")
      .field("K_r_integer", &Config::K_r_integer, "For the host.")
      .field("l_boundary_start_inv", &Config::l_boundary_start_inv, "For the host.")
      .field("l_boundary_end_inv", &Config::l_boundary_end_inv, "For the host.")
      .field("inverse_flag", &Config::inverse_flag, "Not 0: CalInverseLut2dCfg has an effect.");

  Struct<Lut2dPair>(m, "Lut2dPair", "A hue in degrees and a saturation times 256.")
      .field("h", &Lut2dPair::h, "Degrees.")
      .field("s", &Lut2dPair::s, "Times 256.");
  Struct<lut2d_cfg>(m, "lut2d_cfg", "The record that the picture path and the inverse work on.")
      .field("reserved", &lut2d_cfg::reserved, "Nothing reads it.")
      .field("node", &lut2d_cfg::node, "25 x 16 x 2: hue and saturation of the nodes.")
      .field("delta", &lut2d_cfg::delta, "25 x 16 x 2: changes.")
      .field("target", &lut2d_cfg::target, "25 x 16 x 2: node - delta.")
      .field("l_boundary_start_a", &lut2d_cfg::l_boundary_start_a, "As in Lut2DConfig.")
      .field("l_boundary_start_b", &lut2d_cfg::l_boundary_start_b, "As in Lut2DConfig.")
      .field("l_boundary_end_a", &lut2d_cfg::l_boundary_end_a, "As in Lut2DConfig.")
      .field("l_boundary_end_b", &lut2d_cfg::l_boundary_end_b, "As in Lut2DConfig.")
      .field("y_blend_factor", &lut2d_cfg::y_blend_factor, "As in Lut2DConfig.")
      .field("h_shift", &lut2d_cfg::h_shift, "As in Lut2DConfig.")
      .field("s_shift", &lut2d_cfg::s_shift, "As in Lut2DConfig.")
      .field("inverse_flag", &lut2d_cfg::inverse_flag, "As in Lut2DConfig.");
}

void bindTable(py::module_& m) {
  using Identity = Lut2dIdentityOptions;
  Struct<Identity>(m, "Lut2dIdentityOptions", "How a table that changes nothing is made.")
      .field("fade", &Identity::fade, "4: lightness, none below the one before.")
      .field("yBlend", &Identity::yBlend, "Share of the luma that is restored, 0..1.")
      .field("hShift", &Identity::hShift, "Hue changes reach 15 degrees times 2 to this power.")
      .field("sShift", &Identity::sShift, "Saturation changes reach 0.25 times 2 to this power.");
  m.def(
      "identityLut2d", &identityLut2d, py::arg_v("options", Identity(), "Lut2dIdentityOptions()"),
      "A table that changes nothing. Raises ValueError as checkLut2d, and for a fade that falls.");
  m.def("checkLut2d", &checkLut2d, py::arg("table"),
        "Raises ValueError about the first field that an editor can't work with.");

  Struct<Lut2dNode>(m, "Lut2dNode", "A node by its hue row and saturation column, from 0.")
      .field("row", &Lut2dNode::row, "0..23.")
      .field("column", &Lut2dNode::column, "0..15.");
  m.def("nearestNode", &nearestNode, py::arg("table"), py::arg("hueDeg"), py::arg("sat"),
        R"(The node nearest in hue (degrees, of any turn) and in saturation.

Examples
--------
>>> import greycard.core as core
>>> core.nearestNode(core.identityLut2d(), 121.0, 1.0)
Lut2dNode(row=8, column=15)
)");
  Struct<CutChanges>(m, "CutChanges", "Changes that the table's shifts can't hold.")
      .field("nodes", &CutChanges::nodes, "How many.")
      .field("warning", &CutChanges::warning, "A sentence for the user; empty without any.");
  m.def("cutChanges", &cutChanges, py::arg("table"), "Changes that the shifts can't hold.");

  using Drag = Lut2dDragOptions;
  Struct<Drag>(m, "Lut2dDragOptions", "A colour to drag, and where to.")
      .field("atHueDeg", &Drag::atHueDeg, "-360..360; the nearest node is taken.")
      .field("atSat", &Drag::atSat, "0..1.")
      .field("byHueDeg", &Drag::byHueDeg, "-360..360.")
      .field("bySat", &Drag::bySat, "-1..1.")
      .field("rangeRows", &Drag::rangeRows, "Hue rows to each side that follow, 0..100.")
      .field("rangeColumns", &Drag::rangeColumns, "Saturation columns, 0..100.")
      .field("keepNode", &Drag::keepNode, "Leave the dragged node itself as it is.");
  using Report = Lut2dDragReport;
  Struct<Report>(m, "Lut2dDragReport", "What a drag did.")
      .field("node", &Report::node, "The dragged one.")
      .field("hueDeg", &Report::hueDeg, "Of the node.")
      .field("sat", &Report::sat, "Of the node.")
      .field("movedNodes", &Report::movedNodes, "How many.")
      .field("cutNodes", &Report::cutNodes, "cutChanges of the table now.");
  m.def("dragLut2d", &dragLut2d, py::arg("table"), py::arg("options"),
        "Drags the node next to a colour, in place; its neighbours follow. Raises ValueError for "
        "numbers outside their ranges; the table is then as it was.");

  Struct<Lut2dSummary>(m, "Lut2dSummary", "A table and how much it changes.")
      .field("changedNodes", &Lut2dSummary::changedNodes, "How many.")
      .field("largestHueChangeDeg", &Lut2dSummary::largestHueChangeDeg, "Degrees.")
      .field("largestSatChange", &Lut2dSummary::largestSatChange, "1 = full saturation.")
      .field("cutNodes", &Lut2dSummary::cutNodes, "cutChanges.")
      .field("table", &Lut2dSummary::table, "The table.");
  m.def("summariseLut2d", &summariseLut2d, py::arg("table"), "The table and how much it changes.");
}

// The caller's arrays, looked at when they are used.
struct HeldTargets {
  py::object sat, hue;
  std::int32_t rows = 0, columns = 0;
};

void adjust(const NodeDrag& drag, const HeldTargets& tables) {
  InOut<double> sat{tables.sat};
  InOut<std::int32_t> hue{tables.hue};
  TwoDLutHelper::Adjust(drag, {sat.change("sat", {kAnyShape}), hue.change("hue", {kAnyShape}),
                               tables.rows, tables.columns});
}

void bindDrag(py::module_& m) {
  Struct<NodeDrag>(m, "NodeDrag", "One drag of a node.")
      .field("originalHue", &NodeDrag::originalHue, "Of the dragged colour, in degrees.")
      .field("deltaS", &NodeDrag::deltaS, "In saturation units.")
      .field("deltaH", &NodeDrag::deltaH, "In degrees.")
      .field("rangeS", &NodeDrag::rangeS, "Columns to each side that it reaches.")
      .field("rangeH", &NodeDrag::rangeH, "Rows to each side.")
      .field("hitH", &NodeDrag::hitH, "Row of the dragged node.")
      .field("hitS", &NodeDrag::hitS, "Column of the dragged node.")
      .field("movesHitNode", &NodeDrag::movesHitNode, "Whether the dragged node moves too.");
  py::class_<HeldTargets>(m, "TargetTables",
                          R"(Target tables of hue rows by saturation columns, changed in place.

Parameters
----------
sat : ndarray of float64
    0..1, row by row.
hue : ndarray of int32
    Whole degrees, 0..359.
)")
      .def(py::init([](py::object sat, py::object hue, std::int32_t rows, std::int32_t columns) {
             return HeldTargets{std::move(sat), std::move(hue), rows, columns};
           }),
           py::arg("sat"), py::arg("hue"), py::arg("rows"), py::arg("columns"))
      .def_readwrite("sat", &HeldTargets::sat)
      .def_readwrite("hue", &HeldTargets::hue)
      .def_readwrite("rows", &HeldTargets::rows)
      .def_readwrite("columns", &HeldTargets::columns);
}

using Helper = py::class_<SharedHelper>;

bool processImage(SharedHelper& self, InOut<std::uint16_t> r, InOut<std::uint16_t> g,
                  InOut<std::uint16_t> b, std::int32_t w, std::int32_t h, std::int32_t bpp) {
  const auto red = r.change("r", {kAnyShape}), green = g.change("g", {kAnyShape}),
             blue = b.change("b", {kAnyShape});
  const SharedHelper::Reading reading(self);
  return withoutLock([&] { return self.ProcessImage(red, green, blue, w, h, bpp); });
}

void bindColours(Helper& bound) {
  using Colour = TwoDLutHelper::HueSatLightness;
  Struct<Colour>(bound, "HueSatLightness", "A double hexcone colour.")
      .field("h", &Colour::h, "Degrees, 0 to below 360.")
      .field("s", &Colour::s, "0..1.")
      .field("l", &Colour::l, "0..1.");
  bound
      .def_static("RGBtoHLS", &TwoDLutHelper::RGBtoHLS, py::arg("r"), py::arg("g"), py::arg("b"),
                  "From components of 0..1. Greys have hue and saturation 0.")
      .def_static("HLStoRGB", &TwoDLutHelper::HLStoRGB, py::arg("h"), py::arg("s"), py::arg("l"),
                  "To components of 0..1 (not clamped).")
      .def_static(
          "Adjust", &adjust, py::arg("drag"), py::arg("tables"),
          "Spreads the drag of one node over its neighbours, in place. Raises ValueError and "
          "IndexError; the tables are then left as they were.")
      .def_static(
          "Adjust",
          [](double /*m_original_s*/, std::int32_t originalHue, double deltaS, double deltaH,
             std::int32_t rangeS, std::int32_t rangeH, std::int32_t hitH, std::int32_t hitS,
             const py::object& sat, const py::object& hue, std::int32_t rows, std::int32_t columns,
             bool movesHitNode) {
            adjust({originalHue, deltaS, deltaH, rangeS, rangeH, hitH, hitS, movesHitNode},
                   {sat, hue, rows, columns});
          },
          py::arg("m_original_s"), py::arg("m_original_h"), py::arg("deltaS"), py::arg("deltaH"),
          py::arg("m_nNodeRange_s"), py::arg("m_nNodeRange_h"), py::arg("m_nHit_LUT_h"),
          py::arg("m_nHit_LUT_s"), py::arg("m_LUT_sat"), py::arg("m_LUT_hue"), py::arg("m_nLUT_h"),
          py::arg("m_nLUT_s"), py::arg("bAdjustCenterNode"));
}

void bindHelper(py::module_& m) {
  Helper bound(m, "TwoDLutHelper", R"(Edits and applies a hue/saturation table.

Any number of threads may call ProcessImage of one object, each on planes of its own.

Examples
--------
>>> import numpy, greycard.core as core
>>> helper = core.TwoDLutHelper()
>>> helper.SetConfig(core.identityLut2d())
>>> r, g, b = numpy.full((3, 2, 2), 500, numpy.uint16)
>>> helper.ProcessImage(r, g, b, 2, 2, 10)
True
)");
  bound.def(py::init())
      .def(
          "SetConfig",
          [](SharedHelper& self, const Lut2DConfig& config) {
            const SharedHelper::Changing changing(self);
            self.SetConfig(config);
          },
          py::arg("cfg"),
          "Fills the processing record. Raises ValueError that names the field and its value.")
      .def(
          "CalInverseLut2dCfg",
          [](SharedHelper& self) {
            const SharedHelper::Changing changing(self);
            return withoutLock([&] { return self.CalInverseLut2dCfg(); });
          },
          "When the table's inverse_flag is not zero, replaces the changes by those that undo "
          "them. "
          "False without a table.")
      .def(
          "CalInverseLut2dCfg",
          [](SharedHelper& self, const py::object& remarks) {
            if (!remarks.is_none() && PyCallable_Check(remarks.ptr()) == 0)
              refuseType(remarks, "remarks", "None or a callable");
            const TextSink sink = remarks.is_none() ? TextSink() : TextSink(Listener(remarks));
            const SharedHelper::Changing changing(self);
            return withoutLock([&] { return self.CalInverseLut2dCfg(sink); });
          },
          py::arg("remarks"), "The same, reporting to remarks(text) alone.")
      .def("UncoveredNodes", &TwoDLutHelper::UncoveredNodes,
           "Nodes that the last inverse found outside every triangle of targets.")
      .def("ProcessImage", &processImage, py::arg("r"), py::arg("g"), py::arg("b"), py::arg("w"),
           py::arg("h"), py::arg("bpp"),
           R"(Applies the table to w * h pixels, in place.

Parameters
----------
r, g, b : ndarray of uint16
    One plane each, C-contiguous and writable, samples of 10 bits; larger ones count as 1023.
w, h : int
    Each cut to unsigned 16 bits.
bpp : int
    Ignored.

Returns
-------
bool
    False, the planes untouched, without a table or when a plane is shorter than w * h samples.
)")
      .def("DebugPrint", &TwoDLutHelper::DebugPrint, "Writes the table to the debugger log.")
      .def(
          "record",
          [](const SharedHelper& self) {
            return self.record() == nullptr ? std::nullopt : std::optional(*self.record());
          },
          "A copy of the processing record; None without a table.");
  bindColours(bound);
}

py::object planeOf(const py::object& self, std::vector<std::uint16_t> TenBitPlanes::*plane) {
  auto& planes = self.cast<TenBitPlanes&>();
  return py::array(py::dtype::of<std::uint16_t>(), Shape{planes.height, planes.width},
                   (planes.*plane).data(), self);
}

Picture pictureOf(const TenBitPlanes& planes, int white, int bits) {
  if (bits != 8 && bits != 16)
    throw std::invalid_argument("bits is " + std::to_string(bits) + ", not 8 or 16");
  const int largest = bits == 8 ? 255 : 65535;
  if (white < 1 || white > largest)
    throw std::invalid_argument("the white level of " + std::to_string(bits) +
                                " bits lies in 1 to " + std::to_string(largest) + ", not " +
                                std::to_string(white));
  return withoutLock([&] { return planes.picture(white, bits); });
}

void bindPlanes(py::module_& m) {
  using Planes = TenBitPlanes;
  using Array = py::array_t<std::uint16_t>;
  py::class_<Planes> bound(m, "TenBitPlanes", "Three planes of 10 bits.");
  bound
      .def(py::init([](const Picture& picture, int white) {
             return withoutLock([&] { return std::make_unique<Planes>(picture, white); });
           }),
           py::arg("picture"), py::arg("white"),
           "A grey picture has three equal planes; `white` is the sample of full scale, 1..65535.")
      .def_readonly("width", &Planes::width, "Pixels.")
      .def_readonly("height", &Planes::height, "Pixels.")
      .def_property_readonly(
          "r", [](const py::object& self) -> Array { return planeOf(self, &Planes::r); },
          "height x width, live.")
      .def_property_readonly(
          "g", [](const py::object& self) -> Array { return planeOf(self, &Planes::g); },
          "height x width, live.")
      .def_property_readonly(
          "b", [](const py::object& self) -> Array { return planeOf(self, &Planes::b); },
          "height x width, live.")
      .def("picture", &pictureOf, py::arg("white"), py::arg("bits"),
           "With samples of 0..white, in a picture of 8 or 16 bits.")
      .def(
          "apply",
          [](Planes& self, SharedHelper& helper) {
            const SharedHelper::Reading reading(helper);
            withoutLock([&] { self.apply(helper); });
          },
          py::arg("helper"),
          "Moves the colours by the helper's table. Raises JobError for more than 65535 pixels a "
          "side.")
      .def("differingPixels", &Planes::differingPixels, py::arg("other"),
           py::call_guard<py::gil_scoped_release>(), "Pixels in which two pictures differ.");
  bound.attr("kWhite") = int{Planes::kWhite};
  m.def(
      "sideBySide",
      [](const Picture& left, const Picture& right) {
        return withoutLock([&] { return sideBySide(left, right); });
      },
      py::arg("left"), py::arg("right"),
      "Two pictures of three channels, as high and with as many bits as each other, with a gap of "
      "white between them.");
}

}  // namespace

void bindLut2d(py::module_& m) {
  bindConfig(m);
  bindTable(m);
  bindDrag(m);
  bindHelper(m);
  bindPlanes(m);
}

}  // namespace greycard::python
