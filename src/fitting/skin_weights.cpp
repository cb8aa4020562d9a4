#include "skin_weights.h"

#include "matrix_functions.h"

namespace greycard {
namespace {

const MatrixData& matrixSkin = kSkinReflectanceTable;      // 31 x 357, already on the grid
const MatrixData& matrixMacbeth = kChartReflectanceTable;  // 81 x 24

constexpr double kFirstNm = 400.0, kStepNm = 10.0, kLastNm = 700.0;

}  // namespace

CDoubleMatrix CreateMatrixFromData(const MatrixData& md) {
  return resample(md, 0, md.columns, CDoubleMatrix(kFirstNm, kStepNm, kLastNm));
}

// W = pinv(chart) * skin is [24 x 357].
CDoubleMatrix computeSkinWeights() {
  const CDoubleMatrix chart = CreateMatrixFromData(matrixMacbeth);
  const CDoubleMatrix skin = CreateMatrixFromData(matrixSkin);
  return MatrixTranspose(MatrixMultiply(pinv(chart), skin));
}

const CDoubleMatrix& skinWeights() {
  static const CDoubleMatrix weights = computeSkinWeights();
  return weights;
}

}  // namespace greycard
