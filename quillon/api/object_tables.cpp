// Tables Bo (objects) and Tg (tags).
#include "plugin/exporter/scene_ids.h"
#include "quillon/api/handles.h"
#include "quillon/api/tables.h"
#include "quillon/model/evaluate.h"

namespace quillon {
namespace {

// The spline kind given at allocation, kept in the spline's parameters.
constexpr int32_t SplineParam_Kind = 1000;
constexpr int32_t kModeCount = 3;
constexpr int32_t kLastRotationOrder = 6;

bool KnownObjectType(int32_t type) {
  switch (type) {
    case ObjectType_Polygon:
    case ObjectType_Spline:
    case ObjectType_Light:
    case ObjectType_Camera:
    case ObjectType_Extrude:
    case ObjectType_Sweep:
    case ObjectType_Instance:
    case ObjectType_Null:
    case ObjectType_Plane:
    case ObjectType_Text:
    case ObjectType_TextOutline:
    case ObjectType_Deformer:
    case ObjectType_KvLight:
    case ObjectType_KvCamera:
    case ObjectType_ChainGeneratorA:
    case ObjectType_ChainGeneratorB:
    case ObjectType_Duplicator: return true;
    default: return false;
  }
}

BaseObject* AllocObject(int32_t type) {
  if (!KnownObjectType(type)) return nullptr;
  return HandleOf<BaseObject>(new Object(type));
}

BaseObject* AllocSpline(int32_t pointCount, int32_t splineKind) {
  if (pointCount < 0) return nullptr;
  auto* spline = new Object(ObjectType_Spline);
  SetInt32(spline->params[SplineParam_Kind].raw, splineKind);
  ResizeSplineArrays(*spline, pointCount, 0);
  return HandleOf<BaseObject>(spline);
}

void GetPosition(const BaseObject* object, Vector* out) {
  if (const Object* model = ObjectOf(object); model && out) *out = PositionOf(*model);
}

void SetPosition(BaseObject* object, const Vector* value) {
  if (Object* model = ObjectOf(object); model && value) SetPositionOf(*model, *value);
}

void GetScale(const BaseObject* object, Vector* out) {
  if (const Object* model = ObjectOf(object); model && out) *out = ScaleOf(*model);
}

void SetScale(BaseObject* object, const Vector* value) {
  if (Object* model = ObjectOf(object); model && value) SetScaleOf(*model, *value);
}

void GetRotation(const BaseObject* object, Vector* out) {
  if (const Object* model = ObjectOf(object); model && out) *out = RotationOf(*model);
}

void SetRotation(BaseObject* object, const Vector* value) {
  if (Object* model = ObjectOf(object); model && value) SetRotationOf(*model, *value);
}

const Matrix* GetLocalMatrix(BaseObject* object) {
  Object* model = ObjectOf(object);
  if (!model) return nullptr;
  model->localMatrix = LocalMatrixOf(*model);
  return &model->localMatrix;
}

void SetLocalMatrix(BaseObject* object, const Matrix* value) {
  if (Object* model = ObjectOf(object); model && value) SetLocalMatrixOf(*model, *value);
}

void GetGlobalMatrix(const BaseObject* object, Matrix* out) {
  if (const Object* model = ObjectOf(object); model && out) *out = GlobalMatrixOf(*model);
}

void SetGlobalMatrix(BaseObject* object, const Matrix* value) {
  if (Object* model = ObjectOf(object); model && value) SetGlobalMatrixOf(*model, *value);
}

void SetOffsetPosition(BaseObject* object, const Vector* value) {
  if (Object* model = ObjectOf(object); model && value) model->offsetPosition = *value;
}

void SetMode(BaseObject* object, int32_t which, int32_t mode) {
  Object* model = ObjectOf(object);
  if (model && which >= 0 && which < kModeCount) model->modes[static_cast<size_t>(which)] = mode;
}

int32_t GetMode(const BaseObject* object, int32_t which) {
  const Object* model = ObjectOf(object);
  return model && which >= 0 && which < kModeCount ? model->modes[static_cast<size_t>(which)] : 0;
}

BaseTag* GetFirstTag(const BaseObject* object) {
  const Object* model = ObjectOf(object);
  return model ? HandleOf<BaseTag>(model->tagRoot->firstChild) : nullptr;
}

BaseTag* GetTag(const BaseObject* object, int32_t tagType, int32_t index) {
  const Object* model = ObjectOf(object);
  return model ? HandleOf<BaseTag>(FindTag(*model, tagType, index)) : nullptr;
}

void* GetTagData(BaseObject* object, int32_t tagType, int32_t index) {
  const Object* model = ObjectOf(object);
  Tag* tag = model ? FindTag(*model, tagType, index) : nullptr;
  return tag ? tag->Address() : nullptr;
}

int32_t GetTagDataCount(const BaseObject* object, int32_t tagType) {
  const Object* model = ObjectOf(object);
  Tag* tag = model ? FindTag(*model, tagType, 0) : nullptr;
  return tag ? tag->count : 0;
}

void InsertTag(BaseObject* object, BaseTag* tag, BaseTag* predecessor) {
  Object* model = ObjectOf(object);
  Tag* inserted = TagOf(tag);
  if (model && inserted) InsertTagBehind(*model, inserted, TagOf(predecessor));
}

BaseObject* GetGeneratorCache(const BaseObject* object) {
  const Object* model = ObjectOf(object);
  return model ? HandleOf<BaseObject>(model->generatorCache.get()) : nullptr;
}

BaseObject* GetDeformCache(const BaseObject* object) {
  const Object* model = ObjectOf(object);
  return model ? HandleOf<BaseObject>(model->deformCache.get()) : nullptr;
}

void ResizeSpline(BaseObject* spline, int32_t pointCount, int32_t segmentCount) {
  if (Object* model = ObjectOf(spline)) ResizeSplineArrays(*model, pointCount, segmentCount);
}

// The top of a cache walk is read as it stands; an object whose caches were
// never built gets them now.
void ReleaseCacheCheck(BaseObject* object) {
  Object* model = ObjectOf(object);
  if (model && !model->generatorCache && !model->deformCache) BuildCaches(*model);
}

void SetRotationOrder(BaseObject* object, int32_t order) {
  Object* model = ObjectOf(object);
  if (model && order >= 0 && order <= kLastRotationOrder) model->rotationOrder = order;
}

int32_t GetRotationOrder(const BaseObject* object) {
  const Object* model = ObjectOf(object);
  return model ? model->rotationOrder : 0;
}

// World-space position, scale and rotation: read from the global matrix and
// written back through it, so that the parents stay as they are.
Vector AxisLengths(const Matrix& m) { return {Length(m.axisX), Length(m.axisY), Length(m.axisZ)}; }

void GetAbsolutePosition(const BaseObject* object, Vector* out) {
  if (const Object* model = ObjectOf(object); model && out) *out = GlobalMatrixOf(*model).off;
}

void SetAbsolutePosition(BaseObject* object, const Vector* value) {
  Object* model = ObjectOf(object);
  if (!model || !value) return;
  Matrix global = GlobalMatrixOf(*model);
  global.off = *value;
  SetGlobalMatrixOf(*model, global);
}

void GetAbsoluteScale(const BaseObject* object, Vector* out) {
  if (const Object* model = ObjectOf(object); model && out) *out = AxisLengths(GlobalMatrixOf(*model));
}

// The world rotation with the given axis lengths, at the object's world place.
void SetWorldPlacement(Object& model, const Vector& rotation, const Vector& scale) {
  Matrix placed = RotationToMatrix(rotation, model.rotationOrder);
  placed.axisX = placed.axisX * scale.x;
  placed.axisY = placed.axisY * scale.y;
  placed.axisZ = placed.axisZ * scale.z;
  placed.off = GlobalMatrixOf(model).off;
  SetGlobalMatrixOf(model, placed);
}

Vector WorldRotationOf(const Object& model) {
  return MatrixToRotation(GlobalMatrixOf(model), model.rotationOrder, false);
}

void SetAbsoluteScale(BaseObject* object, const Vector* value) {
  if (Object* model = ObjectOf(object); model && value) SetWorldPlacement(*model, WorldRotationOf(*model), *value);
}

void GetAbsoluteRotation(const BaseObject* object, Vector* out) {
  if (const Object* model = ObjectOf(object); model && out) *out = WorldRotationOf(*model);
}

void SetAbsoluteRotation(BaseObject* object, const Vector* value) {
  Object* model = ObjectOf(object);
  if (model && value) SetWorldPlacement(*model, *value, AxisLengths(GlobalMatrixOf(*model)));
}

BaseTag* AllocTag(int32_t type, int32_t) { return HandleOf<BaseTag>(new Tag(type)); }

void* GetDataAddress(BaseTag* tag) {
  Tag* model = TagOf(tag);
  return model ? model->Address() : nullptr;
}

}  // namespace

const ORYOS_Bo& BoTable() {
  static const ORYOS_Bo table{.AllocObject = AllocObject,
                              .AllocSpline = AllocSpline,
                              .GetPosition = GetPosition,
                              .SetPosition = SetPosition,
                              .GetScale = GetScale,
                              .SetScale = SetScale,
                              .GetRotation = GetRotation,
                              .SetRotation = SetRotation,
                              .GetLocalMatrix = GetLocalMatrix,
                              .SetLocalMatrix = SetLocalMatrix,
                              .GetGlobalMatrix = GetGlobalMatrix,
                              .SetGlobalMatrix = SetGlobalMatrix,
                              .SetOffsetPosition = SetOffsetPosition,
                              .SetMode = SetMode,
                              .GetTag = GetTag,
                              .GetTagData = GetTagData,
                              .GetTagDataCount = GetTagDataCount,
                              .InsertTag = InsertTag,
                              .GetGeneratorCache = GetGeneratorCache,
                              .GetDeformCache = GetDeformCache,
                              .ResizeSpline = ResizeSpline,
                              .ReleaseCacheCheck = ReleaseCacheCheck,
                              .SetRotationOrder = SetRotationOrder,
                              .GetRotationOrder = GetRotationOrder,
                              .GetAbsolutePosition = GetAbsolutePosition,
                              .SetAbsolutePosition = SetAbsolutePosition,
                              .GetAbsoluteScale = GetAbsoluteScale,
                              .SetAbsoluteScale = SetAbsoluteScale,
                              .GetAbsoluteRotation = GetAbsoluteRotation,
                              .SetAbsoluteRotation = SetAbsoluteRotation,
                              .GetMode = GetMode,
                              .GetFirstTag = GetFirstTag};
  return table;
}

const ORYOS_Tg& TgTable() {
  static const ORYOS_Tg table{.AllocTag = AllocTag, .GetDataAddress = GetDataAddress};
  return table;
}

}  // namespace quillon
