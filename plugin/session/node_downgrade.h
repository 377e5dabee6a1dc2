#pragma once
// A copy of a node as it comes back through a scene file of an older version of the 3D
// application: what that version cannot hold is gone from it.
#include <cstdint>

#include "plugin/engine/engine_ops.h"

namespace quillon {

// The file version written for `versionIndex`: 1 to 11 name the versions from 14034 to
// 24111, anything else the current one.
int32_t FileVersionOfIndex(int32_t versionIndex);

// The copy of a document, render settings, material, object or tag, outside any list and
// the caller's; null for a null node, another kind, or when writing or reading the copy
// fails. A material given ends outside any list.
SceneNode* DowngradeNode(SceneNode* node, int32_t versionIndex);

}  // namespace quillon
