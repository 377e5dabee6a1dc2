// What the renderer's readers of parameters (quillon/render/node_values.h) do not give: times,
// texts, and whether a parameter is animated.
#pragma once

#include <string>

#include "quillon/model/document.h"

namespace quillon::gltf {

BaseTime TimeParam(const Node& node, int32_t id, const BaseTime& fallback);
// The text of a string parameter or the path of a file name parameter; empty when absent.
std::string TextParam(const Node& node, int32_t id);
// Whether a track with keys animates the parameter (or a component of it).
bool HasKeyedTrack(Node& node, int32_t id);

}  // namespace quillon::gltf
