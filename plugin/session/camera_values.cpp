#include "plugin/session/camera_values.h"

#include "plugin/engine/engine_extensions.h"
#include "plugin/engine/engine_tables.h"
#include "plugin/exporter/scene_ids.h"
#include "plugin/exporter/scene_params.h"
#include "plugin/session/camera_update.h"

namespace quillon {

namespace {

constexpr int32_t kCameraThirdParam = 1000;
constexpr int32_t kCameraOwnTagType = 5629;

bool SameValues(BaseObject* camera, const CameraValues& values) {
  Vector position;
  Vector rotation;
  t_ORYOS_Bo->GetPosition(camera, &position);
  t_ORYOS_Bo->GetRotation(camera, &rotation);
  const ParamContainer* data = t_ORYOS_Bl->GetDataInstance(camera);
  return position == values.position && rotation == values.rotation &&
         static_cast<float>(t_ORYOS_Bc->GetFloat(data, CameraParam_FocalLength, 0.0)) == values.focalLength &&
         static_cast<float>(t_ORYOS_Bc->GetFloat(data, CameraParam_Aperture, 0.0)) == values.aperture &&
         static_cast<float>(t_ORYOS_Bc->GetFloat(data, kCameraThirdParam, 0.0)) == values.third &&
         t_ORYOS_Bc->GetInt32(data, CameraParam_Projection, 0) == values.projection;
}

// Tracks of the position, the rotation (by component) and of the one-level lens values.
bool AnimatesValues(const ParamId& id) {
  if (id.count == 1) {
    const int32_t param = id.levels[0].id;
    return param == CameraParam_FocalLength || param == kCameraThirdParam || param == CameraParam_Aperture;
  }
  if (id.count != 2) return false;
  const int32_t param = id.levels[0].id;
  const int32_t component = id.levels[1].id;
  return (param == ObjectParam_Position || param == ObjectParam_Rotation) && component >= VectorComponent_X &&
         component <= VectorComponent_X + 2;
}

// True when a track went.
bool RemoveValueTracks(BaseObject* camera) {
  const auto* ids = static_cast<const ParamIdLibrary*>(FindExtensionLibrary(kExtensionParamId, sizeof(ParamIdLibrary)));
  if (!ids) return false;
  bool removed = false;
  for (SceneNode *track = t_ORYOS_CA->GetFirstTrack(camera), *next = nullptr; track; track = next) {
    next = t_ORYOS_At->GetNext(track);
    ParamId id;
    ids->ParamIdInit(&id);
    t_ORYOS_CA->GetTrackParamId(static_cast<AnimTrack*>(track), &id);
    if (AnimatesValues(id)) {
      t_ORYOS_At->Remove(track);
      t_ORYOS_Bl->FreeNode(track);
      removed = true;
    }
    ids->ParamIdFree(&id);
  }
  return removed;
}

// True when a tag went or a target was let go.
bool ReleaseTags(RenderThread& render, BaseObject* camera, bool makeNew) {
  bool changed = false;
  if (BaseTag* aim = makeNew ? t_ORYOS_Bo->GetTag(camera, TagType_Target, 0) : nullptr) {
    ParamContainer* data = t_ORYOS_Bl->GetDataInstance(aim);
    if (t_ORYOS_Bc->GetLink(data, TargetTagParam_Target, render.document, 0)) {
      t_ORYOS_Bc->SetLink(data, TargetTagParam_Target, nullptr);
      changed = true;
    }
  }
  if (BaseTag* own = t_ORYOS_Bo->GetTag(camera, kCameraOwnTagType, 0)) {
    t_ORYOS_At->Remove(own);
    t_ORYOS_Bl->FreeNode(own);
    changed = true;
  }
  return changed;
}

BaseObject* LastTopLevelObject(BaseDocument* document) {
  SceneNode* last = t_ORYOS_Bd->GetFirstObject(document);
  while (last && t_ORYOS_At->GetNext(last)) last = t_ORYOS_At->GetNext(last);
  return static_cast<BaseObject*>(last);
}

BaseObject* NewCameraFor(RenderThread& render, BaseView* view) {
  BaseObject* camera = t_ORYOS_Bo->AllocObject(ObjectType_Camera);
  if (!camera) return nullptr;
  t_ORYOS_Bd->InsertObject(render.document, camera, nullptr, LastTopLevelObject(render.document), 0, 1);
  t_ORYOS_Br->SetSceneCamera(view, camera, 0);
  render.dirty = true;
  ClearMode2(t_ORYOS_Bd->GetFirstObject(render.document));
  return camera;
}

void WriteValues(BaseObject* camera, const CameraValues& values) {
  t_ORYOS_Bo->SetPosition(camera, &values.position);
  t_ORYOS_Bo->SetRotation(camera, &values.rotation);
  SetFloatParam(camera, CameraParam_FocalLength, values.focalLength);
  SetFloatParam(camera, CameraParam_Aperture, values.aperture);
  SetFloatParam(camera, kCameraThirdParam, values.third);
  SetInt32Param(camera, CameraParam_Projection, values.projection);
}

bool SetViewCamera(RenderThread& render, BaseView* view, const CameraValues& values, bool makeNew) {
  if (!view) return false;
  BaseObject* camera = t_ORYOS_Br->GetSceneCamera(view, render.document);
  if (!camera) camera = t_ORYOS_Br->GetViewCamera(view);
  if (!camera) return false;
  if (makeNew && !(camera = NewCameraFor(render, view))) return false;
  if (!render.dirty && !makeNew && !SameValues(camera, values)) render.dirty = true;
  if (RemoveValueTracks(camera)) render.dirty = true;
  if (ReleaseTags(render, camera, makeNew)) render.dirty = true;
  if (!render.dirty) return true;
  WriteValues(camera, values);
  render.renderResult = kRenderResultOk;
  render.renderStage = 0;
  render.progress = 0.0;
  return true;
}

}  // namespace

bool SetCameraValues(RenderThread& render, const CameraValues& values, bool makeNew) {
  if (!render.document) return false;
  return SetViewCamera(render, t_ORYOS_Bd->GetRenderView(render.document), values, makeNew) &&
         SetViewCamera(render, t_ORYOS_Bd->GetActiveView(render.document), values, makeNew);
}

}  // namespace quillon
