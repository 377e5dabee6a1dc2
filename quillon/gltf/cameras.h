// Scene cameras as glTF cameras.
#pragma once

#include "quillon/gltf/conversion.h"

namespace quillon::gltf {

// The width of the picture over its height, as the active render settings give it: the film
// aspect, else the size with its pixel aspect, else 1280 by 720 (a new document's).
double FilmAspect(const Document& document);
// The vertical field of view of a picture of that aspect whose horizontal one is given.
double VerticalFieldOfView(double horizontal, double aspect);

// Makes a glTF camera for a camera or KV camera object and puts it on the node: perspective
// with the vertical field of view of the object's horizontal one, or orthographic for a
// projection other than 0, as large as the picture.
void AddCamera(Conversion& conversion, Object& camera, tinygltf::Node& node);

}  // namespace quillon::gltf
