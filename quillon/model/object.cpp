#include "quillon/model/object.h"

#include <cmath>

#include "plugin/exporter/scene_ids.h"
#include "quillon/model/animation.h"
#include "quillon/model/tag.h"

namespace quillon {
namespace {

Vector VectorParam(const Object& object, int32_t id, Vector fallback) {
  auto found = object.params.find(id);
  if (found == object.params.end()) return fallback;
  const Vector* vector = AsVector(found->second.raw);
  return vector ? *vector : fallback;
}

void SetVectorParam(Object& object, int32_t id, const Vector& value) {
  SetVector(object.params[id].raw, value);
}

Tag* EnsureTag(Object& object, int32_t tagType) {
  if (Tag* tag = FindTag(object, tagType, 0)) return tag;
  auto made = std::make_unique<Tag>(tagType);
  Tag* tag = made.release();
  InsertLastUnder(tag, object.tagRoot.get());
  return tag;
}

}  // namespace

Object::Object(int32_t objectType) : Node(NodeClass::Object, objectType), tagRoot(MakeListRoot(this)) {}

Object::~Object() {
  if (generatorCache) generatorCache->parent = nullptr;
  if (deformCache) deformCache->parent = nullptr;
}

Object* AsObject(Node* node) {
  return node && node->nodeClass == NodeClass::Object ? static_cast<Object*>(node) : nullptr;
}

const Object* AsObject(const Node* node) {
  return node && node->nodeClass == NodeClass::Object ? static_cast<const Object*>(node) : nullptr;
}

Vector PositionOf(const Object& object) { return VectorParam(object, ObjectParam_Position, {0.0, 0.0, 0.0}); }
Vector RotationOf(const Object& object) { return VectorParam(object, ObjectParam_Rotation, {0.0, 0.0, 0.0}); }
Vector ScaleOf(const Object& object) { return VectorParam(object, ObjectParam_Scale, {1.0, 1.0, 1.0}); }
void SetPositionOf(Object& object, const Vector& value) { SetVectorParam(object, ObjectParam_Position, value); }
void SetRotationOf(Object& object, const Vector& value) { SetVectorParam(object, ObjectParam_Rotation, value); }
void SetScaleOf(Object& object, const Vector& value) { SetVectorParam(object, ObjectParam_Scale, value); }

Matrix LocalMatrixOf(const Object& object) {
  Matrix m = RotationToMatrix(RotationOf(object), object.rotationOrder);
  Vector scale = ScaleOf(object);
  m.axisX = m.axisX * scale.x;
  m.axisY = m.axisY * scale.y;
  m.axisZ = m.axisZ * scale.z;
  m.off = PositionOf(object) + object.offsetPosition;
  return m;
}

void SetLocalMatrixOf(Object& object, const Matrix& matrix) {
  Vector scale{Length(matrix.axisX), Length(matrix.axisY), Length(matrix.axisZ)};
  Matrix rotation = matrix;
  // A mirrored matrix keeps its handedness in a negative z scale.
  if (Dot(Cross(matrix.axisX, matrix.axisY), matrix.axisZ) < 0.0) {
    scale.z = -scale.z;
    rotation.axisZ = rotation.axisZ * -1.0;
  }
  SetScaleOf(object, scale);
  SetRotationOf(object, MatrixToRotation(rotation, object.rotationOrder, false));
  SetPositionOf(object, matrix.off - object.offsetPosition);
}

Matrix GlobalMatrixOf(const Object& object) {
  Matrix m = LocalMatrixOf(object);
  for (const Node* up = VisibleParent(&object); up; up = VisibleParent(up)) {
    if (const Object* above = AsObject(up)) m = Multiply(LocalMatrixOf(*above), m);
  }
  return m;
}

void SetGlobalMatrixOf(Object& object, const Matrix& matrix) {
  const Object* parent = AsObject(VisibleParent(&object));
  Matrix local = parent ? Multiply(Invert(GlobalMatrixOf(*parent)), matrix) : matrix;
  SetLocalMatrixOf(object, local);
}

std::vector<Tag*> TagsOf(const Object& object) {
  std::vector<Tag*> tags;
  for (Node* node = object.tagRoot->firstChild; node; node = node->next) tags.push_back(AsTag(node));
  return tags;
}

Tag* FindTag(const Object& object, int32_t tagType, int32_t index) {
  for (Node* node = object.tagRoot->firstChild; node; node = node->next) {
    if (node->type == tagType && index-- == 0) return AsTag(node);
  }
  return nullptr;
}

void InsertTagBehind(Object& object, Tag* tag, Tag* predecessor) {
  if (predecessor && predecessor->parent == object.tagRoot.get()) {
    InsertBehind(tag, predecessor);
  } else {
    InsertFirstUnder(tag, object.tagRoot.get());
  }
}

void ResizeSplineArrays(Object& spline, int32_t pointCount, int32_t segmentCount) {
  if (pointCount < 0 || segmentCount < 0) return;
  EnsureTag(spline, TagType_Points)->Resize(pointCount);
  EnsureTag(spline, TagType_Tangents)->Resize(pointCount);
  EnsureTag(spline, TagType_Segments)->Resize(segmentCount);
}

std::optional<double> DefaultFloatParameterOf(const Node& node, int32_t id) {
  constexpr double kFilmWidth = 36.0;
  constexpr double kFocalLength = 36.0;
  if (node.nodeClass != NodeClass::Object) return std::nullopt;
  const bool camera = node.type == ObjectType_Camera, kvCamera = node.type == ObjectType_KvCamera;
  if ((camera || kvCamera) && id == CameraParam_Aperture) return kFilmWidth;
  if ((camera && id == CameraParam_FieldOfView) || (kvCamera && id == KvCameraParam_FieldOfView))
    return 2.0 * std::atan(kFilmWidth * 0.5 / kFocalLength);
  return std::nullopt;
}

std::unique_ptr<Object> CloneObject(const Object& source) {
  auto copy = std::make_unique<Object>(source.type);
  CopyNodeBasics(source, *copy);
  copy->rotationOrder = source.rotationOrder;
  copy->offsetPosition = source.offsetPosition;
  copy->modes = source.modes;
  for (Tag* tag : TagsOf(source)) InsertLastUnder(CloneTag(*tag).release(), copy->tagRoot.get());
  for (Node* child = source.firstChild; child; child = child->next) {
    if (const Object* object = AsObject(child)) InsertLastUnder(CloneObject(*object).release(), copy.get());
  }
  return copy;
}

}  // namespace quillon
