// Reading a node's parameters by id with a fallback for one that is absent or of another kind.
#pragma once

#include <string>

#include "quillon/model/document.h"

namespace quillon::gltf {

// A float parameter; a whole number counts as well.
double FloatParam(const Node& node, int32_t id, double fallback);
int32_t IntParam(const Node& node, int32_t id, int32_t fallback);
// A bool parameter; a whole number counts as well (not 0 is true).
bool BoolParam(const Node& node, int32_t id, bool fallback);
Vector VectorParam(const Node& node, int32_t id, const Vector& fallback);
BaseTime TimeParam(const Node& node, int32_t id, const BaseTime& fallback);
// The text of a string parameter or the path of a file name parameter; empty when absent.
std::string TextParam(const Node& node, int32_t id);
// The node a link parameter points at, when it lives in the document.
Node* LinkParam(const Document& document, const Node& node, int32_t id);

// Whether a track with keys animates the parameter (or a component of it).
bool HasKeyedTrack(Node& node, int32_t id);

}  // namespace quillon::gltf
