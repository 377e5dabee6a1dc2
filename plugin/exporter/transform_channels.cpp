#include "plugin/exporter/transform_channels.h"

#include <cmath>

#include "plugin/exporter/exporter_host.h"
#include "plugin/exporter/key_baking.h"
#include "plugin/exporter/layer_matrix.h"
#include "plugin/exporter/node_factory.h"
#include "plugin/exporter/origin_key.h"
#include "plugin/exporter/scene_ids.h"
#include "plugin/exporter/scene_params.h"
#include "plugin/exporter/track_ops.h"

namespace {

// 1e-12 rounded to single precision: an axis shorter than this has collapsed.
constexpr double kCollapsedScale = 9.999999960041972e-13;
constexpr double kFallbackLayerRate = 25.0;
constexpr int32_t kObjectModeSwitch = 2;
constexpr int32_t kObjectModeOff = 1;
constexpr char kLockLayerName[] = "Lock Layer";

// The streams that carry a layer's transform; one that is not legal on the layer stays empty.
struct TransformStreams {
  LayerStream orientation, rotationX, rotationY, rotationZ, position, scale, anchor;
  int32_t orientationKeys = 0, rotationXKeys = 0, rotationYKeys = 0, rotationZKeys = 0, positionKeys = 0,
          scaleKeys = 0, anchorKeys = 0;

