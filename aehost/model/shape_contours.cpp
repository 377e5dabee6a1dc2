#include "aehost/model/shape_contours.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace aehost {
namespace {

// The star's points are whole; the host rounds a keyed value and keeps at least 3.
constexpr int kFewestStarPoints = 3;
constexpr int kMostStarPoints = 100;

PathVertex Corner(double x, double y) { return {x, y, 0, 0, 0, 0}; }

PathVertex Vertex(double x, double y, double inX, double inY, double outX, double outY) {
  return {x, y, inX, inY, outX, outY};
}

}  // namespace

PathShape RectangleContour(double cx, double cy, double width, double height, double roundness) {
  const double l = cx - width / 2, r = cx + width / 2, t = cy - height / 2, b = cy + height / 2;
  const double round = std::clamp(roundness, 0.0, std::min(std::fabs(width), std::fabs(height)) / 2);
  if (round == 0.0) return {{Corner(r, t), Corner(r, b), Corner(l, b), Corner(l, t)}, true};
  const double h = round * kArcHandle;
  return {{Vertex(r, t + round, 0, -h, 0, 0), Vertex(r, b - round, 0, 0, 0, h),
           Vertex(r - round, b, h, 0, 0, 0), Vertex(l + round, b, 0, 0, -h, 0),
           Vertex(l, b - round, 0, h, 0, 0), Vertex(l, t + round, 0, 0, 0, -h),
           Vertex(l + round, t, -h, 0, 0, 0), Vertex(r - round, t, 0, 0, h, 0)},
          true};
}

PathShape EllipseContour(double cx, double cy, double width, double height) {
  const double rx = width / 2, ry = height / 2;
  const double hx = rx * kArcHandle, hy = ry * kArcHandle;
  return {{Vertex(cx, cy - ry, -hx, 0, hx, 0), Vertex(cx + rx, cy, 0, -hy, 0, hy),
           Vertex(cx, cy + ry, hx, 0, -hx, 0), Vertex(cx - rx, cy, 0, hy, 0, -hy)},
          true};
}

PathShape StarContour(const StarSpec& star) {
  const int points = std::clamp(star.points, kFewestStarPoints, kMostStarPoints);
  const int count = star.polygon ? points : 2 * points;
  const double step = 2 * std::numbers::pi / count;
  const double first = (star.rotation - 90.0) * std::numbers::pi / 180.0;
  PathShape shape;
  for (int i = 0; i < count; ++i) {
    const bool outer = star.polygon || i % 2 == 0;
    const double radius = outer ? star.outerRadius : star.innerRadius;
    const double roundness = outer ? star.outerRoundness : star.innerRoundness;
    const double angle = first + i * step;
    const double c = std::cos(angle), s = std::sin(angle);
    const double handle = radius * roundness / 100.0 * step / 4.0;
    // Travel runs clockwise on the screen: along (-sin, cos) in y-down coordinates.
    shape.vertices.push_back(Vertex(star.centerX + radius * c, star.centerY + radius * s, handle * s,
                                    -handle * c, -handle * s, handle * c));
  }
  return shape;
}

PathShape ElementContour(const ShapeElement& e, double time) {
  auto at = [&](const char* key) { return ShapeParamAt(e, ShapeParamIndex(e.kind, key), time); };
  switch (e.kind) {
    case ShapeKind::Path:
      return PathAt(e.path, time);
    case ShapeKind::Rectangle: {
      const Value size = at("size"), position = at("position");
      return RectangleContour(position[0], position[1], size[0], size[1], at("roundness")[0]);
    }
    case ShapeKind::Ellipse: {
      const Value size = at("size"), position = at("position");
      return EllipseContour(position[0], position[1], size[0], size[1]);
    }
    case ShapeKind::Star:
    case ShapeKind::Polygon: {
      const Value position = at("position");
      const double points = at("points")[0];
      return StarContour({e.kind == ShapeKind::Polygon, position[0], position[1],
                          static_cast<int>(std::lround(std::clamp(points, 0.0, 1000.0))), at("rotation")[0],
                          at("innerRadius")[0], at("outerRadius")[0], at("innerRoundness")[0],
                          at("outerRoundness")[0]});
    }
    default:
      return {};
  }
}

}  // namespace aehost
