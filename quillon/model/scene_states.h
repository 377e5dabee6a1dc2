// Scene states: a tree of named states below the document, one of which is
// current. A client picks a state by the marker of its node.
#pragma once

#include <memory>

#include "quillon/model/document.h"

namespace quillon {

std::unique_ptr<Node> NewState();
// Makes state the current one; false when it is no state of document.
bool MakeStateCurrent(Document& document, Node* state);
// The current state, while it is still one of document's states; else null.
Node* CurrentState(const Document& document);

}  // namespace quillon
