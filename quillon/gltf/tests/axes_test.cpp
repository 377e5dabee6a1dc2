// The change of axes: look directions, handedness and the splitting into translation,
// rotation and scale, against rotations worked out by turning vectors by hand.
#include <gtest/gtest.h>

#include <cmath>
#include <numbers>

#include "quillon/gltf/axes.h"

namespace quillon::gltf {
namespace {

// v turned by the unit quaternion q = (x, y, z, w): v + 2w (u x v) + 2 u x (u x v).
Vector Rotate(const std::array<double, 4>& q, const Vector& v) {
  const Vector u{q[0], q[1], q[2]};
  const Vector t = Cross(u, v) * 2.0;
  return v + t * q[3] + Cross(u, t);
}

void ExpectNear(const Vector& a, const Vector& b) {
  EXPECT_NEAR(a.x, b.x, 1e-12);
  EXPECT_NEAR(a.y, b.y, 1e-12);
  EXPECT_NEAR(a.z, b.z, 1e-12);
}

struct Turn {
  Vector rotation;
  int32_t order;
};

class LookDirection : public ::testing::TestWithParam<Turn> {};

// What the scene's +z and +y of an object become in glTF: the object's -z (where cameras and
// lights look) and +y, both mirrored in z.
TEST_P(LookDirection, SceneZBecomesGltfMinusZ) {
  const Matrix scene = RotationToMatrix(GetParam().rotation, GetParam().order);
  const Trs trs = DecomposeTrs(ToGltfMatrix(scene));
  ExpectNear(Rotate(trs.rotation, Vector{0.0, 0.0, -1.0}), Vector{scene.axisZ.x, scene.axisZ.y, -scene.axisZ.z});
  ExpectNear(Rotate(trs.rotation, Vector{0.0, 1.0, 0.0}), Vector{scene.axisY.x, scene.axisY.y, -scene.axisY.z});
  for (double s : trs.scale) EXPECT_NEAR(s, 1.0, 1e-12);
}

INSTANTIATE_TEST_SUITE_P(Turns, LookDirection,
                         ::testing::Values(Turn{{0.0, 0.0, 0.0}, 6}, Turn{{std::numbers::pi / 2, 0.0, 0.0}, 6},
                                           Turn{{0.3, -0.7, 1.1}, 6}, Turn{{0.3, -0.7, 1.1}, 0},
                                           Turn{{2.9, 0.2, -3.0}, 2}, Turn{{std::numbers::pi, 0.0, 0.0}, 6},
                                           Turn{{0.0, std::numbers::pi, 0.0}, 4}));

TEST(Axes, AHeadingOfAQuarterTurnLooksAlongXInBoth) {
  // Heading pi/2 turns the scene's look direction +z to +x; x is not mirrored.
  const Matrix scene = RotationToMatrix({std::numbers::pi / 2, 0.0, 0.0}, 6);
  const Trs trs = DecomposeTrs(ToGltfMatrix(scene));
  const Vector look = Rotate(trs.rotation, Vector{0.0, 0.0, -1.0});
  EXPECT_NEAR(std::fabs(look.x), 1.0, 1e-12);
  EXPECT_NEAR(look.x, scene.axisZ.x, 1e-12);
}

TEST(Axes, PointsMirrorZAndTranslationsFollow) {
  ExpectNear(ToGltfPoint({1.0, 2.0, 3.0}), {1.0, 2.0, -3.0});
  Matrix m;
  m.off = {10.0, -20.0, 30.0};
  const Trs trs = DecomposeTrs(ToGltfMatrix(m));
  EXPECT_EQ(trs.translation, (std::array<double, 3>{10.0, -20.0, -30.0}));
  EXPECT_EQ(trs.rotation, (std::array<double, 4>{0.0, 0.0, 0.0, 1.0}));
}

TEST(Axes, ScaleAndMirrorSurviveTheSplit) {
  Matrix m = RotationToMatrix({0.4, 0.0, 0.0}, 6);
  m.axisX = m.axisX * 2.0;
  m.axisY = m.axisY * 3.0;
  m.axisZ = m.axisZ * -4.0;  // a mirror
  const Trs trs = DecomposeTrs(ToGltfMatrix(m));
  EXPECT_NEAR(trs.scale[0], 2.0, 1e-12);
  EXPECT_NEAR(trs.scale[1], 3.0, 1e-12);
  EXPECT_NEAR(trs.scale[2], -4.0, 1e-12);
  const Matrix g = ToGltfMatrix(m);
  ExpectNear(Rotate(trs.rotation, Vector{1.0, 0.0, 0.0}) * 2.0, g.axisX);
  ExpectNear(Rotate(trs.rotation, Vector{0.0, 0.0, 1.0}) * -4.0, g.axisZ);
}

TEST(Axes, ANullScaleStillGivesAUnitRotation) {
  Matrix m;
  m.axisY = {0.0, 0.0, 0.0};
  const Trs trs = DecomposeTrs(m);
  const auto [x, y, z, w] = trs.rotation;
  EXPECT_NEAR(x * x + y * y + z * z + w * w, 1.0, 1e-12);
  EXPECT_EQ(trs.scale[1], 0.0);
}

TEST(Axes, TheNearerQuaternionNeverTurnsTheLongWay) {
  const std::array<double, 4> previous{0.0, 0.0, 0.0, 1.0};
  EXPECT_EQ(NearerQuaternion(previous, {0.0, 0.1, 0.0, -0.99}), (std::array<double, 4>{-0.0, -0.1, -0.0, 0.99}));
  EXPECT_EQ(NearerQuaternion(previous, {0.0, 0.1, 0.0, 0.99}), (std::array<double, 4>{0.0, 0.1, 0.0, 0.99}));
}

}  // namespace
}  // namespace quillon::gltf
