#include "aehost/model/shape_evaluation.h"

#include <cmath>
#include <cstring>
#include <numbers>

#include "aehost/model/shape_contours.h"

namespace aehost {
namespace {

// A 2D affine map p' = (x a + y c + e, x b + y d + f), the row-vector convention
// of the layer matrices.
struct Affine {
  double a = 1, b = 0, c = 0, d = 1, e = 0, f = 0;
};

Affine Then(const Affine& first, const Affine& second) {
  return {first.a * second.a + first.b * second.c, first.a * second.b + first.b * second.d,
          first.c * second.a + first.d * second.c, first.c * second.b + first.d * second.d,
          first.e * second.a + first.f * second.c + second.e, first.e * second.b + first.f * second.d + second.f};
}

// A group's transform as the host applies it: move the anchor to the origin,
// scale (percent), turn (degrees, clockwise on the screen), then move to the position.
Affine GroupTransform(const ShapeElement& group, double time) {
  auto at = [&](const char* key) { return ShapeParamAt(group, ShapeParamIndex(group.kind, key), time); };
  const Value anchor = at("anchor"), position = at("position"), scale = at("scale");
  const double angle = at("rotation")[0] * std::numbers::pi / 180.0;
  const double cs = std::cos(angle), sn = std::sin(angle);
  const Affine toAnchor{1, 0, 0, 1, -anchor[0], -anchor[1]};
  const Affine scaling{scale[0] / 100.0, 0, 0, scale[1] / 100.0, 0, 0};
  const Affine turn{cs, sn, -sn, cs, 0, 0};
  const Affine toPosition{1, 0, 0, 1, position[0], position[1]};
  return Then(Then(Then(toAnchor, scaling), turn), toPosition);
}

PathShape Transformed(PathShape shape, const Affine& m) {
  for (PathVertex& v : shape.vertices) {
    const double x = v.x, y = v.y;
    v.x = x * m.a + y * m.c + m.e;
    v.y = x * m.b + y * m.d + m.f;
    const double inX = v.inX, outX = v.outX;
    v.inX = inX * m.a + v.inY * m.c;
    v.inY = inX * m.b + v.inY * m.d;
    v.outX = outX * m.a + v.outY * m.c;
    v.outY = outX * m.b + v.outY * m.d;
  }
  return shape;
}

Value PaintColor(const ShapeElement& paint, double time) {
  const char* colorKey = paint.kind == ShapeKind::GradientFill ? "startColor" : "color";
  Value color = ShapeParamAt(paint, ShapeParamIndex(paint.kind, colorKey), time);
  color[3] *= ShapeParamAt(paint, ShapeParamIndex(paint.kind, "opacity"), time)[0] / 100.0;
  return color;
}

// Evaluates one group's contents; returns the contours it holds, for the
// paints that follow the group in its parent.
std::vector<PathShape> EvaluateContents(const std::vector<ShapeElement>& contents, const Affine& toLayer,
                                        double time, std::vector<ShapeItem>& items) {
  std::vector<PathShape> contours;
  for (const ShapeElement& element : contents) {
    if (IsShapeContour(element.kind)) {
      contours.push_back(Transformed(ElementContour(element, time), toLayer));
    } else if (element.kind == ShapeKind::Group) {
      const Affine inner = Then(GroupTransform(element, time), toLayer);
      for (PathShape& contour : EvaluateContents(element.contents, inner, time, items)) {
        contours.push_back(std::move(contour));
      }
    } else if (IsShapePaint(element.kind)) {
      items.push_back({element.kind, PaintColor(element, time), contours});
    }
  }
  return contours;
}

void AppendBytes(std::string& out, double value) {
  char bytes[sizeof value];
  std::memcpy(bytes, &value, sizeof value);
  out.append(bytes, sizeof bytes);
}

}  // namespace

std::vector<ShapeItem> EvaluateShapeLayer(const Layer& layer, double layerTime) {
  std::vector<ShapeItem> items;
  if (layer.objectType == LayerObjectType::Shape) EvaluateContents(layer.shapes, Affine{}, layerTime, items);
  return items;
}

std::string ShapeFormIdentity(const std::vector<ShapeItem>& items) {
  std::string identity;
  for (const ShapeItem& item : items) {
    AppendBytes(identity, static_cast<double>(item.contours.size()));
    for (const PathShape& contour : item.contours) {
      identity += contour.closed ? 'C' : 'O';
      AppendBytes(identity, static_cast<double>(contour.vertices.size()));
      for (const PathVertex& v : contour.vertices) {
        for (double value : {v.x, v.y, v.inX, v.inY, v.outX, v.outY}) AppendBytes(identity, value);
      }
    }
  }
  return identity;
}

}  // namespace aehost
