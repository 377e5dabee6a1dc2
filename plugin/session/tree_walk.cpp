#include "plugin/session/tree_walk.h"

#include "plugin/engine/engine_tables.h"

namespace quillon {

SceneNode* NextInTree(SceneNode* node, const SceneNode* top) {
  if (SceneNode* down = t_ORYOS_At->GetDown(node)) return down;
  for (; node && node != top; node = t_ORYOS_At->GetUp(node))
    if (SceneNode* next = t_ORYOS_At->GetNext(node)) return next;
  return nullptr;
}

SceneNode* FindByMarker(SceneNode* first, const NodeMarker& marker) {
  const SceneNode* top = first ? t_ORYOS_At->GetUp(first) : nullptr;
  for (SceneNode* node = first; node; node = NextInTree(node, top))
    if (t_ORYOS_At->MarkersEqual(t_ORYOS_At->GetMarker(node), &marker)) return node;
  return nullptr;
}

}  // namespace quillon
