// A host contour written as a spline segment: y negated, tangents (handle - vertex) / K with
// K = 4/3 in single precision, the last vertex at the contour's last place, and the places a
// shorter contour leaves filled with points on its last curve at t = 1/4, 2/4, 3/4 (with three
// fillers), each with zero tangents. Expected values are worked out from the Bezier formula.
#include "plugin/exporter/text_shape/outline_contour.h"

#include <gtest/gtest.h>

#include <vector>

namespace {

constexpr double kK = 1.3333333730697632;

struct Spline {
  explicit Spline(const OutlineDims& dims)
      : points(static_cast<size_t>(dims.points * dims.contours)),
        tangents(points.size()),
        segments(static_cast<size_t>(dims.contours)) {}
  SplineArrays arrays() { return SplineArrays{points.data(), tangents.data()}; }
  std::vector<Vector> points;
  std::vector<SplineTangent> tangents;
  std::vector<SplineSegment> segments;
};

void ExpectVector(const Vector& actual, double x, double y, double z) {
  EXPECT_DOUBLE_EQ(actual.x, x);
  EXPECT_DOUBLE_EQ(actual.y, y);
  EXPECT_DOUBLE_EQ(actual.z, z);
}

TEST(OutlineContour, KIsFourThirdsInSinglePrecision) { EXPECT_EQ(kHandleToTangent, kK); }

TEST(OutlineContour, VerticesBecomePointsWithFlippedYAndScaledTangents) {
  const OutlineDims dims{2, 1};
  // (10, 20) with handles in (4, 26) and out (16, 14); (40, 20) with handles at itself.
  const PF_PathVertex vertices[2] = {{10, 20, 4, 26, 16, 14}, {40, 20, 40, 20, 40, 20}};
  Spline spline(dims);
  ASSERT_TRUE(WriteContour(vertices, 2, 0, dims, OutlinePlacement{5.0, 1.0, 2.0}, spline.segments.data(), spline.arrays()));
  EXPECT_EQ(spline.segments[0].count, 2);
  EXPECT_EQ(spline.segments[0].closed, 1);
  ExpectVector(spline.points[0], 10 - 1, -20 - 2, 5);
  // y up: the in handle at y -26 lies 6 below the point at -20, the out handle 6 above.
  ExpectVector(spline.tangents[0].left, -6 / kK, -6 / kK, 0);
  ExpectVector(spline.tangents[0].right, 6 / kK, 6 / kK, 0);
  ExpectVector(spline.points[1], 40 - 1, -20 - 2, 5);
  ExpectVector(spline.tangents[1].left, 0, 0, 0);
}

TEST(OutlineContour, ContourWithExactlyDimsPointsHasNoFillers) {
  const OutlineDims dims{3, 1};
  const PF_PathVertex vertices[3] = {{0, 0, 0, 0, 0, 0}, {10, 0, 10, 0, 10, 0}, {10, 10, 10, 10, 10, 10}};
  Spline spline(dims);
  ASSERT_TRUE(WriteContour(vertices, 3, 0, dims, {}, spline.segments.data(), spline.arrays()));
  ExpectVector(spline.points[0], 0, 0, 0);
  ExpectVector(spline.points[1], 10, 0, 0);
  ExpectVector(spline.points[2], 10, -10, 0);
}

// Five vertices in a spline of eight points: 0 to 3 from the vertices, 4, 5, 6 on the curve
// from vertex 3 to vertex 4, 7 the last vertex. The curve from S = (0, 0) with out handle
// (0, 30) to E = (30, 30) with in handle (30, 0), y down; y up it runs (0,0) (0,-30) (30,0)
// (30,-30). At t: x = 3(1-t)t^2 30 + t^3 30, y = -(3(1-t)^2 t 30 + 3(1-t)t^2 0 + t^3 30).
TEST(OutlineContour, ShorterContourIsFilledOnItsLastCurve) {
  const OutlineDims dims{8, 2};
  const PF_PathVertex vertices[5] = {{50, 50, 50, 50, 50, 50},
                                     {60, 50, 60, 50, 60, 50},
                                     {60, 60, 60, 60, 60, 60},
                                     {0, 0, 0, 0, 0, 30},
                                     {30, 30, 30, 0, 30, 30}};
  Spline spline(dims);
  ASSERT_TRUE(WriteContour(vertices, 5, 1, dims, {}, spline.segments.data(), spline.arrays()));
  EXPECT_EQ(spline.segments[1].count, 8);
  const int base = 8;
  ExpectVector(spline.points[base + 0], 50, -50, 0);
  ExpectVector(spline.points[base + 3], 0, 0, 0);
  const double ts[3] = {0.25, 0.5, 0.75};
  for (int k = 0; k < 3; ++k) {
    const double t = ts[k];
    const double u = 1 - t;
    const double x = 3 * u * t * t * 30 + t * t * t * 30;
    const double y = -(3 * u * u * t * 30 + t * t * t * 30);
    SCOPED_TRACE(k);
    EXPECT_NEAR(spline.points[base + 4 + k].x, x, 1e-12);
    EXPECT_NEAR(spline.points[base + 4 + k].y, y, 1e-12);
    EXPECT_EQ(spline.points[base + 4 + k].z, 0.0);
    ExpectVector(spline.tangents[base + 4 + k].left, 0, 0, 0);
    ExpectVector(spline.tangents[base + 4 + k].right, 0, 0, 0);
  }
  ExpectVector(spline.points[base + 7], 30, -30, 0);
  ExpectVector(spline.tangents[base + 7].left, 0, 30 / kK, 0);
  // The first contour is left alone.
  ExpectVector(spline.points[0], 0, 0, 0);
}

TEST(OutlineContour, RefusesWhatDoesNotFit) {
  const OutlineDims dims{2, 1};
  const PF_PathVertex vertices[3] = {};
  Spline spline(dims);
  EXPECT_FALSE(WriteContour(vertices, 3, 0, dims, {}, spline.segments.data(), spline.arrays()));
  EXPECT_FALSE(WriteContour(vertices, 2, 1, dims, {}, spline.segments.data(), spline.arrays()));
  EXPECT_FALSE(WriteContour(vertices, 0, 0, dims, {}, spline.segments.data(), spline.arrays()));
  EXPECT_FALSE(WriteContour(vertices, 2, 0, dims, {}, nullptr, spline.arrays()));
}

// Mask tangents are relative to their vertex already: y negated, no 4/3.
TEST(OutlineContour, MaskVertexKeepsItsTangentsWithYNegated) {
  const OutlineDims dims{1, 1};
  Spline spline(dims);
  WriteMaskVertex(AEGP_MaskVertex{10, 20, -3, 4, 5, -6}, 0, spline.arrays());
  ExpectVector(spline.points[0], 10, -20, 0);
  ExpectVector(spline.tangents[0].left, -3, -4, 0);
  ExpectVector(spline.tangents[0].right, 5, 6, 0);
}

TEST(OutlineContour, DimsGrowToTheLargestOutline) {
  OutlineDims dims;
  IncludeOutline(&dims, 2, 5);
  IncludeOutline(&dims, 3, 4);
  EXPECT_EQ(dims.points, 5);
  EXPECT_EQ(dims.contours, 3);
}

}  // namespace
