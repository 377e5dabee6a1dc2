#include "plugin/exporter/layer_matrix.h"

#include <gtest/gtest.h>

#include <cmath>

namespace {

constexpr double kPi = 3.14159265358979323846;

A_Matrix4 Rows(std::initializer_list<std::initializer_list<double>> rows) {
  A_Matrix4 m{};
  int r = 0;
  for (const auto& row : rows) {
    int c = 0;
    for (double v : row) m.mat[r][c++] = v;
    ++r;
  }
  return m;
}

void ExpectVector(const Vector& v, double x, double y, double z) {
  EXPECT_NEAR(v.x, x, 1e-9);
  EXPECT_NEAR(v.y, y, 1e-9);
  EXPECT_NEAR(v.z, z, 1e-9);
}

TEST(DecomposeLayerMatrix, CentredSolidStandsAtHalfItsSize) {
  // A 1920x1080 solid filling a 1920x1080 composition: its matrix leads to the corner (0, 0, 0).
  const A_Matrix4 m = Rows({{1, 0, 0, 0}, {0, 1, 0, 0}, {0, 0, 1, 0}, {0, 0, 0, 1}});
  Vector position, rotation, scale;
  DecomposeLayerMatrix(1920, 1080, true, true, &position, &rotation, &scale, false, nullptr, m);
  ExpectVector(position, 960, -540, 0);
  ExpectVector(rotation, 0, 0, 0);
  ExpectVector(scale, 1, 1, 1);
}

TEST(DecomposeLayerMatrix, NullTakesTheTranslationWithYNegated) {
  const A_Matrix4 m = Rows({{1, 0, 0, 0}, {0, 1, 0, 0}, {0, 0, 1, 0}, {100, 200, 30, 1}});
  Vector position, rotation, scale{1, 1, 1};
  DecomposeLayerMatrix(0, 0, false, false, &position, &rotation, &scale, false, nullptr, m);
  ExpectVector(position, 100, -200, 30);
  ExpectVector(scale, 1, 1, 1);
}

TEST(DecomposeLayerMatrix, ScaleComesFromAxisLengths) {
  const A_Matrix4 m = Rows({{0.5, 0, 0, 0}, {0, 0.5, 0, 0}, {0, 0, 2, 0}, {0, 0, 0, 1}});
  Vector position, rotation, scale;
  DecomposeLayerMatrix(200, 100, true, true, &position, &rotation, &scale, false, nullptr, m);
  ExpectVector(scale, 0.5, 0.5, 2);
  // The centre lies half the scaled picture from the corner: (200/2*0.5, -(100/2*0.5)).
  ExpectVector(position, 50, -25, 0);
}

TEST(DecomposeLayerMatrix, HeadingOfThirtyDegrees) {
  // Order 6 with heading h only has axisX (cos h, 0, sin h) and axisZ (-sin h, 0, cos h).
  const double c = std::cos(kPi / 6), s = std::sin(kPi / 6);
  const A_Matrix4 m = Rows({{c, 0, s, 0}, {0, 1, 0, 0}, {-s, 0, c, 0}, {10, 20, 0, 1}});
  Vector position, rotation, scale{1, 1, 1};
  DecomposeLayerMatrix(0, 0, false, true, &position, &rotation, &scale, false, nullptr, m);
  ExpectVector(rotation, kPi / 6, 0, 0);
  ExpectVector(position, 10, -20, 0);
}

TEST(DecomposeLayerMatrix, BankComesFromTheFlippedXAxis) {
  // A layer turned by +30 degrees about After Effects' z axis (y down, so clockwise on screen):
  // its x axis is (cos, sin, 0) in host terms, (cos, -sin, 0) in scene terms. A negative y
  // component in scene terms gives bank acos(cos 30) = 30 degrees.
  const double c = std::cos(kPi / 6), s = std::sin(kPi / 6);
  const A_Matrix4 m = Rows({{c, s, 0, 0}, {-s, c, 0, 0}, {0, 0, 1, 0}, {0, 0, 0, 1}});
  Vector position, rotation, scale{1, 1, 1};
  DecomposeLayerMatrix(0, 0, false, false, &position, &rotation, &scale, false, nullptr, m);
  ExpectVector(rotation, 0, 0, kPi / 6);
}

TEST(DecomposeLayerMatrix, ContinuedRotationRunsPastAFullTurn) {
  // Heading 0.1 rad after a key at 2 pi - 0.1 is taken as 2 pi + 0.1, not as a jump back.
  const double c = std::cos(0.1), s = std::sin(0.1);
  const A_Matrix4 m = Rows({{c, 0, s, 0}, {0, 1, 0, 0}, {-s, 0, c, 0}, {0, 0, 0, 1}});
  const Vector previous{2 * kPi - 0.1, 0, 0};
  Vector position, rotation, scale{1, 1, 1};
  DecomposeLayerMatrix(0, 0, false, false, &position, &rotation, &scale, true, &previous, m);
  ExpectVector(rotation, 2 * kPi + 0.1, 0, 0);
}

}  // namespace
