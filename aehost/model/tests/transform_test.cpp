// Layer-to-world matrices on cases worked out by hand. Conventions: row
// vectors (p' = p * M), rows 0..2 the layer's axes, row 3 its origin; x right,
// y down, z away from the viewer; a positive angle turns right-handed.
#include <gtest/gtest.h>

#include "aehost/model/transform.h"
#include "model_fixture.h"

namespace aehost {
namespace {

void ExpectRow(const Matrix4& m, int row, double x, double y, double z) {
  EXPECT_NEAR(m.m[row][0], x, 1e-9) << "row " << row;
  EXPECT_NEAR(m.m[row][1], y, 1e-9) << "row " << row;
  EXPECT_NEAR(m.m[row][2], z, 1e-9) << "row " << row;
}

void ExpectIdentityRotation(const Matrix4& m) {
  ExpectRow(m, 0, 1, 0, 0);
  ExpectRow(m, 1, 0, 1, 0);
  ExpectRow(m, 2, 0, 0, 1);
}

struct TransformTest : ::testing::Test {
  SmallProject p;

  // A 3D solid with anchor and position at the origin, so that only the
  // stream under test moves it.
  Layer& Bare(bool threeD = true) {
    Layer& layer = p.Solid();
    layer.switches.threeD = threeD;
    p.Set(layer, LayerStream::AnchorPoint, 0, 0, 0);
    p.Set(layer, LayerStream::Position, 0, 0, 0);
    return layer;
  }

