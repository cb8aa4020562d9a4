// .cube: text tables of one and three dimensions, red fastest.

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdint>

#include "colour_matrices.h"
#include "greycard/delta_e.h"
#include "greycard/number_text.h"
#include "greycard/two_d_lut_helper.h"
#include "tone_curve.h"
#include "writers.h"

namespace greycard::exchange {
namespace {

using Colours = std::vector<Vector3>;  // 0..1 each

constexpr double kLargestCode = 1023.0;  // of ProcessImage
constexpr std::size_t kProbes = 2000;

void appendRow(std::string& text, const Vector3& values) {
  for (std::size_t c = 0; c < 3; ++c) {
    char digits[32];
    const auto end =
        std::to_chars(digits, digits + sizeof digits, values[c], std::chars_format::fixed, 6).ptr;
    text.append(digits, end);
    text += c < 2 ? ' ' : '\n';
  }
}

// Gains, matrix, clip and tone curve, as correctPicture does them.
Colours rendered(const FittedCamera& camera, bool linearInput, Colours colours) {
  const ChartFit& fit = camera.lights.front().fit;
  const CurveValues curves = curveValues(camera);
  const Vector3 gains = gainsOf(fit);
  for (Vector3& rgb : colours) {
    for (std::size_t c = 0; c < 3; ++c)
      rgb[c] = gains[c] * (linearInput ? rgb[c] : srgbDecoded(rgb[c]));
    rgb = multiply(fit.matrix, rgb);
    for (std::size_t c = 0; c < 3; ++c) rgb[c] = curveAt(curves[c], rgb[c]);
  }
  return colours;
}

// The table moves the nearest 10-bit colour; what rounding took away comes back afterwards.
Colours rendered(const Lut2DConfig& table, Colours colours) {
  std::array<std::vector<std::uint16_t>, 3> planes;
  for (const Vector3& rgb : colours)
    for (std::size_t c = 0; c < 3; ++c)
      planes[c].push_back(static_cast<std::uint16_t>(std::lround(rgb[c] * kLargestCode)));
  TwoDLutHelper helper;
  helper.SetConfig(table);
  constexpr std::size_t kRow = 1024;  // pixels; sides of pictures have 16 bits
  const auto before = planes;
  for (std::size_t start = 0; start < colours.size(); start += kRow) {
    const std::size_t count = std::min(kRow, colours.size() - start);
    const auto part = [&](std::size_t c) { return std::span(planes[c]).subspan(start, count); };
    helper.ProcessImage(part(0), part(1), part(2), static_cast<std::int32_t>(count), 1, 10);
  }
  for (std::size_t i = 0; i < colours.size(); ++i)
    for (std::size_t c = 0; c < 3; ++c)
      colours[i][c] = std::clamp(
          colours[i][c] + (static_cast<double>(planes[c][i]) - before[c][i]) / kLargestCode, 0.0,
          1.0);
  return colours;
}

Colours rendered(const Material& material, const ExportOptions& options, Colours colours) {
  if (const auto* camera = std::get_if<FittedCamera>(&material))
    return rendered(*camera, options.linearInput, std::move(colours));
  return rendered(std::get<Lut2DConfig>(material), std::move(colours));
}

Colours lattice(int size) {
  Colours nodes;
  nodes.reserve(static_cast<std::size_t>(size) * static_cast<std::size_t>(size * size));
  const double steps = size - 1;
  for (int b = 0; b < size; ++b)
    for (int g = 0; g < size; ++g)
      for (int r = 0; r < size; ++r) nodes.push_back({r / steps, g / steps, b / steps});
  return nodes;
}

// J. H. Halton, Numerische Mathematik 2 (1960) 84: fills the cube evenly and never repeats.
double radicalInverse(std::size_t index, std::size_t base) {
  double value = 0.0, digit = 1.0;
  for (; index > 0; index /= base) {
    digit /= static_cast<double>(base);
    value += digit * static_cast<double>(index % base);
  }
  return value;
}

Colours probes() {
  Colours points;
  for (std::size_t i = 1; i <= kProbes; ++i)
    points.push_back({radicalInverse(i, 2), radicalInverse(i, 3), radicalInverse(i, 5)});
  return points;
}

// A reader of the table, by both of the usual interpolations.
class CubeReader {
 public:
  CubeReader(const Colours& nodes, int size)
      : nodes_(nodes), size_(static_cast<std::size_t>(size)) {}

  Vector3 trilinear(const Vector3& rgb) const {
    const Place place = placeOf(rgb);
    Vector3 sum{};
    for (unsigned corner = 0; corner < 8; ++corner) {
      double weight = 1.0;
      for (std::size_t c = 0; c < 3; ++c)
        weight *= (corner >> c & 1U) != 0 ? place.rest[c] : 1.0 - place.rest[c];
      add(sum, weight, node(place, corner));
    }
    return sum;
  }

  // Along the cell's diagonal: the axes are walked in the order of their fractions.
  Vector3 tetrahedral(const Vector3& rgb) const {
    const Place place = placeOf(rgb);
    std::array<std::size_t, 3> order{0, 1, 2};
    std::ranges::stable_sort(order, std::ranges::greater(),
                             [&](std::size_t c) { return place.rest[c]; });
    Vector3 sum{};
    double before = 1.0;
    unsigned corner = 0;
    for (const std::size_t c : order) {
      add(sum, before - place.rest[c], node(place, corner));
      before = place.rest[c];
      corner |= 1U << c;
    }
    add(sum, before, node(place, corner));
    return sum;
  }

