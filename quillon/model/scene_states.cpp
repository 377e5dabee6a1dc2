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

void AppendDepthFirst(Node* first, std::vector<Node*>& out) {
  for (Node* at = first; at; at = at->next) {
    out.push_back(at);
    AppendDepthFirst(at->firstChild, out);
  }
}

std::vector<Node*> StatesInOrder(const Document& document) {
  std::vector<Node*> states;
  AppendDepthFirst(document.states->firstChild, states);
  return states;
}

int32_t CurrentStateIndex(const Document& document) {
  const Node* current = CurrentState(document);
  const std::vector<Node*> states = StatesInOrder(document);
  for (size_t i = 0; i < states.size(); ++i) {
    if (states[i] == current) return static_cast<int32_t>(i);
  }
  return -1;
}

Node* CurrentState(const Document& document) {
  Node* state = ResolveLink(document.currentStateId);
  return IsStateOf(document, state) ? state : nullptr;
}

}  // namespace quillon
