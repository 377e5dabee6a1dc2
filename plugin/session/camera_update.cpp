#include "plugin/session/camera_update.h"

#include "plugin/engine/engine_tables.h"
#include "plugin/exporter/scene_ids.h"
#include "plugin/session/unique_id_map.h"
#include "plugin/session/update_params.h"

namespace quillon {

namespace {

// Copy flags of a camera's values onto the camera a view looks through.
constexpr int32_t kCameraCopyFlags = 924;
constexpr int32_t kGuideObjectType = 5136;

bool SameValues(BaseObject* a, BaseObject* b) {
  Vector positionA;
  Vector positionB;
  Vector rotationA;
  Vector rotationB;
  t_ORYOS_Bo->GetPosition(a, &positionA);
  t_ORYOS_Bo->GetPosition(b, &positionB);
  t_ORYOS_Bo->GetRotation(a, &rotationA);
  t_ORYOS_Bo->GetRotation(b, &rotationB);
  return positionA == positionB && rotationA == rotationB &&
         t_ORYOS_Bc->ContainersEqual(t_ORYOS_Bl->GetDataInstance(a), t_ORYOS_Bl->GetDataInstance(b));
}

void InsertCamera(RenderThread& render, BaseObject* camera) {
  t_ORYOS_At->Remove(camera);
  t_ORYOS_Bd->InsertObject(render.document, camera, nullptr, nullptr, 0, 1);
  render.dirty = true;
  const int32_t views = t_ORYOS_Bd->GetViewCount(render.document);
  for (int32_t i = 0; i < views; ++i)
    if (BaseView* view = t_ORYOS_Bd->GetViewAt(render.document, i)) t_ORYOS_Br->SetSceneCamera(view, camera, 0);
  ClearMode2(t_ORYOS_Bd->GetFirstObject(render.document));
}

void CopyCameraOnto(RenderThread& render, BaseObject* camera, BaseObject* target) {
  if (!render.dirty && !SameValues(camera, target)) render.dirty = true;
  t_ORYOS_At->CopyNodeTo(camera, target, kCameraCopyFlags, 0);
  BaseTag* aim = t_ORYOS_Bo->GetTag(target, TagType_Target, 0);
  if (!aim) return;
  ParamContainer* data = t_ORYOS_Bl->GetDataInstance(aim);
  if (t_ORYOS_Bc->GetLink(data, TargetTagParam_Target, render.document, 0)) {
    t_ORYOS_Bc->SetLink(data, TargetTagParam_Target, nullptr);
    render.dirty = true;
  }
}

}  // namespace

bool IsCameraObject(const SceneNode* node) {
  if (!node) return false;
  const int32_t type = t_ORYOS_At->GetType(node);
  return type == ObjectType_Camera || type == ObjectType_KvCamera;
}

void ClearMode2(BaseObject* first) {
  for (SceneNode* node = first; node; node = t_ORYOS_At->GetNext(node)) {
    if (t_ORYOS_At->GetType(node) == kGuideObjectType) t_ORYOS_Bo->SetMode(static_cast<BaseObject*>(node), 2, 0);
    ClearMode2(static_cast<BaseObject*>(t_ORYOS_At->GetDown(node)));
  }
}

bool ApplyCamera(RenderThread& render, BaseObject* camera, bool insert) {
  if (!IsCameraObject(camera) || !render.document) return false;
  if (insert) {
    InsertCamera(render, camera);
    return true;
  }
  BaseView* activeView = t_ORYOS_Bd->GetActiveView(render.document);
  BaseView* renderView = t_ORYOS_Bd->GetRenderView(render.document);
  for (BaseView* view : {renderView ? renderView : activeView, activeView}) {
    if (!view) continue;
    if (BaseObject* target = t_ORYOS_Br->GetSceneCamera(view, render.document))
      CopyCameraOnto(render, camera, target);
  }
  return true;
}

void ApplyCameraUpdate(RenderThread& render, BaseDocument* update) {
  const bool insert = t_ORYOS_Bc->GetBool(t_ORYOS_Bl->GetDataInstance(update), ParamKey_UpdateData, false);
  ApplyCamera(render, t_ORYOS_Bd->GetFirstObject(update), insert);
}

bool SelectCameraById(RenderThread& render, int32_t applicationId, const std::string& id) {
  if (!render.document) return false;
  ClearMode2(t_ORYOS_Bd->GetFirstObject(render.document));
  UniqueIdMap map;
  BuildUniqueIdMap(map, applicationId, render.document, true);
  const UniqueIdEntry* entry = map.Find(id);
  SceneNode* camera = entry ? entry->node : nullptr;
  if (!IsCameraObject(camera)) return false;
  for (BaseView* view : {t_ORYOS_Bd->GetActiveView(render.document), t_ORYOS_Bd->GetRenderView(render.document)})
    if (view) t_ORYOS_Br->SetSceneCamera(view, static_cast<BaseObject*>(camera), 0);
  return true;
}

void ApplyActiveCameraUpdate(RenderThread& render, BaseDocument* update) {
  const int32_t applicationId =
      t_ORYOS_Bc->GetInt32(t_ORYOS_Bl->GetDataInstance(update), ParamKey_UpdateAppId, 0);
  std::string id;
  if (applicationId < 1 || !UniqueIdOf(update, applicationId, &id)) return;
  SelectCameraById(render, applicationId, id);
}

}  // namespace quillon
