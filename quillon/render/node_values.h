// A node's parameters as the renderer reads them: by kind, with a default for
// one that is absent or of another kind.
#pragma once

#include <cstdint>
#include <string>

#include "quillon/model/node.h"

namespace quillon::render {

double FloatOf(const Node& node, int32_t id, double fallback);
// The same on a parameter set of its own, such as render settings handed over.
double FloatIn(const ParamSet& values, int32_t id, double fallback);
int32_t Int32Of(const Node& node, int32_t id, int32_t fallback);
bool BoolOf(const Node& node, int32_t id, bool fallback);
Vector VectorOf(const Node& node, int32_t id, const Vector& fallback);
// The Filename parameter; null without one.
const Filename* FilenameOf(const Node& node, int32_t id);
// The node a link parameter leads to, when it lives in document.
Node* LinkedNodeOf(const Node& node, int32_t id, const Document* document);

}  // namespace quillon::render
