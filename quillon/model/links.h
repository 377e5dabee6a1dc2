// Links between nodes survive the death of their target: a link holds the
// target's link id, and the id resolves to the node only while it lives.
#pragma once

#include <cstdint>

namespace quillon {

class Node;
class Document;

// The node's link id, given on first use.
uint64_t LinkIdOf(Node* node);
// The living node with that id, or null.
Node* ResolveLink(uint64_t id);
// The same, only when the node lies in document.
Node* ResolveLinkIn(uint64_t id, const Document* document);
// Called by the node's destructor.
void ForgetLink(uint64_t id);

}  // namespace quillon
