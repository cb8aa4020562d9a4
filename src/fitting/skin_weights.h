#pragma once

#include "double_matrix.h"
#include "spectral_tables.h"

namespace greycard {

/// A table of spectra, one per column.
using MatrixData = SpectralTable;

/// The table's columns at 400 to 700 nm by 10 nm, 31 rows: a spline between its own wavelengths.
CDoubleMatrix CreateMatrixFromData(const MatrixData& md);

/// 357 x 24: row j holds the least-squares weights of the chart's patch spectra that reproduce skin
/// spectrum j, so that a chart's 24 x 3 colours times these from the left are colours of skin.
CDoubleMatrix computeSkinWeights();

/// The same, computed once.
///
/// They depend on no input. At the first use and not at build time, because the build would need a
/// program of the host's for it (it may be compiled for another machine), and because a process
/// that never calibrates then pays nothing; a static of the function, so that two threads may come
/// first.
const CDoubleMatrix& skinWeights();

}  // namespace greycard
