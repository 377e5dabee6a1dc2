#include "aehost/model/shape_contents.h"

#include <algorithm>
#include <cstring>

#include "aehost/model/evaluate.h"

namespace aehost {
namespace {

const ShapeParam kGroupParams[] = {
    {"anchor", "ADBE Vector Anchor", "Anchor Point", StreamKind::TwoD, MakeValue(0, 0)},
    {"position", "ADBE Vector Position", "Position", StreamKind::TwoD, MakeValue(0, 0)},
    {"scale", "ADBE Vector Scale", "Scale", StreamKind::TwoD, MakeValue(100, 100)},
    {"rotation", "ADBE Vector Rotation", "Rotation", StreamKind::OneD, MakeValue(0)},
    {"opacity", "ADBE Vector Group Opacity", "Opacity", StreamKind::OneD, MakeValue(100)},
};
const ShapeParam kRectangleParams[] = {
    {"size", "ADBE Vector Rect Size", "Size", StreamKind::TwoD, MakeValue(100, 100)},
    {"position", "ADBE Vector Rect Position", "Position", StreamKind::TwoD, MakeValue(0, 0)},
    {"roundness", "ADBE Vector Rect Roundness", "Roundness", StreamKind::OneD, MakeValue(0)},
};
const ShapeParam kEllipseParams[] = {
    {"size", "ADBE Vector Ellipse Size", "Size", StreamKind::TwoD, MakeValue(100, 100)},
    {"position", "ADBE Vector Ellipse Position", "Position", StreamKind::TwoD, MakeValue(0, 0)},
};
// The host spells the roundness match names without the second "n".
const ShapeParam kStarParams[] = {
    {"points", "ADBE Vector Star Points", "Points", StreamKind::OneD, MakeValue(5)},
    {"position", "ADBE Vector Star Position", "Position", StreamKind::TwoD, MakeValue(0, 0)},
    {"rotation", "ADBE Vector Star Rotation", "Rotation", StreamKind::OneD, MakeValue(0)},
    {"innerRadius", "ADBE Vector Star Inner Radius", "Inner Radius", StreamKind::OneD, MakeValue(50)},
    {"outerRadius", "ADBE Vector Star Outer Radius", "Outer Radius", StreamKind::OneD, MakeValue(100)},
    {"innerRoundness", "ADBE Vector Star Inner Roundess", "Inner Roundness", StreamKind::OneD, MakeValue(0)},
    {"outerRoundness", "ADBE Vector Star Outer Roundess", "Outer Roundness", StreamKind::OneD, MakeValue(0)},
};
const ShapeParam kFillParams[] = {
    {"color", "ADBE Vector Fill Color", "Color", StreamKind::Color, MakeValue(1, 0, 0, 1)},
    {"opacity", "ADBE Vector Fill Opacity", "Opacity", StreamKind::OneD, MakeValue(100)},
};
const ShapeParam kStrokeParams[] = {
    {"color", "ADBE Vector Stroke Color", "Color", StreamKind::Color, MakeValue(1, 1, 1, 1)},
    {"opacity", "ADBE Vector Stroke Opacity", "Opacity", StreamKind::OneD, MakeValue(100)},
    {"width", "ADBE Vector Stroke Width", "Stroke Width", StreamKind::OneD, MakeValue(2)},
};
const ShapeParam kGradientParams[] = {
    {"startPoint", "ADBE Vector Grad Start Pt", "Start Point", StreamKind::TwoD, MakeValue(0, 0)},
    {"endPoint", "ADBE Vector Grad End Pt", "End Point", StreamKind::TwoD, MakeValue(100, 0)},
    {"startColor", "ADBE Vector Grad Colors", "Colors", StreamKind::Color, MakeValue(1, 1, 1, 1)},
    {"endColor", nullptr, nullptr, StreamKind::Color, MakeValue(0, 0, 0, 1)},
    {"opacity", "ADBE Vector Fill Opacity", "Opacity", StreamKind::OneD, MakeValue(100)},
};

}  // namespace

std::span<const ShapeParam> ShapeParamsOf(ShapeKind kind) {
  switch (kind) {
    case ShapeKind::Group: return kGroupParams;
    case ShapeKind::Path: return {};
    case ShapeKind::Rectangle: return kRectangleParams;
    case ShapeKind::Ellipse: return kEllipseParams;
    case ShapeKind::Star:
    case ShapeKind::Polygon: return kStarParams;
    case ShapeKind::Fill: return kFillParams;
    case ShapeKind::Stroke: return kStrokeParams;
    case ShapeKind::GradientFill: return kGradientParams;
  }
  return {};
}

const char* ShapeMatchName(ShapeKind kind) {
  switch (kind) {
    case ShapeKind::Group: return "ADBE Vector Group";
    case ShapeKind::Path: return "ADBE Vector Shape - Group";
    case ShapeKind::Rectangle: return "ADBE Vector Shape - Rect";
    case ShapeKind::Ellipse: return "ADBE Vector Shape - Ellipse";
    case ShapeKind::Star:
    case ShapeKind::Polygon: return "ADBE Vector Shape - Star";
    case ShapeKind::Fill: return "ADBE Vector Graphic - Fill";
    case ShapeKind::Stroke: return "ADBE Vector Graphic - Stroke";
    case ShapeKind::GradientFill: return "ADBE Vector Graphic - G-Fill";
  }
  return "";
}

const char* ShapeDefaultName(ShapeKind kind) {
  switch (kind) {
    case ShapeKind::Group: return "Group 1";
    case ShapeKind::Path: return "Path 1";
    case ShapeKind::Rectangle: return "Rectangle Path 1";
    case ShapeKind::Ellipse: return "Ellipse Path 1";
    case ShapeKind::Star:
    case ShapeKind::Polygon: return "Polystar Path 1";
    case ShapeKind::Fill: return "Fill 1";
    case ShapeKind::Stroke: return "Stroke 1";
    case ShapeKind::GradientFill: return "Gradient Fill 1";
  }
  return "";
}

bool IsShapeContour(ShapeKind kind) {
  return kind == ShapeKind::Path || kind == ShapeKind::Rectangle || kind == ShapeKind::Ellipse ||
         kind == ShapeKind::Star || kind == ShapeKind::Polygon;
}

bool IsShapePaint(ShapeKind kind) {
  return kind == ShapeKind::Fill || kind == ShapeKind::Stroke || kind == ShapeKind::GradientFill;
}

ShapeElement NewShapeElement(ShapeKind kind) {
  ShapeElement element;
  element.kind = kind;
  element.name = ShapeDefaultName(kind);
  for (const ShapeParam& param : ShapeParamsOf(kind)) {
    Stream stream;
    stream.kind = param.kind;
    stream.value = param.initial;
    element.params.push_back(stream);
  }
  return element;
}

Value ShapeParamAt(const ShapeElement& element, int param, double layerTime) {
  return InterpolateKeys(element.params.at(static_cast<std::size_t>(param)), layerTime);
}

int ShapeParamIndex(ShapeKind kind, const char* key) {
  const auto params = ShapeParamsOf(kind);
  for (std::size_t i = 0; i < params.size(); ++i) {
    if (std::strcmp(params[i].key, key) == 0) return static_cast<int>(i);
  }
  return -1;
}

namespace {

PathShape Blend(const PathShape& a, const PathShape& b, double f) {
  PathShape shape = a;
  auto mix = [f](double p, double q) { return p + (q - p) * f; };
  for (std::size_t i = 0; i < shape.vertices.size(); ++i) {
    PathVertex& v = shape.vertices[i];
    const PathVertex& w = b.vertices[i];
    v = {mix(v.x, w.x), mix(v.y, w.y), mix(v.inX, w.inX), mix(v.inY, w.inY), mix(v.outX, w.outX),
         mix(v.outY, w.outY)};
  }
  return shape;
}

}  // namespace

PathShape PathAt(const PathStream& path, double layerTime) {
  const auto& keys = path.keys;
  if (keys.empty()) return path.shape;
  if (layerTime <= keys.front().time) return keys.front().shape;
  if (layerTime >= keys.back().time) return keys.back().shape;
  const auto next = std::upper_bound(keys.begin(), keys.end(), layerTime,
                                     [](double time, const PathKey& key) { return time < key.time; });
  const PathKey& before = *(next - 1);
  if (before.shape.vertices.size() != next->shape.vertices.size()) return before.shape;
  return Blend(before.shape, next->shape, (layerTime - before.time) / (next->time - before.time));
}

bool IsPathTimeVarying(const PathStream& path) { return path.keys.size() > 1; }

}  // namespace aehost
