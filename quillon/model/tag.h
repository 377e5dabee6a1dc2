// Tags on objects. A variable tag holds an array of fixed-size elements: the
// points, tangents and segments of a spline.
#pragma once

#include <cstddef>
#include <cstring>
#include <vector>

#include "quillon/model/node.h"

namespace quillon {

class Tag : public Node {
 public:
  explicit Tag(int32_t type);

  // Bytes of one element; 0 for a tag without an array.
  int32_t elementSize = 0;
  int32_t count = 0;
  std::vector<std::byte> data;

  void Resize(int32_t newCount);
  void* Address() { return data.empty() ? nullptr : data.data(); }
};

// Element size of the variable tag types, 0 for the others.
int32_t ElementSizeOf(int32_t tagType);

Tag* AsTag(Node* node);
const Tag* AsTag(const Node* node);
std::unique_ptr<Tag> CloneTag(const Tag& source);

// Element `index` of a variable tag, copied out of its bytes (which need not be aligned for
// the type): a Vector of points, a SplineTangent, a SplineSegment.
template <class Element>
Element ElementAt(const Tag& tag, int32_t index) {
  Element element;
  std::memcpy(&element, tag.data.data() + static_cast<std::size_t>(index) * tag.elementSize, sizeof element);
  return element;
}

}  // namespace quillon
