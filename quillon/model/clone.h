// Copies of scene nodes for the clone and copy operations. A clone keeps the
// markers and unique ids of what it copies, since it stands for the same
// elements (as a node that comes back through a scene file does). Links among
// the copied nodes point at their copies; links to anything else stay.
#pragma once

#include <memory>

#include "quillon/model/document.h"

namespace quillon {

// A deep copy of an object (tags, tracks, children), tag, material (shaders),
// shader, layer, render settings, marker, state or track, outside any list.
// Null for what has no copy of its own: documents, list roots, curves, keys.
std::unique_ptr<Node> CloneNodeTree(const Node& source);

// Destination takes what source holds: name, flag bits, parameters and tracks,
// and between two objects the rotation order, offset, modes and tags. It keeps
// its place, its children, its marker and its unique ids.
void CopyNodeContent(const Node& source, Node& destination);

}  // namespace quillon
