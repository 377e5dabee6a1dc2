// Walks over everything a node owns, for the operations that must reach every
// node or every link of a tree or a document: clones, link moves.
#pragma once

#include <cstdint>
#include <functional>

#include "quillon/model/document.h"

namespace quillon {

// The node, then what it owns: its tags, shaders, tracks with their curves and
// keys, then its children, each depth first. Caches are left out: they are
// built again from their generators.
void ForEachOwnedNode(Node& node, const std::function<void(Node&)>& visit);
// Every node of a document: the document, its lists and the views' editor cameras.
void ForEachDocumentNode(Document& document, const std::function<void(Node&)>& visit);
// Every link id that node itself holds: its layer and its link values, also
// those inside other values and in a key's data.
void ForEachLinkOfNode(Node& node, const std::function<void(uint64_t&)>& visit);

}  // namespace quillon
