// The parametric shapes of a shape layer turned into Bezier contours, as the
// host builds them before it draws. The construction follows the description
// of the host's shapes in the Lottie format documentation ("Shapes":
// rectangle, ellipse, polystar; lottiefiles.github.io/lottie-docs/shapes/),
// the public description of how these shapes become Bezier paths:
//
// - Every contour is closed and runs clockwise on the screen (y points down).
// - Rectangle (centre, size, roundness): without roundness four vertices,
//   starting at the top-right corner, then bottom-right, bottom-left,
//   top-left, with no tangents. With roundness r, clamped to half the smaller
//   side, eight vertices where the corner arcs meet the sides, starting on
//   the right side r below the top; the arcs have handles of r × kArcHandle
//   along the sides, pointing into the corner.
// - Ellipse (centre, size): four vertices, starting at the top, then right,
//   bottom, left; handles along the travel of length kArcHandle × the radius
//   of the axis they run along.
// - Star and polygon (centre, points, rotation, radii, roundness): the first
//   vertex lies straight above the centre turned by the rotation (degrees,
//   clockwise); a star alternates outer and inner vertices at angles of
//   180° / points, a polygon has only outer vertices at 360° / points. A
//   vertex of radius R and roundness p (percent) has handles along the travel
//   of length R × p / 100 × (2π / n) / 4, n the number of vertices, the in
//   handle against and the out handle along the direction of travel.
#pragma once

#include "aehost/model/shape_contents.h"

namespace aehost {

// The handle factor of a quarter circle the host uses for ellipses and round
// corners.
constexpr double kArcHandle = 0.5519150244935105707435627;

struct StarSpec {
  bool polygon = false;
  double centerX = 0.0;
  double centerY = 0.0;
  int points = 5;
  double rotation = 0.0;  // degrees, clockwise
  double innerRadius = 50.0;
  double outerRadius = 100.0;
  double innerRoundness = 0.0;  // percent
  double outerRoundness = 0.0;
};

PathShape RectangleContour(double centerX, double centerY, double width, double height, double roundness);
PathShape EllipseContour(double centerX, double centerY, double width, double height);
PathShape StarContour(const StarSpec& star);

// The contour of a path or parametric shape at a layer time, in the
// coordinates of its group.
PathShape ElementContour(const ShapeElement& element, double layerTime);

}  // namespace aehost
