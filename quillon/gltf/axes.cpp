#include "quillon/gltf/axes.h"

#include <cmath>

namespace quillon::gltf {
namespace {

Vector Mirrored(const Vector& v) { return {v.x, v.y, -v.z}; }

// Three orthonormal right-handed axes from a matrix's (possibly scaled or degenerate) axes.
void OrthonormalAxes(const Matrix& m, Vector& x, Vector& y, Vector& z) {
  x = Length(m.axisX) > 0.0 ? Normalized(m.axisX) : Vector{1.0, 0.0, 0.0};
  y = m.axisY - x * Dot(m.axisY, x);
  if (Length(y) <= 1e-12) y = std::fabs(x.y) < 0.9 ? Vector{0.0, 1.0, 0.0} : Vector{0.0, 0.0, 1.0};
  y = y - x * Dot(y, x);
  Normalize(y);
  z = Cross(x, y);
}

// Shepperd's method on the rotation whose columns are x, y and z.
std::array<double, 4> QuaternionOf(const Vector& x, const Vector& y, const Vector& z) {
  const double trace = x.x + y.y + z.z;
  std::array<double, 4> q{};
  if (trace > 0.0) {
    const double s = 2.0 * std::sqrt(trace + 1.0);
    q = {(y.z - z.y) / s, (z.x - x.z) / s, (x.y - y.x) / s, 0.25 * s};
  } else if (x.x > y.y && x.x > z.z) {
    const double s = 2.0 * std::sqrt(1.0 + x.x - y.y - z.z);
    q = {0.25 * s, (y.x + x.y) / s, (z.x + x.z) / s, (y.z - z.y) / s};
  } else if (y.y > z.z) {
    const double s = 2.0 * std::sqrt(1.0 + y.y - x.x - z.z);
    q = {(y.x + x.y) / s, 0.25 * s, (z.y + y.z) / s, (z.x - x.z) / s};
  } else {
    const double s = 2.0 * std::sqrt(1.0 + z.z - x.x - y.y);
    q = {(z.x + x.z) / s, (z.y + y.z) / s, 0.25 * s, (x.y - y.x) / s};
  }
  const double length = std::sqrt(q[0] * q[0] + q[1] * q[1] + q[2] * q[2] + q[3] * q[3]);
  for (double& c : q) c /= length;
  return q;
}

}  // namespace

Vector ToGltfPoint(const Vector& scenePoint) { return Mirrored(scenePoint); }

Matrix ToGltfMatrix(const Matrix& m) {
  // F M F: mirror the input point, apply M, mirror the result; on the axes that means the
  // z axis changes sign (its input was mirrored) and every axis's z component changes sign.
  Matrix g;
  g.off = Mirrored(m.off);
  g.axisX = Mirrored(m.axisX);
  g.axisY = Mirrored(m.axisY);
  g.axisZ = Mirrored(m.axisZ) * -1.0;
  return g;
}

Trs DecomposeTrs(const Matrix& matrix) {
  Trs trs;
  trs.translation = {matrix.off.x, matrix.off.y, matrix.off.z};
  double zSign = Dot(Cross(matrix.axisX, matrix.axisY), matrix.axisZ) < 0.0 ? -1.0 : 1.0;
  trs.scale = {Length(matrix.axisX), Length(matrix.axisY), Length(matrix.axisZ) * zSign};
  Vector x, y, z;
  OrthonormalAxes(matrix, x, y, z);
  trs.rotation = QuaternionOf(x, y, z);
  return trs;
}

std::array<double, 4> NearerQuaternion(const std::array<double, 4>& previous, const std::array<double, 4>& q) {
  const double dot = previous[0] * q[0] + previous[1] * q[1] + previous[2] * q[2] + previous[3] * q[3];
  if (dot >= 0.0) return q;
  return {-q[0], -q[1], -q[2], -q[3]};
}

}  // namespace quillon::gltf
