// Scene lights as lights of the KHR_lights_punctual extension.
#pragma once

#include "quillon/gltf/conversion.h"

namespace quillon::gltf {

enum class LightKind { Point, Spot, Directional, Ambient };

// The kind of a light or KV light object by its type parameter.
LightKind KindOfLight(const Object& light);

// Makes the glTF light of a light or KV light object and puts it on the node; an ambient light,
// which glTF cannot hold, is named in the summary instead.
void AddLight(Conversion& conversion, Object& light, tinygltf::Node& node);

}  // namespace quillon::gltf
