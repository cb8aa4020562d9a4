#pragma once

#include <span>
#include <vector>

namespace greycard {

/// Index of the entry of x nearest to value; of equally near ones the last. 0 for an empty x, or
/// when no distance is a number.
template <typename T>
int nearestNeighbourIndex(std::span<const T> x, T value);

/// The piecewise-linear function through (x[i], y[i]) at every entry of x_new, extrapolated along
/// the end segments. A segment without width gives not-a-number.
/// \throws std::invalid_argument for fewer than two points, or x and y of different lengths
template <typename T>
std::vector<T> interp1(std::span<const T> x, std::span<const T> y, std::span<const T> x_new);

extern template int nearestNeighbourIndex<double>(std::span<const double>, double);
extern template std::vector<double> interp1<double>(std::span<const double>,
                                                    std::span<const double>,
                                                    std::span<const double>);

}  // namespace greycard
