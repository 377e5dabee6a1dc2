#include "plugin/exporter/layer_matrix.h"

namespace {

Vector FlippedRow(const A_Matrix4& m, int row) { return Vector{m.mat[row][0], -m.mat[row][1], m.mat[row][2]}; }

}  // namespace

Matrix SceneMatrixOfLayer(const A_Matrix4& m) {
  Matrix a;
  a.off = FlippedRow(m, 3);
  a.axisX = FlippedRow(m, 0);
  a.axisY = FlippedRow(m, 1);
  a.axisZ = FlippedRow(m, 2);
  return a;
}

void DecomposeLayerMatrix(int32_t width, int32_t height, bool useCentre, bool wantScale, Vector* position,
                          Vector* rotation, Vector* scale, bool continueRotation, const Vector* previousRotation,
                          const A_Matrix4& m) {
  const Matrix a = SceneMatrixOfLayer(m);
  if (wantScale) *scale = Vector{Length(a.axisX), Length(a.axisY), Length(a.axisZ)};
  *position = a.off;
  if (useCentre) {
    // The matrix leads to the picture's top left corner; its y axis looks down the picture.
    *position = *position + Normalized(a.axisX) * (width / 2.0 * scale->x) +
                Normalized(a.axisY) * (height / 2.0 * scale->y);
  }
  *rotation = MatrixToRotation(a, kRotationOrderHpb, false);
  if (continueRotation) *rotation = BestAngle(*previousRotation, *rotation, kRotationOrderHpb);
}
