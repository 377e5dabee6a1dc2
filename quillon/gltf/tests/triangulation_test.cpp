// The faces of contours: areas that the tessellator fills, holes of either winding, crossings.
#include <gtest/gtest.h>

#include <cmath>

#include "quillon/gltf/triangulation.h"

namespace quillon::gltf {
namespace {

Contour Square(double x, double y, double size, bool clockwise) {
  Contour c{{x, y, 0}, {x + size, y, 0}, {x + size, y + size, 0}, {x, y + size, 0}};
  if (clockwise) std::reverse(c.begin(), c.end());
  return c;
}

// The signed area of the triangles about +z: positive for counter-clockwise ones.
double SignedArea(const Triangles& t) {
  double area = 0.0;
  for (std::size_t i = 0; i + 2 < t.indices.size(); i += 3) {
    const Vector a = t.vertices[t.indices[i]], b = t.vertices[t.indices[i + 1]], c = t.vertices[t.indices[i + 2]];
    area += Cross(b - a, c - a).z / 2.0;
  }
  return area;
}

struct Case {
  const char* name;
  std::vector<Contour> contours;
  double area;
};

class Fill : public ::testing::TestWithParam<Case> {};

TEST_P(Fill, CoversTheAreaInsideAnOddNumberOfContours) {
  const Triangles t = Triangulate(GetParam().contours, Vector{0.0, 0.0, 1.0});
  EXPECT_NEAR(SignedArea(t), GetParam().area, 1e-9);
  EXPECT_EQ(t.indices.size() % 3, 0u);
}

INSTANTIATE_TEST_SUITE_P(
    Contours, Fill,
    ::testing::Values(Case{"Square", {Square(0, 0, 10, false)}, 100.0},
                      Case{"ClockwiseSquare", {Square(0, 0, 10, true)}, 100.0},
                      Case{"HoleWoundAlike", {Square(0, 0, 10, false), Square(3, 3, 4, false)}, 84.0},
                      Case{"HoleWoundOpposite", {Square(0, 0, 10, false), Square(3, 3, 4, true)}, 84.0},
                      // Two squares overlapping by a 5 x 5 corner: the corner is inside two.
                      Case{"Overlap", {Square(0, 0, 10, false), Square(5, 5, 10, false)}, 150.0},
                      Case{"Collinear", {Contour{{0, 0, 0}, {1, 0, 0}, {2, 0, 0}}}, 0.0},
                      Case{"Nothing", {}, 0.0}),
    [](const ::testing::TestParamInfo<Case>& info) { return std::string(info.param.name); });

TEST(Fill, ABowTieGetsAVertexWhereItsEdgesCross) {
  const Contour bowTie{{0, 0, 0}, {10, 10, 0}, {10, 0, 0}, {0, 10, 0}};
  const Triangles t = Triangulate({bowTie}, Vector{0.0, 0.0, 1.0});
  EXPECT_NEAR(SignedArea(t), 50.0, 1e-9);
  bool crossing = false;
  for (const Vector& v : t.vertices) crossing = crossing || (std::fabs(v.x - 5) < 1e-12 && std::fabs(v.y - 5) < 1e-12);
  EXPECT_TRUE(crossing);
}

}  // namespace
}  // namespace quillon::gltf
