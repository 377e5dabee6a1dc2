#include "plugin/importer/object_conversion.h"

#include <cmath>

#include "plugin/exporter/scene_ids.h"
#include "plugin/exporter/scene_params.h"
#include "plugin/importer/import_file.h"
#include "plugin/importer/import_session.h"
#include "plugin/importer/scene_read.h"
#include "plugin/importer/transform_keys.h"
#include "plugin/text/encodings.h"

namespace {

constexpr int32_t kComponents[3] = {VectorComponent_X, VectorComponent_Y, VectorComponent_Z};

const AEGP_LayerSuite13* Layers() {
  return CurrentCTI()->Suite<AEGP_LayerSuite13>(kAEGPLayerSuite, kAEGPLayerSuiteVersion13);
}

const AEGP_CompSuite19* Comps() {
  return CurrentCTI()->Suite<AEGP_CompSuite19>(kAEGPCompSuite, kAEGPCompSuiteVersion19);
}

bool IsLight(int32_t type) { return type == ObjectType_Light || type == ObjectType_KvLight; }
bool IsCamera(int32_t type) { return type == ObjectType_Camera || type == ObjectType_KvCamera; }

std::string DefaultName(int32_t type) {
  switch (type) {
    case ObjectType_Light: return "Light";
    case ObjectType_Camera: return "Camera";
    case ObjectType_KvLight: return "KV Light";
    case ObjectType_KvCamera: return "KV Camera";
    default: return "Object";
  }
}

void FindTracks(const BaseObject* object, int32_t parameter, AnimTrack* tracks[3]) {
  for (int i = 0; i < 3; ++i) tracks[i] = FindComponentTrack(object, parameter, kComponents[i]);
}

bool IsExportRoot(BaseObject* object) { return GetContainerString(object, ParamKey_OriginKey) == kExportRootOriginKey; }

Vector AxisScaled(const Vector& axis, double scale) {
  return Length(axis) == 0.0 ? axis : Normalized(axis) * scale;
}

Matrix TransformMatrix(const Vector& position, const Vector& rotation, const Vector& scale, int32_t order) {
  Matrix m = RotationToMatrix(rotation, order);
  m.off = position;
  m.axisX = AxisScaled(m.axisX, scale.x);
  m.axisY = AxisScaled(m.axisY, scale.y);
  m.axisZ = AxisScaled(m.axisZ, scale.z);
  return m;
}

void ReadTracks(AnimTrack* const tracks[3], BaseDocument* document, const BaseTime& time, Vector* value) {
  double* components[3] = {&value->x, &value->y, &value->z};
  for (int i = 0; i < 3; ++i)
    if (tracks[i]) *components[i] = t_ORYOS_CA->GetCurveValue(tracks[i], document, &time, 0);
}

// The compositing tag of the object, or of the nearest ancestor whose tag holds for children.
BaseTag* FindCompositingTag(BaseObject* object) {
  if (BaseTag* tag = t_ORYOS_Bo->GetTag(object, TagType_Compositing, 0)) return tag;
  for (SceneNode* up = t_ORYOS_At->GetUp(object); up; up = t_ORYOS_At->GetUp(up)) {
    BaseTag* tag = t_ORYOS_Bo->GetTag(static_cast<BaseObject*>(up), TagType_Compositing, 0);
    if (tag && ContainerBool(tag, CompositingTagParam_Children, false)) return tag;
  }
  return nullptr;
}

Vector AnchorFor(int32_t choice, double width, double height) {
  switch (choice) {
    case 2: return {width, 0.0, 0.0};
    case 3: return {width * 0.5, height * 0.5, 0.0};
    case 4: return {0.0, height, 0.0};
    case 5: return {width, height, 0.0};
    default: return {};
  }
}

// A solid or a null from the compositing tag; null without a tag.
AEGP_LayerH CreatePlainLayer(BaseObject* effective, const std::u16string& name) {
  BaseTag* tag = FindCompositingTag(effective);
  if (!tag) return nullptr;
  const bool solid = ContainerInt32(tag, CompositingTagParam_Solid, 0) == 1;
  const int32_t width = solid ? ContainerInt32(tag, CompositingTagParam_Width, 0) : 100;
  const int32_t height = solid ? ContainerInt32(tag, CompositingTagParam_Height, 0) : 100;
  const Vector color = ParamVector(tag, CompositingTagParam_Color, {});
  const int32_t anchorChoice = ContainerInt32(tag, CompositingTagParam_Anchor, 0);
  const auto* hostName = reinterpret_cast<const A_UTF16Char*>(name.c_str());
  AEGP_LayerH layer = nullptr;
  A_Err err;
  if (solid) {
    const AEGP_ColorVal rgba{1.0, color.x, color.y, color.z};
    err = Comps()->AEGP_CreateSolidInComp(hostName, width, height, &rgba, g_importSession.composition, nullptr,
                                          &layer);
  } else {
    err = Comps()->AEGP_CreateNullInComp(hostName, g_importSession.composition, nullptr, &layer);
  }
  if (err || !layer) return nullptr;
  if (!IsLayerStreamLegal(layer, AEGP_LayerStream_ANCHORPOINT)) return layer;
  OpenStream anchor;
  const Vector point = AnchorFor(anchorChoice, width, height);
  if (SetLayerStream(layer, AEGP_LayerStream_ANCHORPOINT, ThreeD(point.x, point.y, point.z), &anchor) !=
      StreamResult::kSet)
    return layer;
  Layers()->AEGP_SetLayerFlag(layer, AEGP_LayerFlag_LAYER_IS_3D, true);
  return layer;
}

// The in point and duration of the layer in composition time; false when the object's
// own range starts after the document's end.
bool LayerTimeRange(BaseObject* effective, const ObjectConversion& c, A_Time* in, A_Time* duration) {
  const uint32_t scale = ImportTimeScale(c.frameRate);
  *in = A_Time{0, scale};
  *duration = A_Time{c.frames * 100, scale};
  if (!ContainerHas(effective, ParamKey_LayerInTime) || !ContainerHas(effective, ParamKey_LayerOutTime)) return true;
  const BaseTime inTime = ContainerTime(effective, ParamKey_LayerInTime);
  const BaseTime outTime = ContainerTime(effective, ParamKey_LayerOutTime);
  const BaseTime length(outTime.numerator * inTime.denominator - inTime.numerator * outTime.denominator,
                        outTime.denominator * inTime.denominator);
  const int32_t lengthFrames = SceneFrame(length, c.frameRate);
  const int32_t first = SceneFrame(inTime, c.frameRate) - c.startFrame;
  if (first >= c.frames) return false;
  const int32_t frames = first + 1 + lengthFrames > c.frames ? c.frames - first : lengthFrames + 1;
  in->value = first * 100;
  duration->value = frames * 100;
  return true;
}

// The point of interest of a camera or light, and whether it moves with the light's turn.
void FindPointOfInterest(BaseObject* effective, int32_t type, ObjectConversion* c) {
  if (BaseTag* tag = t_ORYOS_Bo->GetTag(effective, TagType_Target, 0)) {
    const ParamContainer* data = t_ORYOS_Bl->GetDataInstance(tag);
    if (data)
      c->targetObject = static_cast<BaseObject*>(
          t_ORYOS_Bc->GetLink(data, TargetTagParam_Target, t_ORYOS_At->GetDocument(tag), 0));
  }
  if (c->targetObject) {
    c->hasPointOfInterest = true;
    Vector target;
    t_ORYOS_Bo->GetPosition(c->targetObject, &target);
    c->pointOfInterest = {target.x, -target.y, target.z};
    if (IsCamera(type)) Layers()->AEGP_SetLayerFlag(c->layer, AEGP_LayerFlag_LOOK_AT_POI, true);
    return;
  }
  if (!IsLight(type)) return;
  c->hasPointOfInterest = true;
  c->pointOfInterest = DerivePointOfInterest(c->rawRotation, c->rawPosition);
  c->derivesPointOfInterest = type == ObjectType_Light ? ContainerInt32(effective, LightParam_Type, 0) != 0
                                                       : ContainerInt32(effective, KvLightParam_Type, 0) != 1;
}

// The transform's static values, streams left open; false when a stream was not legal or
// not given.
bool SetStaticStreams(ObjectConversion* c) {
  const Vector& p = c->position;
  if (SetLayerStream(c->layer, AEGP_LayerStream_POSITION, ThreeD(p.x, p.y, p.z), &c->positionStream) !=
      StreamResult::kSet)
    return false;
  if (c->isPlainObject) {
    const Vector s = c->scale * 100.0;
    if (SetLayerStream(c->layer, AEGP_LayerStream_SCALE, ThreeD(s.x, s.y, s.z), &c->scaleStream) != StreamResult::kSet)
      return false;
  }
  if (c->isCameraOrLight && c->hasPointOfInterest) {
    const Vector& poi = c->pointOfInterest;
    if (SetLayerStream(c->layer, AEGP_LayerStream_ANCHORPOINT, ThreeD(poi.x, poi.y, poi.z), &c->anchorStream) !=
        StreamResult::kSet)
      return false;
  } else {
    if (SetLayerStream(c->layer, AEGP_LayerStream_ROTATE_X, OneD(c->rotation.x), &c->rotateXStream) !=
            StreamResult::kSet ||
        SetLayerStream(c->layer, AEGP_LayerStream_ROTATE_Y, OneD(c->rotation.y), &c->rotateYStream) !=
            StreamResult::kSet)
      return false;
  }
  return SetLayerStream(c->layer, AEGP_LayerStream_ROTATION, OneD(c->rotation.z), &c->rotationStream) ==
         StreamResult::kSet;
}

}  // namespace

