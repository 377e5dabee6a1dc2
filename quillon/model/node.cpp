#include "quillon/model/node.h"

#include "quillon/model/animation.h"
#include "quillon/model/document.h"
#include "quillon/model/links.h"

namespace quillon {

Node::Node(NodeClass nodeClass_, int32_t type_)
    : nodeClass(nodeClass_), type(type_), container{&params, -1, 0} {}

Node::~Node() {
  Node* child = firstChild;
  while (child) {
    Node* following = child->next;
    child->parent = child->prev = child->next = nullptr;
    delete child;
    child = following;
  }
  if (linkId != 0) ForgetLink(linkId);
}

Node* Node::trackList() {
  if (!trackRoot) trackRoot = MakeListRoot(this);
  return trackRoot.get();
}

void Unlink(Node* node) {
  Node* parent = node->parent;
  if (!parent) return;
  bool listed = node->prev || parent->firstChild == node;
  if (listed) {
    (node->prev ? node->prev->next : parent->firstChild) = node->next;
    (node->next ? node->next->prev : parent->lastChild) = node->prev;
  }
  node->parent = node->prev = node->next = nullptr;
}

void InsertFirstUnder(Node* node, Node* parent) {
  Unlink(node);
  node->parent = parent;
  node->next = parent->firstChild;
  (parent->firstChild ? parent->firstChild->prev : parent->lastChild) = node;
  parent->firstChild = node;
}

void InsertLastUnder(Node* node, Node* parent) {
  Unlink(node);
  node->parent = parent;
  node->prev = parent->lastChild;
  (parent->lastChild ? parent->lastChild->next : parent->firstChild) = node;
  parent->lastChild = node;
}

void InsertBehind(Node* node, Node* predecessor) {
  if (node == predecessor || !predecessor->parent) return;
  Unlink(node);
  Node* parent = predecessor->parent;
  node->parent = parent;
  node->prev = predecessor;
  node->next = predecessor->next;
  (predecessor->next ? predecessor->next->prev : parent->lastChild) = node;
  predecessor->next = node;
}

Node* VisibleParent(const Node* node) {
  Node* parent = node->parent;
  return parent && parent->nodeClass != NodeClass::ListRoot ? parent : nullptr;
}

Document* DocumentOf(const Node* node) {
  const Node* at = node;
  while (at) {
    if (at->nodeClass == NodeClass::Document) return const_cast<Document*>(static_cast<const Document*>(at));
    if (at->nodeClass == NodeClass::ListRoot) {
      at = at->owner;
    } else if (at->nodeClass == NodeClass::Curve) {
      at = static_cast<const Curve*>(at)->track;
    } else if (at->nodeClass == NodeClass::Key) {
      at = static_cast<const Key*>(at)->curve;
    } else {
      at = at->parent;
    }
  }
  return nullptr;
}

bool IsWithin(const Node* node, const Node* ancestor) {
  for (const Node* at = node; at; at = at->parent) {
    if (at == ancestor) return true;
  }
  return false;
}

std::vector<Node*> ChildrenOf(const Node* node) {
  std::vector<Node*> children;
  for (Node* child = node->firstChild; child; child = child->next) children.push_back(child);
  return children;
}

std::unique_ptr<Node> MakeListRoot(Node* owner) {
  auto root = std::make_unique<Node>(NodeClass::ListRoot, NodeType_ListRoot);
  root->owner = owner;
  return root;
}

}  // namespace quillon
