#pragma once
// A depth-first walk over a list of nodes and everything below them: a node, its
// children, then its next sibling.
#include "plugin/engine/engine_ops.h"

namespace quillon {

// The node after `node` in a walk that began at a node of the list below `top` (the
// result of GetUp on that first node, maybe null); null at the end.
SceneNode* NextInTree(SceneNode* node, const SceneNode* top);

// The first node of the walk from `first` whose marker equals `marker`; null without one.
SceneNode* FindByMarker(SceneNode* first, const NodeMarker& marker);

}  // namespace quillon