BaseObject* GetEffectiveObject(BaseObject* object) {
  auto* parent = static_cast<BaseObject*>(t_ORYOS_At->GetUp(object));
  if (!parent) return object;
  if (t_ORYOS_Bo->GetGeneratorCache(parent) == object) return parent;
  if (t_ORYOS_Bo->GetDeformCache(parent) != object) return object;
  auto* above = static_cast<BaseObject*>(t_ORYOS_At->GetUp(parent));
  return above ? above : parent;
}

void CollectAncestors(BaseObject* object, std::vector<AncestorTransform>* ancestors) {
  for (SceneNode* up = t_ORYOS_At->GetUp(GetEffectiveObject(object)); up; up = t_ORYOS_At->GetUp(up)) {
    auto* ancestor = static_cast<BaseObject*>(up);
    if (IsExportRoot(ancestor)) continue;
    AncestorTransform record;
    record.object = ancestor;
    FindTracks(ancestor, ObjectParam_Position, record.positionTracks);
    FindTracks(ancestor, ObjectParam_Rotation, record.rotationTracks);
    FindTracks(ancestor, ObjectParam_Scale, record.scaleTracks);
    record.rotationOrder = t_ORYOS_Bo->GetRotationOrder(ancestor);
    t_ORYOS_Bo->GetPosition(ancestor, &record.position);
    t_ORYOS_Bo->GetRotation(ancestor, &record.rotation);
    t_ORYOS_Bo->GetScale(ancestor, &record.scale);
    for (int i = 0; i < 3; ++i)
      record.animated = record.animated || record.positionTracks[i] || record.rotationTracks[i] || record.scaleTracks[i];
    ancestors->push_back(record);
  }
}

