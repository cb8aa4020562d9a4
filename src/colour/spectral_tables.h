#pragma once

// The published spectra, embedded at build time from data/*.csv (origins in data/README.md).

#include <span>

#include "double_matrix.h"
#include "greycard/illum.h"

namespace greycard {

/// Row i holds the values of all columns at wavelengthNm[i], which increases.
struct SpectralTable {
  std::span<const double> wavelengthNm;
  std::span<const double> values;  ///< row-major
  int columns = 0;
};

extern const SpectralTable kChartReflectanceTable;  ///< 380-780 nm, 24 patches, 0..1
extern const SpectralTable kObserverTable;          ///< 360-830 nm, CIE 1931 2 degree x, y, z
extern const SpectralTable kIlluminantTable;        ///< 300-830 nm, A, D50, D65; 100 at 560 nm
extern const SpectralTable kFluorescentTable;       ///< 380-780 nm, F1..F12
extern const SpectralTable kHorizonTable;           ///< 300-830 nm, 2300 K; 100 at 560 nm
/// 400-700 nm by 10 nm, 357 measured spectra of human skin, 0..1. Columns 1-300: C. C. Cooksey,
/// D. W. Allen, B. K. Tsai, NIST, 2017; 301-357: International Skin Spectra Archive, Y. Lu and
/// others, 2025, CC BY 4.0, selected as data/README.md tells.
extern const SpectralTable kSkinReflectanceTable;

/// 400 to 700 nm by 5 nm, 61 x 1: the grid that all colours are computed on.
CDoubleMatrix wavelengthGrid();

/// Columns first..first + count - 1 of the table on a grid (n x 1, in nm, within the table's
/// range): n x count. Exact at the table's own wavelengths, a cubic spline between them.
CDoubleMatrix resample(const SpectralTable& table, int first, int count,
                       const CDoubleMatrix& gridNm);

/// Relative spectral power of the light, n x 1. Lights without a table of their own are D65.
CDoubleMatrix illuminantSpectrum(Illum light, const CDoubleMatrix& gridNm);
/// CIE 1931 2 degree colour-matching functions, n x 3.
CDoubleMatrix observerFunctions(const CDoubleMatrix& gridNm);
/// Reflectance of the 24 patches, n x 24.
CDoubleMatrix chartReflectances(const CDoubleMatrix& gridNm);

}  // namespace greycard
