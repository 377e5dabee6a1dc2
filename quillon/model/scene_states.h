// Scene states: a tree of named states below the document, one of which is
// current. A client picks a state by the marker of its node.
#pragma once

#include <memory>
#include <vector>

#include "quillon/model/document.h"

namespace quillon {

std::unique_ptr<Node> NewState();
// Makes state the current one; false when it is no state of document.
bool MakeStateCurrent(Document& document, Node* state);
// The current state, while it is still one of document's states; else null.
Node* CurrentState(const Document& document);
// The states depth first: a state, its children, then its next sibling. The scene file
// and the scene description name the current state by its place in this order.
std::vector<Node*> StatesInOrder(const Document& document);
// The place of the current state in that order; -1 for none.
int32_t CurrentStateIndex(const Document& document);

}  // namespace quillon
