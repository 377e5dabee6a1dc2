#include "plugin/session/scene_state_select.h"

#include <cstring>

#include "plugin/engine/engine_extensions.h"
#include "plugin/engine/engine_tables.h"
#include "plugin/session/tree_walk.h"

namespace quillon {

bool SelectSceneState(RenderThread& render, const void* data, int64_t size) {
  if (!render.document || !render.sessionOpen || !data || size != static_cast<int64_t>(sizeof(NodeMarker)))
    return false;
  const auto* states =
      static_cast<const SceneStateLibrary*>(FindExtensionLibrary(kExtensionSceneStates, sizeof(SceneStateLibrary)));
  if (!states) return false;
  render.StopThread();
  SceneStateTree* tree = t_ORYOS_Bd->GetStateData(render.document, 0, 0);
  SceneNode* root = tree ? states->GetStateRoot(tree) : nullptr;
  if (!root) return false;
  NodeMarker marker;
  std::memcpy(marker.bytes, data, sizeof(marker.bytes));
  SceneNode* state = FindByMarker(t_ORYOS_At->GetDown(root), marker);
  if (!state) return false;
  if (states->GetCurrentState(tree) != state && states->SetCurrentState(tree, state)) render.dirty = true;
  return true;
}

}  // namespace quillon
