#include "quillon/orytool/scene_walk.h"

#include "quillon/model/animation.h"
#include "quillon/model/tag.h"

namespace quillon::orytool {
namespace {

using Visit = std::function<void(const Node&)>;

void VisitWithTracks(const Node& node, const Visit& visit) {
  visit(node);
  if (!node.trackRoot) return;
  for (const Node* t = node.trackRoot->firstChild; t; t = t->next) {
    VisitWithTracks(*t, visit);
    const Track* track = AsTrack(t);
    if (!track->curve) continue;
    VisitWithTracks(*track->curve, visit);
    // A key without a node holds nothing beyond time, value and bits, which no visit looks at.
    const KeyStore& keys = track->curve->keys;
    for (std::int32_t i = 0; i < keys.size(); ++i)
      if (const Key* key = keys.nodeAt(i)) VisitWithTracks(*key, visit);
  }
}

void VisitTree(const Node& node, const Visit& visit) {
  VisitWithTracks(node, visit);
  if (const Object* object = AsObject(&node))
    for (const Tag* tag : TagsOf(*object)) VisitWithTracks(*tag, visit);
  if (Node* shaders = ShaderList(const_cast<Node&>(node)))
    for (const Node* shader = shaders->firstChild; shader; shader = shader->next) VisitTree(*shader, visit);
  for (const Node* child = node.firstChild; child; child = child->next) VisitTree(*child, visit);
}

void VisitList(const Node& root, const Visit& visit) {
  for (const Node* node = root.firstChild; node; node = node->next) VisitTree(*node, visit);
}

}  // namespace

void ForEachNode(const Document& document, const Visit& visit) {
  VisitWithTracks(document, visit);
  VisitList(*document.objects, visit);
  VisitList(*document.materials, visit);
  VisitList(*document.layers, visit);
  VisitList(*document.settings, visit);
  VisitList(*document.markers, visit);
  for (const auto& view : document.views)
    if (view->editorCamera) VisitTree(*view->editorCamera, visit);
}

}  // namespace quillon::orytool
