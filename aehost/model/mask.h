// Masks of a layer, and the path options by which the text of a text layer runs along one.
#pragma once

#include <string>

#include "aehost/model/shape_contents.h"
#include "aehost/model/stream.h"

namespace aehost {

// A mask: its name and its "Mask Path", a Bezier contour whose keys hold whole vertex arrays;
// between two keys the host moves every vertex and tangent linearly (PathAt).
struct Mask {
  std::string name;  // "Mask 1", "Mask 2", ... when the description names none
  PathStream shape;
  bool operator==(const Mask&) const = default;
};

// The "Path Options" of a text layer: the one-based index of the mask the text runs along (0:
// none), and the margins in pixels from the path's start and end, one-dimensional streams that
// may have keys.
struct TextPathOptions {
  int path = 0;
  Stream firstMargin;
  Stream lastMargin;
  bool operator==(const TextPathOptions&) const = default;
};

}  // namespace aehost
