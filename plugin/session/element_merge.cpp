#include "plugin/session/element_merge.h"

#include <new>
#include <string>

#include "plugin/engine/engine_tables.h"
#include "plugin/exporter/scene_ids.h"
#include "plugin/exporter/scene_params.h"

namespace quillon {

namespace {

constexpr char kDeleteName[] = "---delete";
constexpr char kPlaceholderName[] = "---XMATLINK";
// An instance's link to the object it copies.
constexpr int32_t kInstanceLinkParam = 1001;

bool IsObject(const SceneNode* node) { return t_ORYOS_At->IsKindOf(node, NodeKind_Object); }
bool IsMaterial(const SceneNode* node) { return t_ORYOS_At->IsKindOf(node, NodeKind_Material); }

// Where the merge is in the update's list: the object it inserted last in this list, so
// that new objects with ids keep their order.
struct MergeState {
  BaseObject* lastInserted = nullptr;
};

void InsertAtTop(BaseDocument* target, SceneNode* element) {
  if (IsObject(element)) {
    t_ORYOS_Bd->InsertObject(target, static_cast<BaseObject*>(element), nullptr, nullptr, 0, 1);
  } else if (IsMaterial(element)) {
    t_ORYOS_Bd->InsertMaterial(target, static_cast<Material*>(element), nullptr, 0);
  }
}

void InsertWithoutId(BaseDocument* target, SceneNode* element) {
  t_ORYOS_Ge->ConsolePrint("New element without unique ID inserted");
  t_ORYOS_At->Remove(element);
  InsertAtTop(target, element);
}

void InsertWithNewId(BaseDocument* target, SceneNode* element, MergeState& state) {
  t_ORYOS_Ge->ConsolePrint("New element with unique ID inserted");
  t_ORYOS_At->Remove(element);
  if (!IsObject(element)) {
    InsertAtTop(target, element);
    return;
  }
  if (state.lastInserted) {
    t_ORYOS_At->InsertAfter(element, state.lastInserted);
  } else {
    InsertAtTop(target, element);
  }
  state.lastInserted = static_cast<BaseObject*>(element);
}

// An instance that comes without the object it copies keeps the one its twin copied.
void KeepInstanceLink(SceneNode* element, SceneNode* old, BaseDocument* target) {
  if (t_ORYOS_At->GetType(element) != ObjectType_Instance || t_ORYOS_At->GetType(old) != ObjectType_Instance) return;
  ParamContainer* elementData = t_ORYOS_Bl->GetDataInstance(element);
  const ParamContainer* oldData = t_ORYOS_Bl->GetDataInstance(old);
  if (t_ORYOS_Bc->GetLink(elementData, kInstanceLinkParam, target, 0)) return;
  if (SceneNode* copied = t_ORYOS_Bc->GetLink(oldData, kInstanceLinkParam, target, 0))
    t_ORYOS_Bc->SetLink(elementData, kInstanceLinkParam, copied);
}

void ReplaceInPlace(SceneNode* element, UniqueIdEntry& entry, BaseDocument* target) {
  SceneNode* old = entry.node;
  t_ORYOS_At->Remove(element);
  t_ORYOS_At->InsertAfter(element, old);
  t_ORYOS_At->MoveLinks(old, element, 0);
  KeepInstanceLink(element, old, target);
  t_ORYOS_At->Remove(old);
  entry.removed = old;
}

// False when memory ran out.
bool MergeKnown(SceneNode* element, UniqueIdEntry& entry, BaseDocument* target, std::vector<NodePair>& pairs) {
  const std::string name = NodeName(element);
  if (name == kDeleteName) {
    // The marker element stays in the update and goes away with it.
    t_ORYOS_At->Remove(entry.node);
    entry.removed = entry.node;
    entry.node = nullptr;
    return true;
  }
  if (IsMaterial(element) && name == kPlaceholderName) {
    t_ORYOS_At->Remove(element);
    t_ORYOS_At->InsertAfter(element, entry.node);
    try {
      pairs.push_back(NodePair{element, entry.node});
    } catch (const std::bad_alloc&) {
      return false;
    }
    return true;
  }
  // Only objects and materials are merged; anything else stays in the update.
  if (IsObject(element) || IsMaterial(element)) ReplaceInPlace(element, entry, target);
  return true;
}

}  // namespace

bool MergeElements(UniqueIdMap& map, int32_t applicationId, SceneNode* first, BaseDocument* target,
                   std::vector<NodePair>& pairs) {
  if (!first || !target) return false;
  MergeState state;
  std::string id;
  for (SceneNode *element = first, *next = nullptr; element; element = next) {
    next = t_ORYOS_At->GetNext(element);
    if (!UniqueIdOf(element, applicationId, &id)) {
      InsertWithoutId(target, element);
      continue;
    }
    UniqueIdEntry* entry = map.Find(id);
    if (!entry || !entry->node) {
      InsertWithNewId(target, element, state);
      continue;
    }
    if (!MergeKnown(element, *entry, target, pairs)) return false;
  }
  return true;
}

bool MergeDifference(int32_t applicationId, BaseDocument* update, BaseDocument* target) {
  if (!update || !target) return false;
  Material* firstMaterial = t_ORYOS_Bd->GetFirstMaterial(update);
  UniqueIdMap map;
  std::vector<NodePair> pairs;
  if (!BuildUniqueIdMap(map, applicationId, target, true)) return false;
  // A difference may change only objects or only materials.
  BaseObject* firstObject = t_ORYOS_Bd->GetFirstObject(update);
  if (firstObject && !MergeElements(map, applicationId, firstObject, target, pairs)) return false;
  if (firstMaterial && !MergeElements(map, applicationId, firstMaterial, target, pairs)) return false;
  for (NodePair& pair : pairs) {
    if (t_ORYOS_At->SendTreeMessage(target, 4, kMessageMergePlaceholder, &pair)) {
      t_ORYOS_At->Remove(pair.first);
      t_ORYOS_Bl->FreeNode(pair.first);
    }
  }
  return true;
}

}  // namespace quillon