  bool AllRotationsExist() const { return orientation && rotationX && rotationY && rotationZ; }
  bool AllRotationKeysZero() const {
    return orientationKeys == 0 && rotationXKeys == 0 && rotationYKeys == 0 && rotationZKeys == 0;
  }
};

TransformStreams OpenTransformStreams(AEGP_LayerH layer, bool withAnchor) {
  TransformStreams s;
  s.orientation = LayerStream(layer, AEGP_LayerStream_ORIENTATION);
  s.rotationX = LayerStream(layer, AEGP_LayerStream_ROTATE_X);
  s.rotationY = LayerStream(layer, AEGP_LayerStream_ROTATE_Y);
  s.rotationZ = LayerStream(layer, AEGP_LayerStream_ROTATION);
  s.position = LayerStream(layer, AEGP_LayerStream_POSITION);
  s.scale = LayerStream(layer, AEGP_LayerStream_SCALE);
  if (withAnchor) s.anchor = LayerStream(layer, AEGP_LayerStream_ANCHORPOINT);
  auto keys = [&](const LayerStream& stream) { return stream ? CountStreamKeys(layer, stream.get()) : 0; };
  s.rotationXKeys = keys(s.rotationX);
  s.rotationYKeys = keys(s.rotationY);
  s.rotationZKeys = keys(s.rotationZ);
  s.orientationKeys = keys(s.orientation);
  s.positionKeys = keys(s.position);
  s.scaleKeys = keys(s.scale);
  s.anchorKeys = keys(s.anchor);
  return s;
}

// Rotation tracks are wanted when the rotation streams exist and either move or stand at
// anything but zero.
bool WantsRotation(AEGP_LayerH layer, const TransformStreams& s) {
  if (!s.AllRotationsExist()) return false;
  if (!s.AllRotationKeysZero()) return true;
  Vector orientation;
  double x = 0.0, y = 0.0, z = 0.0;
  const bool turned = (ReadStreamVector(layer, AEGP_LayerStream_ORIENTATION, &orientation) &&
                       (orientation.x != 0.0 || orientation.y != 0.0 || orientation.z != 0.0)) ||
                      (ReadStreamFloat(layer, AEGP_LayerStream_ROTATE_X, &x) && x != 0.0) ||
                      (ReadStreamFloat(layer, AEGP_LayerStream_ROTATE_Y, &y) && y != 0.0) ||
                      (ReadStreamFloat(layer, AEGP_LayerStream_ROTATION, &z) && z != 0.0);
  return turned;
}

int32_t LightKindOf(BaseObject* object, int32_t type) {
  if (type == ObjectType_Light) return GetInt32Param(object, LightParam_Type, 0);
  if (type == ObjectType_KvLight) return GetInt32Param(object, KvLightParam_Type, 0);
  return 0;
}

bool FollowsTarget(AEGP_LayerFlags flags, int32_t type, int32_t lightKind) {
  if (!(flags & AEGP_LayerFlag_LOOK_AT_POI)) return false;
  if (type == ObjectType_Camera || type == ObjectType_KvCamera) return true;
  if (type == ObjectType_Light) return lightKind != 0;
  if (type == ObjectType_KvLight) return lightKind != 1;
  return false;
}

// The layer matrix at `time`; inside a precomposition the matrix of the layer through which it
// was entered is added element by element (a sum, not a product).
A_Err LayerMatrixAt(AEToOry& exporter, AEGP_LayerH layer, const A_Time& time, A_Matrix4* m) {
  A_Err err = LayerSuite13()->AEGP_GetLayerToWorldXform(layer, &time, m);
  if (err || !exporter.TopLayer()) return err;
  A_Matrix4 p{};
  err = LayerSuite13()->AEGP_GetLayerToWorldXform(exporter.TopLayer(), &time, &p);
  for (int r = 0; r < 4; ++r) {
    for (int c = 0; c < 4; ++c) m->mat[r][c] += p.mat[r][c] - (r == c ? 1.0 : 0.0);
  }
  return err;
}

double RowLengthsMagnitude(const A_Matrix4& m) {
  double sum = 0.0;
  for (int r = 0; r < 3; ++r) {
    sum += m.mat[r][0] * m.mat[r][0] + m.mat[r][1] * m.mat[r][1] + m.mat[r][2] * m.mat[r][2];
  }
  return std::sqrt(sum);
}

// A layer collapsed at the composition's start (scaling up from 0) has no rotation there; the
// frame with the largest matrix, the earliest of equals, stands in.
A_Time LargestMatrixTime(AEToOry& exporter, AEGP_LayerH layer) {
  double rate = kFallbackLayerRate;
  AEGP_CompH comp = nullptr;
  if (!LayerSuite13()->AEGP_GetLayerParentComp(layer, &comp)) CompSuite21()->AEGP_GetCompFramerate(comp, &rate);
  A_Time in{0, 1}, duration{0, 1};
  LayerSuite13()->AEGP_GetLayerInPoint(layer, AEGP_LTimeMode_CompTime, &in);
  LayerSuite13()->AEGP_GetLayerDuration(layer, AEGP_LTimeMode_CompTime, &duration);
  const int32_t first = FrameOf(FromAeTime(in.value, in.scale), rate);
  const int32_t count = FrameOf(FromAeTime(duration.value, duration.scale), rate);
  double best = 0.0;
  A_Time bestTime = exporter.compStart;
  for (int32_t i = first; i < first + count; ++i) {
    const A_Time t{i * exporter.frameDuration.value, exporter.frameDuration.scale};
    A_Matrix4 m{};
    LayerSuite13()->AEGP_GetLayerToWorldXform(layer, &t, &m);
    const double size = RowLengthsMagnitude(m);
    if (size > best) {
      best = size;
      bestTime = t;
    }
  }
  return bestTime;
}

bool Collapsed(const Vector& scale) {
  return scale.x < kCollapsedScale || scale.y < kCollapsedScale || scale.z < kCollapsedScale;
}

// "Lock Layer" of the document, found by name or made; null when it can't be made.
SceneLayer* LockLayer(AEToOry& exporter) {
  if (exporter.lockLayer) return exporter.lockLayer;
  SceneNode* root = t_ORYOS_Bd->GetLayerRoot(exporter.document);
  SceneLayer* layer = static_cast<SceneLayer*>(FindByName(t_ORYOS_At->GetFirstUnderRoot(root), kLockLayerName));
  if (!layer) {
    layer = t_ORYOS_Bd->AllocLayer();
    if (!layer) return nullptr;
    SetNodeName(layer, kLockLayerName);
    InsertLayer(exporter.document, layer);
  }
  SetInt32Param(layer, LayerParam_Locked, 1);
  exporter.lockLayer = layer;
  return layer;
}

// The layer whose source size moves the target from the source's corner to its centre.
AEGP_ItemH ReferenceSource(AEToOry& exporter, AEGP_LayerH layer) {
  AEGP_LayerH parent = nullptr;
  LayerSuite13()->AEGP_GetLayerParent(layer, &parent);
  AEGP_LayerH reference = exporter.TopLayer();
  if (parent) {
    A_Boolean is3d = false;
    AEGP_ObjectType type = AEGP_ObjectType_NONE;
    AEGP_ItemH source = nullptr;
    AEGP_ItemType itemType = AEGP_ItemType_NONE;
    LayerSuite14()->AEGP_IsLayer3D(parent, &is3d);
    LayerSuite13()->AEGP_GetLayerObjectType(parent, &type);
    LayerSuite13()->AEGP_GetLayerSourceItem(parent, &source);
    if (source) ItemSuite13()->AEGP_GetItemType(source, &itemType);
    const bool picture = itemType == AEGP_ItemType_COMP || itemType == AEGP_ItemType_FOOTAGE;
    reference = is3d && type == AEGP_ObjectType_AV && picture ? parent : nullptr;
  }
  if (!reference) return nullptr;
  AEGP_ItemH source = nullptr;
  LayerSuite13()->AEGP_GetLayerSourceItem(reference, &source);
  return source;
}

// The target stands at the point of interest, in scene terms, corrected to the reference
// picture's centre; its keys, if any, follow the plain point.
A_Err PlaceTarget(AEToOry& exporter, BaseObject* target, AEGP_LayerH layer, const LayerStream& anchor) {
  StreamValue value;
  A_Err err = value.Read(anchor.get(), exporter.compStart);
  if (err) return err;
  Vector p = HostToSceneVector(value.value().three_d.x, value.value().three_d.y, value.value().three_d.z);
  if (AEGP_ItemH source = ReferenceSource(exporter, layer)) {
    A_long w = 0, h = 0;
    ItemSuite13()->AEGP_GetItemDimensions(source, &w, &h);
    p.x -= w * 0.5;
    p.y += h * 0.5;
  }
  t_ORYOS_Bo->SetPosition(target, &p);
  if (CountLayerStreamKeys(layer, AEGP_LayerStream_ANCHORPOINT) <= 0) return A_Err_NONE;
  AnimTrack* tracks[3];
  const int32_t components[3] = {VectorComponent_X, VectorComponent_Y, VectorComponent_Z};
  const char* names[3] = {"Position X", "Position Y", "Position Z"};
  for (int i = 0; i < 3; ++i) {
    const ComponentParamId id(ObjectParam_Position, components[i]);
    tracks[i] = GetOrCreateTrack(target, id.id, names[i]);
  }
  return SampleStreamToTracks(exporter, layer, AEGP_LayerStream_ANCHORPOINT, tracks[0], tracks[1], tracks[2],
                              SampleMode::targetPosition, 1.0, AEGP_LayerStream_NONE);
}

void MakeTransformTracks(BaseObject* object, bool hasRotation, bool hasScale, TransformTracks* tracks) {
  const int32_t components[3] = {VectorComponent_X, VectorComponent_Y, VectorComponent_Z};
  const char* axes[3] = {"X", "Y", "Z"};
  for (int i = 0; i < 3; ++i) {
    const ComponentParamId id(ObjectParam_Position, components[i]);
    tracks->position[i] = GetOrCreateTrack(object, id.id, (std::string("Position ") + axes[i]).c_str());
  }
  for (int i = 0; hasRotation && i < 3; ++i) {
    const ComponentParamId id(ObjectParam_Rotation, components[i]);
    tracks->rotation[i] = GetOrCreateTrack(object, id.id, (std::string("Rotation ") + axes[i]).c_str());
  }
  for (int i = 0; hasScale && i < 3; ++i) {
    const ComponentParamId id(ObjectParam_Scale, components[i]);
    tracks->scale[i] = GetOrCreateTrack(object, id.id, (std::string("Scale ") + axes[i]).c_str());
  }
}

// The target tag's priority: entries 2, 10 and 1, written through the engine's priority
// library, which is looked up once.
void SetTargetPriority(ParamContainer* container) {
  static const PriorityLibrary* library = nullptr;
  if (!library) {
    static const void* cacheSlot = nullptr;
    const ExtensionRecord* record = t_ORYOS_Ge->FindExtension(kExtensionPriority, kExtensionLookupLevel, &cacheSlot);
    const void* table = nullptr;
    int32_t id = 0, size = 0;
    if (record && t_ORYOS_Ge->GetExtensionTable(record, &table, &id, &size) &&
        size >= static_cast<int32_t>(sizeof(PriorityLibrary))) {
      library = static_cast<const PriorityLibrary*>(table);
    }
  }
  DataValue value{DataKind_Empty, 0, {0}};
  t_ORYOS_Gd->InitCustomData(&value, DataKind_Priority);
  void* payload = t_ORYOS_Gd->GetCustomData(&value, DataKind_Priority);
  const int32_t entries[3] = {2, 10, 1};
  for (int32_t i = 0; i < 3 && library && library->SetPriorityEntry && payload; ++i) {
    DataValue entry{DataKind_Int32, 0, {0}};
    entry.payload.int32 = entries[i];
    library->SetPriorityEntry(payload, i, &entry);
  }
  t_ORYOS_Bc->SetCustomData(container, TargetTagParam_Priority, &value);
  t_ORYOS_Gd->Free(&value);
}

}  // namespace

