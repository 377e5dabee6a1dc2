// Hands the links of one node over to another, so that an element can be
// replaced in place without breaking what pointed at it.
#pragma once

#include "quillon/model/node.h"

namespace quillon {

// What links to `from` links to `to` from now on: the link values, layer
// assignments and view cameras in the documents that hold either node.
void MoveLinks(Node& from, Node& to);

}  // namespace quillon
