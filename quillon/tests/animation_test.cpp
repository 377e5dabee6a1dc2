// Tracks, curves and keys through table CA.
#include <gtest/gtest.h>

#include <cmath>

#include "quillon/api/handles.h"
#include "quillon/tests/engine_tables.h"

namespace quillon::testing {
namespace {

class AnimationTest : public ::testing::Test {
 protected:
  BaseDocument* document = Bd()->AllocDocument();
  BaseObject* object = Bo()->AllocObject(ObjectType_Null);
  Path positionX{ObjectParam_Position, DataKind_Vector, VectorComponent_X, DataKind_Float};

  AnimationTest() { Bd()->InsertObject(document, object, nullptr, nullptr, 0, 1); }
  ~AnimationTest() override { Bl()->FreeNode(document); }

  AnimTrack* Track(const ParamId& id, SceneNode* node = nullptr) {
    SceneNode* owner = node ? node : object;
    AnimTrack* track = CA()->AllocTrack(owner, &id);
    Bl()->InsertTrack(owner, track);
    return track;
  }

  AnimKey* Key(AnimCurve* curve, double frame, double value, bool linear = true) {
    BaseTime time(frame, 30);
    AnimKey* key = CA()->AddKey(curve, &time, nullptr, 0, 0);
    At()->SetBitFlag(key, kNodeBitKeyLinear, linear);
    CA()->SetKeyValue(key, curve, value);
    return key;
  }