A_Err ApplyObjectBasics(AEToOry& exporter, BaseObject* object, AEGP_LayerH layer, const int32_t* width,
                        const int32_t* height) {
  if (!object) {
    AddError(A_Err_STRUCT, "Export/Merge failed, object pointer is NULL when setting basics.");
    return A_Err_STRUCT;
  }
  const int32_t type = t_ORYOS_At->GetType(object);
  const bool isPlaneOrNull = type == ObjectType_Plane || type == ObjectType_Null;
  const int32_t lightKind = LightKindOf(object, type);

  AEGP_LayerFlags flags = 0;
  A_Err err = LayerSuite13()->AEGP_GetLayerFlags(layer, &flags);
  if (err) return err;
  const bool followsTarget = FollowsTarget(flags, type, lightKind);
  if (!(flags & AEGP_LayerFlag_VIDEO_ACTIVE)) t_ORYOS_Bo->SetMode(object, kObjectModeSwitch, kObjectModeOff);

  TransformStreams s = OpenTransformStreams(layer, isPlaneOrNull);
  const bool hasRotation = WantsRotation(layer, s);

  BaseObject* target = nullptr;
  if (followsTarget) {
    if (!s.anchor) s.anchor = LayerStream(layer, AEGP_LayerStream_ANCHORPOINT);
    // A camera with a rotation of its own takes it from the matrix, where the point of
    // interest is applied already.
    if (s.anchor && !hasRotation) target = CreateTarget(exporter, object, layer);
  }

  // Locked layers of the exported composition go to "Lock Layer"; in a precomposition they stay
  // on the precomposition's scene layer.
  if ((flags & AEGP_LayerFlag_LOCKED) && !exporter.TopLayer()) {
    SceneLayer* lock = LockLayer(exporter);
    if (!lock) {
      AddError(4, "Out of memory during lock layer creation.");
      return 4;
    }
    t_ORYOS_Bl->SetLayer(object, lock);
    if (target) t_ORYOS_Bl->SetLayer(target, lock);
  }

  const bool hasScale = s.scale && isPlaneOrNull;
  if (s.position && s.AllRotationsExist()) {
    Vector position, rotation, scale{1.0, 1.0, 1.0};
    const bool useCentre = isPlaneOrNull && s.anchor;
    A_Matrix4 m{};
    err = LayerMatrixAt(exporter, layer, exporter.compStart, &m);
    DecomposeLayerMatrix(*width, *height, useCentre, hasScale, &position, &rotation, &scale, false, nullptr, m);
    if (!err && Collapsed(scale)) {
      err = LayerMatrixAt(exporter, layer, LargestMatrixTime(exporter, layer), &m);
      DecomposeLayerMatrix(*width, *height, useCentre, hasScale, &position, &rotation, &scale, false, nullptr, m);
    }
    position.z += exporter.TopZOffset();
    t_ORYOS_Bo->SetPosition(object, &position);
    t_ORYOS_Bo->SetRotationOrder(object, kRotationOrderHpb);
    t_ORYOS_Bo->SetRotation(object, &rotation);
    if (hasScale && exporter.exportTextAsPlanes && LayerObjectType(layer) == AEGP_ObjectType_TEXT) {
      scale = Vector{1.0, 1.0, 1.0};  // text objects of that mode carry their size themselves
    }
    t_ORYOS_Bo->SetScale(object, &scale);

    const bool animated = s.positionKeys > 0 || s.rotationXKeys > 0 || s.rotationYKeys > 0 || s.rotationZKeys > 0 ||
                          s.orientationKeys > 0 || s.anchorKeys > 0 || (s.scaleKeys > 0 && hasScale);
    if (!err && animated) {
      TransformTracks tracks;
      MakeTransformTracks(object, hasRotation, hasScale, &tracks);
      BakeLayerTransform(exporter, layer, s.anchor, s.scale, tracks, *width, *height, isPlaneOrNull, hasRotation,
                         hasScale);
    }
  }
  if (!err && s.anchor && target) err = PlaceTarget(exporter, target, layer, s.anchor);
  return err;
}

