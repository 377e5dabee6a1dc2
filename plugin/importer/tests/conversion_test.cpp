// The conversions of the import that are plain arithmetic, checked against values worked out
// by hand: the host's y axis points down where the scene's points up, rotations turn into
// x, y, z degrees, parents multiply into their children, and the camera and light values
// follow the host's units.
#include <gtest/gtest.h>

#include <cmath>
#include <vector>

#include "plugin/importer/camera_light_conversion.h"
#include "plugin/importer/import_file.h"
#include "plugin/importer/object_conversion.h"
#include "plugin/importer/scene_read.h"
#include "plugin/importer/timeline_markers.h"
#include "plugin/importer/transform_keys.h"

namespace {

constexpr double kPi = 3.14159265358979323846;

void ExpectNear(const Vector& v, double x, double y, double z) {
  EXPECT_NEAR(v.x, x, 1e-9);
  EXPECT_NEAR(v.y, y, 1e-9);
  EXPECT_NEAR(v.z, z, 1e-9);
}

TEST(HostTransform, PositionFlipsYAndATurnAboutXKeepsItsSignWhileYFlips) {
  Vector position{1, 2, 3};
  Vector rotation{kPi / 6, 0, 0};  // 30 degrees about x, order x, y, z
  Vector last;
  ToHostTransform(&position, &rotation, false, &last, kRotationOrderXyz);
  ExpectNear(position, 1, -2, 3);
  ExpectNear(rotation, 30, 0, 0);
  ExpectNear(last, kPi / 6, 0, 0);  // kept in radians for the next frame

  Vector p2;
  Vector r2{0, kPi / 4, 0};
  ToHostTransform(&p2, &r2, false, &last, kRotationOrderXyz);
  ExpectNear(r2, 0, -45, 0);
}

TEST(HostTransform, ContinuityKeepsATurnPastHalfACircleFromJumping) {
  // 179 degrees, then 181 degrees about z: without continuity the second reads -179.
  Vector last;
  Vector p;
  Vector first{0, 0, 179 * kPi / 180};
  ToHostTransform(&p, &first, false, &last, kRotationOrderXyz);
  Vector second{0, 0, 181 * kPi / 180};
  Vector lastCopy = last;
  Vector plain = second;
  ToHostTransform(&p, &plain, false, &lastCopy, kRotationOrderXyz);
  EXPECT_NEAR(plain.z, -179, 1e-9);
  ToHostTransform(&p, &second, true, &last, kRotationOrderXyz);
  EXPECT_NEAR(second.z, 181, 1e-9);
}

TEST(FlattenTransform, AChildUnderAScaledAndTurnedParent) {
  // Parent at (0, 200, 0), scale 3, turned 90 degrees about z; child at (10, 0, 0), scale 2.
  AncestorTransform parent;
  parent.position = {0, 200, 0};
  parent.rotation = {0, 0, kPi / 2};
  parent.scale = {3, 3, 3};
  parent.rotationOrder = kRotationOrderXyz;
  Vector position{10, 0, 0};
  Vector rotation;
  Vector scale{2, 2, 2};
  FlattenTransform(&position, &rotation, &scale, BaseTime(0, 25), nullptr, {parent}, kRotationOrderXyz);
  // Scene rotations are left-handed: a positive turn about z takes x onto -y, so the
  // child ends 10 * 3 below the parent.
  ExpectNear(position, 0, 170, 0);
  ExpectNear(rotation, 0, 0, kPi / 2);
  ExpectNear(scale, 6, 6, 6);  // a product of numbers, never read back from the matrix
}

TEST(FlattenTransform, AncestorsApplyNearestFirst) {
  AncestorTransform near;
  near.position = {5, 0, 0};
  near.scale = {1, 1, 1};
  AncestorTransform far;
  far.scale = {2, 2, 2};
  Vector position{1, 0, 0};
  Vector rotation;
  Vector scale{1, 1, 1};
  FlattenTransform(&position, &rotation, &scale, BaseTime(0, 25), nullptr, {near, far}, kRotationOrderXyz);
  ExpectNear(position, 12, 0, 0);  // (1 + 5) * 2
}

TEST(PointOfInterest, ALightLooks1000AheadAlongItsTurn) {
  ExpectNear(DerivePointOfInterest({0, 0, 0}, {1, 2, 3}), 1, -2, 1003);
  // Turned a quarter about x: sin 1, cos 0, so it looks along -x in host terms.
  ExpectNear(DerivePointOfInterest({kPi / 2, 0, 0}, {0, 0, 0}), -1000, 0, 0);
  // A turn about y lifts the point: y = -(sin(y) * 1000).
  ExpectNear(DerivePointOfInterest({0, kPi / 6, 0}, {0, 0, 0}), 0, -500, 1000 * std::cos(kPi / 6));
}

TEST(CameraValues, ZoomFilmAndFocalLength) {
  EXPECT_NEAR(ZoomFromFieldOfView(1920, 0.7854), 2317.6, 0.05);
  EXPECT_NEAR(ZoomFromFieldOfView(1000, kPi / 2), 500, 1e-9);  // 90 degrees: half the width
  EXPECT_NEAR(FieldOfViewFromFocalLength(36, 18), kPi / 2, 1e-12);
  // A focal length of 0 counts as 0.000001: nearly a half turn.
  EXPECT_NEAR(FieldOfViewFromFocalLength(36, 0), 2 * std::atan(18 / 0.000001), 1e-12);
}

TEST(LightValues, KindsOfBothLightTypes) {
  const int standard[] = {2, 1, 1, 3, 0, 0, 0, 2, 0, 1};
  for (int i = 0; i < 10; ++i) EXPECT_EQ(HostLightType(false, i), standard[i]) << i;
  const int kv[] = {3, 2, 1, 0, 3, 1, 0, 3};
  for (int i = 0; i < 8; ++i) EXPECT_EQ(HostLightType(true, i), kv[i]) << i;
  for (int unknown : {-1, 10, 99}) EXPECT_EQ(HostLightType(false, unknown), 2);
  EXPECT_EQ(HostLightType(true, 8), 2);
}

TEST(ImportTime, FramesAndHostTimes) {
  EXPECT_EQ(ImportTimeScale(29.97), 2997u);
  EXPECT_EQ(ImportTimeScale(25), 2500u);
  // Times reach the host as hundredths of frames in 32 bits: 21,474,836 frames at most.
  EXPECT_TRUE(CompositionTimingFits(29.97, 21474836, -21474836));
  EXPECT_FALSE(CompositionTimingFits(29.97, 21474837, 0));
  EXPECT_FALSE(CompositionTimingFits(29.97, 100, -21474837));
  EXPECT_FALSE(CompositionTimingFits(29.97, 0, 0));
  EXPECT_FALSE(CompositionTimingFits(0.001, 100, 0));  // a scale below one unit
  EXPECT_FALSE(CompositionTimingFits(3e7, 100, 0));    // a scale past 32 bits
  EXPECT_FALSE(CompositionTimingFits(std::nan(""), 100, 0));
  // Frame of a scene time: trunc(floor(rate * numerator) / floor(denominator)).
  EXPECT_EQ(SceneFrame(BaseTime(12, 25), 25), 12);
  EXPECT_EQ(SceneFrame(BaseTime(1, 3), 25), 8);  // 25 / 3 = 8.33
  // Times a damaged file may hold saturate instead of wrapping around.
  EXPECT_EQ(SceneFrame(BaseTime(1e12, 1), 1000), INT32_MAX);
  EXPECT_EQ(SceneFrame(BaseTime(-1e12, 1), 1000), INT32_MIN);
  EXPECT_EQ(SceneFrame(BaseTime(7, 0), 25), 175);  // a zero denominator is taken as 1
  // A layer that starts at composition frame 10 at 25 fps: its first key at value 1000.
  const A_Time first = HostFrameTime(A_Time{1000, 2500}, 2500, 0);
  EXPECT_EQ(first.value, 1000);
  EXPECT_EQ(first.scale, 2500u);
  EXPECT_EQ(HostFrameTime(A_Time{1000, 2500}, 2500, 3).value, 1300);
  // An in point in another scale is carried over in single precision: 0.4 s at 2997.
  EXPECT_EQ(HostFrameTime(A_Time{2, 5}, 2997, 0).value, 1198);
}

// The size and the aspect in hundredths go to the host as 32-bit numbers; the host judges the rest.
TEST(ImportTime, OnlySizesAndAspectsOf32BitsGoToTheHost) {
  EXPECT_TRUE(CompositionFrameFits(1920, 1080, 1.0));
  EXPECT_TRUE(CompositionFrameFits(0, -5, 0.0));
  EXPECT_FALSE(CompositionFrameFits(1e12, 720, 1.0));
  EXPECT_FALSE(CompositionFrameFits(1280, std::nan(""), 1.0));
  EXPECT_FALSE(CompositionFrameFits(1280, 720, 1e13));
  EXPECT_FALSE(CompositionFrameFits(1280, 720, -HUGE_VAL));
}

TEST(MarkerText, NameAndNoteShareOneComment) {
  EXPECT_EQ(MarkerComment(u"cut", nullptr), u"cut");
  const std::u16string note = u"here";
  EXPECT_EQ(MarkerComment(u"cut", &note), u"cut\nhere");
  const std::u16string empty;
  EXPECT_EQ(MarkerComment(u"cut", &empty), u"cut\n");  // an empty note still adds the line feed
}

}  // namespace