  double At30(AnimTrack* track, double frame) {
    BaseTime time(frame, 30);
    return CA()->GetCurveValue(track, document, &time, 0);
  }
};

TEST_F(AnimationTest, TracksAreFoundByTheirExactPath) {
  AnimTrack* track = Track(positionX.id);
  EXPECT_EQ(CA()->GetTrackKind(track), kTrackKindFloat);
  EXPECT_EQ(Bl()->FindTrack(object, &positionX.id), track);
  Path positionY(ObjectParam_Position, DataKind_Vector, VectorComponent_Y, DataKind_Float);
  Path wholePosition(ObjectParam_Position);
  EXPECT_EQ(Bl()->FindTrack(object, &positionY.id), nullptr);
  EXPECT_EQ(Bl()->FindTrack(object, &wholePosition.id), nullptr);
  // A level without a kind matches one with a kind.
  Path untyped(ObjectParam_Position, 0, VectorComponent_X, 0);
  EXPECT_EQ(Bl()->FindTrack(object, &untyped.id), track);
  EXPECT_EQ(At()->GetDocument(track), document);
  EXPECT_EQ(CA()->GetCurve(track, 1, false), nullptr);
  EXPECT_NE(CA()->GetCurve(track, 1, true), nullptr);
}

TEST_F(AnimationTest, KeysStayInTimeOrderAndAreFoundExactly) {
  AnimCurve* curve = CA()->GetCurve(Track(positionX.id), 1, true);
  Key(curve, 10, 10);
  Key(curve, 0, 0);
  Key(curve, 20, 40);
  ASSERT_EQ(CA()->GetKeyCount(curve), 3);
  BaseTime time;
  CA()->GetKeyTime(CA()->GetKey(curve, 1), &time);
  EXPECT_EQ(time.numerator, 1.0);  // 10/30 reduced
  EXPECT_EQ(time.denominator, 3.0);
  int32_t index = -1;
  BaseTime ten(10, 30), eleven(11, 30);
  EXPECT_EQ(CA()->FindKey(curve, &ten, &index, 0), CA()->GetKey(curve, 1));
  EXPECT_EQ(index, 1);
  EXPECT_EQ(CA()->FindKey(curve, &eleven, &index, 0), nullptr);
  EXPECT_EQ(CA()->GetKey(curve, 3), nullptr);
  // A second key at a time that has one gives that key.
  EXPECT_EQ(CA()->AddKey(curve, &ten, nullptr, 0, 0), CA()->GetKey(curve, 1));
}

TEST_F(AnimationTest, CurveValueInterpolatesLinearKeysAndHoldsAtTheEnds) {
  AnimTrack* track = Track(positionX.id);
  AnimCurve* curve = CA()->GetCurve(track, 1, true);
  Key(curve, 0, 0);
  Key(curve, 10, 10);
  Key(curve, 20, 40);
  EXPECT_DOUBLE_EQ(At30(track, 5), 5.0);
  EXPECT_DOUBLE_EQ(At30(track, 15), 25.0);
  EXPECT_DOUBLE_EQ(At30(track, 10), 10.0);
  EXPECT_DOUBLE_EQ(At30(track, -3), 0.0);
  EXPECT_DOUBLE_EQ(At30(track, 90), 40.0);
}

TEST_F(AnimationTest, SmoothKeysFollowTheirNeighboursSlopes) {
  AnimTrack* track = Track(positionX.id);
  AnimCurve* curve = CA()->GetCurve(track, 1, true);
  // Keys at 0, 1 and 2 seconds with values 0, 1, 0: slopes 1, 0, -1. Halfway
  // between the first two, the cubic gives 0.125 * 1 + 0.5 * 1 = 0.625.
  Key(curve, 0, 0, false);
  Key(curve, 30, 1, false);
  Key(curve, 60, 0, false);
  EXPECT_NEAR(At30(track, 15), 0.625, 1e-12);
  EXPECT_NEAR(At30(track, 45), 0.625, 1e-12);
}

TEST_F(AnimationTest, WithoutKeysTheCurveGivesTheParameter) {
  Vector position{7, 0, 0};
  Bo()->SetPosition(object, &position);
  AnimTrack* track = Track(positionX.id);
  CA()->GetCurve(track, 1, true);
  EXPECT_EQ(At30(track, 3), 7.0);
  AnimKey* key = Key(CA()->GetCurve(track, 1, true), 0, 0);
  ASSERT_TRUE(CA()->FillKey(track, document, object, key));
  EXPECT_EQ(CA()->GetKeyValue(key), 7.0);
}

TEST_F(AnimationTest, PruningDeletesKeysOneByOneWhileWalking) {
  AnimTrack* track = Track(positionX.id);
  AnimCurve* curve = CA()->GetCurve(track, 1, true);
  for (int frame = 0; frame < 100; ++frame) Key(curve, frame, frame < 50 ? 0.0 : 1.0);
  // Keys equal to both neighbours go: the program's walk, Remove then DeleteKey.
  double previous = CA()->GetKeyValue(CA()->GetKey(curve, 0));
  for (int32_t i = 1; i < CA()->GetKeyCount(curve) - 1; ++i) {
    AnimKey* key = CA()->GetKey(curve, i);
    double value = CA()->GetKeyValue(key);
    double next = CA()->GetKeyValue(CA()->GetKey(curve, i + 1));
    if (std::fabs(previous - value) < 1e-6 && std::fabs(next - value) < 1e-6) {
      At()->Remove(key);
      CA()->DeleteKey(curve, i, 0, 0);
      --i;
    }
    previous = value;
  }
  ASSERT_EQ(CA()->GetKeyCount(curve), 4);
  const double frames[] = {0, 49, 50, 99};
  for (int32_t i = 0; i < 4; ++i) {
    BaseTime time;
    CA()->GetKeyTime(CA()->GetKey(curve, i), &time);
    EXPECT_EQ(FrameOf(time, 30), frames[i]);
  }
  EXPECT_DOUBLE_EQ(At30(track, 30), 0.0);
  EXPECT_DOUBLE_EQ(At30(track, 70), 1.0);
}

TEST_F(AnimationTest, FreeingAKeyTakesItOutOfItsCurve) {
  AnimCurve* curve = CA()->GetCurve(Track(positionX.id), 1, true);
  Key(curve, 0, 1);
  AnimKey* middle = Key(curve, 1, 2);
  Key(curve, 2, 3);
  Bl()->FreeNode(middle);
  ASSERT_EQ(CA()->GetKeyCount(curve), 2);
  EXPECT_EQ(CA()->GetKeyValue(CA()->GetKey(curve, 1)), 3.0);
}

TEST_F(AnimationTest, ATrackGivesBackItsPath) {
  AnimTrack* track = Track(positionX.id);
  ParamId path{nullptr, 0, 0};
  CA()->GetTrackParamId(track, &path);
  ASSERT_EQ(path.count, 2);
  EXPECT_EQ(path.levels[0].id, ObjectParam_Position);
  EXPECT_EQ(path.levels[1].id, VectorComponent_X);
  Extension<ParamIdLibrary>(kExtensionParamId)->ParamIdFree(&path);
  EXPECT_EQ(CA()->GetFirstTrack(object), track);
}

TEST_F(AnimationTest, FreeingATrackTakesItOffTheNode) {
  AnimTrack* track = Track(positionX.id);
  At()->Remove(track);
  Bl()->FreeNode(track);
  EXPECT_EQ(Bl()->FindTrack(object, &positionX.id), nullptr);
  EXPECT_EQ(CA()->GetFirstTrack(object), nullptr);
}

TEST_F(AnimationTest, DataTracksHoldValuesOfTheirKind) {
  Path text(2111, DataKind_String);
  AnimTrack* track = Track(text.id);
  EXPECT_EQ(CA()->GetTrackKind(track), DataKind_String);
  AnimCurve* curve = CA()->GetCurve(track, 1, true);
  BaseTime zero(0, 30);
  AnimKey* key = CA()->AddKey(curve, &zero, nullptr, 0, 0);
  Text hello("hello");
  Data value;
  Gd()->SetString(&value.value, &hello.value);
  CA()->SetKeyData(key, curve, &value.value);
  EXPECT_TRUE(Gd()->Equals(CA()->GetKeyData(key), &value.value));
}

TEST_F(AnimationTest, SplineKeysCarryCopiesOfTheSplineArrays) {
  BaseObject* spline = Bo()->AllocSpline(0, 4);
  Bd()->InsertObject(document, spline, nullptr, nullptr, 0, 1);
  Bo()->ResizeSpline(spline, 3, 1);
  static_cast<Vector*>(Bo()->GetTagData(spline, TagType_Points, 0))[2] = {4, 5, 6};
  Path shape(SplineKeyTrack_Id, SplineKeyTrack_Id);
  AnimTrack* track = Track(shape.id, spline);
  EXPECT_EQ(CA()->GetTrackKind(track), SplineKeyTrack_Id);
  BaseTime zero(0, 30);
  AnimKey* key = CA()->AddKey(CA()->GetCurve(track, 1, true), &zero, nullptr, 0, 0);

  Data data;
  Path payloadPath(SplineKeyParam_Payload, DataKind_SplineKey);
  ASSERT_TRUE(At()->GetParameter(key, &payloadPath.id, &data.value, 0));
  void* payload = Gd()->GetCustomData(&data.value, DataKind_SplineKey);
  ASSERT_NE(payload, nullptr);
  const auto* library = Extension<SplineKeyLibrary>(kExtensionSplineKey);
  BaseTag* points = nullptr;
  BaseTag* tangents = nullptr;
  ASSERT_TRUE(library->GetSplineKeyTags(payload, &points, &tangents));
  auto* copy = static_cast<Vector*>(Tg()->GetDataAddress(points));
  ASSERT_NE(copy, nullptr);
  EXPECT_EQ(copy[2].y, 5.0);
  ASSERT_NE(Tg()->GetDataAddress(tangents), nullptr);

  // Written back, the key holds the changed copy; the spline keeps its own.
  copy[2].y = 50.0;
  ASSERT_TRUE(At()->SetParameter(key, &payloadPath.id, &data.value, 0));
  Data again;
  At()->GetParameter(key, &payloadPath.id, &again.value, 0);
  library->GetSplineKeyTags(Gd()->GetCustomData(&again.value, DataKind_SplineKey), &points, &tangents);
  EXPECT_EQ(static_cast<Vector*>(Tg()->GetDataAddress(points))[2].y, 50.0);
  EXPECT_EQ(static_cast<Vector*>(Bo()->GetTagData(spline, TagType_Points, 0))[2].y, 5.0);

  // The payload is the key's data, so keys of different shapes are told apart.
  AnimCurve* curve = CA()->GetCurve(track, 1, true);
  BaseTime one(1, 30);
  AnimKey* next = CA()->AddKey(curve, &one, nullptr, 0, 0);
  EXPECT_FALSE(Gd()->Equals(CA()->GetKeyData(key), CA()->GetKeyData(next)));
  ASSERT_TRUE(At()->SetParameter(next, &payloadPath.id, &again.value, 0));
  EXPECT_TRUE(Gd()->Equals(CA()->GetKeyData(key), CA()->GetKeyData(next)));
}

// Plain keys live in the curve's arrays and borrow a node while a caller holds them: what is
// set through a handle stays when the node serves other keys, a handle holds while fewer than
// eight other keys of its curve are asked for, and a key given data through its handle keeps
// a node of its own.
TEST_F(AnimationTest, WhatIsSetThroughAHandleStaysWhenTheNodeServesOtherKeys) {
  AnimTrack* track = Track(positionX.id);
  AnimCurve* curve = CA()->GetCurve(track, 1, true);
  for (int frame = 0; frame < 100; ++frame) Key(curve, frame, frame * 2.0, frame % 3 == 0);
  AnimKey* held = CA()->GetKey(curve, 10);
  for (int32_t i = 20; i < 27; ++i) CA()->GetKey(curve, i);
  BaseTime time;
  CA()->GetKeyTime(held, &time);
  EXPECT_EQ(FrameOf(time, 30), 10);
  for (int32_t i = 0; i < 100; ++i) {
    AnimKey* key = CA()->GetKey(curve, i);
    EXPECT_EQ(CA()->GetKeyValue(key), i * 2.0);
    EXPECT_EQ(At()->GetBitFlag(key, kNodeBitKeyLinear), i % 3 == 0);
  }
  // Frames 1 and 2 are smooth: the cubic through slopes of 60 a second at both ends is the
  // line, as is the linear frame 3 to 4.
  for (const double halfFrame : {3.0, 7.0}) {
    const BaseTime time(halfFrame, 60);
    EXPECT_DOUBLE_EQ(CA()->GetCurveValue(track, document, &time, 0), halfFrame);
  }
}

TEST_F(AnimationTest, AKeyGivenDataThroughItsHandleKeepsIt) {
  AnimCurve* curve = CA()->GetCurve(Track(positionX.id), 1, true);
  BaseTime zero(0, 30);
  AnimKey* key = CA()->AddKey(curve, &zero, nullptr, 0, 0);
  Text hello("hello");
  Data value;
  Gd()->SetString(&value.value, &hello.value);
  CA()->SetKeyData(key, curve, &value.value);
  for (int frame = 1; frame < 40; ++frame) Key(curve, frame, frame);
  EXPECT_EQ(CA()->GetKey(curve, 0), key);
  EXPECT_TRUE(Gd()->Equals(CA()->GetKeyData(CA()->GetKey(curve, 0)), &value.value));
}

TEST_F(AnimationTest, APrunedCurveGivesBackTheRoomItGrewTo) {
  AnimCurve* curve = CA()->GetCurve(Track(positionX.id), 1, true);
  for (int frame = 0; frame < 1000; ++frame) Key(curve, frame, 1.0);
  for (int32_t i = 998; i >= 1; --i) CA()->DeleteKey(curve, i, 0, 0);
  ASSERT_EQ(CA()->GetKeyCount(curve), 2);
  EXPECT_LE(CurveOf(curve)->keys.capacity(), 16u);
  BaseTime time;
  CA()->GetKeyTime(CA()->GetKey(curve, 1), &time);
  EXPECT_EQ(FrameOf(time, 30), 999);
}

}  // namespace
}  // namespace quillon::testing