BaseObject* CreateTarget(AEToOry& exporter, BaseObject* object, AEGP_LayerH layer) {
  std::string name, key;
  NameAndKeyOrThrow(exporter, layer, &name, &key);
  name += ".Target";
  key += ".Target";
  bool made = false;
  BaseObject* target = FindOrAllocObject(exporter, key, ObjectType_Null, &made);
  if (made) t_ORYOS_At->InsertAfter(target, object);
  SetNodeName(target, name);

  BaseTag* tag = t_ORYOS_Bo->GetTag(object, TagType_Target, 0);
  if (!tag) tag = MakeTag(object, TagType_Target, nullptr);
  if (!tag) {
    AddError(4, "Export/Merge failed. Out of memory in target link.");
    throw A_Err{4};
  }
  ParamContainer* container = t_ORYOS_Bl->GetDataInstance(tag);
  t_ORYOS_Bc->SetLink(container, TargetTagParam_Target, target);
  SetTargetPriority(container);
  t_ORYOS_Bc->SetBool(container, TargetTagParam_PriorityEnable, true);
  return target;
}

BaseObject* TargetOf(BaseObject* object) {
  BaseTag* tag = t_ORYOS_Bo->GetTag(object, TagType_Target, 0);
  if (!tag) return nullptr;
  return static_cast<BaseObject*>(
      t_ORYOS_Bc->GetLink(t_ORYOS_Bl->GetDataInstance(tag), TargetTagParam_Target, t_ORYOS_At->GetDocument(object), 0));
}

