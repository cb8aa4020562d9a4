#include <cmath>
#include <cstdint>
#include <stdexcept>
#include <string>
#include <vector>

#include "greycard/lut2d_table.h"
#include "greycard/number_text.h"
#include "greycard/two_d_lut_helper.h"

namespace greycard {
namespace {

constexpr int kRows = kLut2dHueRows, kColumns = kLut2dSatColumns;
constexpr double kMostRange = 100.0;

// -180 to below 180.
double shortestTurn(double degrees) {
  const double turned = std::fmod(degrees + 180.0, 360.0);
  return turned < 0.0 ? turned + 180.0 : turned - 180.0;
}

int wholeDegrees(double hue) {
  return static_cast<int>(std::lround(shortestTurn(hue)) + 360) % 360;
}

void checkRange(const char* name, double value, double low, double high) {
  // Not-a-number fails every comparison.
  if (!(value >= low && value <= high))
    throw std::invalid_argument(std::string(name) + " lies in " + general(low, 3) + " to " +
                                general(high, 3) + ", not " + general(value, 6));
}

void check(const Lut2dDragOptions& options) {
  checkRange("the hue of the colour to drag", options.atHueDeg, -360.0, 360.0);
  checkRange("the saturation of the colour to drag", options.atSat, 0.0, 1.0);
  checkRange("the drag in hue", options.byHueDeg, -360.0, 360.0);
  checkRange("the drag in saturation", options.bySat, -1.0, 1.0);
  checkRange("the range in rows", options.rangeRows, 0.0, kMostRange);
  checkRange("the range in columns", options.rangeColumns, 0.0, kMostRange);
}

// Where the nodes take their colours: what a drag edits.
struct Targets {
  std::vector<double> sat;
  std::vector<std::int32_t> hue;

  explicit Targets(const Lut2DConfig& table) {
    for (std::size_t i = 0; i < kLut2dNodes; ++i) {
      hue.push_back(wholeDegrees(table.lut_1d_h[i / kLut2dSatColumns] + table.lut_2d_h[i]));
      sat.push_back(table.lut_1d_s[i % kLut2dSatColumns] + table.lut_2d_s[i]);
    }
  }
};

// Adds what the drag moved to the changes, so that nodes beyond its reach keep their fractions.
int drag(Lut2DConfig& table, const Lut2dNode& node, const Lut2dDragOptions& options) {
  const Targets before(table);
  Targets after = before;
  TwoDLutHelper::Adjust(options.atSat, wholeDegrees(options.atHueDeg), options.bySat,
                        options.byHueDeg, options.rangeColumns, options.rangeRows, node.row,
                        node.column, after.sat, after.hue, kRows, kColumns, !options.keepNode);
  int moved = 0;
  for (std::size_t i = 0; i < kLut2dNodes; ++i) {
    table.lut_2d_h[i] += shortestTurn(after.hue[i] - before.hue[i]);
    table.lut_2d_s[i] += after.sat[i] - before.sat[i];
    if (after.hue[i] != before.hue[i] || after.sat[i] != before.sat[i]) ++moved;
  }
  return moved;
}

}  // namespace

Lut2dNode nearestNode(const Lut2DConfig& table, double hueDeg, double sat) {
  Lut2dNode node;
  const auto hueDistance = [&](int row) {
    return std::fabs(shortestTurn(table.lut_1d_h[static_cast<std::size_t>(row)] - hueDeg));
  };
  const auto satDistance = [&](int column) {
    return std::fabs(table.lut_1d_s[static_cast<std::size_t>(column)] - sat);
  };
  for (int row = 1; row < kRows; ++row)
    if (hueDistance(row) < hueDistance(node.row)) node.row = row;
  for (int column = 1; column < kColumns; ++column)
    if (satDistance(column) < satDistance(node.column)) node.column = column;
  return node;
}

Lut2dDragReport dragLut2d(Lut2DConfig& table, const Lut2dDragOptions& options) {
  check(options);
  checkLut2d(table);
  Lut2dDragReport report;
  report.node = nearestNode(table, options.atHueDeg, options.atSat);
  report.hueDeg = table.lut_1d_h[static_cast<std::size_t>(report.node.row)];
  report.sat = table.lut_1d_s[static_cast<std::size_t>(report.node.column)];
  report.movedNodes = drag(table, report.node, options);
  report.cutNodes = cutChanges(table).nodes;
  return report;
}

}  // namespace greycard
