// Tables Bc, Bd, Fn and Ln: the render session's nested containers, render
// settings, views and time of documents, memory files, links of a kind, and
// the scene states library.
#include <algorithm>
#include <cstdlib>
#include <new>

#include "quillon/api/handles.h"
#include "quillon/api/session_operations.h"
#include "quillon/api/tables.h"
#include "quillon/model/links.h"
#include "quillon/model/memory_file.h"
#include "quillon/model/scene_states.h"

struct MemoryFile {
  std::shared_ptr<quillon::MemoryBuffer> buffer = std::make_shared<quillon::MemoryBuffer>();
};

namespace quillon {
namespace {

const Value* Entry(const ParamContainer* container, int32_t id) {
  const ParamSet* set = SetOf(container);
  if (!set) return nullptr;
  auto found = set->find(id);
  return found == set->end() ? nullptr : &found->second;
}

Node* SettingsOf(const RenderData* settings) {
  Node* node = settings ? NodeOf(settings) : nullptr;
  return node && node->nodeClass == NodeClass::RenderSettings ? node : nullptr;
}

Document* TreeDocument(SceneStateTree* tree) { return DocumentOfHandle(reinterpret_cast<BaseDocument*>(tree)); }

SceneNode* AllocState() { return HandleOf<SceneNode>(NewState().release()); }

SceneNode* GetStateRoot(SceneStateTree* tree) {
  Document* document = TreeDocument(tree);
  return document ? HandleOf<SceneNode>(document->states.get()) : nullptr;
}

SceneNode* GetCurrentState(SceneStateTree* tree) {
  Document* document = TreeDocument(tree);
  return document ? HandleOf<SceneNode>(CurrentState(*document)) : nullptr;
}

bool SetCurrentState(SceneStateTree* tree, SceneNode* state) {
  Document* document = TreeDocument(tree);
  return document && state && MakeStateCurrent(*document, NodeOf(state));
}

const SceneStateLibrary kSceneStateLibrary{
    {kExtensionSceneStates, static_cast<int32_t>(sizeof(SceneStateLibrary))},
    AllocState, {}, GetStateRoot, {}, GetCurrentState, SetCurrentState};

}  // namespace

bool ContainersEqual(const ParamContainer* a, const ParamContainer* b) {
  const ParamSet* x = SetOf(a);
  const ParamSet* y = SetOf(b);
  return x && y && *x == *y;
}

void BcSetFilename(ParamContainer* container, int32_t id, const Filename* value) {
  ParamSet* set = SetOf(container);
  if (set) SetPath((*set)[id].raw, value ? PathOf(*value) : std::string());
}

bool BcGetFilename(const ParamContainer* container, int32_t id, Filename* out) {
  const Value* value = Entry(container, id);
  const Filename* file = value ? AsFilename(value->raw) : nullptr;
  if (out) AssignPath(*out, file ? PathOf(*file) : std::string());
  return file != nullptr;
}

void SetContainer(ParamContainer* container, int32_t id, const ParamContainer* value) {
  ParamSet* set = SetOf(container);
  const ParamSet* entries = SetOf(value);
  if (!set || !entries) return;
  DataValue& slot = (*set)[id].raw;
  InitCustom(slot, DataKind_Container);
  AsContainer(slot)->entries = *entries;
}

bool GetContainer(const ParamContainer* container, int32_t id, ParamContainer* out) {
  const Value* value = Entry(container, id);
  const ContainerData* nested = value ? AsContainer(value->raw) : nullptr;
  ParamSet* target = SetOf(out);
  if (!nested || !target) return false;
  *target = nested->entries;
  return true;
}

SceneStateTree* GetStateData(BaseDocument* document, int32_t, int32_t) {
  return DocumentOfHandle(document) ? reinterpret_cast<SceneStateTree*>(document) : nullptr;
}

BaseView* GetViewAt(const BaseDocument* document, int32_t index) {
  const Document* model = DocumentOfHandle(document);
  if (!model || index < 0 || index >= static_cast<int32_t>(model->views.size())) return nullptr;
  return HandleOfView(model->views[static_cast<size_t>(index)].get());
}

BaseTime* GetDocumentTime(BaseDocument* document) {
  Document* model = DocumentOfHandle(document);
  return model ? &model->currentTime : nullptr;
}

void InsertRenderSettingsAt(BaseDocument* document, RenderData* settings, RenderData* predecessor, int32_t) {
  Document* model = DocumentOfHandle(document);
  Node* node = SettingsOf(settings);
  Node* after = SettingsOf(predecessor);
  if (!model || !node || node == after) return;
  if (after && after->parent == model->settings.get()) {
    InsertBehind(node, after);
  } else {
    InsertFirstUnder(node, model->settings.get());
  }
}

void SetActiveRenderSettings(BaseDocument* document, RenderData* settings) {
  Document* model = DocumentOfHandle(document);
  Node* node = SettingsOf(settings);
  if (model && node && node->parent == model->settings.get()) model->activeSettings = node;
}

RenderData* GetFirstSettingsChild(const RenderData* settings) {
  Node* node = SettingsOf(settings);
  return node ? HandleOf<RenderData>(node->firstChild) : nullptr;
}

void InsertSettingsChild(RenderData* settings, RenderData* child, RenderData* predecessor) {
  Node* parent = SettingsOf(settings);
  Node* node = SettingsOf(child);
  Node* after = SettingsOf(predecessor);
  if (!parent || !node || IsWithin(parent, node)) return;
  if (after && after->parent == parent && after != node) {
    InsertBehind(node, after);
  } else {
    InsertLastUnder(node, parent);
  }
}

void SetActiveObject(BaseDocument* document, BaseObject* object, int32_t mode) {
  Document* model = DocumentOfHandle(document);
  Object* node = ObjectOf(object);
  if (!model) return;
  std::vector<uint64_t>& active = model->activeObjectIds;
  if (mode == kActiveObjectNew) active.clear();
  if (!node || DocumentOf(node) != model) return;
  const uint64_t id = LinkIdOf(node);
  active.erase(std::remove(active.begin(), active.end(), id), active.end());
  if (mode != kActiveObjectRemove) active.push_back(id);
}

void GetActiveObjects(const BaseDocument* document, NodeArray* array) {
  const Document* model = DocumentOfHandle(document);
  if (!model || !array) return;
  array->items.clear();
  for (uint64_t id : model->activeObjectIds) {
    if (Object* object = AsObject(ResolveLinkIn(id, model))) array->items.push_back(HandleOf<SceneNode>(object));
  }
}

SceneNode* FindSceneHook(const BaseDocument*, int32_t) { return nullptr; }

void FreeDocument(BaseDocument* document) {
  if (DocumentOfHandle(document)) BlTable().FreeNode(document);
}

void SetMemoryRead(Filename* file, const void* data, int64_t size, bool takesOwnership) {
  if (!file || size < 0 || (size > 0 && !data)) return;
  auto buffer = std::make_shared<MemoryBuffer>();
  const auto* bytes = static_cast<const uint8_t*>(data);
  buffer->bytes.assign(bytes, bytes + size);
  if (takesOwnership) std::free(const_cast<void*>(data));
  MakeMemoryFile(*file, std::move(buffer));
}

void SetMemoryWrite(Filename* file, MemoryFile* memory) {
  if (file && memory) MakeMemoryFile(*file, memory->buffer);
}

MemoryFile* AllocMemoryFile() { return new (std::nothrow) MemoryFile(); }
void FreeMemoryFile(MemoryFile* memory) { delete memory; }

void GetMemoryFileData(const MemoryFile* memory, const void** data, int64_t* size) {
  const bool filled = memory && !memory->buffer->bytes.empty();
  if (data) *data = filled ? memory->buffer->bytes.data() : nullptr;
  if (size) *size = filled ? static_cast<int64_t>(memory->buffer->bytes.size()) : 0;
}

void SetLinkDocument(LinkHolder*, const BaseDocument*) {}
void SetLinkMode(LinkHolder*, int32_t) {}

SceneNode* GetLinkTargetOfKind(const LinkHolder* holder, const BaseDocument* document, int32_t kind) {
  const LinkData* link = holder ? LinkOf(holder) : nullptr;
  if (!link) return nullptr;
  SceneNode* target = HandleOf<SceneNode>(ResolveLinkIn(link->targetId, DocumentOfHandle(document)));
  return IsKindOf(target, kind) ? target : nullptr;
}

const ExtensionHeader& SceneStateLibraryHeader() { return kSceneStateLibrary.header; }

}  // namespace quillon