void FlattenTransform(Vector* position, Vector* rotation, Vector* scale, const BaseTime& time, BaseDocument* document,
                      const std::vector<AncestorTransform>& ancestors, int32_t rotationOrder) {
  Matrix m = TransformMatrix(*position, *rotation, *scale, rotationOrder);
  for (const AncestorTransform& record : ancestors) {
    Vector p = record.position;
    Vector r = record.rotation;
    Vector s = record.scale;
    if (record.animated) {
      ReadTracks(record.positionTracks, document, time, &p);
      ReadTracks(record.rotationTracks, document, time, &r);
      ReadTracks(record.scaleTracks, document, time, &s);
    }
    m = Multiply(TransformMatrix(p, r, s, record.rotationOrder), m);
    *scale = {scale->x * s.x, scale->y * s.y, scale->z * s.z};
  }
  *position = m.off;
  *rotation = MatrixToRotation(m, rotationOrder, false);
}

void ToHostTransform(Vector* position, Vector* rotation, bool keepContinuity, Vector* lastRotation,
                     int32_t rotationOrder) {
  position->y = -position->y;
  Vector turn = MatrixToRotation(RotationToMatrix(*rotation, rotationOrder), kRotationOrderXyz, false);
  if (keepContinuity) turn = BestAngle(*lastRotation, turn, kRotationOrderXyz);
  *lastRotation = turn;
  *rotation = {turn.x * kDegreesPerRadian, -turn.y * kDegreesPerRadian, turn.z * kDegreesPerRadian};
}

