// A shape layer evaluated into the items the host draws: which contours each
// fill and stroke gets, the group transforms, colours, keyed paths, and the
// identity of the form.
#include <gtest/gtest.h>

#include "aehost/model/shape_evaluation.h"

namespace aehost {
namespace {

ShapeElement Rectangle(double width, double height) {
  ShapeElement rectangle = NewShapeElement(ShapeKind::Rectangle);
  rectangle.params[static_cast<std::size_t>(ShapeParamIndex(ShapeKind::Rectangle, "size"))].value =
      MakeValue(width, height);
  return rectangle;
}

void Set(ShapeElement& element, const char* key, const Value& value) {
  element.params[static_cast<std::size_t>(ShapeParamIndex(element.kind, key))].value = value;
}

Layer ShapeLayer(std::vector<ShapeElement> shapes) {
  Layer layer;
  layer.objectType = LayerObjectType::Shape;
  layer.shapes = std::move(shapes);
  return layer;
}

PathShape Square(double size) {
  return {{{0, 0, 0, 0, 0, 0}, {size, 0, 0, 0, 0, 0}, {size, size, 0, 0, 0, 0}}, false};
}

TEST(ShapeEvaluation, EachPaintGetsThePathsBeforeItInItsGroup) {
  const Layer layer = ShapeLayer({NewShapeElement(ShapeKind::Fill), Rectangle(10, 10),
                                  NewShapeElement(ShapeKind::Stroke), NewShapeElement(ShapeKind::Ellipse),
                                  NewShapeElement(ShapeKind::GradientFill)});
  const auto items = EvaluateShapeLayer(layer, 0);
  ASSERT_EQ(items.size(), 3u);
  EXPECT_EQ(items[0].kind, ShapeKind::Fill);
  EXPECT_TRUE(items[0].contours.empty());
  EXPECT_EQ(items[1].kind, ShapeKind::Stroke);
  ASSERT_EQ(items[1].contours.size(), 1u);
  EXPECT_EQ(items[1].contours[0].vertices.size(), 4u);
  EXPECT_EQ(items[2].kind, ShapeKind::GradientFill);
  ASSERT_EQ(items[2].contours.size(), 2u);
  EXPECT_EQ(items[2].contours[1].vertices.size(), 4u);
}

TEST(ShapeEvaluation, GroupTransformsScaleTurnAndMoveTheirContours) {
  ShapeElement group = NewShapeElement(ShapeKind::Group);
  group.contents = {Rectangle(10, 10)};
  Set(group, "position", MakeValue(100, 50));
  Set(group, "scale", MakeValue(200, 100));
  Set(group, "rotation", MakeValue(90));
  const auto items = EvaluateShapeLayer(ShapeLayer({group, NewShapeElement(ShapeKind::Fill)}), 0);
  ASSERT_EQ(items.size(), 1u);
  ASSERT_EQ(items[0].contours.size(), 1u);
  // (5,-5) scaled to (10,-5), turned a quarter clockwise to (5,10), moved to (105,60); and so on.
  const double expected[4][2] = {{105, 60}, {95, 60}, {95, 40}, {105, 40}};
  for (int i = 0; i < 4; ++i) {
    EXPECT_NEAR(items[0].contours[0].vertices[static_cast<std::size_t>(i)].x, expected[i][0], 1e-9);
    EXPECT_NEAR(items[0].contours[0].vertices[static_cast<std::size_t>(i)].y, expected[i][1], 1e-9);
  }
}

TEST(ShapeEvaluation, TangentsTurnWithTheGroupButDoNotMove) {
  ShapeElement group = NewShapeElement(ShapeKind::Group);
  group.contents = {NewShapeElement(ShapeKind::Ellipse), NewShapeElement(ShapeKind::Stroke)};
  Set(group, "position", MakeValue(7, 9));
  Set(group, "rotation", MakeValue(90));
  const auto items = EvaluateShapeLayer(ShapeLayer({group}), 0);
  ASSERT_EQ(items.size(), 1u);
  const PathVertex& top = items[0].contours[0].vertices[0];
  // The top (0,-50) with its out handle (27.6, 0) turns to the right side (50, 0) with the handle (0, 27.6).
  EXPECT_NEAR(top.x, 57, 1e-9);
  EXPECT_NEAR(top.y, 9, 1e-9);
  EXPECT_NEAR(top.outX, 0, 1e-9);
  EXPECT_NEAR(top.outY, 50 * 0.5519150244935106, 1e-9);
}

TEST(ShapeEvaluation, ColoursCarryTheOpacityInAlpha) {
  ShapeElement fill = NewShapeElement(ShapeKind::Fill);
  Set(fill, "color", MakeValue(0.25, 0.5, 0.75, 1));
  Set(fill, "opacity", MakeValue(50));
  ShapeElement gradient = NewShapeElement(ShapeKind::GradientFill);
  Set(gradient, "startColor", MakeValue(0, 1, 0, 1));
  const auto items = EvaluateShapeLayer(ShapeLayer({fill, gradient}), 0);
  ASSERT_EQ(items.size(), 2u);
  EXPECT_EQ(items[0].color, MakeValue(0.25, 0.5, 0.75, 0.5));
  EXPECT_EQ(items[1].color, MakeValue(0, 1, 0, 1));
}

TEST(ShapeEvaluation, KeyedPathsMoveVertexByVertexOrHoldWhenTheCountsDiffer) {
  PathStream path;
  PathShape moved = Square(10);
  moved.vertices[1].x = 20;
  path.keys = {{1, Square(10)}, {2, moved}, {3, {{{0, 0, 0, 0, 0, 0}}, true}}};
  EXPECT_EQ(PathAt(path, 0).vertices[1].x, 10);
  EXPECT_EQ(PathAt(path, 1.5).vertices[1].x, 15);
  EXPECT_EQ(PathAt(path, 2.5).vertices.size(), 3u);
  EXPECT_EQ(PathAt(path, 3).vertices.size(), 1u);
}

TEST(ShapeEvaluation, TheIdentityFollowsTheFormAndNotTheColour) {
  ShapeElement path = NewShapeElement(ShapeKind::Path);
  path.path.shape = Square(10);
  ShapeElement fill = NewShapeElement(ShapeKind::Fill);
  const std::string plain = ShapeFormIdentity(EvaluateShapeLayer(ShapeLayer({path, fill}), 0));
  Set(fill, "color", MakeValue(0, 0, 1, 1));
  EXPECT_EQ(ShapeFormIdentity(EvaluateShapeLayer(ShapeLayer({path, fill}), 0)), plain);
  path.path.shape.closed = true;
  EXPECT_NE(ShapeFormIdentity(EvaluateShapeLayer(ShapeLayer({path, fill}), 0)), plain);
  path.path.shape.closed = false;
  path.path.shape.vertices[2].inX = 1;
  EXPECT_NE(ShapeFormIdentity(EvaluateShapeLayer(ShapeLayer({path, fill}), 0)), plain);
}

}  // namespace
}  // namespace aehost
