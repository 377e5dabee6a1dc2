// Lengths along Bezier curves (contours and paths in space), measured on the curve itself: the integral of the speed of
// the cubic B(t) = (1-t)^3 P0 + 3(1-t)^2 t P1 + 3(1-t) t^2 P2 + t^3 P3 over t in [0, 1], taken
// with Gauss-Legendre quadrature on halves of halves until the halves agree to 1e-12 of the
// length (the formula and the rule are those of any numerical analysis text, e.g. Press et
// al., Numerical Recipes, chapter 4.6). A straight segment is exact at once.
#pragma once

#include "aehost/model/shape_contents.h"

namespace aehost {

struct Point2 {
  double x = 0.0;
  double y = 0.0;
};

struct Point3 {
  double x = 0.0;
  double y = 0.0;
  double z = 0.0;
};

// The length of the cubic with control points p0 .. p3.
double CubicLength(const Point2& p0, const Point2& p1, const Point2& p2, const Point2& p3);
double CubicLength(const Point3 (&p)[4]);

// The parameter u in 0..1 at which the cubic has run `distance` along itself (0 before its
// start, 1 past its end), found to 1e-12 of its length.
double CubicParameterAtLength(const Point3 (&p)[4], double distance);

// Segments of a contour: one from each vertex to the next, and for a closed contour one from
// the last vertex back to the first. A contour of fewer than two vertices has none.
int SegmentCount(const PathShape& shape);

// The length of segment `segment` (0 <= segment < SegmentCount): from vertex i with its out
// tangent to vertex i+1 (or 0) with its in tangent, tangents relative to their vertex.
double SegmentLength(const PathShape& shape, int segment);

}  // namespace aehost
