#include "plugin/session/direct_operations.h"

#include "plugin/engine/engine_tables.h"
#include "plugin/engine/owned_filename.h"
#include "plugin/session/camera_update.h"
#include "plugin/session/document_update.h"
#include "plugin/session/layer_update.h"
#include "plugin/session/owned_container.h"
#include "plugin/session/render_settings_update.h"
#include "plugin/session/texture_relink.h"
#include "plugin/session/time_update.h"
#include "plugin/session/tree_walk.h"
#include "plugin/session/unique_id_map.h"
#include "plugin/session/update_params.h"
#include "plugin/session/view_update.h"

namespace quillon {

namespace {

BaseObject* ObjectWithMarker(RenderThread& render, const NodeMarker& marker) {
  if (!render.document) return nullptr;
  return static_cast<BaseObject*>(FindByMarker(t_ORYOS_Bd->GetFirstObject(render.document), marker));
}

// Render settings that draw the active objects apart.
constexpr int32_t kSettingsActiveDrawing = 5300;
constexpr int32_t kActiveDrawingOn = 300001061;

BaseObject* FirstActiveObject(RenderThread& render) {
  if (!render.document) return nullptr;
  NodeArray* active = t_ORYOS_At->AllocNodeArray();
  if (!active) return nullptr;
  t_ORYOS_Bd->GetActiveObjects(render.document, active);
  SceneNode* first = t_ORYOS_At->GetNodeArrayCount(active) > 0 ? t_ORYOS_At->GetNodeArrayItem(active, 0) : nullptr;
  t_ORYOS_At->FreeNodeArray(active);
  return static_cast<BaseObject*>(first);
}

}  // namespace

bool SetCamera(RenderThread& render, BaseObject* camera, bool insert) {
  if (!render.document) return false;
  render.StopThread();
  return ApplyCamera(render, camera, insert);
}

bool CopyView(RenderThread& render, BaseView* view) {
  if (!render.document) return false;
  render.StopThread();
  CopyViewValues(render, view);
  render.dirty = true;
  return true;
}

bool ReplaceRenderSettingsWith(RenderThread& render, const RenderData* settings, bool keepChildren) {
  if (!render.document || !settings) return false;
  render.StopThread();
  auto* copy = static_cast<RenderData*>(t_ORYOS_At->CloneNode(settings, 0, nullptr));
  if (!copy) return false;
  ReplaceRenderSettings(render, copy, keepChildren);
  return true;
}

bool SetTime(RenderThread& render, const BaseTime& time) {
  if (!render.document) return false;
  render.StopThread();
  SetDocumentTime(render, time);
  return true;
}

bool SetKeepCaches(RenderThread& render, bool keep) {
  if (!render.document) return false;
  render.StopThread();
  const bool wasKept = render.keepCaches;
  render.keepCaches = keep;
  if (wasKept && !keep) {
    t_ORYOS_Ge->FlushCaches();
    for (auto& [name, file] : render.textures) t_ORYOS_Fn->FilenameFree(&file);
    render.textures.clear();
  }
  return true;
}

bool SelectCamera(RenderThread& render, int32_t applicationId, const std::string& id) {
  if (!render.document) return false;
  render.StopThread();
  return SelectCameraById(render, applicationId, id);
}

bool SetLayerStates(RenderThread& render, const std::vector<NodeMarker>& markers, bool objectsWithoutLayerVisible) {
  if (!render.document || !render.sessionOpen) return false;
  render.StopThread();
  SwitchLayersByMarker(render, markers, objectsWithoutLayerVisible);
  return true;
}

bool SendLayerList(RenderThread& render, const std::vector<int32_t>& indices, bool objectsWithoutLayerVisible) {
  BaseDocument* update = t_ORYOS_Bd->AllocDocument();
  if (!update) return false;
  OwnedContainer list;
  t_ORYOS_Bc->SetInt32(&list.value, kLayerListCount, static_cast<int32_t>(indices.size()));
  t_ORYOS_Bc->SetBool(&list.value, kLayerListObjectsWithoutLayerVisible, objectsWithoutLayerVisible);
  for (std::size_t i = 0; i < indices.size(); ++i)
    t_ORYOS_Bc->SetInt32(&list.value, kLayerListFirstIndex + static_cast<int32_t>(i), indices[i]);
  t_ORYOS_Bc->SetContainer(t_ORYOS_Bl->GetDataInstance(update), ParamKey_UpdateData, &list.value);
  render.StopThread();
  const OwnedFilename name("__updl");
  const bool open = UpdateDocument(render, name.value, nullptr, 0, update);
  if (open) {
    render.sessionOpen = true;
    render.dirty = true;
    RelinkAllMaterials(render);
  }
  t_ORYOS_Bl->FreeNode(update);
  return open;
}

bool SelectObject(RenderThread& render, int32_t applicationId, const std::string& id, int32_t mode) {
  if (!render.document || !render.sessionOpen) return false;
  render.StopThread();
  UniqueIdMap map;
  BuildUniqueIdMap(map, applicationId, render.document, true);
  const UniqueIdEntry* entry = map.Find(id);
  if (!entry || !entry->node || !t_ORYOS_At->IsKindOf(entry->node, NodeKind_Object)) return false;
  t_ORYOS_Bd->SetActiveObject(render.document, static_cast<BaseObject*>(entry->node), mode);
  RenderData* settings = t_ORYOS_Bd->GetActiveSettings(render.document);
  if (settings &&
      t_ORYOS_Bc->GetInt32(t_ORYOS_Bl->GetDataInstance(settings), kSettingsActiveDrawing, 0) == kActiveDrawingOn)
    render.dirty = true;
  return true;
}

bool SetActivePosition(RenderThread& render, const Vector& position) {
  BaseObject* object = FirstActiveObject(render);
  if (!object) return false;
  Matrix local = *t_ORYOS_Bo->GetLocalMatrix(object);
  local.off = position;
  t_ORYOS_Bo->SetLocalMatrix(object, &local);
  return true;
}

bool SetActiveRotation(RenderThread& render, const Vector& rotation, int32_t order) {
  BaseObject* object = FirstActiveObject(render);
  if (!object) return false;
  t_ORYOS_Bo->SetRotationOrder(object, order);
  t_ORYOS_Bo->SetRotation(object, &rotation);
  return true;
}

bool SetActiveScale(RenderThread& render, const Vector& scale) {
  BaseObject* object = FirstActiveObject(render);
  if (object) t_ORYOS_Bo->SetScale(object, &scale);
  return object != nullptr;
}

bool SetObjectPosition(RenderThread& render, const NodeMarker& marker, const Vector& position) {
  BaseObject* object = ObjectWithMarker(render, marker);
  if (object) t_ORYOS_Bo->SetAbsolutePosition(object, &position);
  return object != nullptr;
}

bool SetObjectRotation(RenderThread& render, const NodeMarker& marker, const Vector& rotation, int32_t order) {
  BaseObject* object = ObjectWithMarker(render, marker);
  if (!object) return false;
  t_ORYOS_Bo->SetRotationOrder(object, order);
  t_ORYOS_Bo->SetAbsoluteRotation(object, &rotation);
  return true;
}

bool SetObjectScale(RenderThread& render, const NodeMarker& marker, const Vector& scale) {
  BaseObject* object = ObjectWithMarker(render, marker);
  if (object) t_ORYOS_Bo->SetAbsoluteScale(object, &scale);
  return object != nullptr;
}

bool SetObjectParameter(RenderThread& render, const NodeMarker& marker, const ParamId& id, const DataValue& value) {
  BaseObject* object = ObjectWithMarker(render, marker);
  return object && t_ORYOS_At->SetParameter(object, &id, &value, 0);
}

BaseObject* GetCamera(RenderThread& render) {
  if (!render.document) return nullptr;
  BaseView* view = t_ORYOS_Bd->GetActiveView(render.document);
  return view ? t_ORYOS_Br->GetSceneCamera(view, render.document) : nullptr;
}

bool IsBusy(const RenderThread& render) { return render.busy || render.cloning; }

}  // namespace quillon
