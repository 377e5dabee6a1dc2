// Objects through table Bo: transforms through the hierarchy, tags, splines.
#include <gtest/gtest.h>

#include <numbers>

#include "quillon/api/handles.h"
#include "quillon/tests/engine_tables.h"

namespace quillon::testing {
namespace {

constexpr double kPi = std::numbers::pi;

void ExpectNear(const Vector& a, const Vector& b, double tolerance = 1e-9) {
  EXPECT_NEAR(a.x, b.x, tolerance);
  EXPECT_NEAR(a.y, b.y, tolerance);
  EXPECT_NEAR(a.z, b.z, tolerance);
}

class ObjectsTest : public ::testing::Test {
 protected:
  BaseDocument* document = Bd()->AllocDocument();
  ~ObjectsTest() override { Bl()->FreeNode(document); }

  BaseObject* Insert(BaseObject* parent = nullptr) {
    BaseObject* object = Bo()->AllocObject(ObjectType_Null);
    Bd()->InsertObject(document, object, parent, nullptr, 0, 1);
    return object;
  }
};

TEST_F(ObjectsTest, DefaultsAndLocalMatrixFromChannels) {
  BaseObject* object = Insert();
  Vector scale;
  Bo()->GetScale(object, &scale);
  ExpectNear(scale, {1, 1, 1}, 0.0);
  EXPECT_EQ(Bo()->GetRotationOrder(object), 0);

  Vector position{1, 2, 3}, rotation{0, 0, kPi / 2}, twice{2, 2, 2}, offset{-960, 540, 0};
  Bo()->SetRotationOrder(object, 2);
  Bo()->SetPosition(object, &position);
  Bo()->SetRotation(object, &rotation);
  Bo()->SetScale(object, &twice);
  Bo()->SetOffsetPosition(object, &offset);
  const Matrix* local = Bo()->GetLocalMatrix(object);
  ExpectNear(local->off, {-959, 542, 3});
  ExpectNear(local->axisX, {0, -2, 0});
  ExpectNear(local->axisY, {2, 0, 0});
  Vector unchanged;
  Bo()->GetPosition(object, &unchanged);
  ExpectNear(unchanged, position, 0.0);
  Bo()->SetRotationOrder(object, 7);
  EXPECT_EQ(Bo()->GetRotationOrder(object), 2);
}

TEST_F(ObjectsTest, SetGlobalMatrixGivesTheMatrixUnderTheParent) {
  BaseObject* parent = Insert();
  Vector position{10, 0, 0}, rotation{0, 0, kPi / 2}, scale{2, 2, 2};
  Bo()->SetRotationOrder(parent, 2);
  Bo()->SetPosition(parent, &position);
  Bo()->SetRotation(parent, &rotation);
  Bo()->SetScale(parent, &scale);
  BaseObject* child = Insert(parent);
  Bo()->SetRotationOrder(child, 2);

  Matrix world;
  world.off = {10, -2, 0};
  Bo()->SetGlobalMatrix(child, &world);
  const Matrix* local = Bo()->GetLocalMatrix(child);
  // The parent maps x to -2y and y to 2x; the inverse brings (0, -2, 0) to (1, 0, 0).
  ExpectNear(local->off, {1, 0, 0});
  ExpectNear(local->axisX, {0, 0.5, 0});
  ExpectNear(local->axisY, {-0.5, 0, 0});
  Vector childScale, childRotation;
  Bo()->GetScale(child, &childScale);
  Bo()->GetRotation(child, &childRotation);
  ExpectNear(childScale, {0.5, 0.5, 0.5});
  ExpectNear(childRotation, {0, 0, -kPi / 2});

  Matrix back;
  Bo()->GetGlobalMatrix(child, &back);
  ExpectNear(back.off, world.off);
  ExpectNear(back.axisX, world.axisX);
  ExpectNear(back.axisZ, world.axisZ);
}

TEST_F(ObjectsTest, SetLocalMatrixKeepsAMirrorInTheScale) {
  BaseObject* object = Insert();
  Matrix mirrored;
  mirrored.axisZ = {0, 0, -3};
  Bo()->SetLocalMatrix(object, &mirrored);
  Vector scale;
  Bo()->GetScale(object, &scale);
  ExpectNear(scale, {1, 1, -3});
  ExpectNear(Bo()->GetLocalMatrix(object)->axisZ, {0, 0, -3});
}

TEST_F(ObjectsTest, ModesAreKeptByIndex) {
  BaseObject* object = Insert();
  Bo()->SetMode(object, 2, 1);
  Bo()->SetMode(object, 3, 1);
  const Object* model = ObjectOf(object);
  EXPECT_EQ(model->modes[2], 1);
  EXPECT_EQ(model->modes[0], 0);
}

TEST_F(ObjectsTest, TagsByTypeAndIndex) {
  BaseObject* object = Insert();
  BaseTag* first = Tg()->AllocTag(TagType_Compositing, 0);
  BaseTag* second = Tg()->AllocTag(TagType_Compositing, 0);
  BaseTag* target = Tg()->AllocTag(TagType_Target, 0);
  Bo()->InsertTag(object, first, nullptr);
  Bo()->InsertTag(object, target, nullptr);
  Bo()->InsertTag(object, second, first);
  EXPECT_EQ(Bo()->GetTag(object, TagType_Compositing, 0), first);
  EXPECT_EQ(Bo()->GetTag(object, TagType_Compositing, 1), second);
  EXPECT_EQ(Bo()->GetTag(object, TagType_Compositing, 2), nullptr);
  EXPECT_EQ(Bo()->GetTag(object, TagType_Target, 0), target);
  EXPECT_EQ(At()->GetDocument(target), document);
  EXPECT_EQ(At()->GetUp(target), nullptr);
}

TEST_F(ObjectsTest, SplineArraysFollowResize) {
  BaseObject* spline = Bo()->AllocSpline(0, 4);
  ASSERT_NE(spline, nullptr);
  EXPECT_EQ(At()->GetType(spline), ObjectType_Spline);
  EXPECT_EQ(Bo()->GetTagDataCount(spline, TagType_Points), 0);
  Bo()->ResizeSpline(spline, 6, 2);
  EXPECT_EQ(Bo()->GetTagDataCount(spline, TagType_Points), 6);
  EXPECT_EQ(Bo()->GetTagDataCount(spline, TagType_Tangents), 6);
  EXPECT_EQ(Bo()->GetTagDataCount(spline, TagType_Segments), 2);
  auto* points = static_cast<Vector*>(Bo()->GetTagData(spline, TagType_Points, 0));
  auto* segments = static_cast<SplineSegment*>(Bo()->GetTagData(spline, TagType_Segments, 0));
  ASSERT_NE(points, nullptr);
  points[5] = {1, 2, 3};
  segments[1] = {4, 1, {}};
  BaseTag* pointTag = Bo()->GetTag(spline, TagType_Points, 0);
  EXPECT_EQ(static_cast<Vector*>(Tg()->GetDataAddress(pointTag))[5].z, 3.0);
  EXPECT_EQ(static_cast<SplineSegment*>(Bo()->GetTagData(spline, TagType_Segments, 0))[1].count, 4);
  Bo()->ResizeSpline(spline, 0, 0);
  EXPECT_EQ(Bo()->GetTagData(spline, TagType_Points, 0), nullptr);
  Bl()->FreeNode(spline);
}

}  // namespace
}  // namespace quillon::testing
