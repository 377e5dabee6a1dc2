// Cameras and lights that the host aims at a point of interest. The host finds heading and
// pitch itself, so only the roll about the line of sight, the scene's bank, is left for the Z
// rotation; and a light without a target looks at a point 1000 units ahead of it, from its
// flattened place and turn. Values worked out by hand from the rotation orders: order 6 is
// heading, pitch, bank with the bank turning last about the object's own z axis, and order 2
// turns by z first, so that a pure z turn is a pure bank as well.
#include <gtest/gtest.h>

#include <cmath>

#include "plugin/importer/object_conversion.h"

namespace {

constexpr double kPi = 3.14159265358979323846;
constexpr double kDegrees = 180.0 / kPi;

TEST(HostRoll, IsTheBankWhateverTheOrder) {
  double last = 0.0;
  // Heading 0.3, pitch 0.2, bank 0.5: 0.5 rad is 28.6479 degrees.
  EXPECT_NEAR(HostRoll({0.3, 0.2, 0.5}, kRotationOrderHpb, false, &last), 0.5 * kDegrees, 1e-9);
  EXPECT_NEAR(last, 0.5, 1e-12);  // kept in radians for the next frame
  // A turn of 0.4 rad about z alone, in order x, y, z: a bank of 0.4 rad, 22.9183 degrees.
  EXPECT_NEAR(HostRoll({0.0, 0.0, 0.4}, kRotationOrderXyz, false, &last), 0.4 * kDegrees, 1e-9);
}

TEST(HostRoll, AnAimWithoutBankHasNoRollThoughItsXyzAnglesHaveAZ) {
  // Heading 1 and pitch -0.5 with no bank, as a target-following light is written; in the
  // angles of order x, y, z the same turn has a z of its own, which is part of the aim.
  const Vector aim{1.0, -0.5, 0.0};
  const Vector xyz = MatrixToRotation(RotationToMatrix(aim, kRotationOrderHpb), kRotationOrderXyz, false);
  EXPECT_GT(std::abs(xyz.z), 0.1);
  double last = 0.0;
  EXPECT_NEAR(HostRoll(xyz, kRotationOrderXyz, false, &last), 0.0, 1e-9);
  EXPECT_NEAR(HostRoll(aim, kRotationOrderHpb, false, &last), 0.0, 1e-9);
}

TEST(HostRoll, StaysNearTheLastFrameOrElseWithinHalfATurn) {
  double last = 0.0;
  // A bank of 2 pi - 0.1 is a roll of 0.1 rad to the other side: -5.7296 degrees.
  EXPECT_NEAR(HostRoll({0.0, 0.0, 2 * kPi - 0.1}, kRotationOrderHpb, false, &last), -0.1 * kDegrees, 1e-9);
  // After a roll of 3 rad, a bank of 2 pi - 3 (3.2832 rad) goes on past half a turn, 188.11
  // degrees, instead of jumping back to -171.89.
  last = 3.0;
  EXPECT_NEAR(HostRoll({0.0, 0.0, 2 * kPi - 3.0}, kRotationOrderHpb, true, &last), (2 * kPi - 3.0) * kDegrees, 1e-9);
  // Without continuity the same bank reads as the short way round.
  EXPECT_NEAR(HostRoll({0.0, 0.0, 2 * kPi - 3.0}, kRotationOrderHpb, false, &last), -3.0 * kDegrees, 1e-9);
}

TEST(AheadOf, APointAlongTheLineOfSightInAnyOrder) {
  // Order x, y, z, a quarter turn about y: the z axis turns onto -x, so the point lies 1000
  // units along -x from (1, 2, 3), at scene (-999, 2, 3), host (-999, -2, 3).
  Vector point = AheadOf({1, 2, 3}, {0, kPi / 2, 0}, kRotationOrderXyz);
  EXPECT_NEAR(point.x, -999.0, 1e-9);
  EXPECT_NEAR(point.y, -2.0, 1e-9);
  EXPECT_NEAR(point.z, 3.0, 1e-9);
  // The same turn as heading pi/2 with a bank of 0.7: the bank does not move the point.
  point = AheadOf({1, 2, 3}, {kPi / 2, 0, 0.7}, kRotationOrderHpb);
  EXPECT_NEAR(point.x, -999.0, 1e-9);
  EXPECT_NEAR(point.y, -2.0, 1e-9);
  // Order x, y, z, 30 degrees about x: the z axis turns to (0, sin 30, cos 30), so the point is
  // scene (1, 502, 869.0254), host (1, -502, 869.0254).
  point = AheadOf({1, 2, 3}, {kPi / 6, 0, 0}, kRotationOrderXyz);
  EXPECT_NEAR(point.x, 1.0, 1e-9);
  EXPECT_NEAR(point.y, -502.0, 1e-9);
  EXPECT_NEAR(point.z, 3.0 + 1000.0 * std::cos(kPi / 6), 1e-9);
}

}  // namespace
