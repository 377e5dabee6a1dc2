// The parametric shapes as Bezier contours, against contours worked out by
// hand from the construction written down in shape_contours.h.
#include <cmath>
#include <numbers>

#include <gtest/gtest.h>

#include "aehost/model/shape_contours.h"

namespace aehost {
namespace {

void ExpectContour(const PathShape& shape, const std::vector<PathVertex>& expected) {
  ASSERT_EQ(shape.vertices.size(), expected.size());
  EXPECT_TRUE(shape.closed);
  for (std::size_t i = 0; i < expected.size(); ++i) {
    const PathVertex& v = shape.vertices[i];
    const PathVertex& e = expected[i];
    SCOPED_TRACE("vertex " + std::to_string(i));
    EXPECT_NEAR(v.x, e.x, 1e-12);
    EXPECT_NEAR(v.y, e.y, 1e-12);
    EXPECT_NEAR(v.inX, e.inX, 1e-12);
    EXPECT_NEAR(v.inY, e.inY, 1e-12);
    EXPECT_NEAR(v.outX, e.outX, 1e-12);
    EXPECT_NEAR(v.outY, e.outY, 1e-12);
  }
}

TEST(ShapeContours, ARectangleStartsTopRightAndRunsClockwise) {
  ExpectContour(RectangleContour(10, 20, 40, 20, 0),
                {{30, 10, 0, 0, 0, 0}, {30, 30, 0, 0, 0, 0}, {-10, 30, 0, 0, 0, 0}, {-10, 10, 0, 0, 0, 0}});
}

TEST(ShapeContours, RoundCornersMeetTheSidesWithHandlesIntoTheCorner) {
  const double h = 5 * 0.5519150244935106;
  ExpectContour(RectangleContour(0, 0, 40, 20, 5),
                {{20, -5, 0, -h, 0, 0}, {20, 5, 0, 0, 0, h}, {15, 10, h, 0, 0, 0}, {-15, 10, 0, 0, -h, 0},
                 {-20, 5, 0, h, 0, 0}, {-20, -5, 0, 0, 0, -h}, {-15, -10, -h, 0, 0, 0}, {15, -10, 0, 0, h, 0}});
}

TEST(ShapeContours, RoundnessStopsAtHalfTheShorterSide) {
  const double h = 10 * 0.5519150244935106;
  ExpectContour(RectangleContour(0, 0, 40, 20, 50),
                {{20, 0, 0, -h, 0, 0}, {20, 0, 0, 0, 0, h}, {10, 10, h, 0, 0, 0}, {-10, 10, 0, 0, -h, 0},
                 {-20, 0, 0, h, 0, 0}, {-20, 0, 0, 0, 0, -h}, {-10, -10, -h, 0, 0, 0}, {10, -10, 0, 0, h, 0}});
}

TEST(ShapeContours, AnEllipseStartsAtTheTopWithTheArcHandle) {
  const double hx = 100 * 0.5519150244935106, hy = 50 * 0.5519150244935106;
  ExpectContour(EllipseContour(0, 0, 200, 100), {{0, -50, -hx, 0, hx, 0},
                                                 {100, 0, 0, -hy, 0, hy},
                                                 {0, 50, hx, 0, -hx, 0},
                                                 {-100, 0, 0, hy, 0, -hy}});
}

TEST(ShapeContours, AStarAlternatesOuterAndInnerPointsFromTheTop) {
  StarSpec star;
  star.points = 5;
  const PathShape shape = StarContour(star);
  ASSERT_EQ(shape.vertices.size(), 10u);
  // Inner point 1 lies 36 degrees clockwise of the top: at -54 degrees from +x.
  const double a = -54.0 * std::numbers::pi / 180.0;
  ExpectContour({{shape.vertices[0], shape.vertices[1]}, true},
                {{0, -100, 0, 0, 0, 0}, {50 * std::cos(a), 50 * std::sin(a), 0, 0, 0, 0}});
}

TEST(ShapeContours, ARoundPolygonHasHandlesAlongTheTravel) {
  StarSpec polygon;
  polygon.polygon = true;
  polygon.points = 4;
  polygon.centerX = 5;
  polygon.outerRadius = 10;
  polygon.outerRoundness = 100;
  // 10 x 100 % x (2 pi / 4) / 4
  const double h = 10 * std::numbers::pi / 8;
  ExpectContour(StarContour(polygon),
                {{5, -10, -h, 0, h, 0}, {15, 0, 0, -h, 0, h}, {5, 10, h, 0, -h, 0}, {-5, 0, 0, h, 0, -h}});
}

TEST(ShapeContours, AStarTurnedByARotationStartsThere) {
  StarSpec polygon;
  polygon.polygon = true;
  polygon.points = 3;
  polygon.rotation = 90;
  polygon.outerRadius = 10;
  const PathShape shape = StarContour(polygon);
  ASSERT_EQ(shape.vertices.size(), 3u);
  EXPECT_NEAR(shape.vertices[0].x, 10, 1e-12);
  EXPECT_NEAR(shape.vertices[0].y, 0, 1e-12);
}

}  // namespace
}  // namespace aehost
