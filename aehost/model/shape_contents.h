// The contents of a shape layer as the host's property tree holds them:
// groups with their own transforms, paths and parametric shapes, and the fills
// and strokes that draw them. Every animatable value is a stream; which streams
// an element has, and the names the host shows for them, come from one table
// per kind (ShapeParamsOf), so that reading, writing, evaluating and scripting
// agree.
#pragma once

#include <span>
#include <string>
#include <vector>

#include "aehost/model/stream.h"

namespace aehost {

enum class ShapeKind { Group, Path, Rectangle, Ellipse, Star, Polygon, Fill, Stroke, GradientFill };

// One vertex of a path as scripts see it: the tangents are relative to the vertex.
struct PathVertex {
  double x = 0.0;
  double y = 0.0;
  double inX = 0.0;
  double inY = 0.0;
  double outX = 0.0;
  double outY = 0.0;
  bool operator==(const PathVertex&) const = default;
};

// A closed or open Bezier contour in the coordinates of its group.
struct PathShape {
  std::vector<PathVertex> vertices;
  bool closed = true;
  bool operator==(const PathShape&) const = default;
};

struct PathKey {
  double time = 0.0;  // layer seconds
  PathShape shape;
  bool operator==(const PathKey&) const = default;
};

// A free path: its shape, or keys that interpolate vertex by vertex.
struct PathStream {
  PathShape shape;            // the value when there are no keys
  std::vector<PathKey> keys;  // ordered by time, no two at one time
  bool operator==(const PathStream&) const = default;
};

// The streams of one kind of element, in the order the host lists them.
// `matchName` is null for a value the host shows only as part of another
// property (the end colour of a gradient lies in its "Colors").
struct ShapeParam {
  const char* key;        // in the project description
  const char* matchName;  // the host's match name
  const char* name;       // the name the host shows
  StreamKind kind;
  Value initial;          // what a new element of this kind holds
};

struct ShapeElement {
  ShapeKind kind = ShapeKind::Group;
  std::string name;                    // the name the host shows, e.g. "Rectangle 1"
  std::vector<Stream> params;          // one for each entry of ShapeParamsOf(kind)
  PathStream path;                     // free paths
  bool compositeOver = true;           // fills and strokes: drawn over what precedes them in the group
  std::vector<ShapeElement> contents;  // groups
  bool operator==(const ShapeElement&) const = default;
};

// The stream table of a kind; a group's streams are those of its Transform.
std::span<const ShapeParam> ShapeParamsOf(ShapeKind kind);

// The host's match name of an element, and the name it gives a new one ("Fill").
const char* ShapeMatchName(ShapeKind kind);
const char* ShapeDefaultName(ShapeKind kind);

bool IsShapeContour(ShapeKind kind);  // paths and the parametric shapes
bool IsShapePaint(ShapeKind kind);    // fills, strokes, gradient fills

// A new element of a kind with every stream at its initial value.
ShapeElement NewShapeElement(ShapeKind kind);

// The value of an element's stream at a layer time (by the index in its table).
Value ShapeParamAt(const ShapeElement& element, int param, double layerTime);

// The index of a stream in the table of a kind by its key, or -1.
int ShapeParamIndex(ShapeKind kind, const char* key);

// The shape of a free path at a layer time: between two keys with the same
// number of vertices every value moves linearly; otherwise the earlier key holds.
PathShape PathAt(const PathStream& path, double layerTime);

bool IsPathTimeVarying(const PathStream& path);

}  // namespace aehost
