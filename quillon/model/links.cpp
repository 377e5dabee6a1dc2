#include "quillon/model/links.h"

#include <mutex>
#include <unordered_map>

#include "quillon/model/document.h"

namespace quillon {
namespace {

struct LinkRegistry {
  std::mutex mutex;
  std::unordered_map<uint64_t, Node*> nodes;
  uint64_t nextId = 1;
};

LinkRegistry& Registry() {
  static LinkRegistry registry;
  return registry;
}

}  // namespace

uint64_t LinkIdOf(Node* node) {
  if (!node) return 0;
  LinkRegistry& registry = Registry();
  std::lock_guard lock(registry.mutex);
  if (node->linkId == 0) {
    node->linkId = registry.nextId++;
    registry.nodes[node->linkId] = node;
  }
  return node->linkId;
}

Node* ResolveLink(uint64_t id) {
  if (id == 0) return nullptr;
  LinkRegistry& registry = Registry();
  std::lock_guard lock(registry.mutex);
  auto found = registry.nodes.find(id);
  return found == registry.nodes.end() ? nullptr : found->second;
}

Node* ResolveLinkIn(uint64_t id, const Document* document) {
  Node* node = ResolveLink(id);
  return node && DocumentOf(node) == document ? node : nullptr;
}

void ForgetLink(uint64_t id) {
  LinkRegistry& registry = Registry();
  std::lock_guard lock(registry.mutex);
  registry.nodes.erase(id);
}

}  // namespace quillon
