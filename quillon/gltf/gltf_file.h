// The bytes of a glTF file: JSON with its buffer inside as a data URI (.gltf), or the binary
// container with the buffer as its second chunk (.glb).
#pragma once

#include <string>

#include <tiny_gltf.h>

namespace quillon::gltf {

enum class GltfForm { Json, Binary };

// The form an output name asks for by its suffix (.gltf or .glb, in any case); false for
// another name.
bool FormOfOutput(const std::string& path, GltfForm* form);

std::string GltfFileBytes(const tinygltf::Model& model, GltfForm form);

}  // namespace quillon::gltf
