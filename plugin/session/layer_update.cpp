#include "plugin/session/layer_update.h"

#include "plugin/engine/engine_tables.h"
#include "plugin/session/owned_container.h"
#include "plugin/session/tree_walk.h"
#include "plugin/session/update_params.h"

namespace quillon {

namespace {

// Mode 1 of an object keeps it hidden whatever the session asks.
constexpr int32_t kModeHidden = 1;

SceneNode* FirstLayer(BaseDocument* document) {
  return t_ORYOS_At->GetFirstUnderRoot(t_ORYOS_Bd->GetLayerRoot(document));
}

// The layers one after the other, depth-first.
SceneNode* NextLayer(BaseDocument* document, SceneNode* layer) {
  return NextInTree(layer, t_ORYOS_Bd->GetLayerRoot(document));
}

void SetLayerSwitches(BaseDocument* document, SceneLayer* layer, int32_t on) {
  const LayerRecord* record = t_ORYOS_Bl->GetLayerData(layer, document, 0);
  if (!record) return;
  LayerRecord copy = *record;
  copy.view = on;
  copy.render = on;
  t_ORYOS_Bl->SetLayerData(layer, document, &copy);
}

void ResetLayers(BaseDocument* document) {
  for (SceneNode* layer = FirstLayer(document); layer; layer = NextLayer(document, layer))
    SetLayerSwitches(document, static_cast<SceneLayer*>(layer), 0);
}

// The mode `which` of `object` as the document had it, noted on first use under `key`.
int32_t StoredMode(BaseObject* object, int32_t which, int32_t key) {
  ParamContainer* data = t_ORYOS_Bl->GetDataInstance(object);
  if (t_ORYOS_Bc->FindIndex(data, key, 0) < 0) t_ORYOS_Bc->SetInt32(data, key, t_ORYOS_Bo->GetMode(object, which));
  return t_ORYOS_Bc->GetInt32(data, key, 0);
}

void ApplyVisibility(BaseDocument* document, bool objectsWithoutLayerVisible) {
  const int32_t mode = objectsWithoutLayerVisible ? 0 : 1;
  BaseObject* first = t_ORYOS_Bd->GetFirstObject(document);
  const SceneNode* top = first ? t_ORYOS_At->GetUp(first) : nullptr;
  for (SceneNode* node = first; node; node = NextInTree(node, top)) {
    auto* object = static_cast<BaseObject*>(node);
    const int32_t stored0 = StoredMode(object, 0, ParamKey_StoredMode0);
    const int32_t stored1 = StoredMode(object, 1, ParamKey_StoredMode1);
    if (t_ORYOS_Bl->GetSceneLayer(object, document)) continue;
    if (stored0 != kModeHidden) t_ORYOS_Bo->SetMode(object, 0, mode);
    if (stored1 != kModeHidden) t_ORYOS_Bo->SetMode(object, 1, mode);
  }
}

}  // namespace

SceneLayer* LayerAtIndex(BaseDocument* document, int32_t index) {
  if (index < 0) return nullptr;
  SceneNode* layer = FirstLayer(document);
  for (int32_t i = 0; layer && i < index; ++i) layer = NextLayer(document, layer);
  return static_cast<SceneLayer*>(layer);
}

bool SwitchLayers(BaseDocument* document, int32_t count, bool objectsWithoutLayerVisible,
                  const std::function<SceneLayer*(int32_t)>& layerAt) {
  ResetLayers(document);
  ApplyVisibility(document, objectsWithoutLayerVisible);
  bool switched = false;
  for (int32_t i = 0; i < count; ++i) {
    SceneLayer* layer = layerAt(i);
    if (!layer || !t_ORYOS_Bl->GetLayerData(layer, document, 0)) break;
    SetLayerSwitches(document, layer, 1);
    switched = true;
  }
  return switched;
}

void ApplyLayerUpdate(RenderThread& render, BaseDocument* update) {
  OwnedContainer list;
  if (!t_ORYOS_Bc->GetContainer(t_ORYOS_Bl->GetDataInstance(update), ParamKey_UpdateData, &list.value)) return;
  BaseDocument* document = render.document;
  SwitchLayers(document, t_ORYOS_Bc->GetInt32(&list.value, kLayerListCount, 0),
               t_ORYOS_Bc->GetBool(&list.value, kLayerListObjectsWithoutLayerVisible, true),
               [&list, document](int32_t i) {
                 return LayerAtIndex(document, t_ORYOS_Bc->GetInt32(&list.value, kLayerListFirstIndex + i, -1));
               });
  render.dirty = true;
}

bool SwitchLayersByMarker(RenderThread& render, const std::vector<NodeMarker>& markers,
                          bool objectsWithoutLayerVisible) {
  BaseDocument* document = render.document;
  const auto layerWithMarker = [&markers, document](int32_t i) -> SceneLayer* {
    return static_cast<SceneLayer*>(FindByMarker(FirstLayer(document), markers[static_cast<std::size_t>(i)]));
  };
  const bool switched =
      SwitchLayers(document, static_cast<int32_t>(markers.size()), objectsWithoutLayerVisible, layerWithMarker);
  if (switched) render.dirty = true;
  return switched;
}

}  // namespace quillon