 private:
  struct Place {
    std::array<std::size_t, 3> cell;
    Vector3 rest;
  };

  Place placeOf(const Vector3& rgb) const {
    Place place{};
    for (std::size_t c = 0; c < 3; ++c) {
      const double position = rgb[c] * static_cast<double>(size_ - 1);
      place.cell[c] = std::min(static_cast<std::size_t>(position), size_ - 2);
      place.rest[c] = position - static_cast<double>(place.cell[c]);
    }
    return place;
  }
  const Vector3& node(const Place& place, unsigned corner) const {
    const auto at = [&](std::size_t c) { return place.cell[c] + (corner >> c & 1U); };
    return nodes_[at(0) + size_ * (at(1) + size_ * at(2))];
  }
  static void add(Vector3& sum, double weight, const Vector3& value) {
    for (std::size_t c = 0; c < 3; ++c) sum[c] += weight * value[c];
  }

  const Colours& nodes_;
  std::size_t size_;
};

// CIE 15:2004, 8.2.1, of encoded sRGB under D65.
Vector3 labOf(const Vector3& encoded) {
  static const Matrix3 toXyz = srgbToXyz();
  const Vector3 linear{srgbDecoded(encoded[0]), srgbDecoded(encoded[1]), srgbDecoded(encoded[2])};
  Vector3 f = multiply(toXyz, linear);
  for (std::size_t i = 0; i < 3; ++i) {
    const double t = f[i] / kD65White[i];
    f[i] = t > 216.0 / 24389.0 ? std::cbrt(t) : t * 841.0 / 108.0 + 4.0 / 29.0;
  }
  return {116.0 * f[1] - 16.0, 500.0 * (f[0] - f[1]), 200.0 * (f[1] - f[2])};
}

std::string accuracy(const Colours& nodes, int size, const Colours& inputs, const Colours& exact) {
  const CubeReader reader(nodes, size);
  double tri = 0.0, tetra = 0.0, worstTri = 0.0, worstTetra = 0.0;
  for (std::size_t i = 0; i < inputs.size(); ++i) {
    const Vector3 lab = labOf(exact[i]);
    const double byTri = deltaE2000(lab, labOf(reader.trilinear(inputs[i])));
    const double byTetra = deltaE2000(lab, labOf(reader.tetrahedral(inputs[i])));
    tri += byTri, tetra += byTetra;
    worstTri = std::max(worstTri, byTri), worstTetra = std::max(worstTetra, byTetra);
  }
  const auto count = static_cast<double>(inputs.size());
  return "dE00 to the exact colours over the whole cube: trilinear mean " + fixed(tri / count, 3) +
         ", worst " + fixed(worstTri, 2) + "; tetrahedral mean " + fixed(tetra / count, 3) +
         ", worst " + fixed(worstTetra, 2);
}

std::string inputText(const Material& material, const ExportOptions& options) {
  if (kindOf(material) == MaterialKind::Lut2d) return "Input and output: encoded RGB.";
  const Vector3 gains = gainsOf(std::get<FittedCamera>(material).lights.front().fit);
  return std::string("Input: camera RGB, ") +
         (options.linearInput ? "linear." : "encoded by the sRGB transfer.") + " Gains " +
         fixed(gains[0], 4) + " " + fixed(gains[1], 4) + " " + fixed(gains[2], 4) +
         ", then the colour matrix, then the tone curve.";
}

std::string head(const std::string& title, const std::string& comment, const std::string& size) {
  return "# Made by greycard. " + comment + "\nTITLE \"" + title + "\"\n" + size +
         "\nDOMAIN_MIN 0 0 0\nDOMAIN_MAX 1 1 1\n";
}

}  // namespace

Exported writeCube1d(const Material& material, const ExportOptions& options) {
  const auto* camera = std::get_if<FittedCamera>(&material);
  const CurveValues curves =
      camera != nullptr ? curveValues(*camera) : curveValues(std::get<CurveTables>(material));
  // Tables of different sizes can stand in one curve; the longest sets the steps.
  const std::size_t size = std::max({curves[0].size(), curves[1].size(), curves[2].size()});
  std::string text = head(titleOf(material, options), "Linear input, encoded output.",
                          "LUT_1D_SIZE " + std::to_string(size));
  for (std::size_t i = 0; i < size; ++i) {
    const double x = static_cast<double>(i) / static_cast<double>(size - 1);
    appendRow(text, {curveAt(curves[0], x), curveAt(curves[1], x), curveAt(curves[2], x)});
  }
  return {std::move(text), {}};
}

Exported writeCube3d(const Material& material, const ExportOptions& options, int size) {
  const Colours nodes = rendered(material, options, lattice(size));
  const Colours inputs = probes();
  const std::string error = accuracy(nodes, size, inputs, rendered(material, options, inputs));
  std::string text =
      head(titleOf(material, options), inputText(material, options) + "\n# " + error + ".",
           "LUT_3D_SIZE " + std::to_string(size));
  text.reserve(text.size() + 27 * nodes.size());
  for (const Vector3& rgb : nodes) appendRow(text, rgb);
  return {std::move(text), {error}};
}

}  // namespace greycard::exchange
