#pragma once
// Visits every node of a document in one fixed order: the document, then each object
// tree with its tags, then materials with their shaders, layers, render settings,
// markers and the views' editor cameras; every node is followed by its tracks, each
// track by its curve and keys.
#include <functional>

#include "quillon/model/document.h"

namespace quillon::orytool {

void ForEachNode(const Document& document, const std::function<void(const Node&)>& visit);

}  // namespace quillon::orytool
