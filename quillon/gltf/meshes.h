// Surfaces as glTF meshes: the plane of a solid or a picture as two triangles, and the face of
// an extruded closed spline (text, shapes) as the triangles that fill its contours.
#pragma once

#include "quillon/gltf/conversion.h"

namespace quillon::gltf {

// Puts the plane's mesh on the node: width by height around its centre, across the plane's
// orientation, with texture coordinates that show a picture upright from the front.
void AddPlaneMesh(Conversion& conversion, Object& plane, tinygltf::Node& node);
// Puts the face of a closed spline inside an extrude on the node, in the extrude's material.
void AddSplineMesh(Conversion& conversion, Object& spline, const Object& extrude, tinygltf::Node& node);

}  // namespace quillon::gltf
