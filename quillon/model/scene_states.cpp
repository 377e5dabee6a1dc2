#include "quillon/model/scene_states.h"

#include "quillon/model/links.h"

namespace quillon {

std::unique_ptr<Node> NewState() { return std::make_unique<Node>(NodeClass::State, NodeType_State); }

namespace {

bool IsStateOf(const Document& document, const Node* state) {
  return state && state->nodeClass == NodeClass::State && IsWithin(state, document.states.get());
}

}  // namespace

bool MakeStateCurrent(Document& document, Node* state) {
  if (!IsStateOf(document, state)) return false;
  document.currentStateId = LinkIdOf(state);
  return true;
}

Node* CurrentState(const Document& document) {
  Node* state = ResolveLink(document.currentStateId);
  return IsStateOf(document, state) ? state : nullptr;
}

}  // namespace quillon
