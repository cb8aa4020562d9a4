#include "spectral_tables.h"

#include "matrix_functions.h"

namespace greycard {
namespace {

constexpr double kFirstNm = 400.0, kStepNm = 5.0, kLastNm = 700.0;

// Columns of the tables that hold several lights.
constexpr int kColumnA = 0, kColumnD50 = 1, kColumnD65 = 2;
constexpr int kColumnF11 = 10;

}  // namespace

CDoubleMatrix wavelengthGrid() {
  return {kFirstNm, kStepNm, kLastNm};
}

CDoubleMatrix resample(const SpectralTable& table, int first, int count,
                       const CDoubleMatrix& gridNm) {
  const auto rows = static_cast<std::int32_t>(table.wavelengthNm.size());
  const auto nm = mLoadMem(rows, 1, table.wavelengthNm.data());
  const auto values = mLoadMem(rows, table.columns, table.values.data());
  return interp1(nm, submat_col(values, first, first + count - 1), gridNm);
}

CDoubleMatrix illuminantSpectrum(Illum light, const CDoubleMatrix& gridNm) {
  switch (referenceLight(light)) {
    case illum_A:
      return resample(kIlluminantTable, kColumnA, 1, gridNm);
    case illum_D50:
      return resample(kIlluminantTable, kColumnD50, 1, gridNm);
    case illum_Horizon:
      return resample(kHorizonTable, 0, 1, gridNm);
    case illum_TL84:
      return resample(kFluorescentTable, kColumnF11, 1, gridNm);
    default:
      return resample(kIlluminantTable, kColumnD65, 1, gridNm);
  }
}

LightSpectrum lightSpectrum(Illum light) {
  const CDoubleMatrix grid = wavelengthGrid(), power = illuminantSpectrum(light, grid);
  LightSpectrum spectrum;
  for (std::int32_t i = 0; i < grid.rows(); ++i) {
    spectrum.wavelengthNm.push_back(grid[i][0]);
    spectrum.power.push_back(power[i][0]);
  }
  return spectrum;
}

CDoubleMatrix observerFunctions(const CDoubleMatrix& gridNm) {
  return resample(kObserverTable, 0, kObserverTable.columns, gridNm);
}

CDoubleMatrix chartReflectances(const CDoubleMatrix& gridNm) {
  return resample(kChartReflectanceTable, 0, kChartReflectanceTable.columns, gridNm);
}

}  // namespace greycard