Vector DerivePointOfInterest(const Vector& rotation, const Vector& position) {
  return {-std::sin(rotation.x) * std::cos(rotation.y) * 1000.0 + position.x,
          -(std::sin(rotation.y) * 1000.0 + position.y),
          std::cos(rotation.x) * std::cos(rotation.y) * 1000.0 + position.z};
}

AEGP_LayerH ConvertBaseObject(BaseObject* object, ObjectConversion* c) {
  if (!IsImportRunning() || !object) return nullptr;
  BaseDocument* document = g_importSession.document;
  RenderData* settings = t_ORYOS_Bd->GetActiveSettings(document);
  if (!settings) return nullptr;
  BaseObject* effective = GetEffectiveObject(object);
  c->effective = effective;
  const int32_t type = t_ORYOS_At->GetType(effective);
  std::string name = NodeName(effective);
  if (name.empty()) name = DefaultName(type);
  const std::u16string hostName = DecodeUtf8(name);

  c->width = ContainerFloat(settings, RenderParam_Width, 0.0);
  const double height = ContainerFloat(settings, RenderParam_Height, 0.0);
  c->pixelAspect = ContainerFloat(settings, RenderParam_PixelAspect, 0.0);
  const int32_t sequenceMode = ContainerInt32(settings, RenderParam_FrameSequence, 0);
  c->frameRate = ContainerFloat(settings, RenderParam_FrameRate, 0.0);

  CollectAncestors(object, &c->ancestors);
  t_ORYOS_Bo->GetPosition(effective, &c->rawPosition);
  t_ORYOS_Bo->GetRotation(effective, &c->rawRotation);
  t_ORYOS_Bo->GetScale(effective, &c->rawScale);
  c->rotationOrder = t_ORYOS_Bo->GetRotationOrder(effective);
  c->position = c->rawPosition;
  c->rotation = c->rawRotation;
  c->scale = c->rawScale;
  if (!c->ancestors.empty())
    FlattenTransform(&c->position, &c->rotation, &c->scale, BaseTime(0, c->frameRate), document, c->ancestors,
                     c->rotationOrder);
  Vector lastRotation;
  ToHostTransform(&c->position, &c->rotation, false, &lastRotation, c->rotationOrder);
  GetDocumentFrameRange(document, sequenceMode, &c->frames, &c->startFrame);

  A_Time in{};
  A_Time duration{};
  if (!LayerTimeRange(effective, *c, &in, &duration)) return nullptr;

  const A_FloatPoint center{c->width * 0.5, height * 0.5};
  const auto* hostNameZ = reinterpret_cast<const A_UTF16Char*>(hostName.c_str());
  A_Err err = A_Err_NONE;
  if (IsLight(type)) {
    err = Comps()->AEGP_CreateLightInComp(hostNameZ, center, g_importSession.composition, &c->layer);
    c->isCameraOrLight = true;
  } else if (IsCamera(type)) {
    err = Comps()->AEGP_CreateCameraInComp(hostNameZ, center, g_importSession.composition, &c->layer);
    if (!err) err = Layers()->AEGP_SetLayerFlag(c->layer, AEGP_LayerFlag_LOOK_AT_POI, false);
    c->isCameraOrLight = true;
  } else {
    c->layer = CreatePlainLayer(effective, hostName);
    c->isPlainObject = true;
  }
  if (err || !c->layer) return nullptr;

  c->sceneLayer = t_ORYOS_Bl->GetSceneLayer(effective, t_ORYOS_At->GetDocument(effective));
  if (c->sceneLayer) {
    const int32_t locked = ContainerInt32(c->sceneLayer, LayerParam_Locked, 0);
    if (locked != 0 && Layers()->AEGP_SetLayerFlag(c->layer, AEGP_LayerFlag_LOCKED, locked != 0)) return nullptr;
    if (ContainerInt32(c->sceneLayer, LayerParam_Visible, 1) == 0 &&
        Layers()->AEGP_SetLayerFlag(c->layer, AEGP_LayerFlag_VIDEO_ACTIVE, false))
      return nullptr;
  }
  if (c->isCameraOrLight) FindPointOfInterest(effective, type, c);
  if (Layers()->AEGP_SetLayerInPointAndDuration(c->layer, AEGP_LTimeMode_CompTime, &in, &duration)) return nullptr;
  if (!SetStaticStreams(c)) return c->layer;
  return AddTransformKeys(c) ? c->layer : nullptr;
}
