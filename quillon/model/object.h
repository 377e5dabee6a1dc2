// Scene objects: their transform (kept in the parameters 903, 904 and 905),
// rotation order, modes, tags and the caches that generators build.
#pragma once

#include <array>
#include <memory>
#include <optional>

#include "quillon/model/node.h"

namespace quillon {

class Tag;

class Object : public Node {
 public:
  explicit Object(int32_t type);
  ~Object() override;

  int32_t rotationOrder = 0;
  // A second position, added to that of the parameters.
  Vector offsetPosition{};
  // Display modes by index: 0 editor, 1 render, 2 enabled (1 switches off).
  std::array<int32_t, 3> modes{0, 0, 0};
  // Tags in order, under their own list root.
  std::unique_ptr<Node> tagRoot;
  // Built by EvaluateDocument; each cache's parent is this object.
  std::unique_ptr<Object> generatorCache;
  std::unique_ptr<Object> deformCache;
  // What GetLocalMatrix last handed out.
  Matrix localMatrix;
};

Object* AsObject(Node* node);
const Object* AsObject(const Node* node);

Vector PositionOf(const Object& object);
Vector RotationOf(const Object& object);
Vector ScaleOf(const Object& object);
void SetPositionOf(Object& object, const Vector& value);
void SetRotationOf(Object& object, const Vector& value);
void SetScaleOf(Object& object, const Vector& value);

// Relative to the parent: rotation in the object's order, axes scaled,
// offset = position + offset position.
Matrix LocalMatrixOf(const Object& object);
void SetLocalMatrixOf(Object& object, const Matrix& matrix);
// Through every object above it, caches included.
Matrix GlobalMatrixOf(const Object& object);
void SetGlobalMatrixOf(Object& object, const Matrix& matrix);

// Tags.
std::vector<Tag*> TagsOf(const Object& object);
Tag* FindTag(const Object& object, int32_t tagType, int32_t index);
void InsertTagBehind(Object& object, Tag* tag, Tag* predecessor);

// Splines: resizes the point, tangent and segment tags, making the missing ones.
void ResizeSplineArrays(Object& spline, int32_t pointCount, int32_t segmentCount);

// What the engine gives for a float parameter that a node does not store, as the engine's own
// objects carry it from their making: a camera's lens is one of 36 mm on 36 mm film, whatever
// its focal length says. Nothing for any other node or parameter.
std::optional<double> DefaultFloatParameterOf(const Node& node, int32_t id);

// A deep copy of an object with its tags, tracks and children, without caches.
std::unique_ptr<Object> CloneObject(const Object& source);

}  // namespace quillon
