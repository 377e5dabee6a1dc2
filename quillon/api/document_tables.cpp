// Tables Bd (documents), Br (views), Mt (materials) and Ba (shaders).
#include "quillon/api/handles.h"
#include "quillon/api/session_operations.h"
#include "quillon/api/tables.h"
#include "quillon/model/evaluate.h"
#include "quillon/model/links.h"

namespace quillon {
namespace {

bool IsChildOf(const Node* node, const Node* list) {
  for (Node* at = list->firstChild; at; at = at->next) {
    if (at == node) return true;
  }
  return false;
}

BaseView* ViewAt(const Document* document, int32_t index) {
  if (!document || index < 0 || index >= static_cast<int32_t>(document->views.size())) return nullptr;
  return HandleOfView(document->views[static_cast<size_t>(index)].get());
}

RenderData* AllocRenderData() { return HandleOf<RenderData>(NewRenderSettings().release()); }
BaseDocument* AllocDocument() { return HandleOf<BaseDocument>(NewDocument().release()); }

BaseObject* GetFirstObject(const BaseDocument* document) {
  const Document* model = DocumentOfHandle(document);
  return model ? HandleOf<BaseObject>(model->objects->firstChild) : nullptr;
}

Material* GetFirstMaterial(const BaseDocument* document) {
  const Document* model = DocumentOfHandle(document);
  return model ? HandleOf<Material>(model->materials->firstChild) : nullptr;
}

RenderData* GetFirstSettings(const BaseDocument* document) {
  const Document* model = DocumentOfHandle(document);
  return model ? HandleOf<RenderData>(model->settings->firstChild) : nullptr;
}

void InsertMaterial(BaseDocument* document, Material* material, Material* predecessor, int32_t) {
  Document* model = DocumentOfHandle(document);
  Node* node = NodeOf(material);
  if (!model || !node || node->nodeClass != NodeClass::Material) return;
  if (predecessor && NodeOf(predecessor)->parent == model->materials.get()) {
    InsertBehind(node, NodeOf(predecessor));
  } else {
    InsertFirstUnder(node, model->materials.get());
  }
}

void InsertObject(BaseDocument* document, BaseObject* object, BaseObject* parent, BaseObject* predecessor, int32_t,
                  int32_t) {
  Document* model = DocumentOfHandle(document);
  Object* node = ObjectOf(object);
  Object* after = ObjectOf(predecessor);
  Object* above = ObjectOf(parent);
  if (!model || !node) return;
  if (after && after->parent && !IsWithin(after->parent, node)) {
    InsertBehind(node, after);
  } else if (above && !IsWithin(above, node)) {
    InsertFirstUnder(node, above);
  } else if (!after && !above) {
    InsertFirstUnder(node, model->objects.get());
  }
}

RenderData* GetActiveSettings(const BaseDocument* document) {
  const Document* model = DocumentOfHandle(document);
  if (!model || !model->activeSettings || !IsChildOf(model->activeSettings, model->settings.get())) return nullptr;
  return HandleOf<RenderData>(model->activeSettings);
}

BaseView* GetActiveView(const BaseDocument* document) {
  const Document* model = DocumentOfHandle(document);
  return model ? ViewAt(model, model->activeView) : nullptr;
}

BaseView* GetRenderView(const BaseDocument* document) {
  const Document* model = DocumentOfHandle(document);
  return model ? ViewAt(model, model->renderView) : nullptr;
}

SceneLayer* AllocLayer() { return HandleOf<SceneLayer>(NewLayer().release()); }

SceneNode* GetLayerRoot(BaseDocument* document) {
  Document* model = DocumentOfHandle(document);
  return model ? HandleOf<SceneNode>(model->layers.get()) : nullptr;
}

void InsertSettings(BaseDocument* document, RenderData* settings) {
  Document* model = DocumentOfHandle(document);
  Node* node = NodeOf(settings);
  if (!model || !node || node->nodeClass != NodeClass::RenderSettings) return;
  InsertLastUnder(node, model->settings.get());
  if (!GetActiveSettings(document)) model->activeSettings = node;
}

int32_t GetViewCount(const BaseDocument* document) {
  const Document* model = DocumentOfHandle(document);
  return model ? static_cast<int32_t>(model->views.size()) : 0;
}

bool EvaluateDocument(BaseDocument* document, int32_t, int32_t, int32_t, int32_t, int32_t) {
  Document* model = DocumentOfHandle(document);
  if (!model) return false;
  // A document past the limits of the caches is not evaluated; it has no caches then.
  return EvaluateDocumentCaches(*model).empty();
}

// A view looks through its scene camera while that lives, else through its own.
BaseObject* GetViewCamera(const BaseView* view) {
  View* model = ViewOf(view);
  if (!model) return nullptr;
  if (Object* camera = AsObject(ResolveLink(model->sceneCameraId))) return HandleOf<BaseObject>(camera);
  return HandleOf<BaseObject>(model->editorCamera.get());
}

BaseObject* GetSceneCamera(const BaseView* view, const BaseDocument* document) {
  View* model = ViewOf(view);
  const Document* owner = DocumentOfHandle(document);
  return model && owner ? HandleOf<BaseObject>(SceneCameraOf(*model, *owner)) : nullptr;
}

void SetSceneCamera(BaseView* view, BaseObject* camera, int32_t) {
  if (View* model = ViewOf(view)) model->sceneCameraId = camera ? LinkIdOf(ObjectOf(camera)) : 0;
}

Material* AllocMaterial(int32_t type) { return HandleOf<Material>(NewMaterial(type).release()); }
BaseShader* AllocShader(int32_t type) { return HandleOf<BaseShader>(NewShader(type).release()); }

}  // namespace

const ORYOS_Bd& BdTable() {
  static const ORYOS_Bd table{.AllocRenderData = AllocRenderData,
                              .AllocDocument = AllocDocument,
                              .GetFirstObject = GetFirstObject,
                              .GetFirstMaterial = GetFirstMaterial,
                              .GetFirstSettings = GetFirstSettings,
                              .InsertMaterial = InsertMaterial,
                              .InsertObject = InsertObject,
                              .GetActiveSettings = GetActiveSettings,
                              .GetActiveView = GetActiveView,
                              .GetRenderView = GetRenderView,
                              .AllocLayer = AllocLayer,
                              .GetLayerRoot = GetLayerRoot,
                              .InsertSettings = InsertSettings,
                              .GetViewCount = GetViewCount,
                              .EvaluateDocument = EvaluateDocument,
                              .GetStateData = GetStateData,
                              .GetViewAt = GetViewAt,
                              .GetDocumentTime = GetDocumentTime,
                              .InsertRenderSettingsAt = InsertRenderSettingsAt,
                              .SetActiveRenderSettings = SetActiveRenderSettings,
                              .GetFirstSettingsChild = GetFirstSettingsChild,
                              .InsertSettingsChild = InsertSettingsChild,
                              .SetActiveObject = SetActiveObject,
                              .GetActiveObjects = GetActiveObjects,
                              .FindSceneHook = FindSceneHook,
                              .GetTextureList = GetTextureList};
  return table;
}

const ORYOS_Br& BrTable() {
  static const ORYOS_Br table{
      .GetViewCamera = GetViewCamera, .GetSceneCamera = GetSceneCamera, .SetSceneCamera = SetSceneCamera};
  return table;
}

const ORYOS_Mt& MtTable() {
  static const ORYOS_Mt table{
      .AllocMaterial = AllocMaterial, .GetChannel = GetChannel, .GetReflectionShaders = GetReflectionShaders};
  return table;
}

const ORYOS_Ba& BaTable() {
  static const ORYOS_Ba table{.AllocShader = AllocShader, .GetChannelShader = GetChannelShader};
  return table;
}

}  // namespace quillon
