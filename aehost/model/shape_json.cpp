// Shapes of the project description, read and written.
#include "aehost/model/shape_json.h"

#include <array>
#include <utility>

#include "aehost/model/stream_json.h"

namespace aehost::description {
namespace {

constexpr Name<ShapeKind> kShapeKinds[] = {
    {ShapeKind::Group, "group"},         {ShapeKind::Path, "path"},     {ShapeKind::Rectangle, "rectangle"},
    {ShapeKind::Ellipse, "ellipse"},     {ShapeKind::Star, "star"},     {ShapeKind::Polygon, "polygon"},
    {ShapeKind::Fill, "fill"},           {ShapeKind::Stroke, "stroke"}, {ShapeKind::GradientFill, "gradientFill"},
};

constexpr Name<bool> kComposite[] = {{true, "over"}, {false, "under"}};

std::vector<std::array<double, 2>> ReadPointList(const In& at) {
  std::vector<std::array<double, 2>> points;
  const Json::Value& array = RequireArray(at);
  for (Json::ArrayIndex i = 0; i < array.size(); ++i) {
    const Value point = ReadValue(Element(at, i), StreamKind::TwoD);
    points.push_back({point[0], point[1]});
  }
  return points;
}

// Vertices with tangents relative to them, as scripts see a path.
PathShape ReadPathShape(const In& at) {
  RequireObject(at, {"vertices", "inTangents", "outTangents", "closed"});
  RequireMember(at, "vertices");
  const auto vertices = ReadPointList(Member(at, "vertices"));
  PathShape shape;
  shape.vertices.resize(vertices.size());
  for (std::size_t i = 0; i < vertices.size(); ++i) {
    shape.vertices[i].x = vertices[i][0];
    shape.vertices[i].y = vertices[i][1];
  }
  for (const char* key : {"inTangents", "outTangents"}) {
    if (!Has(at, key)) continue;
    const auto tangents = ReadPointList(Member(at, key));
    if (tangents.size() != vertices.size()) Fail(Member(at, key), "expected one tangent for each vertex");
    const bool in = std::string_view(key) == "inTangents";
    for (std::size_t i = 0; i < tangents.size(); ++i) {
      PathVertex& v = shape.vertices[i];
      (in ? v.inX : v.outX) = tangents[i][0];
      (in ? v.inY : v.outY) = tangents[i][1];
    }
  }
  Read(at, "closed", shape.closed);
  return shape;
}

ShapeElement ReadShapeElement(const In& at) {
  if (!at.value.isObject()) Fail(at, "expected an object");
  RequireMember(at, "kind");
  ShapeElement element = NewShapeElement(Choice(Member(at, "kind"), kShapeKinds));
  std::vector<std::string_view> allowed = {"kind", "name"};
  for (const ShapeParam& param : ShapeParamsOf(element.kind)) allowed.push_back(param.key);
  if (element.kind == ShapeKind::Group) allowed.push_back("contents");
  if (element.kind == ShapeKind::Path) allowed.push_back("path");
  if (IsShapePaint(element.kind)) allowed.push_back("composite");
  RequireObjectWith(at, allowed);
  Read(at, "name", element.name);
  const auto params = ShapeParamsOf(element.kind);
  for (std::size_t i = 0; i < params.size(); ++i) {
    if (Has(at, params[i].key)) element.params[i] = ReadStreamOfKind(Member(at, params[i].key), params[i].kind);
  }
  if (element.kind == ShapeKind::Path) {
    RequireMember(at, "path");
    element.path = ReadPathStream(Member(at, "path"));
  }
  if (Has(at, "composite")) element.compositeOver = Choice(Member(at, "composite"), kComposite);
  // The reader's nesting limit of JSON bounds the depth of groups.
  if (Has(at, "contents")) element.contents = ReadShapeContents(Member(at, "contents"));
  return element;
}

Json::Value WritePointList(const std::vector<PathVertex>& vertices, double PathVertex::*x, double PathVertex::*y) {
  Json::Value list(Json::arrayValue);
  for (const PathVertex& v : vertices) list.append(WriteValue(MakeValue(v.*x, v.*y), StreamKind::TwoD));
  return list;
}

bool HasTangents(const PathShape& shape, double PathVertex::*x, double PathVertex::*y) {
  for (const PathVertex& v : shape.vertices) {
    if (v.*x != 0.0 || v.*y != 0.0) return true;
  }
  return false;
}

Json::Value WritePathShape(const PathShape& shape) {
  Json::Value out(Json::objectValue);
  out["vertices"] = WritePointList(shape.vertices, &PathVertex::x, &PathVertex::y);
  if (HasTangents(shape, &PathVertex::inX, &PathVertex::inY)) {
    out["inTangents"] = WritePointList(shape.vertices, &PathVertex::inX, &PathVertex::inY);
  }
  if (HasTangents(shape, &PathVertex::outX, &PathVertex::outY)) {
    out["outTangents"] = WritePointList(shape.vertices, &PathVertex::outX, &PathVertex::outY);
  }
  if (!shape.closed) out["closed"] = false;
  return out;
}

}  // namespace

PathStream ReadPathStream(const In& at) {
  PathStream path;
  if (!Has(at, "keys")) {
    path.shape = ReadPathShape(at);
    return path;
  }
  RequireObject(at, {"keys"});
  const In keys = Member(at, "keys");
  const Json::Value& array = RequireArray(keys);
  if (array.empty()) Fail(keys, "expected at least one key");
  for (Json::ArrayIndex i = 0; i < array.size(); ++i) {
    const In element = Element(keys, i);
    RequireObject(element, {"time", "shape"});
    RequireMember(element, "time");
    RequireMember(element, "shape");
    PathKey key{Seconds(Member(element, "time")), ReadPathShape(Member(element, "shape"))};
    if (i > 0 && key.time <= path.keys.back().time) Fail(Member(element, "time"), "keys must follow each other in time");
    path.keys.push_back(key);
  }
  path.shape = path.keys.front().shape;
  return path;
}

std::vector<ShapeElement> ReadShapeContents(const In& at) {
  std::vector<ShapeElement> contents;
  const Json::Value& array = RequireArray(at);
  for (Json::ArrayIndex i = 0; i < array.size(); ++i) contents.push_back(ReadShapeElement(Element(at, i)));
  return contents;
}

Json::Value WritePathStream(const PathStream& path) {
  if (path.keys.empty()) return WritePathShape(path.shape);
  Json::Value keys(Json::arrayValue);
  for (const PathKey& key : path.keys) {
    Json::Value entry(Json::objectValue);
    entry["time"] = key.time;
    entry["shape"] = WritePathShape(key.shape);
    keys.append(std::move(entry));
  }
  Json::Value out(Json::objectValue);
  out["keys"] = std::move(keys);
  return out;
}

// An element names only what differs from a new element of its kind.
Json::Value WriteShapeElement(const ShapeElement& element) {
  const ShapeElement fresh = NewShapeElement(element.kind);
  Json::Value out(Json::objectValue);
  out["kind"] = TextOf(kShapeKinds, element.kind);
  if (element.name != fresh.name) out["name"] = element.name;
  const auto params = ShapeParamsOf(element.kind);
  for (std::size_t i = 0; i < params.size(); ++i) {
    if (element.params[i] != fresh.params[i]) out[params[i].key] = WriteStream(element.params[i]);
  }
  if (element.kind == ShapeKind::Path) out["path"] = WritePathStream(element.path);
  if (!element.compositeOver) out["composite"] = TextOf(kComposite, false);
  if (!element.contents.empty()) {
    Json::Value contents(Json::arrayValue);
    for (const ShapeElement& child : element.contents) contents.append(WriteShapeElement(child));
    out["contents"] = std::move(contents);
  }
  return out;
}

}  // namespace aehost::description
