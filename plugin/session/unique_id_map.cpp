#include "plugin/session/unique_id_map.h"

#include <new>

#include "plugin/engine/engine_tables.h"

namespace quillon {

uint64_t UniqueIdHash(const std::string& bytes) {
  uint64_t hash = 0;
  for (const char c : bytes) hash = hash * 0xBF58476D1CE4E5B9ull + 1 + static_cast<uint8_t>(c);
  return hash;
}

UniqueIdMap::~UniqueIdMap() {
  for (auto& [id, entry] : entries_)
    if (entry.removed) t_ORYOS_Bl->FreeNode(entry.removed);
}

bool UniqueIdMap::Put(const std::string& id, SceneNode* node) {
  try {
    entries_[id].node = node;
    return true;
  } catch (const std::bad_alloc&) {
    return false;
  }
}

UniqueIdEntry* UniqueIdMap::Find(const std::string& id) {
  const auto found = entries_.find(id);
  return found == entries_.end() ? nullptr : &found->second;
}

bool UniqueIdOf(const SceneNode* node, int32_t applicationId, std::string* id) {
  const void* data = nullptr;
  int32_t size = 0;
  if (!t_ORYOS_At->FindUniqueId(node, applicationId, &data, &size) || !data || size < 0) return false;
  id->assign(static_cast<const char*>(data), static_cast<std::size_t>(size));
  return true;
}

namespace {

bool IsElement(const SceneNode* node) {
  return t_ORYOS_At->IsKindOf(node, NodeKind_Object) || t_ORYOS_At->IsKindOf(node, NodeKind_Material);
}

bool MapDocumentLists(UniqueIdMap& map, int32_t applicationId, const SceneNode* document) {
  NodeArray* heads = t_ORYOS_At->AllocNodeArray();
  if (!heads) return false;
  bool ok = true;
  t_ORYOS_At->GetBranches(document, heads, 0);
  const int32_t count = t_ORYOS_At->GetNodeArrayCount(heads);
  for (int32_t i = 0; ok && i < count; ++i) {
    const SceneNode* head = t_ORYOS_At->GetNodeArrayItem(heads, i);
    for (SceneNode* node = t_ORYOS_At->GetDown(head); ok && node; node = t_ORYOS_At->GetNext(node))
      if (IsElement(node)) ok = BuildUniqueIdMap(map, applicationId, node, true);
  }
  t_ORYOS_At->FreeNodeArray(heads);
  return ok;
}

}  // namespace

bool BuildUniqueIdMap(UniqueIdMap& map, int32_t applicationId, SceneNode* node, bool single) {
  if (node && t_ORYOS_At->IsKindOf(node, NodeKind_Document)) return MapDocumentLists(map, applicationId, node);
  std::string id;
  for (; node; node = t_ORYOS_At->GetNext(node)) {
    if (UniqueIdOf(node, applicationId, &id) && !map.Put(id, node)) return false;
    if (!BuildUniqueIdMap(map, applicationId, t_ORYOS_At->GetDown(node), false)) return false;
    if (single) break;
  }
  return true;
}

}  // namespace quillon
