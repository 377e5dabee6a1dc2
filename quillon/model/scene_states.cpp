#include "quillon/model/scene_states.h"

namespace quillon {

std::unique_ptr<Node> NewState() { return std::make_unique<Node>(NodeClass::State, NodeType_State); }

bool MakeStateCurrent(Document& document, Node* state) {
  if (!state || state->nodeClass != NodeClass::State || !IsWithin(state, document.states.get())) return false;
  document.currentState = state;
  return true;
}

}  // namespace quillon
