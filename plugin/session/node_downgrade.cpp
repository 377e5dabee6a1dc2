#include "plugin/session/node_downgrade.h"

#include "plugin/engine/engine_tables.h"
#include "plugin/engine/owned_filename.h"
#include "plugin/exporter/scene_ids.h"
#include "plugin/exporter/scene_params.h"

namespace quillon {

namespace {

constexpr int32_t kFileVersions[] = {14034, 15050, 16025, 17050, 18015, 19039, 20021, 21100, 22124, 23110, 24111};
// How a copy is read back.
constexpr int32_t kReadBackFlags = 3;

bool IsKind(const SceneNode* node, int32_t kind) { return t_ORYOS_At->IsKindOf(node, kind); }

// A new document that holds a copy of `node`, as that kind of node lives in a document.
BaseDocument* DocumentHolding(SceneNode* node) {
  if (IsKind(node, NodeKind_Document)) return static_cast<BaseDocument*>(t_ORYOS_At->CloneNode(node, 1, nullptr));
  BaseDocument* holder = t_ORYOS_Bd->AllocDocument();
  if (!holder) return nullptr;
  if (IsKind(node, NodeKind_RenderSettings)) {
    t_ORYOS_At->CopyNodeTo(node, t_ORYOS_Bd->GetActiveSettings(holder), 0, 0);
    return holder;
  }
  if (IsKind(node, NodeKind_Material)) {
    // The material is cloned inside the document, so that its links resolve there.
    t_ORYOS_At->Remove(node);
    t_ORYOS_Bd->InsertMaterial(holder, static_cast<Material*>(node), nullptr, 0);
    LinkHolder* links = t_ORYOS_Ln->AllocLinkHolder();
    if (links) t_ORYOS_Ln->SetLinkDocument(links, holder);
    SceneNode* copy = t_ORYOS_At->CloneNode(node, 0, links);
    if (links) t_ORYOS_Ln->FreeLinkHolder(links);
    t_ORYOS_At->Remove(node);
    if (copy) t_ORYOS_Bd->InsertMaterial(holder, static_cast<Material*>(copy), nullptr, 0);
    return holder;
  }
  SceneNode* copy = t_ORYOS_At->CloneNode(node, 0, nullptr);
  if (!copy) return holder;
  if (IsKind(node, NodeKind_Object)) {
    t_ORYOS_Bd->InsertObject(holder, static_cast<BaseObject*>(copy), nullptr, nullptr, 0, 1);
  } else if (IsKind(node, NodeKind_Tag)) {
    BaseObject* bearer = t_ORYOS_Bo->AllocObject(ObjectType_Null);
    t_ORYOS_Bo->InsertTag(bearer, static_cast<BaseTag*>(copy), nullptr);
    t_ORYOS_Bd->InsertObject(holder, bearer, nullptr, nullptr, 0, 1);
  } else {
    t_ORYOS_Bl->FreeNode(copy);
  }
  return holder;
}

// False when the scene file could not be written whole.
bool WriteInVersion(BaseDocument* document, int32_t version, MemoryFile* memory) {
  OwnedFilename file;
  t_ORYOS_Fn->SetMemoryWrite(&file.value, memory);
  SceneFile* scene = t_ORYOS_Hf->AllocSceneFile();
  if (!scene) return false;
  t_ORYOS_Hf->SetWriterVersion(scene, version);
  bool written = t_ORYOS_Hf->Open(scene, kSceneFileIdent, &file.value, kSceneFileModeWrite, 0) &&
                 t_ORYOS_Bl->WriteNode(document, scene);
  written = t_ORYOS_Hf->Close(scene) && written && t_ORYOS_Hf->GetFileError(scene) == 0;
  t_ORYOS_Hf->FreeSceneFile(scene);
  return written;
}

BaseDocument* ReadBack(const MemoryFile* memory) {
  const void* data = nullptr;
  int64_t size = 0;
  t_ORYOS_Fn->GetMemoryFileData(memory, &data, &size);
  OwnedFilename file;
  t_ORYOS_Fn->SetMemoryRead(&file.value, data, size, false);
  BaseDocument* document = t_ORYOS_Bd->AllocDocument();
  if (!document) return nullptr;
  OwnedString error;
  if (!t_ORYOS_Ge->LoadFileIntoDocument(document, &file.value, kReadBackFlags, nullptr, nullptr, error.get())) {
    t_ORYOS_Bl->FreeNode(document);
    return nullptr;
  }
  return document;
}

// The node of the kind of `original` taken out of `document`, which is freed.
SceneNode* TakeOut(BaseDocument* document, const SceneNode* original) {
  if (IsKind(original, NodeKind_Document)) return document;
  SceneNode* taken = nullptr;
  if (IsKind(original, NodeKind_RenderSettings)) {
    taken = t_ORYOS_Bd->GetFirstSettings(document);
  } else if (IsKind(original, NodeKind_Material)) {
    taken = t_ORYOS_Bd->GetFirstMaterial(document);
  } else if (BaseObject* first = t_ORYOS_Bd->GetFirstObject(document)) {
    taken = IsKind(original, NodeKind_Tag) ? static_cast<SceneNode*>(t_ORYOS_Bo->GetFirstTag(first)) : first;
  }
  if (taken) t_ORYOS_At->Remove(taken);
  t_ORYOS_Bl->FreeNode(document);
  return taken;
}

}  // namespace

int32_t FileVersionOfIndex(int32_t versionIndex) {
  constexpr int32_t kCount = static_cast<int32_t>(sizeof(kFileVersions) / sizeof(kFileVersions[0]));
  return versionIndex >= 1 && versionIndex <= kCount ? kFileVersions[versionIndex - 1] : kSceneFileVersionCurrent;
}

SceneNode* DowngradeNode(SceneNode* node, int32_t versionIndex) {
  if (!node) return nullptr;
  BaseDocument* holder = DocumentHolding(node);
  if (!holder) return nullptr;
  MemoryFile* memory = t_ORYOS_Fn->AllocMemoryFile();
  const bool written = memory && WriteInVersion(holder, FileVersionOfIndex(versionIndex), memory);
  t_ORYOS_Bl->FreeNode(holder);
  BaseDocument* copy = written ? ReadBack(memory) : nullptr;
  if (memory) t_ORYOS_Fn->FreeMemoryFile(memory);
  return copy ? TakeOut(copy, node) : nullptr;
}

}  // namespace quillon
