// Segment lengths measured on the curve. Expected values: a straight side is its distance; a
// quarter circle of radius 1 with handles 0.5519150244935106 long (the host's ellipse handle)
// is 1.5708561799038796 long (Simpson's rule with 200000 steps, computed apart from this
// code), 6e-5 more than pi/2; the S curve (0,0) (100,0) (0,100) (100,100) is 167.65426274202878
// by the same rule.
#include "aehost/model/bezier.h"

#include <gtest/gtest.h>

#include <cmath>

#include "aehost/model/shape_contours.h"

namespace aehost {
namespace {

PathShape Square(bool closed) {
  PathShape shape;
  shape.vertices = {{0, 0}, {100, 0}, {100, 100}, {0, 100}};
  shape.closed = closed;
  return shape;
}

double TotalLength(const PathShape& shape) {
  double sum = 0.0;
  for (int i = 0; i < SegmentCount(shape); ++i) sum += SegmentLength(shape, i);
  return sum;
}

TEST(Bezier, ClosedSquareIsFourSides) {
  EXPECT_EQ(SegmentCount(Square(true)), 4);
  EXPECT_NEAR(TotalLength(Square(true)), 400.0, 1e-9);
}

TEST(Bezier, OpenSquareLeavesOutTheClosingSide) {
  EXPECT_EQ(SegmentCount(Square(false)), 3);
  EXPECT_NEAR(TotalLength(Square(false)), 300.0, 1e-9);
}

TEST(Bezier, FewerThanTwoVerticesHaveNoSegment) {
  PathShape one;
  one.vertices = {{5, 5}};
  EXPECT_EQ(SegmentCount(one), 0);
  EXPECT_EQ(SegmentCount(PathShape{}), 0);
}

TEST(Bezier, QuarterCircleIsItsBezierLength) {
  for (const double r : {1.0, 100.0}) {
    const double k = kArcHandle * r;
    const double length = CubicLength({r, 0}, {r, k}, {k, r}, {0, r});
    EXPECT_NEAR(length, 1.5708561799038796 * r, 1e-9 * r) << r;
    EXPECT_NEAR(length, r * M_PI / 2.0, 1e-4 * r) << r;
  }
}

TEST(Bezier, ACircleOfFourSegmentsFromTheEllipseConstruction) {
  const PathShape circle = EllipseContour(0, 0, 200, 200);
  EXPECT_NEAR(TotalLength(circle), 4 * 157.08561799038796, 1e-7);
}

TEST(Bezier, CurveWithTurnsAndCuspsConverges) {
  EXPECT_NEAR(CubicLength({0, 0}, {100, 0}, {0, 100}, {100, 100}), 167.65426274202878, 1e-9);
  // On a line, handles crossed so that the curve stops and turns back twice: x(t) = 300t -
  // 750t^2 + 500t^3 turns at t = (1 -+ 1/sqrt 5) / 2, where the speed has corners.
  const auto x = [](double t) { return 300 * t - 750 * t * t + 500 * t * t * t; };
  const double t1 = (1 - 1 / std::sqrt(5.0)) / 2, t2 = (1 + 1 / std::sqrt(5.0)) / 2;
  const double travelled = x(t1) + (x(t1) - x(t2)) + (50 - x(t2));
  EXPECT_NEAR(CubicLength({0, 0}, {100, 0}, {-50, 0}, {50, 0}), travelled, 1e-9);
}

// Work is bounded whatever the numbers: coordinates near the end of the double range, whose
// speed overflows, and ones that are not finite end at once with a length that is not finite.
TEST(Bezier, NumbersAtTheEndsOfTheRangeEndQuickly) {
  EXPECT_FALSE(std::isfinite(CubicLength({0, 0}, {1e308, 0}, {-1e308, 1e308}, {1e308, -1e308})));
  EXPECT_TRUE(std::isnan(CubicLength({0, 0}, {NAN, 0}, {0, 0}, {1, 1})));
  EXPECT_NEAR(CubicLength({0, 0}, {1e150, 0}, {0, 1e150}, {1e150, 1e150}), 1.6765426274202878e150, 1e140);
}

}  // namespace
}  // namespace aehost