  Matrix4 World(const Layer& layer, double time = 0.0) {
    return LayerToWorld(p.project, *p.comp, layer, time);
  }
};

TEST_F(TransformTest, AnchorAndPositionPlaceTheTopLeftCorner) {
  Layer& solid = p.Solid();
  p.Set(solid, LayerStream::AnchorPoint, 20, 10, 0);
  p.Set(solid, LayerStream::Position, 100, 50, 0);
  const Matrix4 m = World(solid);
  ExpectIdentityRotation(m);
  ExpectRow(m, 3, 80, 40, 0);
}

TEST_F(TransformTest, ScaleIsInPercentAroundTheAnchor) {
  Layer& solid = p.Solid();
  solid.switches.threeD = true;
  p.Set(solid, LayerStream::AnchorPoint, 20, 10, 0);
  p.Set(solid, LayerStream::Position, 100, 50, 0);
  p.Set(solid, LayerStream::Scale, 50, 200, 100);
  const Matrix4 m = World(solid);
  ExpectRow(m, 0, 0.5, 0, 0);
  ExpectRow(m, 1, 0, 2, 0);
  ExpectRow(m, 2, 0, 0, 1);
  // The corner (0, 0) is 20 * 0.5 left of and 10 * 2 above the position.
  ExpectRow(m, 3, 90, 30, 0);
}

TEST_F(TransformTest, EachRotationAxis) {
  Layer& z = Bare(false);
  p.Set(z, LayerStream::RotationZ, 90);
  // The layer's x axis turns to point down: clockwise on screen.
  ExpectRow(World(z), 0, 0, 1, 0);
  ExpectRow(World(z), 1, -1, 0, 0);

  Layer& x = Bare();
  p.Set(x, LayerStream::RotationX, 90);
  // Its down axis turns away from the viewer.
  ExpectRow(World(x), 1, 0, 0, 1);
  ExpectRow(World(x), 2, 0, -1, 0);

  Layer& y = Bare();
  p.Set(y, LayerStream::RotationY, 90);
  // Its right edge comes towards the viewer.
  ExpectRow(World(y), 0, 0, 0, -1);
  ExpectRow(World(y), 2, 1, 0, 0);
}

TEST_F(TransformTest, TwoDimensionalLayersIgnoreDepth) {
  Layer& flat = Bare(false);
  p.Set(flat, LayerStream::RotationX, 90);
  p.Set(flat, LayerStream::Orientation, 0, 45, 0);
  p.Set(flat, LayerStream::Position, 10, 20, 30);
  const Matrix4 m = World(flat);
  ExpectIdentityRotation(m);
  ExpectRow(m, 3, 10, 20, 0);
}

TEST_F(TransformTest, ZRotationTurnsAFloorLikeATurntable) {
  Layer& floor = Bare();
  p.Set(floor, LayerStream::RotationX, 90);
  p.Set(floor, LayerStream::RotationZ, 90);
  const Matrix4 m = World(floor);
  // Z first: x -> down -> away; y -> left, untouched by X.
  ExpectRow(m, 0, 0, 0, 1);
  ExpectRow(m, 1, -1, 0, 0);
  // The normal stays vertical: the layer still lies flat.
  ExpectRow(m, 2, 0, -1, 0);
}

TEST_F(TransformTest, OrientationTurnsTheFrameTheRotationsWorkIn) {
  Layer& layer = Bare();
  p.Set(layer, LayerStream::Orientation, 0, 90, 0);
  p.Set(layer, LayerStream::RotationX, 90);
  const Matrix4 m = World(layer);
  // X Rotation tilts the down axis away (0, 0, 1); orientation Y then turns
  // "away" to the right (1, 0, 0). The other order would leave it at (0, 0, 1).
  ExpectRow(m, 1, 1, 0, 0);
  ExpectRow(m, 0, 0, 0, -1);
}

TEST_F(TransformTest, OrientationAloneMatchesTheSameRotation) {
  Layer& oriented = Bare();
  p.Set(oriented, LayerStream::Orientation, 30, 40, 50);
  Layer& rotated = Bare();
  p.Set(rotated, LayerStream::RotationX, 30);
  p.Set(rotated, LayerStream::RotationY, 40);
  p.Set(rotated, LayerStream::RotationZ, 50);
  const Matrix4 a = World(oriented), b = World(rotated);
  for (int r = 0; r < 3; ++r) ExpectRow(a, r, b.m[r][0], b.m[r][1], b.m[r][2]);
}

TEST_F(TransformTest, ParentsApplyAfterTheChild) {
  Layer& parent = Bare(false);
  p.Set(parent, LayerStream::Position, 100, 50, 0);
  p.Set(parent, LayerStream::RotationZ, 90);
  Layer& child = Bare(false);
  p.Set(child, LayerStream::Position, 10, 0, 0);
  child.parentId = parent.id;
  Matrix4 m = World(child);
  // (10, 0) in the parent turns to (0, 10) and moves by (100, 50).
  ExpectRow(m, 3, 100, 60, 0);
  ExpectRow(m, 0, 0, 1, 0);

  Layer& grandparent = Bare(false);
  p.Set(grandparent, LayerStream::Scale, 200, 200, 100);
  parent.parentId = grandparent.id;
  m = World(child);
  ExpectRow(m, 3, 200, 120, 0);
  ExpectRow(m, 0, 0, 2, 0);
}

TEST_F(TransformTest, CamerasLookAtTheirPointOfInterest) {
  Layer& camera = AddCameraLayer(p.project, *p.comp, "Camera", 0, 0);
  p.Set(camera, LayerStream::Position, 0, 0, 0);
  p.Set(camera, LayerStream::AnchorPoint, 0, 0, 10);
  ExpectIdentityRotation(World(camera));

  p.Set(camera, LayerStream::AnchorPoint, 10, 0, 0);
  Matrix4 m = World(camera);
  // Turned to look right: z along +x, its right side now towards the viewer.
  ExpectRow(m, 2, 1, 0, 0);
  ExpectRow(m, 0, 0, 0, -1);
  ExpectRow(m, 1, 0, 1, 0);

  // Rotation turns the camera inside the look-at frame.
  p.Set(camera, LayerStream::RotationZ, 90);
  m = World(camera);
  ExpectRow(m, 0, 0, 1, 0);
  ExpectRow(m, 2, 1, 0, 0);

  // Without auto-orientation the point of interest does nothing.
  camera.switches.autoOrient = AutoOrient::Off;
  p.Set(camera, LayerStream::RotationZ, 0);
  ExpectIdentityRotation(World(camera));
}

TEST_F(TransformTest, LookingStraightDownKeepsTheCompositionsXAxis) {
  const Matrix4 m = LookAt(V(0, 0, 0), V(0, 10, 0));
  ExpectRow(m, 0, 1, 0, 0);
  ExpectRow(m, 1, 0, 0, -1);  // z x x: the picture's down now points at the viewer
  ExpectRow(m, 2, 0, 1, 0);
  ExpectIdentityRotation(LookAt(V(1, 2, 3), V(1, 2, 3)));
}

TEST_F(TransformTest, AParentedCameraLooksInItsParentsSpace) {
  Layer& parent = Bare(false);
  p.Set(parent, LayerStream::Position, 50, 0, 0);
  Layer& camera = AddCameraLayer(p.project, *p.comp, "Camera", 0, 0);
  p.Set(camera, LayerStream::Position, 0, 0, 0);
  p.Set(camera, LayerStream::AnchorPoint, 10, 0, 0);
  camera.parentId = parent.id;
  const Matrix4 m = World(camera);
  ExpectRow(m, 2, 1, 0, 0);
  ExpectRow(m, 3, 50, 0, 0);
}

TEST_F(TransformTest, LayerTimeFollowsStartAndStretch) {
  Layer& layer = Bare();
  layer.startTime = 2.0;
  Stream& position = EnsureStream(p.project, *p.comp, layer, LayerStream::Position);
  AddKeyframe(position, 0.0, V(0, 0, 0));
  AddKeyframe(position, 1.0, V(10, 0, 0));
  ExpectRow(World(layer, 2.5), 3, 5, 0, 0);
  layer.stretch = 2.0;
  EXPECT_DOUBLE_EQ(CompTimeToLayerTime(layer, 3.0), 0.5);
  EXPECT_DOUBLE_EQ(LayerTimeToCompTime(layer, 0.5), 3.0);
  ExpectRow(World(layer, 3.0), 3, 5, 0, 0);
}

}  // namespace
}  // namespace aehost
