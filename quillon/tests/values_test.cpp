// Time, vectors and matrices: expected values are worked out by hand from the
// conventions (right-handed Rx, Ry, Rz with negated angles, columns as axes).
#include <gtest/gtest.h>

#include <cmath>
#include <numbers>

#include "plugin/engine/engine_values.h"

namespace {

constexpr double kPi = std::numbers::pi;

void ExpectTime(const BaseTime& time, double numerator, double denominator) {
  EXPECT_EQ(time.numerator, numerator);
  EXPECT_EQ(time.denominator, denominator);
}

void ExpectNear(const Vector& a, const Vector& b, double tolerance = 1e-12) {
  EXPECT_NEAR(a.x, b.x, tolerance);
  EXPECT_NEAR(a.y, b.y, tolerance);
  EXPECT_NEAR(a.z, b.z, tolerance);
}

void ExpectAxesNear(const Matrix& a, const Matrix& b, double tolerance = 1e-9) {
  ExpectNear(a.axisX, b.axisX, tolerance);
  ExpectNear(a.axisY, b.axisY, tolerance);
  ExpectNear(a.axisZ, b.axisZ, tolerance);
}

TEST(BaseTimeTest, ConstructorRoundsSignsAndReduces) {
  ExpectTime(BaseTime(1, 0), 1, 1);
  ExpectTime(BaseTime(0, 25), 0, 1);
  ExpectTime(BaseTime(-3, 6), -1, 2);
  ExpectTime(BaseTime(3, -6), -1, 2);
  ExpectTime(BaseTime(-3, -6), 1, 2);
  ExpectTime(BaseTime(2.4, 1), 2, 1);
  ExpectTime(BaseTime(2.5, 1), 3, 1);
  ExpectTime(BaseTime(-2.5, 1), -3, 1);
  ExpectTime(BaseTime(30, 3000), 1, 100);
}

TEST(BaseTimeTest, ReducesBeyondThirtyTwoBits) {
  ExpectTime(BaseTime(6e12, 4e12), 3, 2);
  // 2^40 / 2^38 = 4 / 1, both above the 32-bit range.
  ExpectTime(BaseTime(1099511627776.0, 274877906944.0), 4, 1);
}

TEST(BaseTimeTest, FrameAddAndHostTime) {
  EXPECT_EQ(FrameOf(BaseTime(1, 3), 30), 10);
  EXPECT_EQ(FrameOf(BaseTime(7, 25), 25), 7);
  // 29.97 frames at 30 fps: floor(30 * 2997) / 100 = 899.1, truncated.
  EXPECT_EQ(FrameOf(BaseTime(2997, 100), 30), 899);
  ExpectTime(Add(BaseTime(1, 3), BaseTime(1, 6)), 1, 2);
  ExpectTime(FromAeTime(-50, 100), -1, 2);
  ExpectTime(FromAeTime(200, 2997), 200, 2997);
  EXPECT_TRUE(BaseTime(1, 3) < BaseTime(1, 2));
  EXPECT_FALSE(BaseTime(2, 4) < BaseTime(1, 2));
}

TEST(VectorTest, NormalizeKeepsZeroAndScalesOthers) {
  Vector zero{0, 0, 0};
  Normalize(zero);
  ExpectNear(zero, {0, 0, 0});
  ExpectNear(Normalized({3, 4, 0}), {0.6, 0.8, 0.0});
  ExpectNear(HostToSceneVector(1, 2, 3), {1, -2, 3}, 0.0);
}

TEST(MatrixTest, MultiplyAppliesRightOperandFirst) {
  Matrix a;
  a.off = {1, 2, 3};
  a.axisX = {0, 1, 0};
  a.axisY = {-1, 0, 0};
  Matrix b;
  b.off = {1, 0, 0};
  Matrix ab = Multiply(a, b);
  ExpectNear(ab.off, {1, 3, 3});
  ExpectNear(ab.axisX, {0, 1, 0});
  ExpectNear(TransformPoint(ab, {0, 1, 0}), TransformPoint(a, TransformPoint(b, {0, 1, 0})));
}

TEST(MatrixTest, InvertUndoesAndSingularGivesIdentity) {
  Matrix m = RotationToMatrix({0.3, -0.2, 1.1}, 2);
  m.axisX = m.axisX * 2.0;
  m.off = {5, -7, 9};
  Matrix product = Multiply(Invert(m), m);
  ExpectAxesNear(product, Matrix());
  ExpectNear(product.off, {0, 0, 0}, 1e-9);

  Matrix flat;
  flat.axisZ = {0, 0, 0};
  flat.off = {4, 4, 4};
  EXPECT_TRUE(Invert(flat) == Matrix());
}

TEST(RotationTest, ElementaryTurnsFollowTheConventions) {
  EXPECT_TRUE(RotationToMatrix({0, 0, 0}, 4) == Matrix());
  // Order 2, z = pi/2: Rz(-pi/2) maps x to -y and y to x.
  Matrix rz = RotationToMatrix({0, 0, kPi / 2}, 2);
  ExpectNear(rz.axisX, {0, -1, 0});
  ExpectNear(rz.axisY, {1, 0, 0});
  // Order 6, heading pi/2 turns about y: Ry(-pi/2) maps x to z and z to -x.
  Matrix heading = RotationToMatrix({kPi / 2, 0, 0}, 6);
  ExpectNear(heading.axisX, {0, 0, 1});
  ExpectNear(heading.axisZ, {-1, 0, 0});
  ExpectNear(MatrixToRotation(heading, 6, true), {kPi / 2, 0, 0});
  EXPECT_EQ(ClampedAsin(2.0), kPi / 2);
  EXPECT_EQ(ClampedAsin(-1.0), -kPi / 2);
}

TEST(RotationTest, EveryOrderRoundTripsIncludingGimbalLock) {
  // Index of the angle that the decomposition takes from a sine, by order.
  const int firstAngle[7] = {0, 2, 1, 0, 2, 1, 1};
  for (int order = 0; order <= 6; ++order) {
    for (double pole : {0.4, kPi / 2, -kPi / 2}) {
      double angles[3] = {0.7, -1.2, 2.1};
      angles[firstAngle[order]] = pole;
      Vector rotation{angles[0], angles[1], angles[2]};
      Matrix m = RotationToMatrix(rotation, order);
      Matrix back = RotationToMatrix(MatrixToRotation(m, order, false), order);
      SCOPED_TRACE(::testing::Message() << "order " << order << " pole " << pole);
      ExpectAxesNear(back, m, 1e-6);
    }
  }
}

TEST(RotationTest, ScaledAxesAreNormalizedUnlessToldOtherwise) {
  Matrix m = RotationToMatrix({0.2, 0.3, 0.4}, 5);
  m.axisX = m.axisX * 3.0;
  m.axisY = m.axisY * 0.5;
  ExpectNear(MatrixToRotation(m, 5, false), {0.2, 0.3, 0.4}, 1e-12);
}

TEST(BestAngleTest, KeepsEqualAndPicksTheNearerAlternative) {
  Vector same{0.5, -0.25, 1.0};
  ExpectNear(BestAngle(same, same, 2), same, 0.0);
  // Order 2: (pi, pi, pi) has the alternative (2pi, 0, 2pi), which lies at 0.
  ExpectNear(BestAngle({0, 0, 0}, {kPi, kPi, kPi}, 2), {0, 0, 0}, 1e-12);
  // A full turn on one axis moves back next to the previous angle.
  ExpectNear(BestAngle({0.1, 0, 0}, {0.2 + 2 * kPi, 0, 0}, 6), {0.2, 0, 0}, 1e-12);
}

}  // namespace
