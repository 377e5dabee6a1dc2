#include "quillon/model/node_walk.h"

#include "quillon/model/animation.h"
#include "quillon/model/tag.h"

namespace quillon {
namespace {

void ForEachUnder(Node* root, const std::function<void(Node&)>& visit) {
  if (!root) return;
  for (Node* at = root->firstChild; at; at = at->next) ForEachOwnedNode(*at, visit);
}

void ForEachLinkOfValue(DataValue& value, const std::function<void(uint64_t&)>& visit) {
  if (value.kind == DataKind_Link && value.payload.object) {
    visit(static_cast<LinkData*>(value.payload.object)->targetId);
  } else if (PriorityData* priority = AsPriority(value)) {
    for (Value& entry : priority->entries) ForEachLinkOfValue(entry.raw, visit);
  } else if (FontData* font = AsFont(value)) {
    for (auto& [id, entry] : font->description) ForEachLinkOfValue(entry.raw, visit);
  }
}

}  // namespace

void ForEachOwnedNode(Node& node, const std::function<void(Node&)>& visit) {
  visit(node);
  if (Object* object = AsObject(&node)) ForEachUnder(object->tagRoot.get(), visit);
  ForEachUnder(ShaderList(node), visit);
  if (node.trackRoot) {
    for (Node* at = node.trackRoot->firstChild; at; at = at->next) {
      visit(*at);
      Track* track = AsTrack(at);
      if (!track || !track->curve) continue;
      visit(*track->curve);
      for (int32_t i = 0; i < track->curve->keys.size(); ++i) visit(*track->curve->keys.at(i));
    }
  }
  for (Node* child = node.firstChild; child; child = child->next) ForEachOwnedNode(*child, visit);
}

void ForEachDocumentNode(Document& document, const std::function<void(Node&)>& visit) {
  visit(document);
  for (Node* list : {document.objects.get(), document.materials.get(), document.layers.get(),
                     document.settings.get(), document.markers.get(), document.states.get()})
    ForEachUnder(list, visit);
  for (auto& view : document.views) {
    if (view->editorCamera) ForEachOwnedNode(*view->editorCamera, visit);
  }
}

void ForEachLinkOfNode(Node& node, const std::function<void(uint64_t&)>& visit) {
  if (node.layerId != 0) visit(node.layerId);
  for (auto& [id, value] : node.params) ForEachLinkOfValue(value.raw, visit);
  if (Key* key = AsKey(&node)) ForEachLinkOfValue(key->data.raw, visit);
}

}  // namespace quillon
