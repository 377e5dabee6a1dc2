#include "quillon/model/tag.h"

#include <cstring>

#include "plugin/exporter/scene_ids.h"
#include "quillon/model/animation.h"

namespace quillon {

Tag::Tag(int32_t tagType) : Node(NodeClass::Tag, tagType), elementSize(ElementSizeOf(tagType)) {}

void Tag::Resize(int32_t newCount) {
  if (newCount < 0 || elementSize == 0) return;
  count = newCount;
  data.resize(static_cast<size_t>(newCount) * static_cast<size_t>(elementSize));
}

int32_t ElementSizeOf(int32_t tagType) {
  switch (tagType) {
    case TagType_Points: return sizeof(Vector);
    case TagType_Tangents: return sizeof(SplineTangent);
    case TagType_Segments: return sizeof(SplineSegment);
    default: return 0;
  }
}

Tag* AsTag(Node* node) { return node && node->nodeClass == NodeClass::Tag ? static_cast<Tag*>(node) : nullptr; }

const Tag* AsTag(const Node* node) {
  return node && node->nodeClass == NodeClass::Tag ? static_cast<const Tag*>(node) : nullptr;
}

std::unique_ptr<Tag> CloneTag(const Tag& source) {
  auto copy = std::make_unique<Tag>(source.type);
  CopyNodeBasics(source, *copy);
  copy->count = source.count;
  copy->data = source.data;
  return copy;
}

}  // namespace quillon