bool ReadStreamValue(AEGP_LayerH layer, AEGP_LayerStream streamId, AEGP_StreamType expectedType, const A_Time& time,
                     double value[4]) {
  if (!layer || streamId == AEGP_LayerStream_NONE) return false;
  LayerStream stream(layer, streamId);
  if (!stream) return false;
  StreamValue read;
  AEGP_StreamType type = AEGP_StreamType_NO_DATA;
  if (read.Read(stream.get(), time) || StreamSuite9()->AEGP_GetStreamType(stream.get(), &type)) return false;
  if (type != expectedType) return false;
  const AEGP_FourDVal& four = read.value().four_d;
  value[0] = four.x;
  value[1] = four.y;
  value[2] = four.z;
  value[3] = four.w;
  return true;
}

namespace {
bool ReadAtCurrentTime(AEGP_LayerH layer, AEGP_LayerStream streamId, AEGP_StreamType type, double value[4]) {
  A_Time now{0, 1};
  if (layer) LayerSuite13()->AEGP_GetLayerCurrentTime(layer, AEGP_LTimeMode_CompTime, &now);
  return ReadStreamValue(layer, streamId, type, now, value);
}
}  // namespace

bool ReadStreamFloat(AEGP_LayerH layer, AEGP_LayerStream streamId, double* value) {
  double v[4] = {};
  if (!ReadAtCurrentTime(layer, streamId, AEGP_StreamType_OneD, v)) return false;
  *value = v[0];
  return true;
}

bool ReadStreamVector(AEGP_LayerH layer, AEGP_LayerStream streamId, Vector* value) {
  double v[4] = {};
  if (!ReadAtCurrentTime(layer, streamId, AEGP_StreamType_ThreeD, v)) return false;
  *value = Vector{v[0], v[1], v[2]};
  return true;
}

bool ReadStreamInt(AEGP_LayerH layer, AEGP_LayerStream streamId, int32_t* value) {
  double v[4] = {};
  if (!ReadAtCurrentTime(layer, streamId, AEGP_StreamType_OneD, v)) return false;
  *value = static_cast<int32_t>(v[0]);
  return true;
}

bool ReadStreamColor(AEGP_LayerH layer, AEGP_LayerStream streamId, Vector* value) {
  double v[4] = {};
  if (!ReadAtCurrentTime(layer, streamId, AEGP_StreamType_COLOR, v)) return false;
  *value = Vector{v[1], v[2], v[3]};
  return true;
}
