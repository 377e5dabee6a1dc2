#include "quillon/model/clone.h"

#include <unordered_map>

#include "quillon/model/animation.h"
#include "quillon/model/links.h"
#include "quillon/model/node_walk.h"
#include "quillon/model/tag.h"

namespace quillon {
namespace {

// Link id of each copied node that had one -> its copy.
using CopyMap = std::unordered_map<uint64_t, Node*>;

void CopyObjectFields(const Object& source, Object& destination) {
  destination.rotationOrder = source.rotationOrder;
  destination.offsetPosition = source.offsetPosition;
  destination.modes = source.modes;
}

// The node alone with its name, bits, parameters and tracks; no children.
std::unique_ptr<Node> CloneBare(const Node& source) {
  std::unique_ptr<Node> copy;
  switch (source.nodeClass) {
    case NodeClass::Object: {
      auto object = std::make_unique<Object>(source.type);
      CopyObjectFields(*AsObject(&source), *object);
      copy = std::move(object);
      break;
    }
    case NodeClass::Tag: return CloneTag(*AsTag(&source));
    case NodeClass::Track: return CloneTrack(*AsTrack(&source));
    case NodeClass::Material: copy = NewMaterial(source.type); break;
    case NodeClass::Shader: copy = NewShader(source.type); break;
    case NodeClass::Layer:
    case NodeClass::RenderSettings:
    case NodeClass::Marker:
    case NodeClass::State: copy = std::make_unique<Node>(source.nodeClass, source.type); break;
    default: return nullptr;
  }
  CopyNodeBasics(source, *copy);
  return copy;
}

void Record(const Node& source, Node& copy, CopyMap& copies) {
  copy.identity = source.identity;
  if (source.linkId != 0) copies[source.linkId] = &copy;
}

// Tracks, curves and keys of a copy stand in the order of the source's.
void RecordTracks(const Node& source, Node& copy, CopyMap& copies) {
  if (!source.trackRoot || !copy.trackRoot) return;
  const Node* from = source.trackRoot->firstChild;
  for (Node* to = copy.trackRoot->firstChild; from && to; from = from->next, to = to->next) {
    Record(*from, *to, copies);
    const Track* fromTrack = AsTrack(from);
    Track* toTrack = AsTrack(to);
    if (!fromTrack->curve || !toTrack->curve) continue;
    Record(*fromTrack->curve, *toTrack->curve, copies);
    for (int32_t i = 0; i < fromTrack->curve->keys.size() && i < toTrack->curve->keys.size(); ++i)
      Record(*fromTrack->curve->keys.at(i), *toTrack->curve->keys.at(i), copies);
  }
}

std::unique_ptr<Node> CloneTree(const Node& source, CopyMap& copies);

void CloneListInto(const Node* sourceList, Node* copyList, CopyMap& copies) {
  if (!sourceList || !copyList) return;
  for (const Node* at = sourceList->firstChild; at; at = at->next) {
    if (std::unique_ptr<Node> copy = CloneTree(*at, copies)) InsertLastUnder(copy.release(), copyList);
  }
}

std::unique_ptr<Node> CloneTree(const Node& source, CopyMap& copies) {
  std::unique_ptr<Node> copy = CloneBare(source);
  if (!copy) return nullptr;
  Record(source, *copy, copies);
  RecordTracks(source, *copy, copies);
  if (source.nodeClass == NodeClass::Tag) return copy;
  if (const Object* object = AsObject(&source)) {
    // CloneBare made no tags for an object: they are cloned here, with their identities.
    CloneListInto(object->tagRoot.get(), AsObject(copy.get())->tagRoot.get(), copies);
  }
  CloneListInto(ShaderList(const_cast<Node&>(source)), ShaderList(*copy), copies);
  CloneListInto(&source, copy.get(), copies);
  return copy;
}

}  // namespace

std::unique_ptr<Node> CloneNodeTree(const Node& source) {
  CopyMap copies;
  std::unique_ptr<Node> copy = CloneTree(source, copies);
  if (!copy) return nullptr;
  ForEachOwnedNode(*copy, [&copies](Node& node) {
    ForEachLinkOfNode(node, [&copies](uint64_t& link) {
      auto found = copies.find(link);
      if (found != copies.end()) link = LinkIdOf(found->second);
    });
  });
  return copy;
}

void CopyNodeContent(const Node& source, Node& destination) {
  if (&source == &destination) return;
  destination.trackRoot.reset();
  CopyNodeBasics(source, destination);
  const Object* from = AsObject(&source);
  Object* to = AsObject(&destination);
  if (!from || !to) return;
  CopyObjectFields(*from, *to);
  to->tagRoot = MakeListRoot(to);
  for (const Tag* tag : TagsOf(*from)) {
    if (std::unique_ptr<Node> copy = CloneNodeTree(*tag)) InsertLastUnder(copy.release(), to->tagRoot.get());
  }
}

}  // namespace quillon
