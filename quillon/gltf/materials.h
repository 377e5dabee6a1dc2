// Scene materials as glTF PBR materials: the colour as the base colour, a still image of the
// colour channel as the base colour texture, matte and seen from both sides like a layer.
#pragma once

#include <string>

#include "quillon/gltf/conversion.h"

namespace quillon::gltf {

// The glTF material of the material that the object's first texture tag links to, made once
// for each scene material; -1 when the object has none.
int MaterialOfObject(Conversion& conversion, const Object& object);

// The MIME type of PNG or JPEG bytes; empty for anything else.
std::string ImageMimeType(const std::string& bytes);

}  // namespace quillon::gltf
