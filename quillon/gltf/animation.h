// Baked motion as a glTF animation: for each object whose place can change, its transform
// relative to its parent at each of its key times, as translation, rotation and scale
// channels; and the scene's markers as named events in the animation's extras.
#pragma once

#include <vector>

#include "quillon/gltf/conversion.h"

namespace quillon::gltf {

// The glTF node transform of the object as it is posed now, converted to glTF's axes.
void SetNodeTransform(const Document& document, const Object& object, tinygltf::Node& node);

// Samples every object of `objects` (each with its node in conversion.nodeOf) at its motion
// key times and adds the channels whose values change, then the markers. Poses the document
// at those times on the way.
void AddAnimation(Conversion& conversion, const std::vector<Object*>& objects);

}  // namespace quillon::gltf
